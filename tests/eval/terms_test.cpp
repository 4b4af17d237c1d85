// What the whole-board reference values and the self-test rows don't reach:
// the endings scored by rules of their own, the KPK table, and a king attack
// beyond anything a game shows.
#include <gtest/gtest.h>

#include <string>

#include "../support/board.h"
#include "eval/endgames.h"
#include "eval/eval_frame.h"
#include "eval/geometry.h"
#include "eval/king_safety.h"
#include "eval/kpk.h"
#include "eval/pieces.h"

namespace {

using testboard::parsed;

class EvalTerms : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    testboard::useEvaluationTables();
    initGeometry();
    buildKpkBitbase();
  }
};

// Nine queens around a bare king, as many as a game can have: the attack
// count runs past the danger table's 128 rows, and the score stays at the last.
TEST_F(EvalTerms, AnAttackCountPastTheLastRowOfTheDangerTableKeepsIt) {
  Position p = parsed("8/2QQQQQ1/2Q3Q1/2Q1k1Q1/8/8/8/K7 w");
  EvalFrame frame;
  prepareFrame(p, frame);
  const int count = pieceLoops(p, frame, White);
  EXPECT_GT(count, 127);
  EXPECT_EQ(kingAttackScore(count), kingDanger[127]);
}

TEST_F(EvalTerms, EndingsScoredByTheirOwnRules) {
  struct Case { const char* fen; int32_t (*handler)(const Position&); int32_t value; };  // white's view
  const Case cases[] = {
      // KPK draws give three to the pawn's side: the corner, the pawn on the
      // seventh in front of the king (won only with white to move), the
      // rook's pawn.
      {"7k/7P/8/8/8/8/8/K7 w", endKpk, 3},
      {"7k/7P/8/8/8/8/8/K7 b", endKpk, 3},
      {"4k3/4P3/4K3/8/8/8/8/8 b", endKpk, 3},
      {"4k3/4P3/4K3/8/8/8/8/8 w", endKpk, 546},
      {"4k3/4P3/3K4/8/8/8/8/8 w", endKpk, 3},
      {"k7/8/1K6/P7/8/8/8/8 w", endKpk, 3},
      {"8/5k2/8/8/3P4/8/5K2/8 w", endKpk, 3},
      {"8/8/8/8/8/pk6/8/K7 b", endKpk, -3},
      // KBNK drives towards the corners of the bishop's colour.
      {"8/8/8/8/3B4/2KN4/8/k7 w", endKbnk, 400 - 0 - 4 * 2 - 2 * 3},
      {"7k/8/8/8/3B4/2KN4/8/8 b", endKbnk, 400 - 0 - 4 * 5 - 2 * 5},
      {"8/8/8/8/4B3/2KN4/8/k7 w", endKbnk, 400 - 20 * 7 - 4 * 2 - 2 * 3},
      {"k7/8/8/8/4B3/2KN4/8/8 w", endKbnk, 400 - 0 - 4 * 5 - 2 * 5},
      {"8/8/8/8/3b4/2kn4/8/K7 w", endKbnk, -(400 - 0 - 4 * 2 - 2 * 3)},
      {"8/8/8/3kKN2/8/8/8/2B5 w", endKbnk, 400 - 20 * 7 - 4 * 1 - 2 * 2},
      // KBPK: the wrong rook's pawn with the defender in the corner is a fortress.
      {"k7/8/P7/8/4K3/8/8/2B5 w", endKbpk, 6},
      {"k7/8/P7/8/4K3/8/8/2B5 b", endKbpk, 6},
      {"k7/8/P7/8/4K3/8/8/3B4 w", endKbpk, 412},
      {"7k/8/8/7P/8/8/8/KB6 w", endKbpk, 12 - 7 + 0 - 3},
      {"8/2k5/P7/8/4K3/8/8/2B5 w", endKbpk, 12 - 4 + 2 - 2},  // the defender just in time for the corner
      {"2b5/8/8/4k3/8/p7/8/K7 w", endKbpk, -6},
      {"3b4/8/8/4k3/8/p7/8/K7 w", endKbpk, -412},
      // KNPK: a rook's pawn on the seventh is held from the corner.
      {"k7/P7/8/8/4K3/2N5/8/8 w", endKnpk, 10 - 4},
      {"1k6/P7/8/8/4K3/2N5/8/8 b", endKnpk, 10 - 4},
      {"8/Pk6/8/8/4K3/2N5/8/8 w", endKnpk, 10 - 4},
      {"k7/8/P7/8/4K3/2N5/8/8 w", endKnpk, 420 - 20 - 5 * 4 + 5 * 2 - 3 * 3},
      {"2k5/P7/8/8/4K3/2N5/8/8 w", endKnpk, 420 - 10 - 5 * 4 + 5 * 2 - 3 * 4},
      {"6k1/7P/8/8/5K2/5N2/8/8 w", endKnpk, 10 - 4},
      {"8/8/2n5/4k3/8/8/p7/K7 w", endKnpk, -(10 - 4)},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(c.handler(parsed(c.fen)), c.value) << c.fen;
    std::string mirror = testboard::colourMirror(std::string(c.fen) + " - -");
    EXPECT_EQ(c.handler(parsed(mirror.c_str())), -c.value) << mirror;
  }
}

TEST_F(EvalTerms, KpkRetrogradeAnalysisFindsTheKnownTotals) {
  const KpkCounts counts = buildKpkBitbase();
  EXPECT_EQ(counts.defined, 165676);
  EXPECT_EQ(counts.winsPawnToMove, 62480);
  EXPECT_EQ(counts.winsOtherToMove, 48802);
  int bits = 0;
  for (uint8_t byte : kpkBitbase) bits += popCount(byte);
  EXPECT_EQ(bits, 62480 + 48802);
}

}  // namespace
