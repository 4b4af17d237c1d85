#include "moves/perft.h"

#include "board/make_move.h"
#include "moves/generate.h"

uint64_t perft(const Position& position, int depth) {
  if (depth <= 0) return 1;
  Move list[maxGeneratedMoves];
  const int count = generateLegalMoves(position, list);
  // The legal moves are counted, not made again, one ply above the leaves.
  if (depth == 1) return static_cast<uint64_t>(count);
  uint64_t total = 0;
  Position child;
  for (int i = 0; i < count; ++i) {
    makeMove(position, child, list[i]);
    total += perft(child, depth - 1);
  }
  return total;
}
