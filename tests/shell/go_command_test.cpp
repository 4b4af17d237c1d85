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
      {60, 1, 0, 2.8967, 500, "We have     60.0 seconds for the game.       2.9 goal set\n"},
      {2, 1, 0, 0.4345, 400, "We have      2.0 seconds for the game.       0.4 goal set\n"},
      {300, 0, 0, 5.98, 321, "We have    300.0 seconds for the game.       6.0 goal set\n"},
      {60, 0, 30, 1.855, 504, "We have     60.0 seconds to make 30 moves =      1.9 goal\n"},
      {10, 0, 1, 3.3133, 135, "We have     10.0 seconds to make 1 moves =      3.3 goal\n"},
  };
  std::string expectedLog;
  for (const Case& c : cases) {
    hardTimePercent = 321;  // the game budget without increment leaves it as it was
    EXPECT_NEAR(timeBudget(c.timeLeft, c.increment, c.movesToGo, 0, 0.02), c.goal, 0.00005) << c.logLine;
    EXPECT_EQ(hardTimePercent, c.percent) << c.logLine;
    expectedLog += c.logLine;
  }
  EXPECT_EQ(logText(), expectedLog);
}

TEST_F(Budget, IncrementIsIgnoredWithMovesToGoAndCanOutweighTheClock) {
  EXPECT_NEAR(timeBudget(60, 5, 30, 0, 0.02), 1.855, 0.00005);
  EXPECT_EQ(hardTimePercent, 504);
  // More increment than time left: the hard limit keeps to 2 or 3 goals.
  timeBudget(1, 2, 0, 0, 0.02);
  EXPECT_EQ(hardTimePercent, 250);
  timeBudget(0.2, 1, 0, 0, 0.02);
  EXPECT_EQ(hardTimePercent, 220);
}

TEST_F(Budget, NegativeDepthTakesHalfTheClockAsGoalAndHardLimit) {
  EXPECT_NEAR(timeBudget(60, 1, 0, -1, 0.02), 29.98, 1e-9);
  EXPECT_EQ(hardTimePercent, 100);
  EXPECT_EQ(logText(), "We have     60.0 seconds to make 0 moves =     30.0 goal\n");
}

TEST_F(Budget, NoClockGivesTheSmallestGoals) {
  hardTimePercent = 500;
  EXPECT_DOUBLE_EQ(timeBudget(0, 0, 0, 0, 0.02), 0.002);
  EXPECT_EQ(hardTimePercent, 500);
  EXPECT_DOUBLE_EQ(timeBudget(0, 0, 5, 0, 0.02), 0.005);
  EXPECT_EQ(hardTimePercent, 100);
}

TEST_F(Budget, TimeTroubleKeepsTheHardLimitAtTheBudgetsHardTime) {
  // 0.64 s for 30 moves: the goal is all overhead, the hard time 0.08 s.
  EXPECT_DOUBLE_EQ(timeBudget(0.64, 0, 30, 0, 0.02), 0.005);
  EXPECT_NEAR(hardTimePercent, 1600, 1);
  // Less than the overhead left: the hard limit is the goal.
  EXPECT_DOUBLE_EQ(timeBudget(0.01, 0, 1, 0, 0.02), 0.005);
  EXPECT_EQ(hardTimePercent, 100);
}

