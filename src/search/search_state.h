// Everything one search learns and keeps while it runs: its killers and
// history, the root moves with their order, the lines of its iterations, and
// the evaluation caches it reads. A search is handed its state and touches
// no other, so that searches can run side by side, each on its own.
#pragma once

#include <cstdint>
#include <cstring>

#include "base/shared_word.h"
#include "base/types.h"
#include "eval/evaluate.h"
#include "moves/generate.h"
#include "moves/picker.h"
#include "search/conventions.h"

constexpr int maxIterations = 99;  // go clips its depth to this

struct RootMove {
  Move move;
  int32_t score;   // ordering score of the first pass
  uint64_t nodes;  // nodes spent on the move in the last pass that finished it
};

// The moves a search may choose among at the root.
struct RootMoveList {
  Move moves[maxGeneratedMoves];
  int count = 0;
};

// One line of an iteration, as MultiPV sorts and shows them.
struct PvRow {
  int32_t score;
  Move line[lineLength];
};

class SearchReporter;

struct SearchState {
  // The positions this search has made since it started: the one word of the
  // record that another thread reads while it runs (the main search adds up
  // the helpers' counts), alone on its cache line.
  alignas(cacheLineBytes) SharedWord<uint64_t> nodes = 0;
  // Node entries of the main search; the low 8 bits pace its polls.
  alignas(cacheLineBytes) uint32_t pollCounter = 0;
  Move killer1[256];
  Move killer2[256];
  MoveHistory history;
  RootMove rootMoves[256];
  int rootMoveCount;
  // The one record that receives each root move in turn; the searches below
  // build their children on their own stacks.
  Position rootChild;
  PvRow rows[maxIterations + 1];  // the lines of the current iteration, kept between iterations
  int32_t scoreByDepth[maxIterations + 1];
  Move moveByDepth[maxIterations + 1];
  Move lastShownMove;  // first move of the last line printed; 0 before any
  // Results of each iteration, kept only in batch mode.
  double depthTime[32];
  uint64_t depthNodes[32];
  int32_t depthScore[32];
  Move depthMove[32];
  int32_t selDepth = 0;  // the deepest ply a search function entered in this iteration
  int32_t firstSearchPending = 1;  // the next search clears history, reductions and hash
  EvalCaches* caches = &evalCaches;
  // 0 for the main search, which watches the limits and reports; a helper
  // thread's search only looks at the stop flag and says nothing.
  int32_t helperIndex = 0;
  // Where the main search reports to; null for a silent search (the batch
  // modes, the helpers).
  SearchReporter* reporter = nullptr;
};

// Forgets what a search learnt in earlier games: its history, killers and
// evaluation caches.
inline void forgetGameMemory(SearchState& state) {
  state.history = MoveHistory{};
  std::memset(state.killer1, 0, sizeof state.killer1);
  std::memset(state.killer2, 0, sizeof state.killer2);
  clearEvaluationCaches(*state.caches);
}

// Notes that the search has entered a node at ply (for seldepth).
inline void reachPly(SearchState& state, int ply) {
  if (ply > state.selDepth) state.selDepth = ply;
}

// The main search's record, with the engine's evaluation caches.
extern SearchState mainSearch;
