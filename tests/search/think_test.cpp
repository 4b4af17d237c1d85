#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <utility>

#include "../support/board_builder.h"
#include "../support/evaluation_setup.h"
#include "board/fen.h"
#include "board/keys.h"
#include "moves/picker.h"
#include "search/hash_table.h"
#include "search/think.h"
#include "shell/options.h"
#include "shell/search_flags.h"
#include "shell/self_test.h"

namespace {

TEST(ScoreText, MateDistancesAndTheCentipawnBoundary) {
  // 31800 stops the deepening but still prints as centipawns.
  const std::pair<int, const char*> cases[] = {{31999, "mate 1"},   {31997, "mate 2"},  {31993, "mate 4"},
                                               {-32000, "mate -1"}, {-31998, "mate -1"}, {-31996, "mate -2"},
                                               {31800, "cp 31800"}, {-25, "cp -25"}};
  char text[scoreTextSize];
  for (const auto& [score, expected] : cases) {
    scoreToText(score, text);
    EXPECT_STREQ(text, expected) << score;
  }
}

TEST(PvText, EveryMoveIsFollowedByABlankAndTheFirstBecomesTheBestMove) {
  char text[400];
  Move line[64] = {testboard::mv("e2", "e4"), testboard::mv("e7", "e5"), makeMoveWord(52, 60, KindPromoteKnight), 0};
  pvToText(line, text);
  EXPECT_STREQ(text, "e2e4 e7e5 e7e8n ");
  EXPECT_STREQ(bestMoveText, "e2e4");
  Move empty[64] = {0};
  pvToText(empty, text);
  EXPECT_STREQ(text, "");
  EXPECT_STREQ(bestMoveText, "0000");
}

TEST(AspirationWindow, WidensByHalfItsWidthBeyondTheFailedBound) {
  AspirationWindow high = widenWindow({-16, 16}, 20);
  EXPECT_EQ(high.alpha, 19);
  EXPECT_EQ(high.beta, 67);  // 32 * 1.5 + 19
  AspirationWindow higher = widenWindow(high, 80);
  EXPECT_EQ(higher.alpha, 79);
  EXPECT_EQ(higher.beta, 151);  // 48 * 1.5 + 79
  AspirationWindow low = widenWindow({-16, 16}, -20);
  EXPECT_EQ(low.alpha, -67);
  EXPECT_EQ(low.beta, -19);
  AspirationWindow clipped = widenWindow({31900, 32001}, 32001);
  EXPECT_EQ(clipped.beta, 32001);
  AspirationWindow clippedLow = widenWindow({-32001, -31900}, -32001);
  EXPECT_EQ(clippedLow.alpha, -32001);
}

struct SearchResult {
  Move move;
  int score;
  uint64_t nodes;
};

// A silent search from cleared tables, as the self-test runs it.
SearchResult searchQuietly(const char* fen, int depth) {
  batchMode = 1;
  Position root;
  parseFen(root, fen);
  char moves[1] = "";
  std::memset(depthNodes, 0, sizeof depthNodes);
  think(root, 31622400.0, depth, moves);
  batchMode = 0;
  deterministic = 0;
  // A mate ends the deepening early: report the last iteration that ran.
  int last = depth;
  while (last > 1 && depthNodes[last] == 0) --last;
  return {depthMove[last], depthScore[last], depthNodes[last]};
}

TEST(Think, SameSearchGivesSameMoveScoreAndNodesAfterOtherSearches) {
  hashAllocate(16);
  const char* fen = "r1bqkbnr/1pp2ppp/p1p5/4p3/4P3/5N2/PPPP1PPP/RNBQK2R w KQkq -";
  SearchResult first = searchQuietly(fen, 7);
  searchQuietly("2rr2k1/1pqnbppp/p2p1n2/Pb2p3/4P3/2NNBB2/1PPQ1PPP/R2R2K1 b - -", 6);
  SearchResult again = searchQuietly(fen, 7);
  EXPECT_EQ(first.move, again.move);
  EXPECT_EQ(first.score, again.score);
  EXPECT_EQ(first.nodes, again.nodes);
  EXPECT_GT(first.nodes, 1000u);
}

// The self-test table is this build's fingerprint: every rule of the search,
// the move order and the evaluation feeds the node count. Two short rows keep
// any change to them from passing unnoticed between runs of -test.
TEST(SelfTest, ShortRowsReproduceTheirStoredMoveScoreAndNodes) {
  initKeys(keySeed);
  evaltest::useEvaluationTables();
  hashAllocate(64);
  for (int row : {43, 48}) {
    char fen[160];
    batchMode = 1;
    searchTestRow(row, fen);
    batchMode = 0;
    deterministic = 0;
    char stored[160];
    std::strcpy(stored, testFens[row]);
    char text[4][160];
    int move = 0, score = 0;
    unsigned long long nodes = 0;
    ASSERT_EQ(std::sscanf(stored, "%159s %159s %159s %159s %d %d %llu", text[0], text[1], text[2], text[3], &move,
                          &score, &nodes),
              7);
    EXPECT_EQ(static_cast<int>(depthMove[testSearchDepth]), move) << "row " << row;
    EXPECT_EQ(depthScore[testSearchDepth], score) << "row " << row;
    EXPECT_EQ(depthNodes[testSearchDepth], nodes) << "row " << row;
  }
}

}  // namespace
