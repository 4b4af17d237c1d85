#include <gtest/gtest.h>

#include "../support/board_builder.h"
#include "board/exchange.h"

namespace {

using testboard::fromFen;
using testboard::mv;
using testboard::sq;

TEST(ExchangeValue, PlainCapturesAndRecaptures) {
  // An undefended knight is simply won.
  EXPECT_EQ(exchangeValue(fromFen("6k1/8/8/3n4/8/8/8/3R2K1 w"), mv("d1", "d5"), 0), 3);
  // Pawn takes a queen defended by a pawn: the recapture doesn't undo it.
  EXPECT_EQ(exchangeValue(fromFen("6k1/8/2p5/3q4/4P3/8/8/6K1 w"), mv("e4", "d5"), 0), 8);
  // Queen takes a defended pawn: the first queen counts 9.
  EXPECT_EQ(exchangeValue(fromFen("6k1/8/4p3/3p4/8/8/8/3Q2K1 w"), mv("d1", "d5"), 0), -8);
  // A knight moving to a square a pawn guards loses itself.
  EXPECT_EQ(exchangeValue(fromFen("6k1/8/8/3p4/8/2N5/8/6K1 w"), mv("c3", "e4"), 0), -3);
  // Knight for knight is even.
  EXPECT_EQ(exchangeValue(fromFen("6k1/8/4p3/3n4/8/2N5/8/6K1 w"), mv("c3", "d5"), 0), 0);
}

TEST(ExchangeValue, FlipLetsTheOtherSideMove) {
  // The same queen-takes-defended-pawn, asked while black is to move.
  Position p = fromFen("6k1/8/4p3/3p4/8/8/8/3Q2K1 b");
  EXPECT_EQ(exchangeValue(p, mv("d1", "d5"), 1), -8);
  // And black's own capture of an undefended white knight.
  Position q = fromFen("6k1/8/8/3r4/8/8/3N4/6K1 w");
  EXPECT_EQ(exchangeValue(q, mv("d5", "d2"), 1), 3);
}

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

TEST(ExchangeValue, OnlyTheLowestNumberedPieceOfAKindIsTried) {
  // The bishop on b3 is blocked by the pawn on c4; the free bishop on f7 is
  // never tried, so the rook keeps the knight.
  EXPECT_EQ(exchangeValue(fromFen("6k1/5b2/8/3n4/2p5/1b6/8/3R2K1 w"), mv("d1", "d5"), 0), 3);
  // With the f7 bishop alone the recapture happens: 3 - 5.
  EXPECT_EQ(exchangeValue(fromFen("6k1/5b2/8/3n4/2p5/8/8/3R2K1 w"), mv("d1", "d5"), 0), -2);
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

TEST(ExchangeValue, EmptyFromSquareCountsAsAMoverOfValueZero) {
  // Nothing stands on c3; the knight on d5 is "taken" by a mover worth 0, so
  // the pawn's recapture costs nothing.
  Position p = fromFen("6k1/8/4p3/3n4/8/8/8/6K1 w");
  EXPECT_EQ(exchangeValue(p, mv("c3", "d5"), 0), 3);
}

TEST(ExchangeValue, KingCapturesLastAndNeverIntoDefence) {
  // Black's king may retake only when nothing else can take it afterwards.
  EXPECT_EQ(exchangeValue(fromFen("8/8/4k3/3p4/8/1B6/8/3R2K1 w"), mv("d1", "d5"), 0), 1);
  EXPECT_EQ(exchangeValue(fromFen("8/8/4k3/3p4/8/8/8/3R2K1 w"), mv("d1", "d5"), 0), -4);
  // With a rook beside the king, the rook retakes first and the king follows:
  // Rxd5, Rxd5, Bxd5, Kxd5 = 1 - 5 + 5 - 3.
  EXPECT_EQ(exchangeValue(fromFen("3r4/8/4k3/3p4/8/1B6/8/3R2K1 w"), mv("d1", "d5"), 0), -2);
  // A king taking a defended pawn is ruinous.
  EXPECT_EQ(exchangeValue(fromFen("7k/8/2p5/3p4/4K3/8/8/8 w"), mv("e4", "d5"), 0), -998);
}

TEST(HangingValue, UndefendedPiecesLoseTheirFineValue) {
  Position queen = fromFen("6k1/8/8/8/3Q4/8/4n3/7K w");
  EXPECT_EQ(hangingValue(queen, sq("d4")), -19);
  // The same question in pawn units.
  EXPECT_EQ(exchangeValue(queen, mv("d4", "d4"), 0), -9);
  EXPECT_EQ(hangingValue(fromFen("6k1/8/8/3r4/8/8/3P4/7K w"), sq("d2")), -2);
  EXPECT_EQ(hangingValue(fromFen("6k1/8/8/3r4/8/8/3R4/7K b"), sq("d5")), -10);
}

TEST(HangingValue, SafeAndDefendedPieces) {
  // Unattacked.
  EXPECT_EQ(hangingValue(fromFen("6k1/8/8/8/3N4/8/8/7K w"), sq("d4")), 0);
  // A pawn attacked by a rook and defended by a pawn is safe.
  EXPECT_EQ(hangingValue(fromFen("6k1/8/8/2r5/8/2P5/1P6/7K w"), sq("c3")), 0);
  // A knight in the same spot shows -1: it counts 6 where it stands, while
  // the rook that takes it counts only 5 as a later capturer.
  EXPECT_EQ(hangingValue(fromFen("6k1/8/8/2r5/8/2N5/1P6/7K w"), sq("c3")), -1);
  // A queen attacked by a knight and defended by a pawn still loses 19 - 3.
  EXPECT_EQ(hangingValue(fromFen("6k1/8/8/8/3Q4/2P5/4n3/7K w"), sq("d4")), -16);
  // Queen for queen: 19 taken, 10 back.
  EXPECT_EQ(hangingValue(fromFen("3q2k1/8/8/8/3Q4/2P5/8/7K w"), sq("d4")), -9);
}

TEST(WorstHanging, TakesTheMinimumAndLeavesTheKingOut) {
  EXPECT_EQ(worstHanging(fromFen("6k1/8/8/8/8/8/8/7K w")), 0);
  // The king in check from a rook does not count.
  EXPECT_EQ(worstHanging(fromFen("4r1k1/8/8/8/8/8/8/4K3 w")), 0);
  // An undefended knight and an undefended pawn: the knight is worse.
  EXPECT_EQ(worstHanging(fromFen("1r4k1/8/8/2b5/8/8/1N3P2/7K w")), -6);
  // Black to move: its queen hangs to a knight.
  EXPECT_EQ(worstHanging(fromFen("6k1/8/8/3q4/8/4N3/8/7K b")), -19);
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
