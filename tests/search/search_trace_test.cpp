#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <string>

#include "eval/tables.h"
#include "search/hash_table.h"
#include "search/search_trace.h"
#include "shell/options.h"
#include "shell/search_flags.h"
#include "shell/self_test.h"

namespace {

constexpr int traceDepth = 7;

// A silent batch search, the way the developer tool runs one.
void searchInBatch(const char* fen, int depth) {
  batchMode = 1;
  searchBatchPosition(fen, depth);
  batchMode = 0;
  deterministic = 0;
}

TEST(SearchTrace, EveryCounterHasOneNameInTheTable) {
  std::set<std::string> names;
  size_t count = 0;
  for (const SearchTraceField* field = searchTraceFields; field->name; ++field, ++count) names.insert(field->name);
  EXPECT_EQ(count * sizeof(uint64_t), sizeof(SearchTrace));
  EXPECT_EQ(names.size(), count);
}

TEST(SearchTrace, RunningCountsGrowIterationByIterationAndKeepTheirRelations) {
  initEvaluation();
  hashAllocate(16);
  std::memset(depthTrace, 0, sizeof depthTrace);
  searchInBatch("r1bqkbnr/1pp2ppp/p1p5/4p3/4P3/5N2/PPPP1PPP/RNBQK2R w KQkq -", traceDepth);
  for (int depth = 1; depth <= traceDepth; ++depth) {
    const SearchTrace& now = depthTrace[depth];
    const SearchTrace& before = depthTrace[depth - 1];
    EXPECT_GE(now.rootPasses, before.rootPasses + 1) << depth;
    EXPECT_GE(now.quietEntries, before.quietEntries) << depth;
    EXPECT_GE(now.nodeEntries, before.nodeEntries) << depth;
  }
  const SearchTrace& total = depthTrace[traceDepth];
  EXPECT_GT(total.nodeEntries, 0u);
  EXPECT_GT(total.pvEntries, 0u);
  EXPECT_GT(total.nullMoveSearches, 0u);
  EXPECT_GT(total.lateMovePrunes, 0u);
  // Outcomes never outnumber the tries they come from.
  EXPECT_LE(total.nodeHorizonExtensions, total.nodeHorizonTests);
  EXPECT_LE(total.nullMoveCutoffs, total.nullMoveSearches);
  EXPECT_LE(total.razorDeepCutoffs, total.razorDeepSearches);
  EXPECT_LE(total.nodeSingularExtensions, total.nodeSingularTests);
  EXPECT_LE(total.futilityNegativePower, total.futilityTests);
  EXPECT_LE(total.futilityPrunes, total.futilityTests);
  EXPECT_LE(total.nodeReductionResearches, total.nodeReductions);
  EXPECT_LE(total.pvReductionFailLows, total.pvReductions);
  EXPECT_LE(total.pvResearches, total.pvZeroWindowSearches);
  EXPECT_LE(total.rootReductionFailLows, total.rootReductions);
  EXPECT_LE(total.hashHits, total.hashProbes);
}

TEST(SearchTrace, EachSearchCountsFromZero) {
  initEvaluation();
  hashAllocate(16);
  const char* fen = "2rr2k1/1pqnbppp/p2p1n2/Pb2p3/4P3/2NNBB2/1PPQ1PPP/R2R2K1 b - -";
  searchInBatch(fen, 6);
  SearchTrace first = depthTrace[6];
  searchInBatch("8/8/pr1ppk1p/R4pP1/8/3K2P1/P3PP2/8 b - -", 6);
  searchInBatch(fen, 6);
  EXPECT_EQ(std::memcmp(&first, &depthTrace[6], sizeof first), 0);
  EXPECT_EQ(std::memcmp(&first, &searchTrace, sizeof first), 0);
}

}  // namespace
