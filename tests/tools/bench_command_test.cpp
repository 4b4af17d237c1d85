// tarvok-tool bench drives the engine over UCI; its node total must be what
// the same searches give in this process, run as the self-test runs them.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "../support/board.h"
#include "../support/engine_session.h"
#include "../support/uci_lines.h"
#include "board/keys.h"
#include "search/hash_table.h"
#include "search/search_state.h"
#include "shell/self_test.h"

namespace {

TEST(Bench, ItsNodeTotalIsTheSumOfTheSelfTestSearchesAtThatDepth) {
  constexpr int depth = 6;
  initKeys(keySeed);
  testboard::useEvaluationTables();
  hashAllocate(64);
  uint64_t expected = 0;
  {
    testboard::BatchMode batch;
    for (int row = 0; row < 50; ++row) {
      char fen[160];
      testRowFen(row, fen);
      searchBatchPosition(fen, depth);
      expected += mainSearch.depthNodes[depth];
    }
  }
  ProcessResult run = runProgram(TARVOK_TOOL_PATH, {"bench", std::to_string(depth), "--engine", TARVOK_ENGINE_PATH},
                                 "", 120.0);
  ASSERT_FALSE(run.timedOut);
  ASSERT_EQ(run.exitCode, 0) << run.standardError;
  EXPECT_EQ(linesStartingWith(run.standardOutput, " 0 ").size() + linesStartingWith(run.standardOutput, "49 ").size(),
            2u)
      << run.standardOutput;
  const std::string last = lastLineStartingWith(run.standardOutput, "total nodes ");
  EXPECT_EQ(std::strtoull(last.c_str() + std::strlen("total nodes "), nullptr, 10), expected) << last;
}

}  // namespace
