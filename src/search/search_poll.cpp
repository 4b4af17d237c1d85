#include "base/platform.h"
#include "shell/search_flags.h"
#include "shell/uci.h"
#include "search/search.h"

bool searchPollSaysStop() {
  // The counter only paces the polls; let it wrap without signed overflow.
  pollCounter = static_cast<int32_t>(static_cast<uint32_t>(pollCounter) + 1);
  if ((pollCounter & 0xff) != 0 || pollingHeld) return false;
  uciPoll();
  if (pondering) return false;
  if (stopSearch) return true;
  if (nodeCount >= nodeLimit || clock(wholeSecondClock) >= hardTimeLimit) {
    stopSearch = 1;
    return true;
  }
  return false;
}
