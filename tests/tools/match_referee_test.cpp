// The referee of tarvok-tool match: the rules that end a game, the checks of
// what an engine writes while it thinks, and the score sheet's notation.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "match_referee.h"

namespace {

constexpr const char* start = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
const std::vector<std::string> knightsOutAndBack = {"g1f3", "g8f6", "f3g1", "f6g8"};

RefereeGame gameAfter(const std::string& fen, const std::vector<std::string>& moves) {
  RefereeGame game;
  EXPECT_EQ(startGame(game, fen), "") << fen;
  for (const std::string& text : moves) {
    Move move = findMove(game.position, text, false);
    EXPECT_NE(move, 0u) << fen << " " << text;
    if (move) playMove(game, move);
  }
  return game;
}

TEST(MatchReferee, EndsGamesByTheRules) {
  struct Case {
    const char* fen;
    std::vector<std::string> moves;
    Ending ending;
  } cases[] = {
      {start, {"f2f3", "e7e5", "g2g4", "d8h4"}, Ending::Checkmate},
      {"7k/5Q2/6K1/8/8/8/8/8 b - - 0 1", {}, Ending::Stalemate},
      {start, {"g1f3", "g8f6", "f3g1", "f6g8"}, Ending::None},
      {start, {"g1f3", "g8f6", "f3g1", "f6g8", "g1f3", "g8f6", "f3g1", "f6g8"}, Ending::Repetition},
      // The first position names en passant, but the capture would expose
      // the black king to the rook: the same position comes back twice.
      {"8/8/8/8/k2pP2R/8/8/4K3 b - e3 0 1",
       {"a4a3", "e1e2", "a3a4", "e2e1", "a4a3", "e1e2", "a3a4", "e2e1"},
       Ending::Repetition},
      {"8/8/8/4k3/8/8/R7/4K3 w - - 99 80", {"a2a3"}, Ending::FiftyMoves},
      {"8/8/8/4k3/8/8/R7/4K3 w - - 98 80", {"a2a3"}, Ending::None},
      {"8/8/8/4k3/8/8/P7/4K3 w - - 99 80", {"a2a3"}, Ending::None},
      {"6k1/5ppp/8/8/8/8/8/R5K1 w - - 99 80", {"a1a8"}, Ending::Checkmate},
      {"8/8/4k3/8/8/3NK3/8/8 w - - 0 1", {}, Ending::Material},
      {"8/8/4k3/8/8/3BK3/8/5b2 w - - 0 1", {}, Ending::Material},
      {"8/8/4k3/8/8/3BK3/8/2b5 w - - 0 1", {}, Ending::None},
  };
  for (const Case& c : cases)
    EXPECT_EQ(gameEnding(gameAfter(c.fen, c.moves)), c.ending) << c.fen << " after " << c.moves.size() << " moves";
}

TEST(MatchReferee, JudgesPvsAndBestmoveAgainstTheGame) {
  using enum OutputFault;
  struct Case {
    const char* fen;
    std::vector<std::string> history;
    std::vector<std::string> lines;  // every line but the last must pass
    OutputFault fault;
  } cases[] = {
      {start, {}, {"info depth 2 score cp 10 pv e2e4 e7e5"}, None},
      {start, {}, {"info depth 1 pv e2e5"}, IllegalPvMove},
      {start, {}, {"info depth 2 pv e2e4 e2e4"}, IllegalPvMove},
      {start, {}, {"info string pv e2e5"}, None},
      {start, {"f2f3", "e7e5", "g2g4"}, {"info depth 3 score mate 1 pv d8h4 a2a3"}, PvAfterGameEnd},
      {"7k/5Q2/8/6K1/8/8/8/8 w - - 0 1", {}, {"info depth 2 pv g5g6 h8g8"}, PvAfterGameEnd},
      {start, knightsOutAndBack, {"info depth 5 pv g1f3 g8f6 f3g1 f6g8"}, None},
      {start, knightsOutAndBack, {"info depth 5 pv g1f3 g8f6 f3g1 f6g8 e2e4"}, PvAfterGameEnd},
      {"8/8/8/4k3/8/8/R7/4K3 w - - 99 80", {}, {"info depth 2 pv a2a3 e5e4"}, PvAfterGameEnd},
      {"8/8/4k3/8/8/4K3/5N2/7r w - - 0 1", {}, {"info depth 2 pv f2h1 e6e5"}, PvAfterGameEnd},
      {start, {}, {"info multipv 1 pv e2e4 e7e5", "info multipv 2 pv d2d4", "bestmove e2e4 ponder e7e5"}, None},
      {start, {}, {"info multipv 1 pv e2e4", "info multipv 2 pv d2d4", "bestmove d2d4"}, BestmoveMismatch},
      {start, {}, {"info depth 1 pv e2e4", "info depth 2 pv d2d4", "bestmove e2e4"}, BestmoveMismatch},
      {start, {}, {"bestmove e2e4"}, None},
  };
  for (const Case& c : cases) {
    RefereeGame game = gameAfter(c.fen, c.history);
    std::string primaryMove;
    for (size_t i = 0; i < c.lines.size(); ++i) {
      OutputFault expected = i + 1 == c.lines.size() ? c.fault : None;
      EXPECT_EQ(judgeEngineLine(game, c.lines[i], primaryMove).fault, expected) << c.fen << ": " << c.lines[i];
    }
  }
}

TEST(MatchReferee, ReadsMoveTextsAndWritesAlgebraicNotation) {
  struct Case {
    const char* fen;
    const char* text;
    bool chess960;
    const char* san;  // "" if the text names no legal move
  } cases[] = {
      {start, "e2e4", false, "e4"},
      {start, "g1f3", false, "Nf3"},
      {start, "e2e5", false, ""},
      {"r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1", "e1g1", false, "O-O"},
      {"r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1", "e1c1", false, "O-O-O"},
      {"r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1", "e1h1", true, "O-O"},
      {"r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1", "e1h1", false, ""},
      {"r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1", "a1a8", false, "Rxa8+"},
      {"4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1", "e5d6", false, "exd6"},
      {"4k3/P7/8/8/8/8/8/4K3 w - - 0 1", "a7a8q", false, "a8=Q+"},
      {"4k3/8/8/8/8/8/8/1N2KN2 w - - 0 1", "b1d2", false, "Nbd2"},
      {"4k3/8/8/8/8/1N6/8/1N2K3 w - - 0 1", "b3d2", false, "N3d2"},
      {"rnbqkbnr/pppp1ppp/8/4p3/6P1/5P2/PPPPP2P/RNBQKBNR b KQkq g3 0 2", "d8h4", false, "Qh4#"},
  };
  for (const Case& c : cases) {
    RefereeGame game = gameAfter(c.fen, {});
    Move move = findMove(game.position, c.text, c.chess960);
    EXPECT_EQ(move ? sanText(game.position, move) : "", c.san) << c.fen << " " << c.text;
    if (move) {
      EXPECT_EQ(moveText(game.position, move, c.chess960), c.text);
    }
  }
}

TEST(MatchReferee, StartsFromEpdLinesWithOrWithoutClock) {
  struct Case {
    const char* line;
    const char* fen;  // as sent to the engines; "" if refused
  } cases[] = {
      {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - bm e4; id \"start\";", start},
      {"8/8/8/4k3/8/8/R7/4K3 w - - 99 80", "8/8/8/4k3/8/8/R7/4K3 w - - 99 80"},
      {"8/8/8/8/8/8/8/8 w - -", ""},
      {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR x KQkq -", ""},
      {"rnbqkbnr/pppppppp/8/8 w", ""},
  };
  for (const Case& c : cases) {
    RefereeGame game;
    std::string defect = startGame(game, c.line);
    EXPECT_EQ(defect.empty() ? game.fen : "", c.fen) << c.line << ": " << defect;
  }
}

}  // namespace
