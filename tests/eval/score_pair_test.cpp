#include <gtest/gtest.h>

#include "eval/score_pair.h"

namespace {

TEST(ScorePair, HalvesCarryTheirSignsThroughAddNegAndMul) {
  EXPECT_EQ(makeScorePair(-10, -15), 0x7ffffff67ffffff1ULL);
  EXPECT_EQ(scorePairAdd(makeScorePair(-1, -1), makeScorePair(1, 1)), 0u);
  EXPECT_EQ(scorePairNeg(0), 0u);
  EXPECT_EQ(scorePairOpen(scorePairNeg(makeScorePair(5, 7))), -5);
  EXPECT_EQ(scorePairEnd(scorePairNeg(makeScorePair(5, 7))), -7);
  EXPECT_EQ(scorePairMul(makeScorePair(-50, -80), makeScorePair(3, 3)), makeScorePair(-150, -240));
  EXPECT_EQ(scorePairMul(makeScorePair(25, 25), makeScorePair(-5, -5)), makeScorePair(-125, -125));
  ScorePair sum = 0;
  for (int i = 0; i < 1000; ++i) sum = scorePairAdd(sum, makeScorePair(-3, 7));
  EXPECT_EQ(scorePairOpen(sum), -3000);
  EXPECT_EQ(scorePairEnd(sum), 7000);
}

}  // namespace
