// The searches at the deepest ply their tables hold: they stop there instead
// of indexing past the killers and the stack.
#include <gtest/gtest.h>

#include "../support/evaluation_setup.h"
#include "eval/evaluate.h"
#include "search/draws.h"
#include "search/search.h"
#include "shell/search_flags.h"

namespace {

TEST(SearchLimits, TheDeepestPlyGivesTheStaticValueOrInCheckTheDrawValue) {
  evaltest::useEvaluationTables();
  stopSearch = 0;
  Move line[lineLength] = {};

  Position quiet = evaltest::rootPosition("r1bqkbnr/pppp1ppp/2n5/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R w KQkq -");
  const int staticValue = evaluate(quiet);
  EXPECT_EQ(searchNode(quiet, 50, 12, maxSearchPly, line, 0, 0), staticValue);
  EXPECT_EQ(searchPv(quiet, -200, 200, 12, maxSearchPly, line), staticValue);
  EXPECT_EQ(searchQuiet(quiet, -200, 200, 0, maxSearchPly, line), staticValue);

  // Black in check from the bishop on b5: no static value stands in check.
  Position check = evaltest::rootPosition("rnbqkbnr/ppp2ppp/3p4/1B2p3/4P3/8/PPPP1PPP/RNBQK1NR b KQkq -");
  ASSERT_TRUE(check.inCheck);
  EXPECT_EQ(searchNode(check, 50, 12, maxSearchPly, line, 0, 0), drawValue(maxSearchPly));
  EXPECT_EQ(searchPv(check, -200, 200, 12, maxSearchPly, line), drawValue(maxSearchPly));
  EXPECT_EQ(searchQuiet(check, -200, 200, 0, maxSearchPly, line), drawValue(maxSearchPly));
}

}  // namespace
