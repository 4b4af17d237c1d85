// The iterative deepening driver: one whole search of one position.
#pragma once

#include <cstdint>

#include "base/types.h"
#include "moves/generate.h"
#include "search/search_state.h"

// What the shell asks of one search.
struct ThinkRequest {
  double goalSeconds = 0.0;
  int maxDepth = 1;
  bool exactTime = false;   // spend goalSeconds whole and never more (a fixed time per move)
  bool restricted = false;  // only the moves of allowed (searchmoves); else every legal move
  RootMoveList allowed;
  Move bookMove = 0;        // the opening book's answer: played without a search
  int mateMoves = 0;        // go mate N: answer once a mate in at most N moves is proven; else search on until stop
};



// A new game: the hash table, the history, the killers and the evaluation
// caches of state are emptied, so that no search of the game depends on an
// earlier game.
void forgetEarlierGames(SearchState& state);

// Searches root to maxDepth iterations or until the clock says stop, and
// prints bestmove (not in batch mode). Returns the final score.
int think(SearchState& state, Position& root, const ThinkRequest& request);

// Writes the moves of line, played from root, as text, each followed by a blank.
void pvToText(const Position& root, const Move* line, char* text);

constexpr int scoreTextSize = 24;

// The moves to the mate that a score beyond the mate threshold, for the side
// it favours, promises: "mate N" prints this N.
int movesToMate(int score);

// "cp N", or "mate N" for scores beyond the mate threshold; text holds
// scoreTextSize bytes.
void scoreToText(int score, char* text);

// The info line of a finished iteration or of a new best root move; it shows
// the playable part of line from root.
// Its fields come in the order of the UCI convention: depth, seldepth, score,
// nodes, nps, hashfull, time, pv.
void printIterationLine(SearchState& state, const Position& root, int depth, int selDepth, int score,
                        const Move* line);
