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

TEST(ParseFen, StartPosition) {
  Position p = fen(startPositionFen);
  EXPECT_EQ(p.moved, 0x6E0000000000006EULL);
  EXPECT_EQ(p.epBit, 0u);
  EXPECT_EQ(p.ctm, 0);
  EXPECT_EQ(p.inCheck, 0);
  EXPECT_EQ(p.previous, nullptr);
  EXPECT_EQ(p.lastMove, 0u);
  EXPECT_EQ(p.movedPiece, 0);
  EXPECT_EQ(p.capturedPiece, 0);
  EXPECT_EQ(p.pstScore, 0u);
  EXPECT_EQ(p.phase, 0);
  EXPECT_EQ(p.pvPly, 0);
  EXPECT_EQ(p.pieces[White][0], 0xFFFFULL);
  EXPECT_EQ(p.pieces[Black][0], 0xFFFF000000000000ULL);
  EXPECT_EQ(p.pieces[White][Knight], squareBit(sq("b1")) | squareBit(sq("g1")));
  EXPECT_EQ(p.pieces[Black][Queen], squareBit(sq("d8")));
  recount::expectConsistent(p, false);

  Position empty = fen("");
  EXPECT_EQ(empty.hashKey, p.hashKey);
  EXPECT_EQ(empty.pawnKey, p.pawnKey);
  EXPECT_EQ(empty.materialKey, p.materialKey);
  EXPECT_EQ(std::memcmp(empty.pieces, p.pieces, sizeof p.pieces), 0);
}

TEST(ParseFen, CastlingField) {
  EXPECT_EQ(fen("r3k2r/8/8/8/8/8/8/R3K2R w - -").moved, 0xFF000000000000FFULL);
  Position noWhiteShort = fen("r3k2r/8/8/8/8/8/8/R3K2R w Qkq -");
  EXPECT_TRUE(noWhiteShort.moved & 0x80);
  EXPECT_NE(noWhiteShort.moved & whiteShortMask, 0u);
  EXPECT_EQ(noWhiteShort.moved & whiteLongMask, 0u);
  // Order and repeats don't matter; unknown letters are skipped.
  EXPECT_EQ(fen("r3k2r/8/8/8/8/8/8/R3K2R w qkQK -").moved, fen("r3k2r/8/8/8/8/8/8/R3K2R w KQkq -").moved);
  EXPECT_EQ(fen("r3k2r/8/8/8/8/8/8/R3K2R w kkxk -").moved, 0x6FFFFFFFFFFFFFFFULL & 0xFF000000000000FFULL);
  Position blackLong = fen("r3k2r/8/8/8/8/8/8/R3K2R w q -");
  EXPECT_EQ(blackLong.moved, 0xEE000000000000FFULL);
  recount::expectConsistent(blackLong, false);
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

TEST(ParseFen, InCheckFromTheSideToMove) {
  EXPECT_EQ(fen("4k3/8/8/8/8/8/8/4RK2 b - -").inCheck, 1);
  EXPECT_EQ(fen("4k3/8/8/8/8/8/8/4RK2 w - -").inCheck, 0);
  EXPECT_EQ(fen("4k3/8/8/8/8/8/4r3/4K3 w - -").inCheck, 1);
}

TEST(ParseFen, BoardFieldIsReadLeniently) {
  // A "/" fills a short rank; unknown letters leave empty squares.
  Position p = fen("k/8/8/8/8/8/8/x3K3 w - -");
  EXPECT_EQ(p.pieces[Black][King], squareBit(sq("a8")));
  EXPECT_EQ(p.pieces[White][King], squareBit(sq("e1")));
  EXPECT_EQ(p.pieces[White][0] | p.pieces[Black][0], squareBit(sq("a8")) | squareBit(sq("e1")));
  // A 9 spills into the next rank; "/" then stays on the rank boundary.
  Position spill = fen("9k/8/8/8/8/8/8/4K3 w - -");
  EXPECT_EQ(spill.pieces[Black][King], squareBit(sq("b7")));
  // Squares past h1 are dropped.
  Position past = fen("k7/8/8/8/8/8/8/4K3/QQ w - -");
  EXPECT_EQ(past.pieces[White][Queen], 0u);
  EXPECT_EQ(fen("k7/8/8/8/8/8/8/7K99Q w - -").pieces[White][Queen], 0u);
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

TEST(MoveToText, CoordinatesAndPromotionLetters) {
  char text[8];
  moveToText(0, text);
  EXPECT_STREQ(text, "null");
  moveToText(mv("e2", "e4", KindDoubleStep), text);
  EXPECT_STREQ(text, "e2e4");
  moveToText(castleBlackLong, text);
  EXPECT_STREQ(text, "e8c8");
  moveToText(mv("d5", "e6", KindEnPassant), text);
  EXPECT_STREQ(text, "d5e6");
  moveToText(mv("a7", "a8", KindPromoteKnight), text);
  EXPECT_STREQ(text, "a7a8n");
  moveToText(mv("h2", "h1", KindPromoteQueen), text);
  EXPECT_STREQ(text, "h2h1q");
  moveToText(mv("b2", "c1", KindPromoteRook), text);
  EXPECT_STREQ(text, "b2c1r");
  moveToText(mv("g7", "h8", KindPromoteBishop), text);
  EXPECT_STREQ(text, "g7h8b");
  // A picker's sort key in the upper bits is not part of the move.
  moveToText(0x12340000u | mv("h8", "a1"), text);
  EXPECT_STREQ(text, "h8a1");
}

std::string logOf(const Position& p) {
  FILE* saved = logFile;
  logFile = std::tmpfile();
  logBoard(p);
  std::rewind(logFile);
  std::string text;
  char chunk[256];
  size_t n;
  while ((n = std::fread(chunk, 1, sizeof chunk, logFile)) > 0) text.append(chunk, n);
  std::fclose(logFile);
  logFile = saved;
  return text;
}

TEST(LogBoard, HeadAndBoardBlock) {
  Position root = fen("");
  EXPECT_EQ(logOf(root),
            "\n-----[ CTM = 0   INCHECK = 0   last: N/A null   rights: KQkq]-----"
            "\n r n b q k b n r\n p p p p p p p p\n - - - - - - - -\n - - - - - - - -"
            "\n - - - - - - - -\n - - - - - - - -\n P P P P P P P P\n R N B Q K B N R\n\n");
  Position child;
  makeMove(root, child, mv("e2", "e4", KindDoubleStep));
  std::string text = logOf(child);
  EXPECT_EQ(text.substr(0, text.find('\n', 1)),
            "\n-----[ CTM = 1   INCHECK = 0   last: null e2e4   rights: KQkq]-----");
  EXPECT_NE(text.find("\n - - - - P - - -\n"), std::string::npos);

  Position partial = fen("r3k2r/8/8/8/8/8/8/R3K2R b Kq -");
  std::string head = logOf(partial);
  EXPECT_EQ(head.substr(0, head.find('\n', 1)),
            "\n-----[ CTM = 1   INCHECK = 0   last: N/A null   rights: Kq]-----");
  std::string none = logOf(fen("4k3/8/8/8/8/8/8/4K3 w - -"));
  EXPECT_NE(none.find("rights: -]"), std::string::npos);
  // Without a log nothing is written and nothing fails.
  FILE* saved = logFile;
  logFile = nullptr;
  logBoard(root);
  logFile = saved;
}

}  // namespace
