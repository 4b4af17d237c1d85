#include "eval/piece_square.h"

#include <gtest/gtest.h>

#include "../support/board_builder.h"
#include "eval/score_pair.h"

namespace {

using testboard::fromFen;
using testboard::sq;

class PieceSquare : public ::testing::Test {
 protected:
  void SetUp() override { initPieceSquare(); }

  static ScorePair white(int piece, const char* square) {
    return pieceSquare[pieceIndex(White, piece, sq(square))];
  }
  static ScorePair black(int piece, const char* square) {
    return pieceSquare[pieceIndex(Black, piece, sq(square))];
  }
};

const ScorePair pawnMaterial = makeScorePair(800, 1050);
const ScorePair knightMaterial = makeScorePair(3500, 3900);
const ScorePair bishopMaterial = makeScorePair(3600, 4000);
const ScorePair rookMaterial = makeScorePair(5000, 6200);
const ScorePair queenMaterial = makeScorePair(9800, 11800);

TEST_F(PieceSquare, PawnRuleSamples) {
  EXPECT_EQ(scorePairSub(white(Pawn, "d2"), pawnMaterial), makeScorePair(80, -40));
  EXPECT_EQ(scorePairSub(white(Pawn, "e4"), pawnMaterial), makeScorePair(140, -10));
  EXPECT_EQ(scorePairSub(white(Pawn, "a7"), pawnMaterial), makeScorePair(-90, 90));
  EXPECT_EQ(white(Pawn, "d2"), makeScorePair(880, 1010));
  EXPECT_EQ(white(Pawn, "e4"), makeScorePair(940, 1040));
  EXPECT_EQ(white(Pawn, "a7"), makeScorePair(710, 1140));
  // Files b and g get no extra rank term, c and f half of d and e's.
  EXPECT_EQ(scorePairSub(white(Pawn, "b6"), pawnMaterial), makeScorePair(40, 70));
  EXPECT_EQ(scorePairSub(white(Pawn, "c5"), pawnMaterial), makeScorePair(100, 30));
  // No pawn stands on the back ranks: material only.
  EXPECT_EQ(white(Pawn, "e1"), pawnMaterial);
  EXPECT_EQ(white(Pawn, "h8"), pawnMaterial);
}

TEST_F(PieceSquare, SourceTableSamples) {
  for (const char* corner : {"a8", "h8"})
    EXPECT_EQ(scorePairSub(white(Knight, corner), knightMaterial), makeScorePair(-1650, -480));
  for (const char* home : {"b1", "g1"}) EXPECT_EQ(white(King, home), makeScorePair(0, -960));
  for (const char* centre : {"d5", "e5"}) EXPECT_EQ(white(King, centre), makeScorePair(-738, 0));
  EXPECT_EQ(white(Knight, "a8"), makeScorePair(1850, 3420));
  EXPECT_EQ(white(Bishop, "d4"), scorePairAdd(makeScorePair(140, 42), bishopMaterial));
  EXPECT_EQ(white(Rook, "d7"), scorePairAdd(makeScorePair(96, 24), rookMaterial));
  EXPECT_EQ(white(Rook, "a5"), scorePairAdd(makeScorePair(-64, 12), rookMaterial));
  EXPECT_EQ(white(Queen, "e5"), scorePairAdd(makeScorePair(126, 126), queenMaterial));
  EXPECT_EQ(white(Queen, "h1"), scorePairAdd(makeScorePair(-84, -84), queenMaterial));
}

TEST_F(PieceSquare, BlackIsWhiteMirroredAndNegated) {
  EXPECT_EQ(black(King, "b8"), makeScorePair(0, 960));
  EXPECT_EQ(black(Pawn, "d7"), makeScorePair(-880, -1010));
  for (int piece = Pawn; piece <= King; ++piece) {
    for (Square s = 0; s < 64; ++s) {
      ScorePair w = pieceSquare[pieceIndex(White, piece, s)];
      EXPECT_EQ(pieceSquare[pieceIndex(Black, piece, s ^ 56)], scorePairNeg(w)) << piece << " " << s;
      EXPECT_EQ(pieceSquare[pieceIndex(White, piece, s ^ 7)], w) << piece << " " << s;
    }
  }
  for (int colour = White; colour <= Black; ++colour) {
    for (Square s = 0; s < 64; ++s) {
      EXPECT_EQ(pieceSquare[pieceIndex(colour, 0, s)], 0u);
      EXPECT_EQ(pieceSquare[pieceIndex(colour, 7, s)], 0u);
    }
  }
}

}  // namespace
