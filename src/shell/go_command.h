// The go command: reads the search parameters, turns the clock into a time
// budget and runs the search inside the current pass of uciPoll.
#pragma once

#include <cstdint>

// The search that go runs, as the dispatcher sees it.
struct SearchSession {
  // Set while go runs its search; polls then refuse go, position and a new
  // hash table, which would pull the ground from under the search.
  int32_t running = 0;
  // The running search is a go infinite: only a command ends it, so at the
  // end of input it is stopped as by "stop" (a ponder search too, until its
  // ponderhit).
  int32_t needsCommand = 0;
};

extern SearchSession searchSession;

constexpr int searchMovesCapacity = 2048;
constexpr int deepestSearch = 99;  // the driver keeps 100 iterations

// The words of one go line. Everything a search needs is copied out of the
// line before the search starts: the search polls, and the polls may reuse
// the line's slot of the input ring.
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

// tokens[0] is "go"; count includes it.
void readGoWords(char** tokens, int count, GoRequest& request);

struct SearchPlan {
  double goal;     // seconds
  int maxDepth;    // last iteration
  bool exactTime;  // the goal is a fixed time to spend whole (movetime)
};

// The kind of search a request asks for and its time goal, for the side to
// move; a clock budget also sets the hard limit percentage and writes its log line.
SearchPlan planSearch(const GoRequest& request, int side, double overhead);

// The goal in seconds for a clock situation, setting the hard limit percentage where
// the budget decides it: moves-to-go when movesToGo isn't 0, else the budget
// with increment or the sudden-death one. Writes the budget's log line.
double timeBudget(double timeLeft, double increment, int movesToGo, double overhead);

// The whole command: reads the line, sets the node limit and pondering, and runs
// the search on the current record of the game.
void goCommand(char** tokens, int count);
