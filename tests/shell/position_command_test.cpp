#include "shell/position_command.h"

#include <gtest/gtest.h>

#include <string>

#include "../support/board.h"
#include "../support/option_state.h"
#include "shell/game.h"

namespace {

void position(const std::string& line) {
  Words words(line);
  positionCommand(words.tokens.data(), words.count);
}

TEST(PositionCommand, PlaysTheMovesUpToTheFirstThatIsntLegalAndRefusesImpossibleBoards) {
  // The length of the game after the line and the FEN of its last record;
  // a null FEN: the previous game stays.
  struct Case { const char* line; int length; const char* fen; };
  const char* const afterD4 = "rnbqkbnr/pppppppp/8/8/3P4/8/PPP1PPPP/RNBQKBNR b KQkq -";
  const Case cases[] = {
      {"position startpos moves e2e4 e7e5", 2, "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq -"},
      {"position startpos moves E2E4 E7E5 G1F3", 3, "rnbqkbnr/pppp1ppp/8/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R b KQkq -"},
      {"position startpos moves e2e4 d7d5 e4d5 g8f6 d5d6 e7e6 d6c7 f8e7 c7b8q", 9,
       "rQbqk2r/pp2bppp/4pn2/8/8/8/PPPP1PPP/RNBQKBNR b KQkq -"},
      {"position startpos moves e2e4 e7e5 e1e3 g1f3", 2, "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq -"},
      {"position startpos moves e2e4 nonsense e7e5", 1, "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq -"},
      // The king may not step into check: the list ends before it.
      {"position fen 4k3/8/8/8/8/8/3r4/4K3 w - - moves e1d1 d2d1", 0, "4k3/8/8/8/8/8/3r4/4K3 w - -"},
      {"position fen 4k3/8/8/8/8/8/8/4R1K1 b - -", 0, "4k3/8/8/8/8/8/8/4R1K1 b - -"},  // the mover may be in check
      {"position fen 8/8/8/8/8/8/8/4K3 w - -", 1, nullptr},                // no black king
      {"position fen 4k3/8/8/8/8/8/8/3KK3 w - -", 1, nullptr},             // two white kings
      {"position fen 4k2P/8/8/8/8/8/8/4K3 w - -", 1, nullptr},             // a pawn on the last rank
      {"position fen 4k3/8/8/8/8/8/8/p3K3 b - -", 1, nullptr},             // a pawn on the first rank
      {"position fen ppppkppp/pppppppp/8/8/8/8/8/4K3 w - -", 1, nullptr},  // seventeen black pieces
      {"position fen 4k3/8/8/8/8/8/8/4R1K1 w - -", 1, nullptr},            // the side not to move in check
      {"position", 1, nullptr},
  };
  for (const Case& c : cases) {
    position("position startpos moves d2d4");
    position(c.line);
    EXPECT_EQ(game.length, c.length) << c.line;
    EXPECT_EQ(game.stack[game.length].hashKey, testboard::parsed(c.fen ? c.fen : afterD4).hashKey) << c.line;
    for (int i = 1; i <= game.length; ++i) EXPECT_EQ(game.stack[i].previous, &game.stack[i - 1]) << c.line;
  }
  position("position startpos moves f2f3 e7e5 g2g4 d8h4");
  EXPECT_EQ(game.stack[4].inCheck, 1);
  EXPECT_EQ(game.stack[3].inCheck, 0);
  std::string longGame = "position startpos moves";
  for (int i = 0; i < 520; ++i) longGame += " g1f3 g8f6 f3g1 f6g8";
  position(longGame);
  EXPECT_EQ(game.length, gameStackSize - 1) << "a game longer than the stack stops at its end";
}

}  // namespace
