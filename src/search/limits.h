// What ends a search, and the signals that reach it while it runs.
//
// The limits are set by the main search's own thread when a search starts
// and read only by that thread. The signals are the words other threads
// write while the search runs: the shell's input thread stops a search and
// turns a ponder search into a normal one; the helper threads read the stop
// at every node. Each signal sits alone on its cache line, so that reading
// it costs a search thread nothing while nobody writes it.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>

#include "base/shared_word.h"

struct SearchLimits {
  double startTime = 0.0;
  double hardTimeLimit = 0.0;
  // The soft limit of the deepening, for a search that began as a ponder
  // search: once the client's ponderhit makes it a normal search, a soft
  // limit already passed ends it at the next poll instead of at the end of
  // its iteration.
  double softTimeLimit = 0.0;
  int32_t startedPondering = 0;
  uint64_t nodeLimit = ~uint64_t{0};  // all bits set for no limit
  int32_t pollingHeld = 0;  // set during the first iteration: no polls
  int32_t batchMode = 0;    // self-test and test data: silent, deterministic
};

extern SearchLimits searchLimits;

struct SearchSignals {
  alignas(cacheLineBytes) SharedWord<int32_t> stop = 0;  // the search must unwind
  alignas(cacheLineBytes) SharedWord<int32_t> pondering = 0;  // no limit ends the search while set
  // A finished search that waits for the client (go infinite, go ponder, an
  // unproven go mate) sleeps here until a signal changes.
  alignas(cacheLineBytes) std::mutex mutex;
  std::condition_variable changed;
  // Set with stop by stopTheSearch, under the mutex: the stop of the client
  // or of a limit, which the helpers' own stop at the end of a search doesn't
  // set.
  bool stopRequested = false;
};

extern SearchSignals searchSignals;

// Tells the running search to unwind, and wakes it if it waits for the
// client. The node count stops with it: the moves made on the way back are
// not searched and are not counted.
void stopTheSearch();

// The client's ponderhit: the search now plays for real, under its limits.
void ponderHit();

// Clears the stop before a search starts.
void clearTheStop();

// Sleeps until the search is stopped or, when ponderHitEnds, until a
// ponderhit arrives; returns at once if that has already happened.
void waitForTheClient(bool ponderHitEnds);
