#include "base/platform.h"
#include "search/limits.h"
#include "search/search.h"
#include "search/threads.h"

SearchLimits searchLimits;
SearchSignals searchSignals;

void stopTheSearch() {
  {
    std::lock_guard<std::mutex> hold(searchSignals.mutex);
    searchSignals.stop = 1;
    searchSignals.stopRequested = true;
  }
  searchSignals.changed.notify_all();
}

void ponderHit() {
  {
    std::lock_guard<std::mutex> hold(searchSignals.mutex);
    searchSignals.pondering = 0;
  }
  searchSignals.changed.notify_all();
}

void clearTheStop() {
  std::lock_guard<std::mutex> hold(searchSignals.mutex);
  searchSignals.stop = 0;
  searchSignals.stopRequested = false;
}

void waitForTheClient(bool ponderHitEnds) {
  std::unique_lock<std::mutex> hold(searchSignals.mutex);
  searchSignals.changed.wait(hold, [&] { return searchSignals.stopRequested || (ponderHitEnds && !searchSignals.pondering); });
}

bool searchPollSaysStop(SearchState& state) {
  if (state.helperIndex != 0) return searchSignals.stop;
  // The counter only paces the polls; it wraps.
  ++state.pollCounter;
  if ((state.pollCounter & 0xff) != 0 || searchLimits.pollingHeld) return false;
  if (searchSignals.pondering) return false;
  if (searchSignals.stop) return true;
  const double now = clock(clockSettings.wholeSeconds);
  if (nodesOfAllThreads() >= searchLimits.nodeLimit || now >= searchLimits.hardTimeLimit ||
      (searchLimits.startedPondering && now >= searchLimits.softTimeLimit)) {
    stopTheSearch();
    return true;
  }
  return false;
}
