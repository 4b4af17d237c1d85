// What ends a search and what it may do meanwhile. One record for every
// search of the engine: the shell sets it before a search starts and the
// client's commands change it while one runs.
#pragma once

#include <cstdint>

#include "base/shared_word.h"

struct SearchLimits {
  SharedWord<int32_t> stop = 0;  // the search must unwind; helper threads read it too
  int32_t pondering = 0;    // no limit ends the search while set
  int32_t pollingHeld = 0;  // set during the first iteration: no polls
  int32_t pollCounter = 0;  // entries of all searches; low 8 bits pace the polls
  double startTime = 0.0;
  double hardTimeLimit = 0.0;
  int32_t hardTimePercent = 500;  // the hard limit as a percentage of the goal
  uint64_t nodeLimit = ~uint64_t{0};  // all bits set for no limit
  int32_t batchMode = 0;  // self-test and test data: silent, deterministic
  // The shell's command dispatcher: the polls of a search call it every 256
  // node entries, so that stop, ponderhit and quit reach a running search.
  // True when it took a line; null serves nothing.
  bool (*serveInput)() = nullptr;
};

extern SearchLimits searchLimits;

// Tells the running search to unwind. The node count stops with it: the moves
// made on the way back are not searched and are not counted.
void stopTheSearch();

// Clears the stop before a search starts, and lets the node count run again.
void clearTheStop();
