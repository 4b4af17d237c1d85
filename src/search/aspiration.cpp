#include "search/aspiration.h"

#include <cstdlib>

#include "base/options.h"
#include "search/limits.h"
#include "search/search.h"

AspirationWindow widenWindow(AspirationWindow window, int value) {
  int width = window.beta - window.alpha;
  if (value >= window.beta) {
    int widened = static_cast<int>(width * 1.5 + (value - 1));
    return {value - 1 > -fullWindow ? value - 1 : -fullWindow, widened < fullWindow ? widened : fullWindow};
  }
  int widened = static_cast<int>((value + 1) - width * 1.5);
  return {widened > -fullWindow ? widened : -fullWindow, value + 1 < fullWindow ? value + 1 : fullWindow};
}

AspirationWindow firstWindow(const SearchState& state, int depth) {
  if (depth <= 4 || options.multiPv != 1) return {-fullWindow, fullWindow};
  int s1 = state.scoreByDepth[depth - 1], s2 = state.scoreByDepth[depth - 2], s3 = state.scoreByDepth[depth - 3];
  int delta = (std::abs(s1 - s2) + std::abs(s2 - s3)) / 2;
  if (delta < 16) delta = 16;
  return {s1 - delta > -fullWindow ? s1 - delta : -fullWindow, s1 + delta < fullWindow ? s1 + delta : fullWindow};
}

int resolveWindow(SearchState& state, Position& root, int depth, AspirationWindow window, int value, Move* line, const RootMoveList& list,
                  uint64_t* firstMoveNodes, uint64_t* otherMoveNodes) {
  const bool failedHigh = value >= window.beta;
  if (searchSignals.stop || (!failedHigh && value > window.alpha)) return value;
  for (;;) {
    window = widenWindow(window, value);
    value = searchRoot(state, root, depth, window.alpha, window.beta, line, list, firstMoveNodes, otherMoveNodes);
    if (searchSignals.stop || (value > window.alpha && value < window.beta)) return value;
    bool reopenedSideFailed = failedHigh ? value <= window.alpha : value >= window.beta;
    if (reopenedSideFailed) return searchRoot(state, root, depth, -fullWindow, fullWindow, line, list, firstMoveNodes, otherMoveNodes);
  }
}
