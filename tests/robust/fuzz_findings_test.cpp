// Inputs that the fuzz targets of fuzz/ found to break the engine, replayed
// through the engine's own ring and dispatcher as a client's lines arrive,
// with the rules that now turn them away.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "../support/board.h"
#include "../support/option_state.h"
#include "../support/uci_lines.h"
#include "board/keys.h"
#include "shell/game.h"

namespace {

using testboard::parsed;
using FuzzFinding = OptionState;

// The en-passant field named e3 with black to move while no white pawn stood
// on e4 and a white pawn stood on e3: the capture toggled a pawn into being,
// and a white pawn later reached the first rank inside the search, where the
// passed-pawn terms read before their table. The square is now dropped.
TEST_F(FuzzFinding, EnPassantSquareWithoutItsDoubleStepIsDropped) {
  const std::string board =
      "r\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff"
      "nbqkbnr/pp!p1pPPPP1PPP/RNBQKBNR";
  std::string out = serve({"position startpos moves e2e4\n", "position fen " + board + " b KQkq e3 m!oves d4e3\n",
                           "go depth 3\n"});
  EXPECT_EQ(game.length, 0);
  EXPECT_EQ(game.stack[0].hashKey, parsed((board + " b - -").c_str()).hashKey)
      << "neither castling (kings away from home) nor en passant";
  EXPECT_EQ(countOf(out, "bestmove "), 1) << out;
}

// Castling rights with the white king on e3 and no rook at home: castling
// moved a king from e1 that wasn't there, the board got a second white king,
// and the evaluation indexed its table by a square off the board.
TEST_F(FuzzFinding, CastlingRightsWithoutKingAndRookAtHomeAreDropped) {
  // The input holds a zero byte, so its length comes from the array.
  static const char raw[] =
      "position fen i3kmime/8/8/8/8/\xcf\xd0\xad\xccK2R w KQkq - 0 \xff\xff\xff\xff\xffon name Book File "
      "v\x04\x00ue x.bin\ngo \xff\xff\xff\xff\xff\xff\xff\xff\xff\x32 oem1 svgoeg1\xff\xff\xff\xff\xff\xff\xff"
      "\xff\ngo position f wtimm 100en0 bti r";
  std::istringstream input(std::string(raw, sizeof raw - 1));
  std::vector<std::string> lines;
  for (std::string line; std::getline(input, line);) lines.push_back(line + "\n");
  std::string out = serve(lines);
  for (Bitboard rights : {whiteShortMask, whiteLongMask, blackShortMask, blackLongMask})
    EXPECT_NE(game.stack[0].moved & rights, 0u) << "no rook at home on either side";
  // The second go comes in while the first one searches, and waits for its answer.
  EXPECT_EQ(countOf(out, "bestmove "), 2) << out;
  // The same from the position target: a white king on b5 with rights K.
  out = serve({"position fen n3k22/3p/4pp3/PK2R w KXkq d6 fen novbes\n", "go depth 3\n"});
  EXPECT_TRUE((game.stack[0].moved & whiteShortMask) && (game.stack[0].moved & blackShortMask));
  EXPECT_EQ(countOf(out, "bestmove "), 1) << out;
}

TEST(FuzzRules, RightsAndEnPassantSquaresTheBoardDoesNotShowAreDropped) {
  const std::pair<const char*, const char*> cases[] = {
      {"4k3/8/8/8/3pP3/8/8/4K3 b - e3", "4k3/8/8/8/3pP3/8/8/4K3 b - e3"},
      {"4k3/8/8/3Pp3/8/8/8/4K3 w - e6", "4k3/8/8/3Pp3/8/8/8/4K3 w - e6"},
      {"4k3/8/8/8/3p4/8/8/4K3 b - e3", "4k3/8/8/8/3p4/8/8/4K3 b - -"},          // no white pawn on e4
      {"4k3/8/8/8/3pP3/4N3/8/4K3 b - e3", "4k3/8/8/8/3pP3/4N3/8/4K3 b - -"},    // the square crossed is taken
      {"4k3/8/8/8/3pP3/8/4N3/K7 b - e3", "4k3/8/8/8/3pP3/8/4N3/K7 b - -"},      // the square left is taken
      {"4k3/8/8/3pp3/8/8/8/4K3 b - e6", "4k3/8/8/3pp3/8/8/8/4K3 b - -"},        // black can't take on the sixth
      {"4k3/8/8/8/8/8/8/4K3 w KQkq -", "4k3/8/8/8/8/8/8/4K3 w - -"},
      {"r3k2r/8/8/8/8/8/8/4K2R w KQkq -", "r3k2r/8/8/8/8/8/8/4K2R w Kkq -"},
      {"r3k2r/8/8/8/8/8/8/R3K2R w KQkq -", "r3k2r/8/8/8/8/8/8/R3K2R w KQkq -"},
  };
  for (const auto& [fen, after] : cases) {
    Position position = parsed(fen);
    dropUnfitRights(position);
    EXPECT_EQ(position.hashKey, parsed(after).hashKey) << fen;
    EXPECT_EQ(position.epBit, parsed(after).epBit) << fen;
  }
}

// Eleven white pawns: the piece terms index their tables by the pawn count,
// and those tables end at eight.
TEST_F(FuzzFinding, MorePawnsOrPromotedPiecesThanAGameAllowsAreRefused) {
  std::string out = serve({"position startpos\n", "position fen r3k2N2/PPPQ1PP/PPPK2Pc1\n", "go depth 3\n"});
  EXPECT_NE(out.find("info string position refused: a side has more than 8 pawns\n"), std::string::npos) << out;
  EXPECT_EQ(game.length, 0);
  EXPECT_EQ(countOf(out, "bestmove "), 1) << out;
  const std::pair<const char*, const char*> cases[] = {
      {"4k3/8/8/8/8/8/PPPPPPPP/3QKQQ1 w - -", "a side has more pieces than promotions could give"},
      {"4k3/8/8/8/8/8/1PPPPPPP/NNNNKQQ1 w - -", "a side has more pieces than promotions could give"},
      // Two promotions with two pawns gone, and all eight pawns become queens.
      {"4k3/8/8/8/8/8/2PPPPPP/1NNNKQQ1 w - -", ""},
      {"kb6/pp6/8/8/8/8/QQ6/QQQQKQQQ w - -", ""},
  };
  for (const auto& [fen, defect] : cases) {
    const char* found = positionDefect(parsed(fen));
    EXPECT_STREQ(found ? found : "", defect) << fen;
  }
}

}  // namespace
