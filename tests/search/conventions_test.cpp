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

TEST(NodeParity, CountsTheDistanceFromTheNearestPvNode) {
  Position p{};
  p.pvPly = 0;
  // A root move's child is searched at ply 1 below the root's pvPly of 0.
  EXPECT_EQ(nodeParity(1, p), 1);
  EXPECT_EQ(nodeParity(2, p), 0);
  p.pvPly = 5;
  EXPECT_EQ(nodeParity(5, p), 0);
  EXPECT_EQ(nodeParity(8, p), 1);
}

TEST(MoveClass, CapturesEnPassantAndPromotionsSetTheFirstBit) {
  Position parent{}, child{};
  EXPECT_EQ(moveClass(parent, child, mv("g1", "f3")), 0);
  EXPECT_EQ(moveClass(parent, child, mv("e2", "e4", KindDoubleStep)), 0);
  EXPECT_EQ(moveClass(parent, child, castleWhiteShort), 0);
  EXPECT_EQ(moveClass(parent, child, mv("e5", "d6", KindEnPassant)), moveClassCapture);
  EXPECT_EQ(moveClass(parent, child, mv("e7", "e8", KindPromoteQueen)), moveClassCapture);
  EXPECT_EQ(moveClass(parent, child, mv("e7", "e8", KindPromoteBishop)), moveClassCapture);
  child.capturedPiece = Knight;
  EXPECT_EQ(moveClass(parent, child, mv("c3", "d5")), moveClassCapture);
}

TEST(MoveClass, ChecksGivenAndEscapedSetTheirOwnBits) {
  Position parent{}, child{};
  child.inCheck = 1;
  EXPECT_EQ(moveClass(parent, child, mv("f1", "b5")), moveClassChecking);
  // A quiet check still counts as quiet under AND 5.
  EXPECT_EQ(moveClass(parent, child, mv("f1", "b5")) & 5, 0);
  parent.inCheck = 1;
  child.inCheck = 0;
  EXPECT_EQ(moveClass(parent, child, mv("e1", "f1")), moveClassEvasion);
  child.capturedPiece = Pawn;
  child.inCheck = 1;
  EXPECT_EQ(moveClass(parent, child, mv("e1", "f2")), 7);
}

TEST(PasserSquares, NoEnemyPawnsLeaveTheWholeUpperThird) {
  EXPECT_EQ(passerSquares(fromFen("4k3/8/8/8/8/8/4P3/4K3 w")), 0xffffff0000000000ULL);
  EXPECT_EQ(passerSquares(fromFen("4k3/4p3/8/8/8/8/8/4K3 b")), 0x0000000000ffffffULL);
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
