// tarvok-tool as a developer runs it: the FEN's fields come as separate
// arguments, as a shell splits them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <regex>
#include <string>
#include <vector>

#include "../support/engine_session.h"

namespace {

TEST(Tool, EachCommandPrintsItsAnswer) {
  // A pattern the last lines of the output, one a line ending, must match.
  struct Case { std::vector<std::string> arguments; const char* tail; };
  const Case cases[] = {
      // The rook on g1 guards g7 and g8, so only Kh7 is listed; white then
      // has three king moves and thirteen rook moves.
      {{"perft", "2", "7k/8/8/8/8/8/8/K5R1", "b", "-", "-"}, "h8h7: 16\n16\n"},
      {{"eval", "4k3/8/8/8/8/8/8/4K2R", "w", "K", "-"}, "525\n"},
      {{"bookkey", "rnbqkbnr/p1pppppp/8/8/P6P/R1p5/1P1PPPP1/1NBQKBNR", "b", "Kkq", "-", "0", "4"},
       "5c3f9b829b279560\n"},
      {{"fingerprints", "48", "43"},
       " 43 .*\n 48 .*\nagree: move \\d score \\d nodes \\d of 2; nodes within 1%: \\d\n"},
  };
  for (const Case& c : cases) {
    ProcessResult run = runProgram(TARVOK_TOOL_PATH, c.arguments, "", 60.0);
    EXPECT_EQ(run.exitCode, 0) << c.arguments[0] << ": " << run.standardError;
    const std::string& out = run.standardOutput;
    size_t start = out.size();
    const int lines = static_cast<int>(std::count(c.tail, c.tail + std::strlen(c.tail), '\n'));
    for (int i = 0; i <= lines && start > 0 && start != std::string::npos; ++i) start = out.rfind('\n', start - 1);
    start = start == std::string::npos ? 0 : start + 1;
    EXPECT_TRUE(std::regex_match(out.substr(start), std::regex(c.tail))) << c.arguments[0] << ":\n" << out;
  }
}

}  // namespace
