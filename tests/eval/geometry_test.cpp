#include <gtest/gtest.h>

#include "eval/geometry.h"

namespace {

constexpr Square sq(const char* name) { return (name[1] - '1') * 8 + (name[0] - 'a'); }

Bitboard squaresOf(std::initializer_list<const char*> names) {
  Bitboard b = 0;
  for (const char* name : names) b |= squareBit(sq(name));
  return b;
}

class Geometry : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { initGeometry(); }
};

TEST_F(Geometry, SentrySpanCoversAdjacentFilesStrictlyAhead) {
  EXPECT_EQ(sentrySpan[White][sq("d4")],
            squaresOf({"c5", "c6", "c7", "c8", "e5", "e6", "e7", "e8"}));
  EXPECT_EQ(sentrySpan[White][sq("a7")], squaresOf({"b8"}));
  EXPECT_EQ(sentrySpan[Black][sq("d4")], squaresOf({"c1", "c2", "c3", "e1", "e2", "e3"}));
  EXPECT_EQ(sentrySpan[Black][sq("h3")], squaresOf({"g1", "g2"}));
  EXPECT_EQ(sentrySpan[White][sq("e8")], 0u);
  EXPECT_EQ(sentrySpan[Black][sq("e1")], 0u);
  // The pawn's own file is never part of it.
  for (Square s = 0; s < 64; ++s) {
    EXPECT_EQ(sentrySpan[White][s] & fileOf[s], 0u);
    EXPECT_EQ(sentrySpan[Black][s] & fileOf[s], 0u);
  }
}

TEST_F(Geometry, ForwardRanksSplitTheBoardAroundTheSquaresRank) {
  EXPECT_EQ(forwardRanks[White][sq("e2")], 0xffffffffffff0000ULL);
  EXPECT_EQ(forwardRanks[Black][sq("e2")], 0x00000000000000ffULL);
  EXPECT_EQ(forwardRanks[White][sq("a8")], 0u);
  EXPECT_EQ(forwardRanks[Black][sq("h1")], 0u);
  for (Square s = 0; s < 64; ++s) {
    const Bitboard ownRank = Bitboard{0xff} << (8 * rankOfSquare(s));
    EXPECT_EQ(forwardRanks[White][s] | forwardRanks[Black][s] | ownRank, ~Bitboard{0});
    EXPECT_EQ(forwardRanks[White][s] & (forwardRanks[Black][s] | ownRank), 0u);
  }
}

TEST_F(Geometry, FilesAndPromotionSquares) {
  EXPECT_EQ(fileOf[sq("e4")], 0x1010101010101010ULL);
  EXPECT_EQ(fileOf[sq("a1")], 0x0101010101010101ULL);
  EXPECT_EQ(fileOthers[sq("e4")], 0x1010101000101010ULL);
  EXPECT_EQ(fileOthers[sq("h8")], 0x0080808080808080ULL);
  EXPECT_EQ(promotionSquare[White][sq("e2")], sq("e8"));
  EXPECT_EQ(promotionSquare[Black][sq("e7")], sq("e1"));
  EXPECT_EQ(promotionSquare[White][sq("a7")], sq("a8"));
  EXPECT_EQ(promotionSquare[Black][sq("h2")], sq("h1"));
}

TEST_F(Geometry, SquareColoursAgreeWithTheColourMasks) {
  EXPECT_EQ(squareColour[sq("a1")], 1);
  EXPECT_EQ(squareColour[sq("h8")], 1);
  EXPECT_EQ(squareColour[sq("h1")], 0);
  EXPECT_EQ(squareColour[sq("a8")], 0);
  EXPECT_EQ(squareColour[sq("e4")], 0);
  EXPECT_EQ(colourSquares[0], 0x55aa55aa55aa55aaULL);
  EXPECT_EQ(colourSquares[1], 0xaa55aa55aa55aa55ULL);
  for (Square s = 0; s < 64; ++s) {
    EXPECT_NE(colourSquares[squareColour[s]] & squareBit(s), 0u) << s;
    EXPECT_EQ(colourSquares[squareColour[s] ^ 1] & squareBit(s), 0u) << s;
  }
}

TEST_F(Geometry, KnightGapIsThreeRanksAwayAndEmptyOnEdgeRanks) {
  EXPECT_EQ(knightGap[sq("d4")], squaresOf({"d1", "d7"}));
  EXPECT_EQ(knightGap[sq("d5")], squaresOf({"d2", "d8"}));
  EXPECT_EQ(knightGap[sq("b2")], squaresOf({"b5"}));
  EXPECT_EQ(knightGap[sq("g7")], squaresOf({"g4"}));
  for (int file = 0; file < 8; ++file) {
    EXPECT_EQ(knightGap[file], 0u);
    EXPECT_EQ(knightGap[56 + file], 0u);
  }
}

TEST_F(Geometry, HalvesAndLastRanks) {
  EXPECT_EQ(ownHalf[White] | ownHalf[Black], ~Bitboard{0});
  EXPECT_NE(ownHalf[White] & squareBit(sq("h4")), 0u);
  EXPECT_NE(ownHalf[Black] & squareBit(sq("a5")), 0u);
  EXPECT_EQ(lastRank[White], squaresOf({"a8", "b8", "c8", "d8", "e8", "f8", "g8", "h8"}));
  EXPECT_EQ(lastRank[Black], squaresOf({"a1", "b1", "c1", "d1", "e1", "f1", "g1", "h1"}));
}

TEST_F(Geometry, DistanceIsTheKingsStepCount) {
  EXPECT_EQ(squareDistance[sq("a1")][sq("h8")], 7);
  EXPECT_EQ(squareDistance[sq("e4")][sq("g5")], 2);
  EXPECT_EQ(squareDistance[sq("e4")][sq("e4")], 0);
  EXPECT_EQ(squareDistance[sq("a8")][sq("e4")], 4);
  EXPECT_EQ(squareDistance[sq("h1")][sq("a2")], 7);
  for (Square s = 0; s < 64; ++s)
    for (Square t = 0; t < 64; ++t) EXPECT_EQ(squareDistance[s][t], squareDistance[t][s]);
}

}  // namespace
