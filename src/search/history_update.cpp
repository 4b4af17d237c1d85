#include "moves/picker.h"
#include "search/search_common.h"

void creditHistory(const TriedQuiet* tried, int count, int bestIndex, int colour, int halfDepth) {
  for (int i = 0; i < count; ++i) {
    HistoryEntry& entry = history[colour][tried[i].piece][tried[i].to];
    entry.tried += halfDepth;
    if (i == bestIndex) entry.good += halfDepth;
    if (entry.tried > 25) {
      entry.good >>= 1;
      entry.tried >>= 1;
    }
  }
}

void recordKiller(Move move, int ply) {
  if (killer1[ply] == move) return;
  killer2[ply] = killer1[ply];
  killer1[ply] = move;
}
