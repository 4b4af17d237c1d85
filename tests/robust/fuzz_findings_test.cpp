// Inputs that the fuzz targets of fuzz/ found to break the engine, replayed
// through the engine's own ring and dispatcher as a client's lines arrive,
// with the rules that now turn them away.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "../support/option_state.h"
#include "board/fen.h"
#include "board/keys.h"
#include "shell/game.h"

namespace {

struct FuzzFinding : OptionState {
  static const char* defectOf(const char* fen) {
    Position position;
    parseFen(position, fen);
    return positionDefect(position);
  }
};

// The en-passant field named e3 with black to move while no white pawn stood
// on e4 and a white pawn stood on e3: the capture toggled a pawn into being,
// and a white pawn later reached the first rank inside the search, where the
// passed-pawn terms read before their table. The square is now dropped.
TEST_F(FuzzFinding, EnPassantSquareWithoutItsDoubleStepIsDropped) {
  const char* board =
      "r\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff"
      "nbqkbnr/pp!p1pPPPP1PPP/RNBQKBNR";
  std::string out = serve({"position startpos moves e2e4\n",
                           "position fen " + std::string(board) + " b KQkq e3 m!oves d4e3\n", "go depth 3\n"});
  EXPECT_EQ(gameLength, 0);
  EXPECT_EQ(gameStack[0].epBit, 0u);
  Position plain;
  parseFen(plain, (std::string(board) + " b - -").c_str());
  EXPECT_EQ(gameStack[0].hashKey, plain.hashKey) << "neither castling (kings away from home) nor en passant";
  EXPECT_NE(out.find("bestmove "), std::string::npos) << out;
}

TEST_F(FuzzFinding, OnlyTheDoubleStepTheBoardShowsKeepsItsEnPassantSquare) {
  auto kept = [](const char* fen) {
    Position position;
    parseFen(position, fen);
    uint64_t key = position.hashKey;
    dropUnfitRights(position);
    EXPECT_EQ(position.hashKey == key, position.epBit != 0) << fen;
    return position.epBit != 0;
  };
  EXPECT_TRUE(kept("4k3/8/8/8/3pP3/8/8/4K3 b - e3"));
  EXPECT_TRUE(kept("4k3/8/8/3Pp3/8/8/8/4K3 w - e6"));
  EXPECT_FALSE(kept("4k3/8/8/8/3p4/8/8/4K3 b - e3")) << "no white pawn on e4";
  EXPECT_FALSE(kept("4k3/8/8/8/3pP3/4N3/8/4K3 b - e3")) << "the square the pawn crossed is taken";
  EXPECT_FALSE(kept("4k3/8/8/8/3pP3/8/4N3/K7 b - e3")) << "the square the pawn came from is taken";
  EXPECT_FALSE(kept("4k3/8/8/3pp3/8/8/8/4K3 b - e6")) << "black to move can't take on the sixth rank";
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
  const std::string input(raw, sizeof raw - 1);
  std::vector<std::string> lines;
  for (size_t from = 0; from < input.size();) {
    size_t end = input.find('\n', from);
    end = end == std::string::npos ? input.size() : end + 1;
    lines.push_back(input.substr(from, end - from));
    from = end;
  }
  std::string out = serve(lines);
  const Bitboard moved = gameStack[0].moved;
  EXPECT_TRUE((moved & whiteShortMask) && (moved & whiteLongMask) && (moved & blackShortMask) &&
              (moved & blackLongMask))
      << "no rook at home on either side";
  // The second go comes in while the first one searches.
  int answers = 0;
  for (size_t at = out.find("bestmove "); at != std::string::npos; at = out.find("bestmove ", at + 1)) ++answers;
  EXPECT_EQ(answers, 1) << out;
  EXPECT_NE(out.find("info string go refused while a search runs\n"), std::string::npos) << out;

  // The same from the position target: a white king on b5 with rights K.
  out = serve({"position fen n3k22/3p/4pp3/PK2R w KXkq d6 fen novbes\n", "go depth 3\n"});
  EXPECT_TRUE((gameStack[0].moved & whiteShortMask) && (gameStack[0].moved & blackShortMask));
  EXPECT_NE(out.find("bestmove "), std::string::npos) << out;

  auto rightsAfterDrop = [](const char* fen) {
    Position position;
    parseFen(position, fen);
    dropUnfitRights(position);
    return position.hashKey;
  };
  auto rights = [](const char* fen) {
    Position position;
    parseFen(position, fen);
    return position.hashKey;
  };
  EXPECT_EQ(rightsAfterDrop("4k3/8/8/8/8/8/8/4K3 w KQkq -"), rights("4k3/8/8/8/8/8/8/4K3 w - -"));
  EXPECT_EQ(rightsAfterDrop("r3k2r/8/8/8/8/8/8/4K2R w KQkq -"), rights("r3k2r/8/8/8/8/8/8/4K2R w Kkq -"));
  EXPECT_EQ(rightsAfterDrop("r3k2r/8/8/8/8/8/8/R3K2R w KQkq -"), rights("r3k2r/8/8/8/8/8/8/R3K2R w KQkq -"));
}

// Eleven white pawns: the piece terms index their tables by the pawn count,
// and those tables end at eight.
TEST_F(FuzzFinding, MorePawnsOrPromotedPiecesThanAGameAllowsAreRefused) {
  std::string out = serve({"position startpos\n", "position fen r3k2N2/PPPQ1PP/PPPK2Pc1\n", "go depth 3\n"});
  EXPECT_NE(out.find("info string position refused: a side has more than 8 pawns\n"), std::string::npos) << out;
  EXPECT_EQ(gameLength, 0);
  EXPECT_NE(out.find("bestmove "), std::string::npos) << out;

  EXPECT_STREQ(defectOf("4k3/8/8/8/8/8/PPPPPPPP/3QKQQ1 w - -"),
               "a side has more pieces than promotions could give");
  EXPECT_STREQ(defectOf("4k3/8/8/8/8/8/1PPPPPPP/NNNNKQQ1 w - -"),
               "a side has more pieces than promotions could give");
  // Two promotions with two pawns gone, and all eight pawns become queens.
  EXPECT_EQ(defectOf("4k3/8/8/8/8/8/2PPPPPP/1NNNKQQ1 w - -"), nullptr);
  EXPECT_EQ(defectOf("kb6/pp6/8/8/8/8/QQ6/QQQQKQQQ w - -"), nullptr);
}

}  // namespace
