// Small helpers shared by the three recursive searches.
#pragma once

#include <cstdlib>

#include "base/types.h"
#include "board/make_move.h"
#include "board/queries.h"
#include "eval/evaluate.h"
#include "search/hash_table.h"
#include "search/search_state.h"

// Makes the move into child and tells whether it is legal, that is whether the
// mover's king is safe afterwards. A legal child learns whether it is in check,
// which makeMove leaves to its caller.
inline bool makeLegalChild(const Position& position, Position& child, Move move, int us, const EvalCaches& caches) {
  makeMove(position, child, move);
  hashPrefetch(child.hashKey);
  evaluationPrefetch(child, caches);
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
