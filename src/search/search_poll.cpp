#include "base/platform.h"
#include "board/make_move.h"
#include "search/limits.h"
#include "search/search.h"
#include "search/threads.h"

SearchLimits searchLimits;

void stopTheSearch() {
  searchLimits.stop = 1;
  nodeCounter.frozen = 1;
}

void clearTheStop() {
  searchLimits.stop = 0;
  nodeCounter.frozen = 0;
}

bool searchPollSaysStop(const SearchState& state) {
  if (state.helperIndex != 0) return searchLimits.stop;
  // The counter only paces the polls; let it wrap without signed overflow.
  searchLimits.pollCounter = static_cast<int32_t>(static_cast<uint32_t>(searchLimits.pollCounter) + 1);
  if ((searchLimits.pollCounter & 0xff) != 0 || searchLimits.pollingHeld) return false;
  if (searchLimits.serveInput) searchLimits.serveInput();
  if (searchLimits.pondering) return false;
  if (searchLimits.stop) return true;
  if (nodesOfAllThreads() >= searchLimits.nodeLimit || clock(clockSettings.wholeSeconds) >= searchLimits.hardTimeLimit) {
    stopTheSearch();
    return true;
  }
  return false;
}
