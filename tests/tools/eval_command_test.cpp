// tarvok-tool eval, run as a developer runs it.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "../shell/engine_process.h"

namespace {

std::string lastLine(const std::string& text) {
  std::string trimmed = text;
  while (!trimmed.empty() && trimmed.back() == '\n') trimmed.pop_back();
  size_t start = trimmed.rfind('\n');
  return start == std::string::npos ? trimmed : trimmed.substr(start + 1);
}

TEST(EvalCommand, PrintsTheValueOnTheLastLine) {
  ProcessResult start =
      runProgram(TARVOK_TOOL_PATH, {"eval", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR", "w", "KQkq", "-"}, "");
  EXPECT_EQ(start.exitCode, 0);
  EXPECT_EQ(lastLine(start.standardOutput), "10");
  ProcessResult rook = runProgram(TARVOK_TOOL_PATH, {"eval", "4k3/8/8/8/8/8/8/4K2R", "w", "K", "-"}, "");
  EXPECT_EQ(lastLine(rook.standardOutput), "525");
}

}  // namespace
