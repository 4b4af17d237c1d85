// What a GUI checks in the engine's answers. Every principal variation it is
// shown must be playable from the root and stop at a draw, bestmove and
// ponder must be the first two moves of the last line shown, and a fixed
// time per move is spent, not just aimed at.
#include <gtest/gtest.h>

#include <chrono>
#include <sstream>
#include <string>
#include <vector>

#include "../support/engine_session.h"
#include "../support/legal_moves.h"
#include "../support/uci_lines.h"
#include "shell/uci_report.h"

namespace {

std::vector<std::string> pvOf(const std::string& line) {
  std::vector<std::string> moves;
  size_t at = line.find(" pv ");
  if (at == std::string::npos) return moves;
  std::istringstream words(line.substr(at + 4));
  for (std::string word; words >> word;) moves.push_back(word);
  return moves;
}

// Replays a line after the game; an empty text if it is sound, else what is wrong.
std::string lineFault(const char* fen, const std::vector<std::string>& game, const std::vector<std::string>& pv) {
  std::vector<Position> records(game.size() + pv.size() + 1);
  parseFen(records[0], fen);
  std::vector<std::string> moves = game;
  moves.insert(moves.end(), pv.begin(), pv.end());
  for (size_t i = 0; i < moves.size(); ++i) {
    Move move = findLegalMove(records[i], moves[i]);
    if (!move) return "illegal move " + moves[i];
    makeMove(records[i], records[i + 1], move);
    // A position that stood before ends the game as far as the line goes.
    for (size_t k = 0; k <= i && i + 1 < moves.size(); ++k)
      if (records[k].hashKey == records[i + 1].hashKey && i >= game.size())
        return "goes on after the repetition at " + moves[i];
  }
  return "";
}

TEST(ReportedLines, EveryLineIsPlayableAndTheAnswerIsItsStart) {
  struct Case {
    const char* fen;
    const char* game;
    const char* go;
  } cases[] = {
      // Node limits that cut an iteration short after it printed a new best
      // move: the answer comes from the iteration before.
      {"rnbqkbnr/1pp1p1p1/p7/3p1pPp/2P5/N7/PP1PPP1P/R1BQKBNR w KQkq f6", "", "go nodes 50000"},
      {"r1bqkb1r/ppp1ppp1/n4n1p/3p2B1/N7/3P4/PPP1PPPP/R2QKBNR w KQkq -", "", "go nodes 50000"},
      {"rnbqkb1r/2p1pppp/5n2/pp1p4/2P4P/1Q3P2/PP1PP1P1/RNB1KBNR w KQkq -", "", "go nodes 20000"},
      // Games whose positions repeat: draws stand all over the tree.
      {"r1b2rk1/p3bppp/1qpppn2/6B1/2B1P3/2N5/PPP2PPP/R2QR1K1 w - -", "c4b3 c8a6 a2a3 c6c5 g5f4 b6c6 b3a4 c6b6 a4b3 b6c6",
       "go depth 9"},
  };
  for (const Case& c : cases) {
    std::string input = std::string("setoption name deterministic value true\nposition fen ") + c.fen +
                        (c.game[0] ? std::string(" moves ") + c.game : "") + "\n" + c.go + "\n";
    ProcessResult run = runProgram(TARVOK_ENGINE_PATH, {}, input, 60.0);
    std::istringstream gameWords(c.game);
    std::vector<std::string> game;
    for (std::string word; gameWords >> word;) game.push_back(word);
    std::vector<std::string> lines = linesStartingWith(run.standardOutput, "info depth");
    std::vector<std::string> last;
    for (const std::string& line : lines) {
      std::vector<std::string> pv = pvOf(line);
      if (pv.empty()) continue;
      EXPECT_EQ(lineFault(c.fen, game, pv), "") << c.fen << ": " << line;
      last = pv;
    }
    std::string answer = lastLineStartingWith(run.standardOutput, "bestmove");
    ASSERT_FALSE(last.empty()) << c.fen;
    EXPECT_EQ(wordAfter(answer, "bestmove"), last[0]) << c.fen << " " << c.go;
    EXPECT_EQ(wordAfter(answer, "ponder"), last.size() > 1 ? last[1] : "") << c.fen << " " << c.go;
  }
}

TEST(FixedMoveTime, IsSpentWholeAndNotOverrun) {
  EngineSession engine(TARVOK_ENGINE_PATH);
  const char* const fens[] = {
      "6k1/5ppp/8/8/8/8/8/R5K1 w - -",  // a mate in one: found at once, nothing to wait for
      // Openings where a best move soon stable used to end the search early.
      "r1q1kbnr/pbpppppp/np6/8/4N3/P4P2/1PPPP1PP/R1BQKBNR w KQkq -",
      "rnbqkb1r/pppppp1p/5np1/8/P2P4/7N/1PPNPPPP/R1BQKB1R w KQkq -",
      "rn1qkbnr/ppp1pp2/3p2p1/5b1p/8/5PP1/PPPPP2P/RNBQKBNR w KQkq -",
  };
  for (const char* fen : fens) {
    engine.send(std::string("position fen ") + fen);
    auto start = std::chrono::steady_clock::now();
    engine.send("go movetime 300");
    std::string answer = engine.waitFor("bestmove", 10.0);
    double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    EXPECT_TRUE(isLegalMove(fen, wordAfter(answer, "bestmove"))) << fen;
    // The time less the move overhead (20 ms); a busy machine can only add.
    if (fen != fens[0]) {
      EXPECT_GE(seconds, 0.27) << fen;
    }
    EXPECT_LT(seconds, 3.0) << fen;
  }
}

TEST(ScoreText, MateDistancesAndTheCentipawnBoundary) {
  // 31800 stops the deepening but still prints as centipawns.
  const std::pair<int, const char*> cases[] = {{31999, "mate 1"},   {31997, "mate 2"},   {31993, "mate 4"},
                                               {-32000, "mate -1"}, {-31998, "mate -1"}, {-31996, "mate -2"},
                                               {31800, "cp 31800"}, {-31801, "mate -100"}, {-25, "cp -25"}};
  char text[scoreTextSize];
  for (const auto& [score, expected] : cases) {
    scoreToText(score, text);
    EXPECT_STREQ(text, expected) << score;
  }
}

}  // namespace
