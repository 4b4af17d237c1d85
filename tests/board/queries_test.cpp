#include "board/queries.h"

#include <gtest/gtest.h>

#include "../support/board_builder.h"
#include "board/fen.h"

namespace {

using testboard::mv;
using testboard::sq;

Position fen(const char* text) {
  Position p;
  parseFen(p, text);
  return p;
}

TEST(AttackMap, StartPosition) {
  Position start = fen("");
  // Ranks 2 and 3 entirely, rank 1 but its corners.
  EXPECT_EQ(attackMap(start, White), 0x0000000000FFFF7EULL);
  EXPECT_EQ(attackMap(start, Black), 0x7EFFFF0000000000ULL);
}

TEST(AttackMap, SlidersStopAtTheFirstPieceOfEitherColour) {
  // Queen d4 seen through nothing: the pawn on d6 stops the file, own bishop
  // on f6 stops the diagonal and is counted as defended.
  Position p = fen("4k3/8/3p1B2/8/3Q4/8/8/4K3 w - -");
  Bitboard map = attackMap(p, White);
  EXPECT_TRUE(map & squareBit(sq("d6")));
  EXPECT_FALSE(map & squareBit(sq("d7")));
  EXPECT_TRUE(map & squareBit(sq("f6")));
  // The bishop on f6 itself reaches g7 and h8 beyond.
  EXPECT_TRUE(map & squareBit(sq("h8")));
  EXPECT_FALSE(map & squareBit(sq("g8")));
}

TEST(KingAttacked, EachKindOfAttacker) {
  struct Case {
    const char* fen;
    int whiteAttacked;
  };
  const Case cases[] = {
      {"4k3/8/8/8/8/8/8/4K3 w - -", 0},
      {"4k3/8/8/8/8/5n2/8/4K3 w - -", 1},   // knight
      {"4k3/8/8/8/1b6/8/8/4K3 w - -", 1},   // bishop
      {"4k3/8/8/8/1b6/2P5/8/4K3 w - -", 0}, // bishop blocked
      {"4k3/8/8/8/8/8/8/r3K3 w - -", 1},    // rook on the rank
      {"4k3/8/8/8/4q3/8/8/4K3 w - -", 1},   // queen on the file
      {"4k3/8/8/8/4q3/8/4N3/4K3 w - -", 0}, // queen blocked
      {"4k3/8/8/8/8/8/3p4/4K3 w - -", 1},   // pawn in front, one file over
      {"4k3/8/8/8/8/8/4p3/4K3 w - -", 0},   // pawn straight in front
      {"4k3/8/8/8/8/8/8/3pK3 w - -", 0},    // pawn beside
      {"4k3/8/8/8/8/4K3/8/3p4 w - -", 0},   // black pawn behind: it attacks away
      {"8/8/8/8/8/4k3/8/4K3 w - -", 0},
      {"8/8/8/8/8/8/4k3/4K3 w - -", 1},     // kings side by side
  };
  for (const Case& c : cases) {
    Position p = fen(c.fen);
    EXPECT_EQ(kingAttacked(p, White), c.whiteAttacked) << c.fen;
    EXPECT_EQ(kingInAttackMap(p, White), c.whiteAttacked) << c.fen;
  }
  // Only the low bit of the colour counts, so ctm may be passed as it is.
  Position p = fen("4k3/8/8/8/8/5n2/8/4K3 w - -");
  EXPECT_EQ(kingAttacked(p, 2), 1);
  EXPECT_EQ(kingInAttackMap(p, 4), 1);
  EXPECT_EQ(kingAttacked(p, 3), 0);
}

TEST(KingAttacked, BlackKingByWhitePawns) {
  EXPECT_EQ(kingAttacked(fen("8/8/8/4k3/3P4/8/8/4K3 b - -"), Black), 1);
  EXPECT_EQ(kingAttacked(fen("8/8/3P4/4k3/8/8/8/4K3 b - -"), Black), 0);
  // A pawn on the a-file doesn't reach the h-file by wrapping.
  EXPECT_EQ(kingAttacked(fen("8/8/8/7k/P7/8/8/4K3 b - -"), Black), 0);
  EXPECT_EQ(kingAttacked(fen("8/8/8/k7/7P/8/8/4K3 b - -"), Black), 0);
}

TEST(KingAttacked, AgreesWithTheAttackMapForEveryKingSquare) {
  // Busy middlegame boards without a black king; the black king is tried on
  // every empty square and both kings are asked about.
  const char* boards[] = {
      "r1bq1rn1/pp1nbppp/2p1p3/3pP3/2PP1P2/2N2N2/PP2B1PP/R1BQK2R w - -",
      "2r2r2/1p1q1pp1/p2p1n1p/2pPp3/P1P1P1b1/2NB1N2/1P1Q1PPP/R3R1K1 w - -",
      "8/2p5/3p4/KP5r/1R3p2/6P1/4P3/8 w - -",
      "1q6/3n4/8/2B2R2/8/1b3Q2/4p3/N1K4r w - -",
  };
  int attackedCount = 0;
  int safeCount = 0;
  for (const char* board : boards) {
    Position base = fen(board);
    Bitboard empty = ~(base.pieces[White][0] | base.pieces[Black][0]);
    for (Bitboard b = empty; b;) {
      Square s = popLowest(b);
      Position p = base;
      p.pieces[Black][King] = squareBit(s);
      p.pieces[Black][0] |= squareBit(s);
      for (int colour = White; colour <= Black; ++colour) {
        ASSERT_EQ(kingAttacked(p, colour), kingInAttackMap(p, colour)) << board << " king " << s;
        (kingAttacked(p, colour) ? attackedCount : safeCount)++;
      }
    }
  }
  // Many placements are attacked and many are not: the sweep tests both answers.
  EXPECT_GT(attackedCount, 40);
  EXPECT_GT(safeCount, 40);
}

TEST(GivesCheck, DirectChecks) {
  EXPECT_EQ(givesCheck(fen("7k/8/8/8/8/8/8/R5K1 w - -"), mv("a1", "a8")), 1);
  EXPECT_EQ(givesCheck(fen("2n4k/8/8/8/8/8/8/R5K1 w - -"), mv("a1", "a8")), 0);
  EXPECT_EQ(givesCheck(fen("7k/8/8/8/8/8/8/2B3K1 w - -"), mv("c1", "b2")), 1);
  Position queen = fen("8/7k/8/8/8/8/8/Q5K1 w - -");
  EXPECT_EQ(givesCheck(queen, mv("a1", "a7")), 1);
  EXPECT_EQ(givesCheck(queen, mv("a1", "b1")), 1);
  EXPECT_EQ(givesCheck(queen, mv("a1", "b3")), 0);
  EXPECT_EQ(givesCheck(fen("7k/8/8/8/8/8/8/N5K1 w - -"), mv("a1", "b3")), 0);
  EXPECT_EQ(givesCheck(fen("7k/8/8/6N1/8/8/8/6K1 w - -"), mv("g5", "f7")), 1);
  EXPECT_EQ(givesCheck(fen("5k2/8/4P3/8/8/8/8/6K1 w - -"), mv("e6", "e7")), 1);
  EXPECT_EQ(givesCheck(fen("4k3/8/4P3/8/8/8/8/6K1 w - -"), mv("e6", "e7")), 0);
  // Black pawns attack downwards.
  EXPECT_EQ(givesCheck(fen("6k1/8/8/8/8/4p3/8/3K4 b - -"), mv("e3", "e2")), 1);
  // Kings side by side.
  EXPECT_EQ(givesCheck(fen("8/8/8/8/5k2/8/3K4/8 w - -"), mv("d2", "e3")), 1);
}

TEST(GivesCheck, DiscoveredChecks) {
  // The knight leaves the e-file: check by the rook, whether or not the
  // knight's new square attacks the king.
  Position p = fen("4k3/8/8/8/4N3/8/8/4R1K1 w - -");
  EXPECT_EQ(givesCheck(p, mv("e4", "c3")), 1);
  EXPECT_EQ(givesCheck(p, mv("e4", "d6")), 1);
  // A bishop uncovering a queen on the diagonal.
  EXPECT_EQ(givesCheck(fen("7k/8/8/4B3/8/8/8/Q5K1 w - -"), mv("e5", "f4")), 1);
  // Moving along the line keeps it blocked.
  EXPECT_EQ(givesCheck(fen("4k3/8/8/8/4P3/8/8/4R1K1 w - -"), mv("e4", "e5")), 0);
  Position kingOnFile = fen("4k3/8/8/8/8/8/4K3/4R3 w - -");
  EXPECT_EQ(givesCheck(kingOnFile, mv("e2", "e3")), 0);
  EXPECT_EQ(givesCheck(kingOnFile, mv("e2", "d3")), 1);
}

TEST(GivesCheck, BlindSpots) {
  // A promotion is judged as a pawn on the eighth rank: the new queen's
  // check along the rank goes unseen.
  EXPECT_EQ(givesCheck(fen("7k/1P6/8/8/8/8/8/6K1 w - -"), mv("b7", "b8", KindPromoteQueen)), 0);
  // ... unless it uncovers a line.
  EXPECT_EQ(givesCheck(fen("1k6/1P6/8/8/8/8/8/1R4K1 w - -"), mv("b7", "a8", KindPromoteQueen)), 1);
  // Castling: the rook's check from f1 is not seen.
  EXPECT_EQ(givesCheck(fen("5k2/8/8/8/8/8/8/4K2R w K -"), castleWhiteShort), 0);
  // En passant: the captured pawn still blocks the rank in the test.
  EXPECT_EQ(givesCheck(fen("8/8/8/R2pP2k/8/8/8/4K3 w - d6"), mv("e5", "d6", KindEnPassant)), 0);
}

}  // namespace
