// The small questions the searches ask about a move: does it check, does it
// threaten something, how many ways out of check are there.
#include "moves/threats.h"

#include <gtest/gtest.h>

#include "../support/board.h"
#include "board/make_move.h"
#include "board/queries.h"

namespace {

using testboard::MoveCase;
using testboard::mv;
using testboard::parsed;

TEST(GivesCheck, DirectAndDiscoveredChecksAndTheBlindSpots) {
  const MoveCase cases[] = {
      // The knight leaves the e-file: check by the rook, whatever its new square.
      {"4k3/8/8/8/4N3/8/8/4R1K1 w - -", mv("e4", "c3"), 1},
      {"4k3/8/8/8/4N3/8/8/4R1K1 w - -", mv("e4", "d6"), 1},
      {"7k/8/8/4B3/8/8/8/Q5K1 w - -", mv("e5", "f4"), 1},
      {"4k3/8/8/8/4P3/8/8/4R1K1 w - -", mv("e4", "e5"), 0},  // along the line: still blocked
      {"4k3/8/8/8/8/8/4K3/4R3 w - -", mv("e2", "e3"), 0},
      {"4k3/8/8/8/8/8/4K3/4R3 w - -", mv("e2", "d3"), 1},
      {"4k3/8/8/8/8/8/8/4K1N1 w - -", mv("g1", "f3"), 0},
      {"4k3/8/8/8/8/8/8/4K1N1 w - -", mv("g1", "e2"), 0},
      {"4k3/8/8/8/8/8/8/R3K3 w - -", mv("a1", "a8"), 1},
      {"4k3/8/8/8/6N1/8/8/4K3 w - -", mv("g4", "f6"), 1},
      // A promotion is judged as a pawn on the last rank: the new queen's
      // check along the rank goes unseen unless a line opens.
      {"7k/1P6/8/8/8/8/8/6K1 w - -", mv("b7", "b8", KindPromoteQueen), 0},
      {"1k6/1P6/8/8/8/8/8/1R4K1 w - -", mv("b7", "a8", KindPromoteQueen), 1},
      // Castling: the rook's check from f1 is not seen.
      {"5k2/8/8/8/8/8/8/4K2R w K -", castleWhiteShort, 0},
      // En passant: the captured pawn still blocks the rank.
      {"8/8/8/R2pP2k/8/8/8/4K3 w - d6", mv("e5", "d6", KindEnPassant), 0},
  };
  for (const MoveCase& c : cases) EXPECT_EQ(givesCheck(parsed(c.fen), c.move), c.value) << c.fen;
}

// 0: nothing worth a look; 1: wins an exchange; 2: attacks something bigger.
TEST(MoveThreat, WhatThePieceThatJustMovedAttacks) {
  const MoveCase cases[] = {
      {"4k3/8/3p1p2/8/4P3/8/8/4K3 w - - 0 1", mv("e4", "e5"), 0},
      {"4k3/8/3p1n2/8/4P3/8/8/4K3 w - - 0 1", mv("e4", "e5"), 2},
      {"8/3k4/8/4P3/8/8/8/4K3 w - - 0 1", mv("e5", "e6"), 2},  // the king is bigger than a pawn
      // The queen behind the pawn isn't attacked, and the pawn is defended.
      {"k2q4/8/3p4/8/8/8/8/3R3K w - - 0 1", mv("d1", "d4"), 0},
      {"k2q4/8/3p4/8/n7/8/8/3R3K w - - 0 1", mv("d1", "d4"), 1},
      {"k2q4/8/8/8/8/8/8/3R3K w - - 0 1", mv("d1", "d4"), 2},
      {"k7/8/8/8/7r/8/8/1K1Q4 w - - 0 1", mv("d1", "d4"), 1},
      {"k7/8/8/6p1/7r/8/8/1K1Q4 w - - 0 1", mv("d1", "d4"), 0},  // 5 - 9 loses
      {"4k3/8/8/8/6N1/8/8/4K3 w - - 0 1", mv("g4", "f6"), 0},    // a check alone is no threat
      {"4k3/3r4/8/8/6N1/8/8/4K3 w - - 0 1", mv("g4", "f6"), 2},
      {"1r2k3/8/8/8/8/8/8/2B1K3 w - - 0 1", mv("c1", "f4"), 2},
      {"1n2k3/8/8/8/8/8/8/2B1K3 w - - 0 1", mv("c1", "f4"), 1},
      {"1b2k3/8/8/8/8/8/8/2B1K3 w - - 0 1", mv("c1", "f4"), 0},  // bishop against bishop isn't looked at
      {"4k3/8/8/8/8/3n4/8/4K3 w - - 0 1", mv("e1", "e2"), 1},
      {"4k3/8/8/8/2p5/3n4/8/4K3 w - - 0 1", mv("e1", "e2"), 0},
      {"k2q4/8/8/8/8/8/8/3R3K w - - 0 1", 0, 0},  // a null move threatens nothing
  };
  for (const MoveCase& c : cases) {
    Position parent = parsed(c.fen), child;
    makeMove(parent, child, c.move);
    EXPECT_EQ(moveThreat(child), c.value) << c.fen;
  }
  // A record read from text has no move behind it, even when its en-passant
  // field names the double step that attacks a knight.
  EXPECT_EQ(moveThreat(parsed("4k3/8/8/3Pp3/3N4/8/8/4K3 w - e6 0 1")), 0);
}

TEST(CountEvasions, LegalRepliesToCheckUpToThree) {
  const MoveCase cases[] = {
      {"R5k1/5ppp/8/8/8/8/8/6K1 b - - 0 1", 0, 0},
      {"4r2k/8/8/8/8/8/8/4K3 w - - 0 1", 0, 3},  // four king moves
      {"4r2k/8/8/8/8/8/r7/4K3 w - - 0 1", 0, 2},
      // Double check: the knight could take the bishop or block the rook, but
      // neither answers both.
      {"4k3/2n5/8/1B6/8/8/8/4RRK1 b - - 0 1", 0, 1},
  };
  for (const MoveCase& c : cases) {
    int made = 0;
    EXPECT_EQ(countEvasions(parsed(c.fen), MoveHistory{}, made), c.value) << c.fen;
    EXPECT_GE(made, c.value) << c.fen;
  }
}

}  // namespace
