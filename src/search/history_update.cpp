#include "moves/picker.h"
#include "search/search_common.h"

void creditHistory(MoveHistory& history, const TriedQuiet* tried, int count, int bestIndex, int colour, int halfDepth) {
  for (int i = 0; i < count; ++i) {
    HistoryEntry& entry = history.entries[colour][tried[i].piece][tried[i].to];
    entry.tried += halfDepth;
    if (i == bestIndex) entry.good += halfDepth;
    if (entry.tried > 25) {
      entry.good >>= 1;
      entry.tried >>= 1;
    }
  }
}

void recordKiller(SearchState& state, Move move, int ply) {
  if (state.killer1[ply] == move) return;
  state.killer2[ply] = state.killer1[ply];
  state.killer1[ply] = move;
}
