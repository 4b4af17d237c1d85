#include "search/draws.h"

#include <gtest/gtest.h>

#include <vector>

#include "../support/board.h"
#include "base/options.h"
#include "search/reductions.h"

namespace {

TEST(DrawnMaterial, MinorPiecesAloneAreDrawnAwayFromTheRoot) {
  buildReductionTables();
  struct Case { const char* fen; bool drawn; };
  const Case cases[] = {
      {"8/8/8/4k3/8/8/8/4K3 w", true},   {"8/8/8/4k3/8/8/8/3NK3 w", true},  {"8/8/8/3bk3/8/8/8/4K3 b", true},
      {"8/8/8/3nk3/8/8/8/3NK3 w", true}, {"8/8/8/3bk3/8/8/8/3BK3 w", true}, {"8/8/8/3bk3/8/8/8/3NK3 w", true},
      {"8/8/8/3nk3/8/8/8/3BK3 b", true}, {"8/8/8/4k3/8/8/8/2NNK3 w", true}, {"8/8/8/2nnk3/8/8/8/4K3 w", true},
      {"8/8/8/4k3/8/8/4P3/4K3 w", false},   // a pawn
      {"8/8/8/4k3/8/8/8/2BBK3 w", false},   // the bishop pair
      {"8/8/8/4k3/8/8/8/2BNK3 w", false},   // bishop and knight
      {"8/8/8/4k3/8/8/8/3RK3 w", false},    // a rook
      {"8/8/8/2nnk3/8/8/8/3NK3 w", false},  // two knights against one
      {"8/8/8/4k3/8/3n4/8/4K3 w", false},   // in check
  };
  for (const Case& c : cases) {
    Position p = testboard::rootPosition(c.fen);
    EXPECT_EQ(isDrawnMaterial(p, 3), c.drawn) << c.fen;
    EXPECT_FALSE(isDrawnMaterial(p, 2)) << "two plies from the root: " << c.fen;
  }
}

TEST(DrawValue, DrawscoreCountsForTheSideToMoveAtTheRoot) {
  const int saved = options.drawScore;
  for (int score : {-5, 20}) {
    options.drawScore = score;
    EXPECT_EQ(drawValue(0), score);
    EXPECT_EQ(drawValue(6), score);
    EXPECT_EQ(drawValue(3), -score);
  }
  options.drawScore = saved;
}

// A line of records built by hand from a root of key 100: each step has the
// key it reaches and the piece it moved and took; a piece of 0 is a null move.
struct Step { uint64_t key; int piece; int captured = 0; };

bool drawnAfter(const std::vector<Step>& steps) {
  static Position records[128];
  records[0] = Position{};
  records[0].hashKey = 100;
  for (size_t i = 1; i <= steps.size(); ++i) {
    Position& r = records[i];
    r = Position{};
    r.hashKey = steps[i - 1].key;
    r.movedPiece = steps[i - 1].piece;
    r.capturedPiece = steps[i - 1].captured;
    r.lastMove = steps[i - 1].piece ? testboard::mv("g1", "f3") : 0;
    r.previous = &records[i - 1];
  }
  return repetitionDraw(records[steps.size()]);
}

TEST(Repetition, ASecondOccurrenceWithTheSameSideToMoveSinceTheLastIrreversibleMove) {
  EXPECT_TRUE(drawnAfter({{1, Pawn}, {11, Knight}, {12, Knight}, {13, Knight}, {14, Knight}, {11, Knight}}));
  EXPECT_TRUE(drawnAfter({{11, Knight}, {12, Knight}, {11, Knight}}));
  EXPECT_FALSE(drawnAfter({{11, Knight}, {11, Knight}})) << "the other side to move";
  EXPECT_FALSE(drawnAfter({{11, Knight}, {12, Pawn}, {13, Knight}, {14, Knight}, {11, Knight}}));
  EXPECT_FALSE(drawnAfter({{11, Knight}, {12, Knight}, {13, Knight, Pawn}, {14, Knight}, {11, Knight}}));
  EXPECT_FALSE(drawnAfter({{11, Knight}, {12, 0}, {13, Knight}, {14, Knight}, {11, Knight}})) << "a null move";
  // A hundred reversible moves: the root (no move behind it) ends the walk
  // at the 100th record, a 101st move passes it.
  std::vector<Step> quiet;
  for (uint64_t i = 1; i <= 100; ++i) quiet.push_back({1000 + i, Knight});
  EXPECT_FALSE(drawnAfter(quiet));
  quiet.push_back({5000, Knight});
  EXPECT_TRUE(drawnAfter(quiet));
}

}  // namespace