TEST(GoWords, ClockWordsAreReadInSecondsForEachColour) {
  GoRequest request = read("go wtime 60000 btime 30500 winc 1000 binc 250 movestogo 12");
  EXPECT_DOUBLE_EQ(request.remaining[White], 60.0);
  EXPECT_DOUBLE_EQ(request.remaining[Black], 30.5);
  EXPECT_DOUBLE_EQ(request.increment[White], 1.0);
  EXPECT_DOUBLE_EQ(request.increment[Black], 0.25);
  EXPECT_EQ(request.movesToGo, 12);
  EXPECT_EQ(request.depth, 0);
  EXPECT_EQ(request.nodeLimit, ~uint64_t{0});
  EXPECT_FALSE(request.infiniteSearch);
  EXPECT_FALSE(request.ponder);
  EXPECT_STREQ(request.searchMoves, "");
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
  EXPECT_EQ(read("go depth -4").depth, -4);
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
  EXPECT_EQ(read("go depth -99999999999").depth, INT32_MIN);
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

TEST(GoWords, SearchMovesCollectUntilTheNextWordOfTheTable) {
  GoRequest request = read("go searchmoves e2e4 d2d4 xyz wtime 2000 g1f3 searchmoves c2c4 ponder b1c3");
  EXPECT_STREQ(request.searchMoves, "e2e4 d2d4 xyz c2c4 ");
  EXPECT_DOUBLE_EQ(request.remaining[White], 2.0);
  EXPECT_TRUE(request.ponder);
  std::string many = "go searchmoves";
  for (int i = 0; i < 600; ++i) many += " a2a4";
  request = read(many);
  EXPECT_EQ(std::string(request.searchMoves).size(), 2045u) << "409 texts fit the list, the rest are dropped";
}

struct Plan : Budget {
  SearchPlan plan(const std::string& line, int side = White) { return planSearch(read(line), side, 0.02); }
};

TEST_F(Plan, DepthOrInfiniteSearchesIgnoreTheClock) {
  SearchPlan plan = this->plan("go depth 5 wtime 1000 btime 1000");
  EXPECT_EQ(plan.goal, 31622400.0);
  EXPECT_EQ(plan.maxDepth, 5);
  plan = this->plan("go infinite depth 3");
  EXPECT_EQ(plan.goal, 31622400.0);
  EXPECT_EQ(plan.maxDepth, 99);
  plan = this->plan("go nodes 1000 depth 4");
  EXPECT_EQ(plan.maxDepth, 4);
  plan = this->plan("go nodes 1000 wtime 1000");
  EXPECT_EQ(plan.goal, 31622400.0);
  EXPECT_EQ(plan.maxDepth, 99);
  EXPECT_EQ(logText(), "");
}

TEST_F(Plan, MoveTimeIsTheGoalUnchanged) {
  hardTimePercent = 500;
  SearchPlan plan = this->plan("go movetime 1000 wtime 5000");
  EXPECT_DOUBLE_EQ(plan.goal, 1.0);
  EXPECT_EQ(plan.maxDepth, 99);
  EXPECT_EQ(hardTimePercent, 500);
  EXPECT_EQ(logText(), "Time Left:      1.0\n");
}

TEST_F(Plan, ClockOfTheSideToMoveDecides) {
  SearchPlan plan = this->plan("go depth 0 wtime 60000 btime 2000 winc 1000 binc 1000", Black);
  EXPECT_NEAR(plan.goal, 0.4345, 0.00005);
  EXPECT_EQ(plan.maxDepth, 99);
  EXPECT_EQ(hardTimePercent, 400);
  plan = this->plan("go ponder wtime 60000 btime 2000 winc 1000 binc 1000", White);
  EXPECT_NEAR(plan.goal, 2.8967, 0.00005);
  EXPECT_EQ(hardTimePercent, 500);
  plan = this->plan("go wtime 10000 movestogo 1 depth -2");
  EXPECT_NEAR(plan.goal, 3.3133, 0.00005) << "moves to go before the half-time budget";
  plan = this->plan("go");
  EXPECT_DOUBLE_EQ(plan.goal, 0.002);
  EXPECT_EQ(logText(), "We have      2.0 seconds for the game.       0.4 goal set\n"
                       "We have     60.0 seconds for the game.       2.9 goal set\n"
                       "We have     10.0 seconds to make 1 moves =      3.3 goal\n"
                       "We have      0.0 seconds for the game.       0.0 goal set\n");
}

}  // namespace
