// The time manager: what a go command asks for and the option values turned
// into the limits of one search (its time goal, hard limit, last iteration,
// node limit), in one place, once per go.
#pragma once

#include <cstdint>

constexpr int searchMovesCapacity = 2048;
constexpr int deepestSearch = 99;  // the driver keeps 100 iterations

// The words of one go line. Everything a search needs is copied out of the
// line before the search starts.
struct GoRequest {
  double remaining[2];  // seconds on the clock, by colour
  double increment[2];
  double moveTime;      // 0 when absent
  int32_t movesToGo;    // 0 when absent
  int32_t depth;        // 0 when absent or not above 0; never above deepestSearch
  bool infiniteSearch;
  int32_t mateMoves;    // go mate N: a mate in at most N moves ends the search; 0 when absent
  bool ponder;
  uint64_t nodeLimit;   // all bits set when absent
  char searchMoves[searchMovesCapacity];  // move texts, each followed by a blank
};

// The time a clock allows one move: the goal the deepening aims at, and the
// hard limit at which the search is stopped wherever it stands.
struct ClockBudget {
  double goal;  // seconds
  double hard;
};

struct SearchPlan {
  ClockBudget time;
  int maxDepth;    // last iteration
  bool exactTime;  // the goal is a fixed time to spend whole (movetime)
};

// The kind of search a request asks for and its time, for the side to move.
// A search with a limit of its own (depth, nodes, mate, infinite) has no time
// limit.
SearchPlan planSearch(const GoRequest& request, int side, double overhead);

// The budget for a clock situation: moves-to-go when movesToGo isn't 0, else
// the budget with increment or the sudden-death one. Writes the budget's log line.
ClockBudget timeBudget(double timeLeft, double increment, int movesToGo, double overhead);
