// The time manager: a go command's clock turned into the goal and the hard
// limit of one search.
#include "shell/time_manager.h"

#include <gtest/gtest.h>

#include "../support/option_state.h"
#include "shell/go_command.h"

namespace {

// The clock of the side to move turned into a goal, the last iteration and
// the hard limit, for worked examples with 20 ms of overhead; the searches
// with a limit of their own have no time limit.
TEST(TimeManager, EachRequestGetsItsGoalDepthAndHardLimit) {
  struct Case { const char* line; int side; double goal; int maxDepth; double hard; };
  constexpr double year = 31622400.0;
  const Case cases[] = {
      // Reserve 5 s + 0.2 s; a twenty-fifth of the rest, 0.95 increments,
      // less the overhead; the hard limit five goals.
      {"go wtime 60000 btime 60000 winc 1000 binc 1000", White, 3.122, 99, 15.61},
      // Below the reserve of five increments: less than the increment, and
      // no more than the goal.
      {"go wtime 2000 btime 9000 winc 1000 binc 0", White, 0.34538, 99, 0.34538},
      {"go wtime 5000 btime 5000 winc 50 binc 50", White, 0.2095, 99, 1.0475},
      // At a bullet clock the overheads of the reserve are a tenth of it.
      {"go wtime 1000 btime 1000 winc 10 binc 10", White, 0.0235, 99, 0.1175},
      // Sudden death: a fiftieth, and five goals within half the clock.
      {"go wtime 300000 btime 1", White, 5.98, 99, 29.9},
      {"go wtime 30000 btime 30000 depth 0", Black, 0.58, 99, 2.9},
      {"go wtime 10000 btime 10000 depth -1", White, 0.18, 99, 0.9},  // no depth: the usual budget
      {"go wtime 500 btime 500", White, 0.002, 99, 0.01},  // the floor of the goal
      {"go wtime 60000 btime 1000 movestogo 30 winc 5000", White, 1.855, 99, 9.355},
      {"go wtime 1 btime 10000 movestogo 1 binc 5000", Black, 3.31333, 99, 4.48},
      {"go wtime 9000 btime 4 movestogo 5", Black, 0.005, 99, 0.005},  // in deep trouble both stop at the floor
      {"go wtime 10 btime 10 depth 5", White, year, 5, year},
      {"go infinite depth 3", White, year, 99, year},
      {"go wtime 10 btime 10 nodes 300", White, year, 99, year},
      {"go wtime 10 btime 10 mate 2", White, year, 99, year},
      {"go wtime 10 btime 10 movetime 400", White, 0.38, 99, 0.38},  // spent whole, less the overhead
  };
  for (const Case& c : cases) {
    Words words(c.line);
    GoRequest request;
    readGoWords(words.tokens.data(), words.count, request);
    SearchPlan plan = planSearch(request, c.side, 0.02);
    EXPECT_NEAR(plan.time.goal, c.goal, 0.00005) << c.line;
    EXPECT_NEAR(plan.time.hard, c.hard, 0.00005) << c.line;
    EXPECT_EQ(plan.maxDepth, c.maxDepth) << c.line;
  }
}

// A busy machine: every move runs to its hard limit and 5 ms beyond, and
// every tenth (or twentieth) the engine doesn't get the processor for a
// while on top. The reserve the budget keeps must absorb that over a long
// game.
TEST(TimeManager, ClockWithIncrementSurvivesMovesThatOverrunOnABusyMachine) {
  struct Case { double base, increment, delay; int every; };
  const Case cases[] = {{5, 0.05, 0.2, 10}, {10, 0.1, 0.3, 10}, {2, 0.02, 0.1, 20}, {60, 1, 1.5, 10},
                        {1, 0.01, 0.05, 20}};
  for (const Case& c : cases) {
    double clock = c.base;
    for (int move = 1; move <= 300; ++move) {
      const ClockBudget budget = timeBudget(clock, c.increment, 0, 0.02);
      clock -= budget.hard + 0.005 + (move % c.every == 0 ? c.delay : 0.0);
      ASSERT_GT(clock, 0.0) << c.base << " s + " << c.increment << " s lost on time at move " << move;
      clock += c.increment;
    }
  }
}

// Over a game at a bullet clock whose moves take their goal, the engine
// spends its time: the clock it keeps settles well below the base.
TEST(TimeManager, ABulletClockIsSpentNotHoarded) {
  double clock = 1.0;
  for (int move = 1; move <= 80; ++move) clock += 0.01 - timeBudget(clock, 0.01, 0, 0.02).goal - 0.002;
  EXPECT_LT(clock, 0.6);
  EXPECT_GT(clock, 0.2);
}

}  // namespace
