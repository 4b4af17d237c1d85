#include "search/limits.h"
#include "shell/go_command.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "../support/option_state.h"
#include "search/think.h"

namespace {

using Budget = OptionState;

// The clock of the side to move turned into a goal, the last iteration and
// the hard limit in percent of the goal, for worked examples with 20 ms of
// overhead; the searches with a limit of their own have no goal.
TEST_F(Budget, EachRequestGetsItsGoalDepthAndHardLimit) {
  struct Case { const char* line; int side; double goal; int maxDepth, percent; };
  constexpr double year = 31622400.0;
  const Case cases[] = {
      {"go wtime 60000 btime 60000 winc 1000 binc 1000", White, 2.7567, 99, 500},
      // Below the reserve of five increments and ten overheads: less than
      // the increment, and no more than the goal.
      {"go wtime 2000 btime 9000 winc 1000 binc 0", White, 0.3454, 99, 100},
      {"go wtime 5000 btime 5000 winc 50 binc 50", White, 0.1792, 99, 500},
      {"go wtime 300000 btime 1", White, 5.98, 99, 321},  // no increment: the percentage stays
      {"go wtime 30000 btime 30000 depth 0", Black, 0.58, 99, 321},
      {"go wtime 60000 btime 1000 movestogo 30 winc 5000", White, 1.855, 99, 504},
      {"go wtime 1 btime 10000 movestogo 1 binc 5000", Black, 3.3133, 99, 135},
      {"go wtime 9000 btime 4 movestogo 5", Black, 0.005, 99, 100},  // in deep trouble the goal stops at its floor
      {"go wtime 10000 btime 10000 depth -1", White, 0.18, 99, 321},  // no depth: the usual budget
      {"go wtime 10 btime 10 depth 5", White, year, 5, 321},
      {"go infinite depth 3", White, year, 99, 321},
      {"go wtime 10 btime 10 nodes 300", White, year, 99, 321},
      {"go wtime 10 btime 10 movetime 400", White, 0.38, 99, 321},  // spent whole, less the overhead
  };
  const SearchLimits savedLimits = searchLimits;
  for (const Case& c : cases) {
    searchLimits.hardTimePercent = 321;
    Words words(c.line);
    GoRequest request;
    readGoWords(words.tokens.data(), words.count, request);
    SearchPlan plan = planSearch(request, c.side, 0.02);
    EXPECT_NEAR(plan.goal, c.goal, 0.00005) << c.line;
    EXPECT_EQ(plan.maxDepth, c.maxDepth) << c.line;
    EXPECT_EQ(searchLimits.hardTimePercent, c.percent) << c.line;
  }
  searchLimits = savedLimits;
}

// A busy machine: every move runs to its hard limit, and every tenth (or
// twentieth) the engine doesn't get the processor for a while on top. The
// reserve the budget keeps must absorb that over a long game.
TEST_F(Budget, ClockWithIncrementSurvivesMovesThatOverrunOnABusyMachine) {
  struct Case { double base, increment, delay; int every; };
  const Case cases[] = {{5, 0.05, 0.3, 10}, {10, 0.1, 0.3, 10}, {2, 0.02, 0.2, 20}, {60, 1, 1.5, 10}};
  const SearchLimits savedLimits = searchLimits;
  for (const Case& c : cases) {
    double clock = c.base;
    for (int move = 1; move <= 300; ++move) {
      const double goal = timeBudget(clock, c.increment, 0, 0.02);
      clock -= goal * searchLimits.hardTimePercent * 0.01 + 0.005 + (move % c.every == 0 ? c.delay : 0.0);
      ASSERT_GT(clock, 0.0) << c.base << " s + " << c.increment << " s lost on time at move " << move;
      clock += c.increment;
    }
  }
  searchLimits = savedLimits;
}

// The request as text: clocks and increments white/black, move time, moves
// to go, depth, node limit (-1 for none), then the flags that are set.
std::string requestOf(const std::string& line) {
  Words words(line);
  GoRequest r;
  readGoWords(words.tokens.data(), words.count, r);
  char text[2400];
  std::snprintf(text, sizeof text, "%g/%g +%g/%g time %g togo %d depth %d nodes %lld%s%s %s", r.remaining[White],
                r.remaining[Black], r.increment[White], r.increment[Black], r.moveTime, r.movesToGo, r.depth,
                static_cast<long long>(r.nodeLimit), r.infiniteSearch ? " infinite" : "", r.ponder ? " ponder" : "",
                r.searchMoves);
  return text;
}

TEST(GoWords, NegativeValuesAreNoTimeOrAbsentLargeOnesSaturateAndUnknownWordsAreSkipped) {
  const std::pair<const char*, const char*> cases[] = {
      {"go wtime -1500 btime -1 winc -100 binc -5 movestogo -3 movetime -200 nodes -7",
       "0/0 +0/0 time 0 togo 0 depth 0 nodes -1 "},
      {"go wtime 1000 btime 2000 winc 30 binc 40 movestogo 7 movetime 50 nodes 9 depth 3",
       "1/2 +0.03/0.04 time 0.05 togo 7 depth 3 nodes 9 "},
      {"go depth 100000000000000000000 movetime 99999999999 movestogo 5000000000 nodes 99999999999999999999 "
       "wtime 99999999999999999999",
       "9.22337e+15/0 +0/0 time 2.14748e+06 togo 2147483647 depth 99 nodes 9223372036854775807 "},
      {"go depth -99999999999 movestogo 0", "0/0 +0/0 time 0 togo 0 depth 0 nodes -1 "},  // absent
      // An unknown word and a number behind it are skipped one by one; a
      // word without its value at the end is ignored.
      {"go fast wtime 1000 mate 3 depth 6 btime", "1/0 +0/0 time 0 togo 0 depth 6 nodes -1 "},
      {"go infinite ponder depth", "0/0 +0/0 time 0 togo 0 depth 0 nodes -1 infinite ponder "},
      {"go searchmoves E2E4 d2d4 depth -4 g1f3", "0/0 +0/0 time 0 togo 0 depth 0 nodes -1 e2e4 d2d4 "},
  };
  for (const auto& [line, request] : cases) EXPECT_EQ(requestOf(line), request) << line;
}

}  // namespace
