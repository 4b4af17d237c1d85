// Late-move reductions in half plies, by depth and by the move's place in the
// move order. Built from a rule by buildReductionTables.
#pragma once

#include <cstdint>

constexpr int reductionRows = 210;     // depth in half plies
constexpr int reductionColumns = 400;  // place of the move at its node

// Rows 0 and 1 and column 0 are never written and stay 0.
extern uint32_t reductionPv[reductionRows][reductionColumns];
extern uint32_t reductionNode[reductionRows][reductionColumns];

// Fills both tables for the current "Red depth threshold", and the drawn
// material keys with them. Runs at the first search and after any change of
// a spin option.
void buildReductionTables();

// A depth or a move number past the end of the table reads its last row or
// column: a node with more than 399 moves keeps the deepest reduction.
inline int reductionRow(int depth) { return depth < 0 ? 0 : depth >= reductionRows ? reductionRows - 1 : depth; }
inline int reductionColumn(int index) {
  return index < 0 ? 0 : index >= reductionColumns ? reductionColumns - 1 : index;
}

inline uint32_t pvReduction(int newDepth, int moveCount) {
  return reductionPv[reductionRow(newDepth)][reductionColumn(moveCount)];
}
// At an odd distance below the last PV node the move number counts double,
// so such nodes run through the steps twice as fast.
inline uint32_t nodeReduction(int newDepth, int moveCount, int parity) {
  return reductionNode[reductionRow(newDepth)][reductionColumn(moveCount << parity)];
}
