#include "board/queries.h"

#include <gtest/gtest.h>

#include "../support/board_builder.h"
#include "board/fen.h"

namespace {

using testboard::mv;
using testboard::sq;

Position fen(const char* text) {
  Position p;
  parseFen(p, text);
  return p;
}

TEST(GivesCheck, DiscoveredChecks) {
  // The knight leaves the e-file: check by the rook, whether or not the
  // knight's new square attacks the king.
  Position p = fen("4k3/8/8/8/4N3/8/8/4R1K1 w - -");
  EXPECT_EQ(givesCheck(p, mv("e4", "c3")), 1);
  EXPECT_EQ(givesCheck(p, mv("e4", "d6")), 1);
  // A bishop uncovering a queen on the diagonal.
  EXPECT_EQ(givesCheck(fen("7k/8/8/4B3/8/8/8/Q5K1 w - -"), mv("e5", "f4")), 1);
  // Moving along the line keeps it blocked.
  EXPECT_EQ(givesCheck(fen("4k3/8/8/8/4P3/8/8/4R1K1 w - -"), mv("e4", "e5")), 0);
  Position kingOnFile = fen("4k3/8/8/8/8/8/4K3/4R3 w - -");
  EXPECT_EQ(givesCheck(kingOnFile, mv("e2", "e3")), 0);
  EXPECT_EQ(givesCheck(kingOnFile, mv("e2", "d3")), 1);
}

TEST(GivesCheck, BlindSpots) {
  // A promotion is judged as a pawn on the eighth rank: the new queen's
  // check along the rank goes unseen.
  EXPECT_EQ(givesCheck(fen("7k/1P6/8/8/8/8/8/6K1 w - -"), mv("b7", "b8", KindPromoteQueen)), 0);
  // ... unless it uncovers a line.
  EXPECT_EQ(givesCheck(fen("1k6/1P6/8/8/8/8/8/1R4K1 w - -"), mv("b7", "a8", KindPromoteQueen)), 1);
  // Castling: the rook's check from f1 is not seen.
  EXPECT_EQ(givesCheck(fen("5k2/8/8/8/8/8/8/4K2R w K -"), castleWhiteShort), 0);
  // En passant: the captured pawn still blocks the rank in the test.
  EXPECT_EQ(givesCheck(fen("8/8/8/R2pP2k/8/8/8/4K3 w - d6"), mv("e5", "d6", KindEnPassant)), 0);
}

}  // namespace
