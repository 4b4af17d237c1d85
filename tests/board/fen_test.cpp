#include "board/fen.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "../support/board_builder.h"
#include "../support/position_recount.h"
#include "board/keys.h"
#include "board/make_move.h"
#include "shell/log.h"

namespace {

using testboard::mv;
using testboard::sq;

Position fen(const char* text) {
  Position p;
  std::memset(&p, 0x5a, sizeof p);  // parseFen must clear everything itself
  parseFen(p, text);
  return p;
}

TEST(ParseFen, EnPassantOnlyWhenAPawnCanTake) {
  Position none = fen("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3");
  EXPECT_EQ(none.epBit, 0u);
  EXPECT_EQ(none.lastMove, 796u);
  EXPECT_EQ(none.hashKey, fen("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq -").hashKey);

  Position some = fen("rnbqkbnr/ppp1pppp/8/8/3pP3/8/PPPP1PPP/RNBQKBNR b KQkq e3");
  EXPECT_EQ(some.epBit, squareBit(sq("e3")));
  EXPECT_EQ(some.lastMove, 796u);
  uint64_t without = fen("rnbqkbnr/ppp1pppp/8/8/3pP3/8/PPPP1PPP/RNBQKBNR b KQkq -").hashKey;
  EXPECT_EQ(some.hashKey, without ^ enPassantKey(sq("e3")));
  recount::expectConsistent(some, false);

  // A black double step: from rank 7 to rank 5.
  Position black = fen("4k3/8/8/3pP3/8/8/8/4K3 w - d6");
  EXPECT_EQ(black.lastMove, mv("d7", "d5"));
  EXPECT_EQ(black.epBit, squareBit(sq("d6")));
  // Extra blanks before the en-passant field are skipped.
  EXPECT_EQ(fen("4k3/8/8/3pP3/8/8/8/4K3 w -    d6 0 1").epBit, black.epBit);
  // A field naming no square on the board is read as "-".
  Position offBoard = fen("4k3/8/8/3pP3/8/8/8/4K3 w - z6");
  EXPECT_EQ(offBoard.epBit, 0u);
  EXPECT_EQ(offBoard.lastMove, 0u);
}

TEST(ParseFen, ShortTextsGetPlainDefaults) {
  Position board = fen("4k3/8/8/8/3p4/8/4P3/4K3");
  EXPECT_EQ(board.ctm, 0);
  EXPECT_EQ(board.moved, 0xFF000000000000FFULL);
  EXPECT_EQ(board.epBit, 0u);
  recount::expectConsistent(board, false);
  EXPECT_EQ(fen("4k3/8/8/8/8/8/8/4K3 ").ctm, 0);
  EXPECT_EQ(fen("4k3/8/8/8/8/8/8/4K3 b").ctm, 1);
  EXPECT_EQ(fen("4k3/8/8/8/8/8/8/4K3 b ").moved, 0xFF000000000000FFULL);
  EXPECT_EQ(fen("r3k2r/8/8/8/8/8/8/R3K2R w KQ").moved, 0xFF00000000000000ULL | 0x6EULL);
  Position fileOnly = fen("4k3/8/8/3pP3/8/8/8/4K3 w - d");
  EXPECT_EQ(fileOnly.epBit, 0u);
  EXPECT_EQ(fileOnly.lastMove, 0u);
  EXPECT_EQ(fen("4k3/8/8/3pP3/8/8/8/4K3 w -").lastMove, 0u);
}

TEST(ParseFen, OnlyTheFirst254CharactersAreRead) {
  std::string text = "4k3/8/8/8/8/8/8/4K3 w - ";
  text.append(254 - text.size() - 2, ' ');
  Position kept = fen((text + "d6").c_str());
  EXPECT_EQ(kept.lastMove, mv("d7", "d5"));
  Position cut = fen((text + " d6").c_str());
  EXPECT_EQ(cut.lastMove, 0u);
}

TEST(ParseFenDeathTest, BadColourEndsTheProgram) {
  EXPECT_EXIT(fen("4k3/8/8/8/8/8/8/4K3 x - -"), ::testing::ExitedWithCode(1),
              "^Error in ctm for fen \"4k3/8/8/8/8/8/8/4K3 x - -\"$");
  EXPECT_EXIT(fen("4k3/8/8/8/8/8/8/4K3  w - -"), ::testing::ExitedWithCode(1), "Error in ctm");
}

}  // namespace
