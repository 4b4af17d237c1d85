#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "option_state.h"
#include "search/think.h"
#include "shell/go_command.h"
#include "shell/tokenise.h"

namespace {

// Saves hardTimePercent and the options, and collects the log.
struct Budget : OptionState {
  int32_t savedPercent;
  void SetUp() override {
    OptionState::SetUp();
    savedPercent = hardTimePercent;
  }
  void TearDown() override {
    hardTimePercent = savedPercent;
    OptionState::TearDown();
  }
};

GoRequest read(const std::string& line) {
  std::vector<char> text(line.begin(), line.end());
  text.push_back('\0');
  std::vector<char*> tokens(text.size() / 2 + 1);
  int count = tokenise(text.data(), tokens.data());
  GoRequest request;
  readGoWords(tokens.data(), count, request);
  return request;
}

TEST_F(Budget, WorkedExamplesGiveTheirGoalsAndHardPercentages) {
  struct Case {
    double timeLeft, increment;
    int movesToGo;
    double goal;
    int percent;
    const char* logLine;
  };
  const Case cases[] = {
      {60, 1, 0, 2.7567, 500, "We have     60.0 seconds for the game.       2.8 goal set\n"},
      // Below the reserve of five increments and ten overheads: less than
      // the increment, and no more than the goal.
      {2, 1, 0, 0.3454, 100, "We have      2.0 seconds for the game.       0.3 goal set\n"},
      {5, 0.05, 0, 0.1792, 500, "We have      5.0 seconds for the game.       0.2 goal set\n"},
      {300, 0, 0, 5.98, 321, "We have    300.0 seconds for the game.       6.0 goal set\n"},
      {60, 0, 30, 1.855, 504, "We have     60.0 seconds to make 30 moves =      1.9 goal\n"},
      {10, 0, 1, 3.3133, 135, "We have     10.0 seconds to make 1 moves =      3.3 goal\n"},
  };
  std::string expectedLog;
  for (const Case& c : cases) {
    hardTimePercent = 321;  // the game budget without increment leaves it as it was
    EXPECT_NEAR(timeBudget(c.timeLeft, c.increment, c.movesToGo, 0.02), c.goal, 0.00005) << c.logLine;
    EXPECT_EQ(hardTimePercent, c.percent) << c.logLine;
    expectedLog += c.logLine;
  }
  EXPECT_EQ(logText(), expectedLog);
}

// A busy machine: every move runs to its hard limit, and every tenth (or
// twentieth) the engine doesn't get the processor for a while on top. The
// reserve the budget keeps must absorb that over a long game.
TEST_F(Budget, ClockWithIncrementSurvivesMovesThatOverrunOnABusyMachine) {
  struct Case {
    double base, increment, delay;
    int every;
  };
  const Case cases[] = {{5, 0.05, 0.3, 10}, {10, 0.1, 0.3, 10}, {2, 0.02, 0.2, 20}, {60, 1, 1.5, 10}};
  for (const Case& c : cases) {
    double clock = c.base;
    for (int move = 1; move <= 300; ++move) {
      const double goal = timeBudget(clock, c.increment, 0, 0.02);
      clock -= goal * hardTimePercent * 0.01 + 0.005 + (move % c.every == 0 ? c.delay : 0.0);
      ASSERT_GT(clock, 0.0) << c.base << "+" << c.increment << " lost on time at move " << move;
      clock += c.increment;
    }
  }
}

TEST(GoWords, NegativeValuesCountAsNoTimeOrAsAbsent) {
  GoRequest request = read("go wtime -1500 btime -1 winc -100 binc -5 movestogo -3 movetime -200 nodes -7");
  EXPECT_EQ(request.remaining[White], 0.0);
  EXPECT_EQ(request.remaining[Black], 0.0);
  EXPECT_EQ(request.increment[White], 0.0);
  EXPECT_EQ(request.increment[Black], 0.0);
  EXPECT_EQ(request.movesToGo, 0);
  EXPECT_EQ(request.moveTime, 0.0);
  EXPECT_EQ(request.nodeLimit, ~uint64_t{0});
  EXPECT_EQ(read("go movestogo 0").movesToGo, 0);
  EXPECT_EQ(read("go depth -4").depth, 0);
}

TEST_F(Budget, NegativeDepthIsAClockSearchWithTheUsualBudget) {
  hardTimePercent = 321;  // a budget that leaves it alone leaves it so
  SearchPlan clock = planSearch(read("go wtime 60000 btime 60000"), White, 0.02);
  int32_t clockPercent = hardTimePercent;
  hardTimePercent = 321;
  SearchPlan negative = planSearch(read("go depth -1 wtime 60000 btime 60000"), White, 0.02);
  EXPECT_EQ(negative.goal, clock.goal);
  EXPECT_EQ(negative.maxDepth, clock.maxDepth);
  EXPECT_EQ(hardTimePercent, clockPercent);
}

TEST(GoWords, LargeNumbersSaturateAndDepthStopsAt99) {
  GoRequest request = read("go depth 100000000000000000000 movetime 99999999999 movestogo 5000000000 "
                           "nodes 99999999999999999999 wtime 99999999999999999999");
  EXPECT_EQ(request.depth, 99);
  EXPECT_DOUBLE_EQ(request.moveTime, INT32_MAX * 0.001);
  EXPECT_EQ(request.movesToGo, INT32_MAX);
  EXPECT_EQ(request.nodeLimit, static_cast<uint64_t>(LLONG_MAX));
  EXPECT_DOUBLE_EQ(request.remaining[White], LLONG_MAX * 0.001);
  EXPECT_EQ(read("go depth 100").depth, 99);
  EXPECT_EQ(read("go depth -99999999999").depth, 0);
}

TEST(GoWords, UnknownWordsAreSkippedAndAMissingValueIsIgnored) {
  GoRequest request = read("go fast wtime 1000 mate 3 depth 6 btime");
  EXPECT_DOUBLE_EQ(request.remaining[White], 1.0);
  EXPECT_EQ(request.depth, 6) << "an unknown word and the number behind it are skipped one by one";
  EXPECT_EQ(request.remaining[Black], 0.0);
  request = read("go depth");
  EXPECT_EQ(request.depth, 0);
  request = read("go infinite ponder");
  EXPECT_TRUE(request.infiniteSearch);
  EXPECT_TRUE(request.ponder);
}

}  // namespace
