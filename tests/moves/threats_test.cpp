#include <gtest/gtest.h>

#include "../support/board_builder.h"
#include "board/fen.h"
#include "board/make_move.h"
#include "moves/threats.h"

namespace {

using testboard::mv;

Position fen(const char* text) {
  Position p;
  parseFen(p, text);
  return p;
}

// The threat of `move` as the side to move after it sees it.
int threatAfter(const char* text, Move move) {
  Position parent = fen(text);
  Position child;
  makeMove(parent, child, move);
  return moveThreat(child);
}

TEST(MoveThreat, NoMoveNoThreat) {
  Position parent = fen("k2q4/8/8/8/8/8/8/3R3K w - - 0 1");
  Position child;
  makeMove(parent, child, mv("d1", "d4"));
  ASSERT_EQ(moveThreat(child), 2);
  Position afterNull;
  makeMove(child, afterNull, 0);
  EXPECT_EQ(moveThreat(afterNull), 0);

  // A record read from text with white to move has no threat, even when its
  // en-passant field names the double step that attacks a knight.
  Position root = fen("4k3/8/8/3Pp3/3N4/8/8/4K3 w - e6 0 1");
  ASSERT_NE(root.lastMove, 0u);
  EXPECT_EQ(moveThreat(root), 0);
}

TEST(MoveThreat, PawnThreatensOnlyBiggerPieces) {
  EXPECT_EQ(threatAfter("4k3/8/3p1p2/8/4P3/8/8/4K3 w - - 0 1", mv("e4", "e5")), 0);
  EXPECT_EQ(threatAfter("4k3/8/3p1n2/8/4P3/8/8/4K3 w - - 0 1", mv("e4", "e5")), 2);
  // The king counts as bigger than a pawn.
  EXPECT_EQ(threatAfter("8/3k4/8/4P3/8/8/8/4K3 w - - 0 1", mv("e5", "e6")), 2);
}

TEST(MoveThreat, RookLooksPastNoBlocker) {
  // The queen on d8 stands behind the pawn on d6: no threat to it. The pawn
  // is defended by the queen, so taking it loses the rook.
  EXPECT_EQ(threatAfter("k2q4/8/3p4/8/8/8/8/3R3K w - - 0 1", mv("d1", "d4")), 0);
  // With an undefended knight on the rank the rook goes on to win it.
  EXPECT_EQ(threatAfter("k2q4/8/3p4/8/n7/8/8/3R3K w - - 0 1", mv("d1", "d4")), 1);
  // Without the blocker the queen itself is attacked.
  EXPECT_EQ(threatAfter("k2q4/8/8/8/8/8/8/3R3K w - - 0 1", mv("d1", "d4")), 2);
}

TEST(MoveThreat, QueenNeedsAWonExchange) {
  EXPECT_EQ(threatAfter("k7/8/8/8/7r/8/8/1K1Q4 w - - 0 1", mv("d1", "d4")), 1);
  // The pawn on g5 guards the rook: 5 - 9 is a loss, and nothing else hangs.
  EXPECT_EQ(threatAfter("k7/8/8/6p1/7r/8/8/1K1Q4 w - - 0 1", mv("d1", "d4")), 0);
}

TEST(MoveThreat, KnightCheckAloneIsNoThreat) {
  EXPECT_EQ(threatAfter("4k3/8/8/8/6N1/8/8/4K3 w - - 0 1", mv("g4", "f6")), 0);
  // The same check forking a rook.
  EXPECT_EQ(threatAfter("4k3/3r4/8/8/6N1/8/8/4K3 w - - 0 1", mv("g4", "f6")), 2);
}

TEST(MoveThreat, BishopAgainstEachKind) {
  EXPECT_EQ(threatAfter("1r2k3/8/8/8/8/8/8/2B1K3 w - - 0 1", mv("c1", "f4")), 2);
  EXPECT_EQ(threatAfter("1n2k3/8/8/8/8/8/8/2B1K3 w - - 0 1", mv("c1", "f4")), 1);
  // A bishop attacking a bishop is not looked at, even an undefended one.
  EXPECT_EQ(threatAfter("1b2k3/8/8/8/8/8/8/2B1K3 w - - 0 1", mv("c1", "f4")), 0);
}

TEST(MoveThreat, KingWinsOnlyUndefendedPieces) {
  EXPECT_EQ(threatAfter("4k3/8/8/8/8/3n4/8/4K3 w - - 0 1", mv("e1", "e2")), 1);
  EXPECT_EQ(threatAfter("4k3/8/8/8/2p5/3n4/8/4K3 w - - 0 1", mv("e1", "e2")), 0);
}

TEST(CountEvasions, CountsLegalRepliesUpToThree) {
  Position parent = fen("6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1");
  Position mated;
  makeMove(parent, mated, mv("a1", "a8"));
  EXPECT_EQ(countEvasions(mated), 0);

  // The king on e1 has d1, d2, f1 and f2: four replies, counted as three.
  EXPECT_EQ(countEvasions(fen("4r2k/8/8/8/8/8/8/4K3 w - - 0 1")), 3);
  // The rook on a2 takes the second rank away.
  EXPECT_EQ(countEvasions(fen("4r2k/8/8/8/8/8/r7/4K3 w - - 0 1")), 2);
}

TEST(CountEvasions, DoubleCheckLeavesOnlyKingMoves) {
  // Rook e1 and bishop b5 both check. The knight could take the bishop or
  // block the rook, but neither answers both; only Kd8 is legal.
  EXPECT_EQ(countEvasions(fen("4k3/2n5/8/1B6/8/8/8/4RRK1 b - - 0 1")), 1);
}

}  // namespace
