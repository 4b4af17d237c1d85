// What a search tells its client: the interface through which the main
// search reports while it runs and answers when it ends. The shell
// implements it for the UCI protocol; nothing under src/search prints.
// The batch modes and the helper threads search without a reporter.
#pragma once

#include <cstdint>

#include "base/types.h"
#include "search/search_state.h"

// One line of analysis as a client is shown it.
struct LineReport {
  int depth;
  int selDepth;
  int multiPv;  // the line's rank, from 1, in a search of several lines; 0 in a single-line search
  int score;
  uint64_t nodes;
  double seconds;  // since the search started
  int hashFull;    // per mille
  const Move* line;  // the playable moves, ended by a 0
};

// The search's answer.
struct SearchAnswer {
  Move best;    // 0 when the root has no legal move
  Move ponder;  // 0 when the line has no second move
  uint64_t nodes;
  double seconds;
  bool aborted;  // the last iteration was cut short
  const EvalCaches* caches;  // the main search's, for the log's statistics
};

class SearchReporter {
 public:
  virtual ~SearchReporter() = default;
  virtual void searchStarted(const Position& root) = 0;
  virtual void iterationStarted(int depth) = 0;
  // A line of analysis: a finished iteration, a new best move within one,
  // or one of the lines of a MultiPV iteration.
  virtual void lineFound(const LineReport& report) = 0;
  // A finished iteration's best line, for the record (the log): reported
  // whether or not it was shown as a line.
  virtual void iterationFinished(const LineReport& report) = 0;
  virtual void currentMove(Move move, int number) = 0;
  virtual void searchEnded(const SearchAnswer& answer) = 0;
};

// Builds the report of line (the playable part from root) and hands it to
// the state's reporter; notes the first move as the last one shown.
void reportLine(SearchState& state, const Position& root, int depth, int selDepth, int score, const Move* line);
