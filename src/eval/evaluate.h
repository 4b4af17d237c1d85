// The static evaluation: centipawns from the side to move's view.
#pragma once

#include <cstdint>

#include "base/types.h"

struct EvalCacheEntry {
  uint64_t key;
  int32_t score;
};

extern EvalCacheEntry evalCache[4096];
extern uint64_t etableProbes;
extern uint64_t etableHits;
extern uint64_t evalCacheHits;  // evaluations answered by evalCache

// The position's pstScore and phase must be filled in (see fillRootScores).
int evaluate(const Position& position);
