// tarvok-tool bench drives the engine over UCI; its node total must be what
// the same searches give in this process, run as the self-test runs them.
// At a short depth that total, row by row, is the signature of this build.
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <numeric>
#include <sstream>
#include <string>

#include "../support/board.h"
#include "../support/engine_session.h"
#include "../support/uci_lines.h"
#include "base/options.h"
#include "board/keys.h"
#include "search/hash_table.h"
#include "search/search_state.h"
#include "shell/self_test.h"

namespace {

using RowNodes = std::array<uint64_t, 50>;

// The node count of each self-test row searched to depth as the bench has
// the engine search it: the options at their defaults, the table at the
// default Hash size, one thread, every search from cleared tables.
RowNodes benchRowNodes(int depth) {
  testboard::BatchMode batch;
  options = EngineOptions{};
  initKeys(keySeed);
  testboard::useEvaluationTables(options.kingSafetyAggressiveness);
  hashAllocate(options.hashSizeMb);
  RowNodes nodes{};
  for (int row = 0; row < 50; ++row) {
    char fen[160];
    testRowFen(row, fen);
    searchBatchPosition(fen, depth);
    nodes[row] = mainSearch.depthNodes[depth];
  }
  return nodes;
}

TEST(Bench, ItsNodeTotalIsTheSumOfTheSelfTestSearchesAtThatDepth) {
  constexpr int depth = 6;
  const RowNodes nodes = benchRowNodes(depth);
  const uint64_t expected = std::accumulate(nodes.begin(), nodes.end(), uint64_t{0});
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

// `tarvok-tool bench 10` of this build, row by row. Every weight, margin,
// reduction, picker stage and exchange rule feeds these counts, so a change
// meant to leave the search alone must leave them as they are; a change
// meant to alter it replaces them (the failure prints the new ones) and
// quotes the new total, with the full bench's, in its commit. Depth 10 takes
// a few seconds, and well under a minute under the sanitizers.
constexpr int signatureDepth = 10;
constexpr RowNodes signedRowNodes = {
    481655, 121189, 385568, 24515, 170265, 268236, 220034, 228453,
    121096, 73805, 193370, 81575, 84386, 43036, 84726, 140356,
    96381, 123946, 81972, 189807, 55456, 41023, 104433, 116959,
    76679, 91406, 70726, 56524, 357923, 350932, 266836, 102947,
    53134, 92819, 74240, 172439, 129260, 59167, 27314, 92519,
    67052, 80117, 39726, 17769, 114987, 132361, 95752, 121288,
    19877, 154545,
};
constexpr uint64_t signedTotal = 6450581;
static_assert(std::accumulate(signedRowNodes.begin(), signedRowNodes.end(), uint64_t{0}) == signedTotal,
              "the signed rows must add up to the signed total");

TEST(Bench, EachSelfTestRowAtDepthTenSearchesItsSignedNodeCount) {
  const RowNodes nodes = benchRowNodes(signatureDepth);
  std::ostringstream differing, fresh;
  for (int row = 0; row < 50; ++row) {
    if (nodes[row] != signedRowNodes[row]) {
      char fen[160];
      testRowFen(row, fen);
      differing << "  row " << row << ": " << nodes[row] << " nodes, signed " << signedRowNodes[row] << "  " << fen
                << "\n";
    }
    fresh << nodes[row] << (row % 8 == 7 || row == 49 ? ",\n" : ", ");
  }
  EXPECT_TRUE(differing.str().empty())
      << "total nodes " << std::accumulate(nodes.begin(), nodes.end(), uint64_t{0}) << ", signed " << signedTotal
      << "\nrows that differ:\n"
      << differing.str() << "this build's counts, to sign a change meant to alter the search:\n"
      << fresh.str();
}

// A fresh engine has nothing to forget: its first search, without the
// deterministic option, is the bench's search of that row.
TEST(Bench, AFreshEnginesFirstSearchIsTheBenchsSearchOfItsRow) {
  for (int row : {3, 38, 43}) {
    char fen[160];
    testRowFen(row, fen);
    EngineSession engine(TARVOK_ENGINE_PATH);
    engine.send(std::string("position fen ") + fen + "\ngo depth " + std::to_string(signatureDepth));
    ASSERT_NE(engine.waitFor("bestmove", 60.0), "") << "row " << row;
    std::string counted;  // the last count before bestmove is the whole search's
    for (const std::string& line : linesStartingWith(engine.transcript, "info "))
      if (!wordAfter(line, "nodes").empty()) counted = line;
    EXPECT_EQ(std::strtoull(wordAfter(counted, "nodes").c_str(), nullptr, 10), signedRowNodes[row])
        << "row " << row << ": " << counted;
  }
}

}  // namespace
