// Small helpers shared by the three recursive searches.
#pragma once

#include <cstdlib>

#include "base/types.h"
#include "board/make_move.h"
#include "board/queries.h"
#include "eval/evaluate.h"
#include "search/hash_table.h"
#include "search/limits.h"
#include "search/search_state.h"

// A search's node count is the number of positions it makes, legal or not.
// Once the search is told to stop, the count stops with it: the moves made on
// the way back search nothing and count for nothing.
inline void countNodes(SearchState& state, int made = 1) {
  if (!searchSignals.stop) state.nodes = state.nodes + made;
}

// Makes the move into child, counts it, and tells whether it is legal, that
// is whether the mover's king is safe afterwards. A legal child learns
// whether it is in check, which makeMove leaves to its caller.
inline bool makeLegalChild(SearchState& state, const Position& position, Position& child, Move move, int us) {
  makeMove(position, child, move);
  countNodes(state);
  hashPrefetch(child.hashKey);
  evaluationPrefetch(child, *state.caches);
  if (kingAttacked(child, us)) return false;
  child.inCheck = kingAttacked(child, us ^ 1);
  return true;
}

// A stored bound sharpens the static value; mate scores are left out.
inline int sharpenWithEntry(int eval, const HashEntry& entry) {
  if (std::abs(entry.score) > mateThreshold) return eval;
  switch (entry.bound & 3) {
    case boundExact: return entry.score;
    case boundLower: return entry.score > eval ? entry.score : eval;
    case boundUpper: return entry.score < eval ? entry.score : eval;
    default: return eval;
  }
}

// The record of the quiet moves tried at a node, for the history update.
struct TriedQuiet {
  uint8_t piece;
  uint8_t to;
};

// Credits the history with a node's quiet moves: all of them were tried, the
// one at bestIndex succeeded. Counters are halved to keep them recent.
void creditHistory(MoveHistory& history, const TriedQuiet* tried, int count, int bestIndex, int colour, int halfDepth);

// A quiet move that cut off becomes the newest killer of its ply.
void recordKiller(SearchState& state, Move move, int ply);
