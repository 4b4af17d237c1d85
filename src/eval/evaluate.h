// The static evaluation: centipawns from the side to move's view.
#pragma once

#include <cstdint>

#include "base/types.h"
#include "eval/pawns.h"

struct EvalCacheEntry {
  uint64_t key;
  int32_t score;
};

// What one search remembers of its evaluations: whole values by position key
// and the pawn-and-king terms (the etable) by pawn key, with the counts the
// log reports. A search owns its caches, so that searches running side by
// side never share one.
struct EvalCaches {
  EvalCacheEntry evalCache[4096];
  EtableEntry etable[etableSize];
  uint64_t etableProbes;
  uint64_t etableHits;
  uint64_t evalCacheHits;  // evaluations answered by evalCache
};

// The caches of the engine's search.
extern EvalCaches evalCaches;

// Builds every table the evaluation reads: the fixed ones on the first call,
// those that follow the options (King Safety Aggressiveness) on each. The
// caches hold values of the former setting: clear them, and the hash table.
void initEvaluation();

// Forgets every cached value; the counts stay.
void clearEvaluationCaches(EvalCaches& caches);

// The position's pstScore and phase must be filled in (see fillRootScores).
int evaluate(const Position& position, EvalCaches& caches);

// Asks the memory for the position's entries in both caches ahead of its
// evaluation. The etable is several megabytes: a pawn or king move lands on a
// cold entry, and asked for right after the move it arrives while the search
// looks at the node.
inline void evaluationPrefetch(const Position& position, const EvalCaches& caches) {
  __builtin_prefetch(&caches.evalCache[position.hashKey & 0xfff]);
  __builtin_prefetch(&caches.etable[position.pawnKey & (etableSize - 1)]);
}
