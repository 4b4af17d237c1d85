// The board the log shows at the root of every search: who moves, whether in
// check, the last two moves, the castling rights in FEN's order, then the
// ranks from the eighth down, as a reader of a -log file sees them.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "../support/board.h"
#include "base/log.h"
#include "board/fen.h"
#include "board/make_move.h"

namespace {

using testboard::mv;
using testboard::parsed;

// What logBoard writes for position, read back from a scratch log.
std::string loggedBoard(const Position& position) {
  engineLog.file = std::tmpfile();
  logBoard(position);
  std::rewind(engineLog.file);
  std::string text;
  for (int c; (c = std::fgetc(engineLog.file)) != EOF;) text += static_cast<char>(c);
  std::fclose(engineLog.file);
  engineLog.file = nullptr;
  return text;
}

std::string headerOf(const std::string& board) { return board.substr(0, board.find(']') + 1); }

TEST(LogBoard, TheHeaderNamesTheMoverTheCheckTheLastMovesAndTheRightsInFenOrder) {
  struct Case { const char* fen; const char* header; };
  const Case cases[] = {
      {"r3k2r/8/8/8/8/8/8/R3K2R w KQkq -", "\n-----[ CTM = 0   INCHECK = 0   last: N/A null   rights: KQkq]"},
      {"r3k2r/8/8/8/8/8/8/R3K2R b Kq -", "\n-----[ CTM = 1   INCHECK = 0   last: N/A null   rights: Kq]"},
      {"r3k2r/8/8/8/8/8/8/R3K2R w Qk -", "\n-----[ CTM = 0   INCHECK = 0   last: N/A null   rights: Qk]"},
      {"r3k2r/8/8/8/8/8/8/R3K2R b q -", "\n-----[ CTM = 1   INCHECK = 0   last: N/A null   rights: q]"},
      {"4k3/8/8/8/8/8/8/4K2R b - -", "\n-----[ CTM = 1   INCHECK = 0   last: N/A null   rights: -]"},
      {"4k3/8/8/8/8/8/8/4R1K1 b - -", "\n-----[ CTM = 1   INCHECK = 1   last: N/A null   rights: -]"},
  };
  for (const Case& c : cases) EXPECT_EQ(headerOf(loggedBoard(parsed(c.fen))), c.header) << c.fen;
}

TEST(LogBoard, AfterTwoMovesTheRanksShowTheBoardFromTheEighthDown) {
  Position start = parsed("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -"), afterE4, afterE5;
  makeMove(start, afterE4, mv("e2", "e4"));
  makeMove(afterE4, afterE5, mv("e7", "e5"));
  EXPECT_EQ(loggedBoard(afterE5),
            "\n-----[ CTM = 2   INCHECK = 0   last: e2e4 e7e5   rights: KQkq]-----"
            "\n r n b q k b n r"
            "\n p p p p - p p p"
            "\n - - - - - - - -"
            "\n - - - - p - - -"
            "\n - - - - P - - -"
            "\n - - - - - - - -"
            "\n P P P P - P P P"
            "\n R N B Q K B N R"
            "\n\n");
}

}  // namespace
