#include <gtest/gtest.h>

#include "board/attacks.h"

namespace {

constexpr Square sq(const char* name) { return (name[1] - '1') * 8 + (name[0] - 'a'); }

// Walks the rays square by square: the reference that the magic lookup must match.
Bitboard walkedAttacks(Square s, Bitboard occupied, bool diagonal) {
  static const int bishopSteps[4][2] = {{1, 1}, {1, -1}, {-1, 1}, {-1, -1}};
  static const int rookSteps[4][2] = {{1, 0}, {-1, 0}, {0, 1}, {0, -1}};
  const int (*steps)[2] = diagonal ? bishopSteps : rookSteps;
  Bitboard result = 0;
  for (int d = 0; d < 4; ++d) {
    int r = s / 8 + steps[d][0], f = s % 8 + steps[d][1];
    for (; r >= 0 && r < 8 && f >= 0 && f < 8; r += steps[d][0], f += steps[d][1]) {
      result |= squareBit(r * 8 + f);
      if (occupied & squareBit(r * 8 + f)) break;
    }
  }
  return result;
}

TEST(SliderAttacks, EverySubsetOfEveryMaskGivesTheWalkedSet) {
  for (Square s = 0; s < 64; ++s) {
    Bitboard subset = 0;
    do {
      ASSERT_EQ(bishopAttacks(s, subset), walkedAttacks(s, subset, true)) << "bishop square " << s;
      subset = (subset - bishopMasks[s]) & bishopMasks[s];
    } while (subset);
    do {
      ASSERT_EQ(rookAttacks(s, subset), walkedAttacks(s, subset, false)) << "rook square " << s;
      subset = (subset - rookMasks[s]) & rookMasks[s];
    } while (subset);
  }
}

TEST(SliderAttacks, IrrelevantAndEdgeBlockersChangeNothingButTheSet) {
  EXPECT_EQ(rookAttacks(sq("a1"), 0), 0x01010101010101feULL);
  EXPECT_EQ(rookRays[sq("a1")], 0x01010101010101ffULL);
  // A blocker on h1 (edge) is outside the mask but the set still includes h1.
  EXPECT_EQ(rookAttacks(sq("a1"), squareBit(sq("h1"))), rookAttacks(sq("a1"), 0));
  EXPECT_EQ(bishopAttacks(sq("d4"), ~Bitboard{0}), kingAttacks[sq("d4")] & bishopRays[sq("d4")]);
  EXPECT_EQ(bishopMasks[sq("d4")] & squareBit(sq("d4")), 0u);
  for (Square s = 0; s < 64; ++s) {
    EXPECT_GE(popCount(bishopMasks[s]), 5);
    EXPECT_LE(popCount(bishopMasks[s]), 9);
    EXPECT_GE(popCount(rookMasks[s]), 10);
    EXPECT_LE(popCount(rookMasks[s]), 12);
  }
}

TEST(RayTables, RaysIncludeTheOriginSquare) {
  EXPECT_EQ(bishopRays[sq("d4")], 0x8041221408142241ULL);
  EXPECT_EQ(rookRays[sq("d4")], 0x08080808ff080808ULL);
  EXPECT_EQ(queenRays[sq("d4")], bishopRays[sq("d4")] | rookRays[sq("d4")]);
}

TEST(BetweenTable, HoldsOnlyStrictlyInnerSquaresOfALine) {
  const Bitboard diagonal = 0x0040201008040200ULL;  // b2..g7
  EXPECT_EQ(between[sq("a1")][sq("h8")], diagonal);
  EXPECT_EQ(between[sq("h8")][sq("a1")], diagonal);
  EXPECT_EQ(between[sq("a1")][sq("b3")], 0u);
  EXPECT_EQ(between[sq("a1")][sq("a1")], 0u);
  EXPECT_EQ(between[sq("a1")][sq("a2")], 0u);
  EXPECT_EQ(between[sq("a1")][sq("a8")], 0x0001010101010100ULL);
  for (Square a = 0; a < 64; ++a)
    for (Square b = 0; b < 64; ++b) ASSERT_EQ(between[a][b], between[b][a]);
}

TEST(LeaperTables, KnightAndKingCounts) {
  EXPECT_EQ(popCount(knightAttacks[sq("a1")]), 2);
  EXPECT_EQ(popCount(knightAttacks[sq("d4")]), 8);
  EXPECT_EQ(popCount(kingAttacks[sq("h8")]), 3);
  EXPECT_EQ(popCount(kingAttacks[sq("e4")]), 8);
}

TEST(PawnCheckOrigins, SquaresOnePushFromACheck) {
  Bitboard d6f6d7f7 = squareBit(sq("d6")) | squareBit(sq("f6")) | squareBit(sq("d7")) | squareBit(sq("f7"));
  EXPECT_EQ(pawnCheckOrigins[White][sq("e4")], d6f6d7f7);
  EXPECT_EQ(pawnCheckOrigins[Black][sq("e4")], squareBit(sq("d2")) | squareBit(sq("f2")));
  EXPECT_EQ(pawnCheckOrigins[White][sq("e5")], squareBit(sq("d7")) | squareBit(sq("f7")));
  EXPECT_EQ(pawnCheckOrigins[White][sq("h8")], 0u);
  EXPECT_EQ(pawnCheckOrigins[Black][sq("h1")], 0u);
}

}  // namespace
