#include <gtest/gtest.h>

#include "../support/board_builder.h"
#include "board/keys.h"
#include "search/draws.h"
#include "search/reductions.h"
#include "shell/options.h"

namespace {

using testboard::fromFen;
using testboard::mv;

// A position reached after a quiet, unchecked parent.
struct Node {
  Position parent{};
  Position position;
  explicit Node(const char* fen) : position(fromFen(fen)) { position.previous = &parent; }
};

TEST(DrawnMaterial, MinorPiecesAloneAreDrawnAwayFromTheRoot) {
  buildReductionTables();
  const char* drawn[] = {
      "8/8/8/4k3/8/8/8/4K3 w",   "8/8/8/4k3/8/8/8/3NK3 w",  "8/8/8/3bk3/8/8/8/4K3 b",
      "8/8/8/3nk3/8/8/8/3NK3 w", "8/8/8/3bk3/8/8/8/3BK3 w", "8/8/8/3bk3/8/8/8/3NK3 w",
      "8/8/8/3nk3/8/8/8/3BK3 b", "8/8/8/4k3/8/8/8/2NNK3 w", "8/8/8/2nnk3/8/8/8/4K3 w",
  };
  for (const char* fen : drawn) {
    Node n(fen);
    EXPECT_TRUE(isDrawnMaterial(n.position, 3)) << fen;
    EXPECT_FALSE(isDrawnMaterial(n.position, 2)) << fen;
  }
  const char* notDrawn[] = {
      "8/8/8/4k3/8/8/4P3/4K3 w",   // a pawn
      "8/8/8/4k3/8/8/8/2BBK3 w",   // the bishop pair
      "8/8/8/4k3/8/8/8/2BNK3 w",   // bishop and knight
      "8/8/8/4k3/8/8/8/3RK3 w",    // a rook (phase 9)
      "8/8/8/2nnk3/8/8/8/3NK3 w",  // two knights against one
  };
  for (const char* fen : notDrawn) {
    Node n(fen);
    EXPECT_FALSE(isDrawnMaterial(n.position, 6)) << fen;
  }
}

TEST(DrawValue, CountsFromTheRootSidesView) {
  EXPECT_EQ(drawScore, -5);
  EXPECT_EQ(drawValue(0), -5);
  EXPECT_EQ(drawValue(4), -5);
  EXPECT_EQ(drawValue(3), 5);
  drawScore = 20;
  EXPECT_EQ(drawValue(6), 20);
  EXPECT_EQ(drawValue(7), -20);
  drawScore = -5;
}

// A line of records built by hand: each has a key, the move that led to it,
// the piece that moved and the piece it took.
class RepetitionTest : public ::testing::Test {
 protected:
  Position records[120]{};
  int count = 0;
  // The first record, as parseFen leaves it: no last move, no previous.
  Position& root(uint64_t key) {
    records[0].hashKey = key;
    count = 1;
    return records[0];
  }
  Position& play(uint64_t key, Move move, int movedPiece, int capturedPiece = 0) {
    Position& r = records[count];
    r.hashKey = key;
    r.lastMove = move;
    r.movedPiece = movedPiece;
    r.capturedPiece = capturedPiece;
    r.previous = &records[count - 1];
    ++count;
    return r;
  }
  Position& knightDance(uint64_t base) {
    play(base + 1, mv("g1", "f3"), Knight);
    play(base + 2, mv("g8", "f6"), Knight);
    play(base + 3, mv("f3", "g1"), Knight);
    play(base + 4, mv("f6", "g8"), Knight);
    return play(base + 1, mv("g1", "f3"), Knight);
  }
};

TEST_F(RepetitionTest, SecondOccurrenceWithTheSameSideToMoveIsADraw) {
  root(100);
  play(1, mv("e2", "e4"), Pawn);
  EXPECT_TRUE(repetitionDraw(knightDance(10)));
}

TEST_F(RepetitionTest, PawnMovesCapturesAndNullMovesEndTheWalk) {
  root(100);
  play(1, mv("e2", "e4"), Pawn);
  play(11, mv("g1", "f3"), Knight);
  play(12, mv("e7", "e5"), Pawn);
  play(13, mv("f3", "g1"), Knight);
  play(14, mv("g8", "f6"), Knight);
  EXPECT_FALSE(repetitionDraw(play(11, mv("g1", "f3"), Knight)));

  root(100);
  play(11, mv("g1", "f3"), Knight);
  play(12, mv("g8", "f6"), Knight);
  play(13, mv("f3", "e5"), Knight, Pawn);
  play(14, mv("f6", "g8"), Knight);
  EXPECT_FALSE(repetitionDraw(play(11, mv("e5", "f3"), Knight)));

  root(100);
  play(11, mv("g1", "f3"), Knight);
  play(12, 0, 0);  // a null move
  play(13, mv("f3", "g1"), Knight);
  play(14, mv("g8", "f6"), Knight);
  EXPECT_FALSE(repetitionDraw(play(11, mv("g1", "f3"), Knight)));
}

TEST_F(RepetitionTest, HundredReversibleMovesAreADraw) {
  root(0);
  for (int i = 1; i <= 100; ++i) play(1000 + i, mv("g1", "f3"), Knight);
  // The child and 99 records before it reversible, the 100th the root: no.
  EXPECT_FALSE(repetitionDraw(records[100]));
  // One more reversible move: the walk passes the 100th record.
  EXPECT_TRUE(repetitionDraw(play(5000, mv("g1", "f3"), Knight)));
}

}  // namespace
