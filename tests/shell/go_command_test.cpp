#include "search/limits.h"
#include "shell/go_command.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "../support/option_state.h"
#include "search/think.h"

namespace {

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
