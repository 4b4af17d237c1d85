#include <gtest/gtest.h>

#include "../support/board_builder.h"
#include "search/conventions.h"

namespace {

using testboard::fromFen;
using testboard::mv;
using testboard::sq;

Bitboard squares(std::initializer_list<const char*> names) {
  Bitboard b = 0;
  for (const char* n : names) b |= squareBit(sq(n));
  return b;
}

TEST(PasserSquares, EnemyPawnsGuardTheirFilesAndNeighboursTowardsUs) {
  Bitboard upper = 0xffffff0000000000ULL;
  // A black pawn on e7 guards d6, e6, f6 and everything below them; e7 and
  // the eighth rank stay free.
  EXPECT_EQ(passerSquares(fromFen("4k3/4p3/8/8/8/8/8/4K3 w")), upper & ~squares({"d6", "e6", "f6"}));
  // On the edge only one neighbour exists.
  EXPECT_EQ(passerSquares(fromFen("4k3/p7/8/8/8/8/8/4K3 w")), upper & ~squares({"a6", "b6"}));
  // A pawn that has come down to the fifth rank guards nothing up there.
  EXPECT_EQ(passerSquares(fromFen("4k3/8/8/7p/8/8/8/4K3 w")), upper);
  // Two pawns on their home rank.
  EXPECT_EQ(passerSquares(fromFen("4k3/2p4p/8/8/8/8/8/4K3 w")),
            upper & ~squares({"b6", "c6", "d6", "g6", "h6"}));
  // Black to move against white pawns on d2 and h3.
  EXPECT_EQ(passerSquares(fromFen("4k3/8/8/8/8/7P/3P4/4K3 b")),
            0x0000000000ffffffULL & ~squares({"c3", "d3", "e3"}));
}

}  // namespace
