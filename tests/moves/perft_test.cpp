#include "moves/perft.h"

#include <gtest/gtest.h>

#include "../support/board.h"

namespace {

TEST(Perft, PublishedTotals) {
  struct Case { const char* fen; int depth; uint64_t leaves; };
  const Case cases[] = {
      {"", 5, 4865609},  // the start position
      // Castling through and out of check, pins and promotions in the middle game.
      {"r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -", 4, 4085603},
      // En passant with the king on the pawns' rank.
      {"8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - -", 5, 674624},
      // Promotions and checks with black castling only.
      {"r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1", 4, 422333},
      // Promotion with capture, and knight checks.
      {"rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8", 3, 62379},
      {"r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10", 3, 89890},
  };
  for (const Case& c : cases) EXPECT_EQ(perft(testboard::parsed(c.fen), c.depth), c.leaves) << c.fen;
}

}  // namespace
