// Aspiration windows: the root is searched first in a narrow band around
// the last iteration's score, and again in a wider one when the value falls
// outside.
#pragma once

#include <cstdint>

#include "base/types.h"
#include "search/search_state.h"

struct AspirationWindow {
  int alpha;
  int beta;
};

// The window after a fail: it widens by half its width beyond the bound that
// failed, and the side that failed is reopened by one point only.
AspirationWindow widenWindow(AspirationWindow window, int value);

// The window of a line's first search: past the fourth iteration of a
// single-line search, a band around the last score as wide as the last
// scores have moved (at least 16 either way); else the full window.
AspirationWindow firstWindow(const SearchState& state, int depth);

// Re-searches a failed aspiration window until the value lies inside it, or
// falls back to the full window when it fails on the side that was reopened.
int resolveWindow(SearchState& state, Position& root, int depth, AspirationWindow window, int value, Move* line,
                  const RootMoveList& list, uint64_t* firstMoveNodes, uint64_t* otherMoveNodes);
