// The iterative deepening driver: one whole search of one position.
#pragma once

#include <cstdint>

#include "base/types.h"
#include "moves/generate.h"
#include "search/search_state.h"

// What the shell asks of one search. The caller clears the stop before it
// hands the request over, so that a stop the client sends right after go
// stops this search.
struct ThinkRequest {
  double goalSeconds = 0.0;  // the deepening's aim; no iteration starts after three quarters of it
  double hardSeconds = 0.0;  // where the search is stopped wherever it stands
  int maxDepth = 1;
  bool exactTime = false;   // spend goalSeconds whole: soft and hard limit (a fixed time per move)
  bool infinite = false;    // go infinite: only the client's stop ends it
  bool restricted = false;  // only the moves of allowed (searchmoves); else every legal move
  RootMoveList allowed;
  uint64_t nodeLimit = ~uint64_t{0};  // all bits set for no limit
  int mateMoves = 0;        // go mate N: answer once a mate in at most N moves is proven; else search on until stop
};

// A new game: the hash table, the history, the killers and the evaluation
// caches of state are emptied, so that no search of the game depends on an
// earlier game.
void forgetEarlierGames(SearchState& state);

// Searches root to maxDepth iterations or until a limit or the client says
// stop, and answers through the state's reporter (none: silent). Returns the
// final score. A search started while pondering (searchSignals.pondering)
// keeps its limits off until ponderhit.
int think(SearchState& state, Position& root, const ThinkRequest& request);

// The moves to the mate that a score beyond the mate threshold, for the side
// it favours, promises: "mate N" shows this N.
int movesToMate(int score);
