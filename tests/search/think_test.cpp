#include "search/think.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "../support/board.h"
#include "board/keys.h"
#include "eval/evaluate.h"
#include "search/draws.h"
#include "search/hash_table.h"
#include "search/limits.h"
#include "search/search.h"
#include "shell/self_test.h"

namespace {

// The self-test table is this build's fingerprint: every rule of the search,
// the move order and the evaluation feeds the node count. Its cheaper rows,
// endings and middle games with and without queens, keep any change to them
// from passing unnoticed between runs of -test.
TEST(SelfTest, CheapRowsReproduceTheirStoredMoveScoreAndNodes) {
  initKeys(keySeed);
  testboard::useEvaluationTables();
  hashAllocate(64);
  for (int row : {3, 26, 42, 43, 48}) {
    char fen[160];
    {
      testboard::BatchMode batch;
      searchTestRow(row, fen);
    }
    int move = 0, score = 0;
    unsigned long long nodes = 0;
    ASSERT_EQ(std::sscanf(testFens[row], "%*s %*s %*s %*s %d %d %llu", &move, &score, &nodes), 3);
    EXPECT_EQ(static_cast<int>(mainSearch.depthMove[testSearchDepth]), move) << "row " << row;
    EXPECT_EQ(mainSearch.depthScore[testSearchDepth], score) << "row " << row;
    EXPECT_EQ(mainSearch.depthNodes[testSearchDepth], nodes) << "row " << row;
  }
}

// The hard limit, which the polls enforce, is the request's, or the goal
// itself for a fixed time per move.
TEST(SearchLimits, TheHardLimitIsTheRequestsOrAFixedTimeItself) {
  testboard::useEvaluationTables();
  struct Case { double goal, hard; bool exactTime; double expected; };
  const Case cases[] = {{0.2, 1.0, false, 1.0}, {2.0, 2.7, false, 2.7}, {0.28, 1.4, true, 0.28}};
  for (const Case& c : cases) {
    testboard::BatchMode batch;
    Position root = testboard::rootPosition("4k3/8/8/8/8/8/4P3/4K3 w - -");
    ThinkRequest request;
    request.goalSeconds = c.goal;
    request.hardSeconds = c.hard;
    request.exactTime = c.exactTime;
    clearTheStop();
    think(mainSearch, root, request);
    EXPECT_NEAR(searchLimits.hardTimeLimit - searchLimits.startTime, c.expected, 1e-9) << c.goal << " " << c.hard;
  }
}

TEST(SearchLimits, TheDeepestPlyGivesTheStaticValueOrInCheckTheDrawValue) {
  testboard::useEvaluationTables();
  clearTheStop();
  Move line[lineLength] = {};
  Position quiet = testboard::rootPosition("r1bqkbnr/pppp1ppp/2n5/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R w KQkq -");
  const int staticValue = evaluate(quiet, *mainSearch.caches);
  EXPECT_EQ(searchNode(mainSearch, quiet, 50, 12, maxSearchPly, line, 0, 0), staticValue);
  EXPECT_EQ(searchPv(mainSearch, quiet, -200, 200, 12, maxSearchPly, line), staticValue);
  EXPECT_EQ(searchQuiet(mainSearch, quiet, -200, 200, 0, maxSearchPly, line), staticValue);
  // Black in check from the bishop on b5: no static value stands in check.
  Position check = testboard::rootPosition("rnbqkbnr/ppp2ppp/3p4/1B2p3/4P3/8/PPPP1PPP/RNBQK1NR b KQkq -");
  EXPECT_EQ(searchNode(mainSearch, check, 50, 12, maxSearchPly, line, 0, 0), drawValue(maxSearchPly));
  EXPECT_EQ(searchPv(mainSearch, check, -200, 200, 12, maxSearchPly, line), drawValue(maxSearchPly));
  EXPECT_EQ(searchQuiet(mainSearch, check, -200, 200, 0, maxSearchPly, line), drawValue(maxSearchPly));
}

}  // namespace
