#include "eval/evaluate.h"

#include <gtest/gtest.h>

#include <cstring>

#include "../support/board.h"
#include "eval/pawns.h"

namespace {

using testboard::colourMirror;
using testboard::rootPosition;

// Each test starts from empty caches, so no value comes from an earlier test
// or an earlier option setting.
class Evaluate : public ::testing::Test {
 protected:
  void SetUp() override {
    testboard::useEvaluationTables();
    clearEvaluationCaches(evalCaches);
  }
  void TearDown() override { SetUp(); }
};

// Values worked out term by term, apart from this code, each the same for
// the position with the colours exchanged.
TEST_F(Evaluate, ReferenceValuesTheSameForBothColours) {
  struct Case { const char* fen; int value; };
  const Case cases[] = {
      {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -", 10},
      {"rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq -", -63},
      {"2rr2k1/1pqnbppp/p2p1n2/Pb2p3/4P3/2NNBB2/1PPQ1PPP/R2R2K1 b - -", -9},
      {"r3k2r/8/8/8/8/8/8/R3K2R w KQkq -", 6},
      {"6k1/5ppp/8/8/8/8/5PPP/6K1 w - -", 4},
      {"4k3/8/8/8/8/8/8/4K2R w K -", 525},
      {"8/8/8/8/8/2k5/8/1K1QR3 w - -", 731},
      {"8/5k2/8/8/3P4/8/5K2/8 w - -", 3},
      {"4k3/8/8/8/8/8/8/4K3 w - -", 4},
      // Passed pawns among pieces, rooks behind passers, attacks on an
      // exposed king, threats, a pawn about to promote, two bishops against one.
      {"r4qnk/p1p5/5r1b/3P1b1p/2p2N2/2N4P/PP1QB3/2K2RR1 w - -", 117},
      {"2k1r3/4rpBp/2p5/p2p4/8/1PPR4/Pb1K1PPP/3R4 w - -", 15},
      {"1R5Q/5p1p/6p1/6k1/1P2r2P/4qPK1/6P1/8 b - -", -81},
      {"1r6/5pk1/2pN4/2Pb2p1/1P4P1/5p2/5P1K/1R6 b - -", 34},
      {"4rr2/4Nk1p/B2Pb1p1/2p1QN2/4p3/8/1PP2qPP/R3R2K b - -", -995},
      {"2R2b1B/p3k3/1p2P3/5Pp1/1P2n3/P5P1/3r3p/7K w - -", -220},
      {"8/R5K1/8/8/1p6/1k6/p6P/8 b - -", -75},
      {"5n1k/6b1/1p3p1p/p1p1p1p1/2P1P1B1/P1Br2P1/5P1P/2R3K1 w - -", 11},
      {"2b5/8/p1p5/1P3kpp/P1P5/3NK3/7P/8 b - -", -2},
      {"6k1/5pp1/8/1P6/3N4/4P3/3N4/4K2r w - -", 112},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(evaluate(rootPosition(c.fen), evalCaches), c.value) << c.fen;
    EXPECT_EQ(evaluate(rootPosition(colourMirror(c.fen).c_str()), evalCaches), c.value) << colourMirror(c.fen);
  }
  // More positions whose value is not worked out, only the same both ways.
  for (const char* fen : {"r1bq1rk1/ppp2ppp/2n2n2/3pp3/1b1PP3/2N2N2/PPP2PPP/R1BQKB1R w KQ -",
                          "r3k2r/pp3ppp/8/3P4/8/8/PP3PPP/R3K2R w Kq -", "8/2P5/8/3k4/8/5p2/2K5/8 w - -",
                          "6k1/5pp1/4q2p/8/3Q4/6P1/5PKP/8 b - -", "4k3/8/5b2/p6p/P1B4P/8/8/4K3 w - -",
                          "r4rk1/1b3ppp/p1n5/1p1Np3/4P3/1B3R2/PP3PPP/R5K1 w - -", "8/5k2/8/4P3/1p6/8/5K2/8 b - -",
                          "rnbqkbnr/ppp1pppp/8/3pP3/8/8/PPPP1PPP/RNBQKBNR w KQkq d6"})
    EXPECT_EQ(evaluate(rootPosition(fen), evalCaches), evaluate(rootPosition(colourMirror(fen).c_str()), evalCaches)) << fen;
}

// Without pawns, balances the ending list doesn't name keep a tenth of the
// lead while the gap is at most two in minor-piece thirds (a knight is 3, a
// rook 5, a queen 9), a fifth at three and two fifths beyond: KRB against KR
// shows about a fifth of its bishop, KRR against KR two fifths of its rook.
TEST_F(Evaluate, PawnlessEndingsOutsideTheListKeepAShareOfTheLeadThatGrowsWithTheGap) {
  struct Case { const char* fen; int value; };
  const Case cases[] = {
      {"4k3/8/8/8/8/8/3q4/RR2K3 w - -", 1},      // two rooks against a queen: a gap of 1
      {"2n1k3/8/8/8/8/8/8/RR2K1r1 w - -", 30},   // two rooks against rook and knight: 2
      {"4k3/8/8/8/8/8/8/RB2K2r w - -", 78},      // rook and bishop against a rook: 3
      {"1bn1k3/8/8/8/8/8/8/3QK3 w - -", 90},     // a queen against bishop and knight: 3
      {"4k3/8/8/8/8/8/8/RR2K1r1 b - -", -233},   // two rooks against a rook: 5
  };
  for (const Case& c : cases) {
    EXPECT_EQ(evaluate(rootPosition(c.fen), evalCaches), c.value) << c.fen;
    EXPECT_EQ(evaluate(rootPosition(colourMirror(c.fen).c_str()), evalCaches), c.value) << colourMirror(c.fen);
  }
}

TEST_F(Evaluate, TheCacheAnswersASecondCallAndASettingChangeEmptiesIt) {
  Position p = rootPosition("r1bq1rk1/ppp2ppp/2n2n2/3pp3/1b1PP3/2N2N2/PPP2PPP/R1BQKB1R w KQ -");
  uint64_t probes = evalCaches.etableProbes;
  const int atDefault = evaluate(p, evalCaches);
  EXPECT_EQ(evalCaches.etableProbes, probes + 1) << "the log's statistics count each probe of the pawn table";
  probes = evalCaches.etableProbes;
  EXPECT_EQ(evaluate(p, evalCaches), atDefault);
  EXPECT_EQ(evalCaches.etableProbes, probes) << "the second value comes from the evaluation cache";

  // King safety aggressiveness reaches only the opening half of the pawn and
  // king terms; a new setting empties the caches, so no value of the former
  // one is served.
  testboard::useEvaluationTables(0);
  EXPECT_NE(evaluate(p, evalCaches), atDefault);
  EtableEntry zero, six;
  computeEtableEntry(p, zero);
  testboard::useEvaluationTables(6);
  EXPECT_EQ(evaluate(p, evalCaches), atDefault);
  computeEtableEntry(p, six);
  EXPECT_EQ(scorePairEnd(zero.score), scorePairEnd(six.score));
  EXPECT_NE(scorePairOpen(zero.score), scorePairOpen(six.score));
}

}  // namespace
