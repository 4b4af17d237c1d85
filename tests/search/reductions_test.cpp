#include <gtest/gtest.h>

#include "search/reductions.h"
#include "shell/options.h"

namespace {

// Builds the tables for one threshold and puts the default back afterwards.
class ReductionTest : public ::testing::Test {
 protected:
  void build(int threshold) {
    redDepthThreshold = threshold;
    buildReductionTables();
  }
  void TearDown() override {
    redDepthThreshold = 10;
    buildReductionTables();
  }
};

struct Step {
  int firstColumn;
  uint32_t value;
};

// Checks a row column by column against a list of steps, the last running to 399.
void expectSteps(const uint32_t* row, const Step (&steps)[6], const char* what) {
  for (int s = 0; s < 6; ++s) {
    int last = s == 5 ? reductionColumns - 1 : steps[s + 1].firstColumn - 1;
    for (int m = steps[s].firstColumn; m <= last; ++m)
      ASSERT_EQ(row[m], steps[s].value) << what << " column " << m;
  }
}

constexpr Step pvShallow[6] = {{1, 0}, {7, 2}, {14, 3}, {28, 4}, {56, 5}, {112, 6}};
constexpr Step nodeShallow[6] = {{1, 0}, {4, 2}, {8, 4}, {16, 6}, {32, 8}, {64, 10}};
constexpr Step pvDeep[6] = {{1, 0}, {5, 2}, {10, 3}, {20, 4}, {40, 5}, {80, 6}};
constexpr Step nodeDeep[6] = {{1, 0}, {3, 2}, {6, 4}, {12, 6}, {24, 8}, {48, 10}};

TEST_F(ReductionTest, DefaultThresholdGivesMilderStepsBelowDepthTen) {
  build(10);
  EXPECT_EQ(reductionNode[8][3], 0u);
  EXPECT_EQ(reductionNode[10][3], 2u);
  for (int d = 2; d < 10; ++d) {
    expectSteps(reductionPv[d], pvShallow, "pv shallow");
    expectSteps(reductionNode[d], nodeShallow, "node shallow");
  }
  for (int d = 10; d < reductionRows; ++d) {
    expectSteps(reductionPv[d], pvDeep, "pv deep");
    expectSteps(reductionNode[d], nodeDeep, "node deep");
  }
}

TEST_F(ReductionTest, ThresholdZeroAndHundred) {
  build(0);
  for (int d = 2; d < reductionRows; ++d) {
    expectSteps(reductionPv[d], pvDeep, "pv at 0");
    expectSteps(reductionNode[d], nodeDeep, "node at 0");
  }
  build(100);
  expectSteps(reductionPv[99], pvShallow, "pv row 99 at 100");
  expectSteps(reductionNode[99], nodeShallow, "node row 99 at 100");
  expectSteps(reductionPv[100], pvDeep, "pv row 100 at 100");
  expectSteps(reductionNode[100], nodeDeep, "node row 100 at 100");
  expectSteps(reductionNode[2], nodeShallow, "node row 2 at 100");
}

TEST_F(ReductionTest, AccessorsDoubleTheIndexOnOddParityAndClampAtTheEdges) {
  build(10);
  // The third move at odd parity reads column 6.
  EXPECT_EQ(nodeReduction(10, 3, 1), reductionNode[10][6]);
  EXPECT_EQ(nodeReduction(10, 3, 1), 4u);
  EXPECT_EQ(nodeReduction(10, 3, 0), 2u);
  EXPECT_EQ(pvReduction(12, 12), 3u);
  // Past the last column or row: the last one.
  EXPECT_EQ(nodeReduction(20, 250, 1), reductionNode[20][399]);
  EXPECT_EQ(pvReduction(20, 5000), 6u);
  EXPECT_EQ(pvReduction(400, 30), reductionPv[209][30]);
}

}  // namespace
