#include "moves/perft.h"

#include "board/make_move.h"
#include "board/queries.h"
#include "moves/generate.h"

uint64_t perft(const Position& position, int depth) {
  if (depth <= 0) return 1;
  Move list[maxGeneratedMoves];
  int count = generateAllMoves(position, list);
  uint64_t total = 0;
  Position child;
  for (int i = 0; i < count; ++i) {
    makeMove(position, child, list[i]);
    // Pseudo-legal moves: the mover's king must not be left attacked.
    if (kingAttacked(child, position.ctm)) continue;
    total += depth == 1 ? 1 : perft(child, depth - 1);
  }
  return total;
}
