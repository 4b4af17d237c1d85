#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "../support/board.h"
#include "../support/legal_moves.h"
#include "board/fen.h"
#include "board/make_move.h"
#include "search/conventions.h"
#include "search/playable_line.h"

namespace {

std::vector<std::string> words(const std::string& text) {
  std::istringstream in(text);
  std::vector<std::string> out;
  for (std::string word; in >> word;) out.push_back(word);
  return out;
}

// A game set up from a FEN and played on: its records link back as the
// engine's own game does, so repetitions reach into it.
struct Game {
  std::vector<Position> records;
  Game(const char* fen, const std::vector<std::string>& moves) : records(moves.size() + 1) {
    parseFen(records[0], fen);
    for (size_t i = 0; i < moves.size(); ++i) {
      Move move = findLegalMove(records[i], moves[i]);
      EXPECT_NE(move, 0u) << moves[i];
      makeMove(records[i], records[i + 1], move);
    }
  }
  const Position& current() const { return records.back(); }
};

// A line as a search could hand it up: legal moves keep their kind, and a
// text that isn't legal where it stands becomes a plain move word, the way a
// word left over from an older line reads.
std::vector<Move> lineOf(const Position& root, const std::vector<std::string>& texts) {
  std::vector<Move> line;
  std::vector<Position> records(texts.size() + 1);
  records[0] = root;
  bool legalSoFar = true;
  for (size_t i = 0; i < texts.size(); ++i) {
    Move move = legalSoFar ? findLegalMove(records[i], texts[i]) : 0;
    if (move) {
      makeMove(records[i], records[i + 1], move);
    } else {
      legalSoFar = false;
      move = testboard::mv(texts[i].substr(0, 2).c_str(), texts[i].substr(2, 2).c_str());
    }
    line.push_back(move);
  }
  line.push_back(0);
  return line;
}

std::string textOf(const Position& root, const Move* line) {
  std::string text;
  char move[8];
  for (int i = 0; line[i]; ++i) {
    moveToText(root, line[i], move);
    if (!text.empty()) text += ' ';
    text += move;
  }
  return text;
}

TEST(PlayableLine, EndsBeforeAnImpossibleMoveAndAfterTheMoveThatDraws) {
  const char* start = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -";
  const char* queens = "r1b2rk1/p3bppp/1qpppn2/6B1/2B1P3/2N5/PPP2PPP/R2QR1K1 w - -";
  struct Case {
    const char* fen;
    const char* game;  // played before the root
    const char* line;
    const char* shown;
  } cases[] = {
      // A line that shuffles back into a position it passed: the draw ends
      // it, and what an older line left behind (a pawn taking on an empty
      // square) is never shown.
      {queens, "", "c4b3 c8a6 a2a3 c6c5 g5f4 b6c6 b3a4 c6b6 a4b3 d6e5",
       "c4b3 c8a6 a2a3 c6c5 g5f4 b6c6 b3a4 c6b6 a4b3"},
      {start, "", "e2e4 e7e5 d2e3 g8f6", "e2e4 e7e5"},         // a pawn taking nothing
      {start, "", "e2e4 e2e4", "e2e4"},                        // the wrong side's move
      {start, "", "e1e2 e7e5", ""},                            // the first move blocked
      {start, "", "g1f3 g8f6 f3g1 f6g8 b1c3", "g1f3 g8f6 f3g1 f6g8"},  // the set-up position again
      {start, "g1f3 g8f6", "f3g1 f6g8 g1f3", "f3g1 f6g8"},    // a position of the game again
      {start, "g1f3", "g8f6 f3g1 b8c6 g1f3 f6g8", "g8f6 f3g1 b8c6 g1f3 f6g8"},  // no repetition yet
      {"4k3/8/8/8/8/8/8/4K2R w K -", "", "e1g1 e8d7 f1f7 d7e6", "e1g1 e8d7 f1f7 d7e6"},  // castling kept
      {"6k1/5ppp/8/8/8/8/8/R5K1 w - -", "", "a1a8 g8h8", "a1a8"},  // nothing follows a mate
      // Taking the last piece that could mate ends the game; bishops all on
      // one colour can't mate either, one on each colour can.
      {"8/8/8/4k3/8/3r4/4K3/8 w - -", "", "e2d3 e5e6 d3e2", "e2d3"},
      {"8/8/8/2b1k3/3P4/8/4K3/4B3 b - -", "", "c5d4 e2f3 d4c5", "c5d4"},
      {"4k3/8/8/8/8/8/8/2b1KB2 w - -", "", "f1e2 c1d2 e1d2 e8d7", "f1e2 c1d2 e1d2"},
  };
  for (const Case& c : cases) {
    Game game(c.fen, words(c.game));
    std::vector<Move> line = lineOf(game.current(), words(c.line));
    Move shown[lineLength];
    int length = playableLine(game.current(), line.data(), shown);
    EXPECT_EQ(textOf(game.current(), shown), c.shown) << c.fen << " / " << c.line;
    EXPECT_EQ(length, static_cast<int>(words(c.shown).size())) << c.line;
  }
}

// 100 moves without a capture or a pawn move end the game: a line that gets
// there stops after the hundredth.
TEST(PlayableLine, StopsAtTheFiftyMoveLimit) {
  // The white king snakes over the board, a square it never stood on each
  // move, while the black king steps between h8 and g8 beside two white
  // knights: no position comes twice, so only the count of moves can end the
  // line.
  std::vector<std::string> squares;
  for (int rank = 0; rank < 6; ++rank)
    for (int i = 0; i < 8; ++i) squares.push_back(std::string(1, "abcdefgh"[rank % 2 ? 7 - i : i]) + char('1' + rank));
  for (const char* s : {"a7", "b7", "c7", "d7", "e7"}) squares.push_back(s);
  std::vector<std::string> moves;
  for (size_t i = 1; i < squares.size(); ++i) {
    moves.push_back(squares[i - 1] + squares[i]);
    moves.push_back(i % 2 ? "h8g8" : "g8h8");
  }
  ASSERT_EQ(moves.size(), 104u);
  Game game("7k/6NN/8/8/8/8/8/K7 w - -", std::vector<std::string>(moves.begin(), moves.begin() + 90));
  std::vector<Move> line = lineOf(game.current(), std::vector<std::string>(moves.begin() + 90, moves.end()));
  Move shown[lineLength];
  EXPECT_EQ(playableLine(game.current(), line.data(), shown), 10);
}

}  // namespace
