#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "board/fen.h"
#include "shell/game.h"
#include "shell/position_command.h"
#include "shell/tokenise.h"

namespace {

// Runs a position command line as the dispatcher would.
void position(const char* line) {
  static char text[16384];
  static char* tokens[8193];
  std::snprintf(text, sizeof text, "%s", line);
  int count = tokenise(text, tokens);
  positionCommand(tokens, count);
}

uint64_t keyOf(const char* fen) {
  Position p;
  parseFen(p, fen);
  return p.hashKey;
}

TEST(PositionCommand, PlaysTheMovesIntoTheGameStack) {
  position("position startpos moves e2e4 e7e5");
  EXPECT_EQ(gameLength, 2);
  EXPECT_EQ(gameStack[2].hashKey, keyOf("rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq -"));
  EXPECT_EQ(gameStack[2].previous, &gameStack[1]);
  EXPECT_EQ(gameStack[1].previous, &gameStack[0]);
  position("position startpos moves E2E4 E7E5 G1F3");
  EXPECT_EQ(gameLength, 3);  // capitals are accepted
  position("position startpos moves e2e4 d7d5 e4d5 g8f6 d5d6 e7e6 d6c7 f8e7 c7b8q");
  EXPECT_EQ(gameLength, 9);
  EXPECT_EQ(gameStack[9].hashKey, keyOf("rQbqk2r/pp2bppp/4pn2/8/8/8/PPPP1PPP/RNBQKBNR b KQkq -"));
}

TEST(PositionCommand, SetsTheCheckFlagOfEveryNewRecord) {
  position("position startpos moves f2f3 e7e5 g2g4 d8h4");
  ASSERT_EQ(gameLength, 4);
  EXPECT_EQ(gameStack[4].inCheck, 1);
  EXPECT_EQ(gameStack[3].inCheck, 0);
}

TEST(PositionCommand, AnUnknownOrIllegalMoveEndsTheListAtTheLastGoodPosition) {
  position("position startpos moves e2e4 e7e5 e1e3 g1f3");
  EXPECT_EQ(gameLength, 2);
  // The king may not step into check: the list ends before it.
  position("position fen 4k3/8/8/8/8/8/3r4/4K3 w - - moves e1d1 d2d1");
  EXPECT_EQ(gameLength, 0);
  position("position startpos moves e2e4 nonsense e7e5");
  EXPECT_EQ(gameLength, 1);
}

TEST(PositionCommand, RefusesImpossibleBoardsAndKeepsThePreviousGame) {
  const char* refused[] = {
      "position fen 8/8/8/8/8/8/8/4K3 w - -",                 // no black king
      "position fen 4k3/8/8/8/8/8/8/3KK3 w - -",              // two white kings
      "position fen 4k2P/8/8/8/8/8/8/4K3 w - -",              // pawn on the last rank
      "position fen 4k3/8/8/8/8/8/8/p3K3 b - -",              // pawn on the first rank
      "position fen ppppkppp/pppppppp/8/8/8/8/8/4K3 w - -",   // seventeen black pieces
      "position fen 4k3/8/8/8/8/8/8/4R1K1 w - -",             // black in check, white to move
      "position",
  };
  const char* accepted[] = {
      "position fen 4k3/8/8/8/8/8/8/4R1K1 b - -",  // the side to move may be in check
      "position fen 4k3/8/8/8/8/8/8/4K2r w - -",
  };
  position("position startpos moves d2d4");
  const uint64_t before = gameStack[gameLength].hashKey;
  for (const char* line : refused) {
    position("position startpos moves d2d4");
    position(line);
    EXPECT_EQ(gameLength, 1) << line;
    EXPECT_EQ(gameStack[gameLength].hashKey, before) << line;
  }
  for (const char* line : accepted) {
    position("position startpos moves d2d4");
    position(line);
    EXPECT_EQ(gameLength, 0) << line;
  }
}

TEST(PositionCommand, AGameLongerThanTheStackStopsAtItsEnd) {
  std::string line = "position startpos moves";
  for (int i = 0; i < 520; ++i) line += " g1f3 g8f6 f3g1 f6g8";
  position(line.c_str());
  EXPECT_EQ(gameLength, gameStackSize - 1);
}

}  // namespace
