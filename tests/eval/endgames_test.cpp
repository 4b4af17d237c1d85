#include "eval/endgames.h"

#include <gtest/gtest.h>

#include "eval/geometry.h"
#include "eval/kpk.h"
#include "test_board.h"

namespace {

class Endgames : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    initGeometry();
    buildKpkBitbase();
  }
};

// The same position with the colours exchanged: squares turned over, the
// other side to move.
Position colourMirror(const Position& p) {
  Position m{};
  m.ctm = p.ctm ^ 1;
  for (int c = 0; c < 2; ++c)
    for (int piece = 0; piece < 7; ++piece) m.pieces[c ^ 1][piece] = __builtin_bswap64(p.pieces[c][piece]);
  return m;
}

TEST_F(Endgames, KpkDrawsGiveThreeToThePawnsSide) {
  EXPECT_EQ(endKpk(boardOf("Ka1 Ph7 kh8", White)), 3);
  EXPECT_EQ(endKpk(boardOf("Ka1 Ph7 kh8", Black)), 3);
  // Pawn on the seventh in front of the defending king: stalemate with black
  // to move, while white to move steps aside and forces the pawn through.
  EXPECT_EQ(endKpk(boardOf("Ke6 Pe7 ke8", Black)), 3);
  EXPECT_EQ(endKpk(boardOf("Ke6 Pe7 ke8", White)), 546);
  EXPECT_EQ(endKpk(boardOf("Kd6 Pe7 ke8", White)), 3);
  // Rook's pawn with the defender in the corner.
  EXPECT_EQ(endKpk(boardOf("Kb6 Pa5 ka8", White)), 3);
  EXPECT_EQ(endKpk(boardOf("Kb6 Pa5 ka8", Black)), 3);
  EXPECT_EQ(endKpk(boardOf("Kf2 Pd4 kf7", White)), 3);
  EXPECT_EQ(endKpk(boardOf("kb3 pa3 Ka1", Black)), -3);
}

TEST_F(Endgames, KbnkDrivesTowardsTheCornersOfTheBishopsColour) {
  // d4 is on a1's colour: a1 and h8 are the mating corners.
  EXPECT_EQ(endKbnk(boardOf("Kc3 Bd4 Nd3 ka1", White)), 400 - 0 - 4 * 2 - 2 * 3);
  EXPECT_EQ(endKbnk(boardOf("Kc3 Bd4 Nd3 kh8", Black)), 400 - 0 - 4 * 5 - 2 * 5);
  // With the bishop on e4 the king on a1 stands seven steps from a8 and h1.
  EXPECT_EQ(endKbnk(boardOf("Kc3 Be4 Nd3 ka1", White)), 400 - 20 * 7 - 4 * 2 - 2 * 3);
  EXPECT_EQ(endKbnk(boardOf("Kc3 Be4 Nd3 ka8", White)), 400 - 0 - 4 * 5 - 2 * 5);
  // A black bishop on d4 drives to a1 as well: the corner follows the bishop.
  EXPECT_EQ(endKbnk(boardOf("kc3 bd4 nd3 Ka1", White)), -(400 - 0 - 4 * 2 - 2 * 3));
  EXPECT_EQ(endKbnk(boardOf("Ke5 Bc1 Nf5 kd5", White)), 400 - 20 * 7 - 4 * 1 - 2 * 2);
  const Position p = boardOf("Kf6 Bg2 Nb3 kc5", White);
  EXPECT_EQ(endKbnk(colourMirror(p)), -endKbnk(p));
}

TEST_F(Endgames, KbpkWrongRookPawnIsAFortress) {
  // The bishop doesn't cover a8 and the defender is there first.
  EXPECT_EQ(endKbpk(boardOf("Ke4 Bc1 Pa6 ka8", White)), 6);
  EXPECT_EQ(endKbpk(boardOf("Ke4 Bc1 Pa6 ka8", Black)), 6);
  EXPECT_EQ(endKbpk(boardOf("Ke4 Bd1 Pa6 ka8", White)), 412);
  EXPECT_EQ(endKbpk(boardOf("Ka1 Bb1 Ph5 kh8", White)), 12 - 7 + 0 - 3);
  EXPECT_EQ(endKbpk(boardOf("ke5 bc8 pa3 Ka1", White)), -6);
  EXPECT_EQ(endKbpk(boardOf("ke5 bd8 pa3 Ka1", White)), -412);
}

TEST_F(Endgames, KnpkRookPawnOnTheSeventhHeldFromTheCorner) {
  for (const char* weak : {"ka8", "kb8", "kb7"}) {
    EXPECT_EQ(endKnpk(boardOf(std::string("Ke4 Nc3 Pa7 ") + weak, White)), 10 - 4) << weak;
    EXPECT_EQ(endKnpk(boardOf(std::string("Ke4 Nc3 Pa7 ") + weak, Black)), 10 - 4) << weak;
  }
  EXPECT_EQ(endKnpk(boardOf("Ke4 Nc3 Pa6 ka8", White)), 420 - 20 - 5 * 4 + 5 * 2 - 3 * 3);
  EXPECT_EQ(endKnpk(boardOf("Ke4 Nc3 Pa7 kc8", White)), 420 - 10 - 5 * 4 + 5 * 2 - 3 * 4);
  EXPECT_EQ(endKnpk(boardOf("Kf4 Nf3 Ph7 kg8", White)), 10 - 4);
  EXPECT_EQ(endKnpk(boardOf("ke5 nc6 pa2 Ka1", White)), -(10 - 4));
  const Position p = boardOf("Kd3 Ng5 Pc4 kf7", Black);
  EXPECT_EQ(endKnpk(colourMirror(p)), -endKnpk(p));
}

}  // namespace
