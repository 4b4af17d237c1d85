#include <gtest/gtest.h>

#include "../support/board_builder.h"
#include "board/exchange.h"

namespace {

using testboard::fromFen;
using testboard::mv;
using testboard::sq;

TEST(ExchangeValue, QueenCountsNineFirstAndTenAsALaterCapturer) {
  // Qxd5 (rook), Qxd5, Rxd5, Bxd5: 5 - 9 + 10 - 5. The black bishop on f7
  // stands behind its queen and only joins once the queen has gone.
  Position p = fromFen("7k/5b2/4q3/3r4/8/8/Q7/3R3K w");
  EXPECT_EQ(exchangeValue(p, mv("a2", "d5"), 0), 1);
}

TEST(ExchangeValue, RearRookJoinsOnceTheFrontRookHasGone) {
  // Nxd5, Rd6xd5, Nxd5, Rd8xd5: 1 - 3 + 5 - 3 = 0. Without the rear rook
  // black would stop after Nxd5 and white would keep 1.
  EXPECT_EQ(exchangeValue(fromFen("3r2k1/8/3r4/3p4/5N2/2N5/8/6K1 w"), mv("c3", "d5"), 0), 0);
  EXPECT_EQ(exchangeValue(fromFen("6k1/8/3r4/3p4/5N2/2N5/8/6K1 w"), mv("c3", "d5"), 0), 1);
}

TEST(ExchangeValue, MovesWithTheEnPassantBitAreNotJudged) {
  // A pawn on e7 can take an undefended rook on d8.
  Position p = fromFen("3r3k/4P3/8/8/8/8/8/6K1 w");
  EXPECT_EQ(exchangeValue(p, mv("e7", "d8", KindPromoteQueen), 0), 5);
  EXPECT_EQ(exchangeValue(p, mv("e7", "d8", KindPromoteKnight), 0), 5);
  EXPECT_EQ(exchangeValue(p, mv("e7", "d8", KindPromoteRook), 0), 0);
  EXPECT_EQ(exchangeValue(p, mv("e7", "d8", KindPromoteBishop), 0), 0);
  // En passant onto a square a rook guards would lose the pawn, yet counts 0.
  Position ep = fromFen("3r2k1/8/8/3pP3/8/8/8/6K1 w");
  EXPECT_EQ(exchangeValue(ep, mv("e5", "d6"), 0), -1);
  EXPECT_EQ(exchangeValue(ep, mv("e5", "d6", KindEnPassant), 0), 0);
  Position castle = fromFen("5rk1/8/8/8/8/8/8/4K2R w");
  EXPECT_EQ(exchangeValue(castle, castleWhiteShort, 0), 0);
}

TEST(HangingValue, UndefendedPiecesLoseTheirFineValue) {
  Position queen = fromFen("6k1/8/8/8/3Q4/8/4n3/7K w");
  EXPECT_EQ(hangingValue(queen, sq("d4")), -19);
  // The same question in pawn units.
  EXPECT_EQ(exchangeValue(queen, mv("d4", "d4"), 0), -9);
  EXPECT_EQ(hangingValue(fromFen("6k1/8/8/3r4/8/8/3P4/7K w"), sq("d2")), -2);
  EXPECT_EQ(hangingValue(fromFen("6k1/8/8/3r4/8/8/3R4/7K b"), sq("d5")), -10);
}

TEST(WorstHanging, StopsAfterAKindOnceTheLossIsLargeEnough) {
  // Queen -9 (queen for queen), rook -10 (to a knight): the scan stops after
  // the queens.
  Position queens = fromFen("3q3k/8/8/8/3Q4/R1P5/8/1n5K w");
  EXPECT_EQ(hangingValue(queens, sq("d4")), -9);
  EXPECT_EQ(hangingValue(queens, sq("a3")), -10);
  EXPECT_EQ(worstHanging(queens), -9);
  // Rook -5 (rook for rook), bishop -7: the scan stops after the rooks.
  Position rooks = fromFen("3r3k/8/8/8/3R4/B1P5/8/1n5K w");
  EXPECT_EQ(hangingValue(rooks, sq("d4")), -5);
  EXPECT_EQ(hangingValue(rooks, sq("a3")), -7);
  EXPECT_EQ(worstHanging(rooks), -5);
  // Bishop -4 (to a knight, retaken), knight -6: the scan stops after the bishops.
  Position bishops = fromFen("r6k/8/4n3/8/N2B4/2P5/8/7K w");
  EXPECT_EQ(hangingValue(bishops, sq("d4")), -4);
  EXPECT_EQ(hangingValue(bishops, sq("a4")), -6);
  EXPECT_EQ(worstHanging(bishops), -4);
  // A safe queen does not stop the scan.
  EXPECT_EQ(worstHanging(fromFen("7k/8/8/8/8/R7/8/1n1Q3K w")), -10);
}

}  // namespace
