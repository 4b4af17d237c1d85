// Inputs that the fuzz targets of fuzz/ found to break the engine, replayed
// through the engine's own ring and dispatcher as a client's lines arrive,
// with the rules that now turn them away.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "../shell/option_state.h"
#include "board/fen.h"
#include "shell/game.h"
#include "shell/input_ring.h"
#include "shell/uci.h"

namespace {

struct FuzzFinding : OptionState {
  void SetUp() override {
    OptionState::SetUp();
    while (takeInputLine(inputRing)) {
    }
  }
  // Every line served in order; what the engine printed meanwhile.
  std::string serve(const std::vector<std::string>& lines) {
    for (const std::string& line : lines) storeInputLine(inputRing, line.c_str());
    testing::internal::CaptureStdout();
    while (inputRing.readIndex != inputRing.writeIndex) uciPoll();
    return testing::internal::GetCapturedStdout();
  }
  static const char* defectOf(const char* fen) {
    Position position;
    parseFen(position, fen);
    return positionDefect(position);
  }
};

const std::string startPosition = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -";

// The en-passant field named e3 with black to move while no white pawn stood
// on e4 and a white pawn stood on e3: the capture toggled a pawn into being,
// and a white pawn later reached the first rank inside the search, where the
// passed-pawn terms read before their table.
TEST_F(FuzzFinding, EnPassantSquareWithoutItsDoubleStepIsRefused) {
  std::string out = serve({"position startpos moves e2e4\n",
                           "position fen r\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff"
                           "\xff\xff\xffnbqkbnr/pp!p1pPPPP1PPP/RNBQKBNR b KQkq e3 m!oves d4e3\n",
                           "go depth 3\n"});
  EXPECT_NE(out.find("info string position refused: the en-passant square follows no double step\n"),
            std::string::npos)
      << out;
  EXPECT_EQ(gameLength, 1) << "the game before the refused command stays";
  EXPECT_NE(out.find("bestmove "), std::string::npos) << out;

  EXPECT_STREQ(defectOf("4k3/8/8/8/3p4/8/8/4K3 b - e3"), "the en-passant square follows no double step")
      << "no white pawn on e4";
  EXPECT_STREQ(defectOf("4k3/8/8/8/3pP3/4N3/8/4K3 b - e3"), "the en-passant square follows no double step")
      << "the square the pawn crossed is taken";
  EXPECT_STREQ(defectOf("4k3/8/8/8/3pP3/8/4N3/K7 b - e3"), "the en-passant square follows no double step")
      << "the square the pawn came from is taken";
  EXPECT_STREQ(defectOf("4k3/8/8/3pp3/8/8/8/4K3 b - e6"), "the en-passant square follows no double step")
      << "black to move can't take on the sixth rank";
  EXPECT_EQ(defectOf("4k3/8/8/8/3pP3/8/8/4K3 b - e3"), nullptr);
  EXPECT_EQ(defectOf("4k3/8/8/3Pp3/8/8/8/4K3 w - e6"), nullptr);
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
