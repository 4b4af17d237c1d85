#include "shell/go_command.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "../support/option_state.h"
#include "search/think.h"

namespace {

struct Budget : OptionState {
  int32_t savedPercent = hardTimePercent;
  void TearDown() override {
    hardTimePercent = savedPercent;
    OptionState::TearDown();
  }
};

TEST_F(Budget, WorkedExamplesGiveTheirGoalsAndHardPercentages) {
  struct Case {
    double timeLeft, increment;
    int movesToGo, depth;
    double goal;
    int percent;
  };
  const Case cases[] = {
      {60, 1, 0, 0, 2.8967, 500}, {2, 1, 0, 0, 0.4345, 400}, {300, 0, 0, 0, 5.98, 321},
      {60, 0, 30, 0, 1.855, 504}, {10, 0, 1, 0, 3.3133, 135}, {10, 0, 0, -1, 4.98, 100},
      {0.004, 0, 5, 0, 0.005, 100},  // in deep trouble the goal stops at its floor
  };
  for (const Case& c : cases) {
    hardTimePercent = 321;  // the game budget without increment leaves it as it was
    EXPECT_NEAR(timeBudget(c.timeLeft, c.increment, c.movesToGo, c.depth, 0.02), c.goal, 0.00005) << c.timeLeft;
    EXPECT_EQ(hardTimePercent, c.percent) << c.timeLeft;
  }
}

TEST(GoWords, NegativeValuesAreNoTimeOrAbsentLargeOnesSaturateAndUnknownWordsAreSkipped) {
  constexpr uint64_t none = ~uint64_t{0};
  constexpr double maxClock = LLONG_MAX * 0.001;
  struct Case {
    const char* line;
    double white, black, whiteIncrement, blackIncrement, moveTime;
    int movesToGo, depth;
    uint64_t nodes;
    bool infinite = false, ponder = false;
  };
  const Case cases[] = {
      {"go wtime -1500 btime -1 winc -100 binc -5 movestogo -3 movetime -200 nodes -7", 0, 0, 0, 0, 0, 0, 0, none},
      {"go wtime 1000 btime 2000 winc 30 binc 40 movestogo 7 movetime 50 nodes 9 depth 3", 1, 2, 0.03, 0.04, 0.05, 7,
       3, 9},
      {"go depth 100000000000000000000 movetime 99999999999 movestogo 5000000000 nodes 99999999999999999999 "
       "wtime 99999999999999999999",
       maxClock, 0, 0, 0, INT32_MAX * 0.001, INT32_MAX, 99, static_cast<uint64_t>(LLONG_MAX)},
      {"go depth -99999999999", 0, 0, 0, 0, 0, 0, INT32_MIN, none},
      {"go depth -4 movestogo 0", 0, 0, 0, 0, 0, 0, -4, none},
      // An unknown word and a number behind it are skipped one by one; a
      // word without its value at the end is ignored.
      {"go fast wtime 1000 mate 3 depth 6 btime", 1, 0, 0, 0, 0, 0, 6, none},
      {"go infinite ponder depth", 0, 0, 0, 0, 0, 0, 0, none, true, true},
  };
  for (const Case& c : cases) {
    Words words(c.line);
    GoRequest r;
    readGoWords(words.tokens.data(), words.count, r);
    EXPECT_DOUBLE_EQ(r.remaining[White], c.white) << c.line;
    EXPECT_DOUBLE_EQ(r.remaining[Black], c.black) << c.line;
    EXPECT_DOUBLE_EQ(r.increment[White], c.whiteIncrement) << c.line;
    EXPECT_DOUBLE_EQ(r.increment[Black], c.blackIncrement) << c.line;
    EXPECT_DOUBLE_EQ(r.moveTime, c.moveTime) << c.line;
    EXPECT_EQ(r.movesToGo, c.movesToGo) << c.line;
    EXPECT_EQ(r.depth, c.depth) << c.line;
    EXPECT_EQ(r.nodeLimit, c.nodes) << c.line;
    EXPECT_EQ(r.infiniteSearch, c.infinite) << c.line;
    EXPECT_EQ(r.ponder, c.ponder) << c.line;
  }
  Words words("go searchmoves e2e4 d2d4 depth 2 g1f3");
  GoRequest r;
  readGoWords(words.tokens.data(), words.count, r);
  EXPECT_STREQ(r.searchMoves, "e2e4 d2d4 ");
}

}  // namespace
