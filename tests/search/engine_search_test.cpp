// The search as a client sees it: the engine binary driven through pipes.
#include <gtest/gtest.h>

#include <chrono>
#include <regex>
#include <string>

#include "../shell/engine_process.h"
#include "../shell/engine_session.h"
#include "../support/legal_moves.h"
#include "../support/uci_lines.h"

namespace {

struct MateCase {
  const char* fen;
  const char* firstMove;
  int mateIn;
};

TEST(EngineSearch, FindsMatesAndReportsTheirDistance) {
  const MateCase cases[] = {
      {"6k1/5ppp/8/8/8/8/8/R5K1 w - -", "a1a8", 1},          // back-rank mate
      {"7k/8/5K2/8/8/8/8/R7 w - -", "", 2},                  // rook ending
      {"r6k/6pp/8/6N1/8/1Q6/8/6K1 w - -", "g5f7", 4},  // smothered mate after a queen sacrifice
  };
  for (const MateCase& test : cases) {
    ProcessResult run =
        runProgram(TARVOK_ENGINE_PATH, {}, std::string("position fen ") + test.fen + "\ngo depth 8\n", 60.0);
    ASSERT_FALSE(run.timedOut) << test.fen;
    std::string last = lastLineStartingWith(run.standardOutput, "info depth");
    EXPECT_NE(last.find("score mate " + std::to_string(test.mateIn) + " "), std::string::npos)
        << test.fen << "\n" << run.standardOutput;
    std::string best = wordAfter(lastLineStartingWith(run.standardOutput, "bestmove "), "bestmove");
    if (test.firstMove[0]) {
      EXPECT_EQ(best, test.firstMove) << test.fen;
    }
    EXPECT_TRUE(isLegalMove(test.fen, best)) << test.fen;
  }
}

// The final iteration line without its time and speed, which vary.
std::string resultOf(const std::string& output) {
  std::string line = lastLineStartingWith(output, "info depth 8 time");
  return wordAfter(line, "nodes") + " " + wordAfter(line, "score") + " " + line.substr(line.find(" pv "));
}

TEST(EngineSearch, DeterministicSearchesRepeatAcrossProcessesAndAfterOtherSearches) {
  const std::string search = "setoption name deterministic value true\n"
                             "position fen r1bqkbnr/1pp2ppp/p1p5/4p3/4P3/5N2/PPPP1PPP/RNBQK2R w KQkq -\n"
                             "go depth 8\n";
  ProcessResult first = runProgram(TARVOK_ENGINE_PATH, {}, search, 60.0);
  ProcessResult fresh = runProgram(TARVOK_ENGINE_PATH, {}, search, 60.0);
  ASSERT_NE(lastLineStartingWith(first.standardOutput, "info depth 8 time"), "");
  EXPECT_EQ(resultOf(first.standardOutput), resultOf(fresh.standardOutput));

  EngineSession engine(TARVOK_ENGINE_PATH);
  engine.send("setoption name deterministic value true");
  engine.send("position startpos moves d2d4 g8f6");
  engine.send("go depth 7");
  ASSERT_NE(engine.waitFor("bestmove", 30.0), "");
  engine.send("position fen r1bqkbnr/1pp2ppp/p1p5/4p3/4P3/5N2/PPPP1PPP/RNBQK2R w KQkq -");
  engine.send("go depth 8");
  ASSERT_NE(engine.waitFor("bestmove", 30.0), "");
  EXPECT_EQ(resultOf(engine.transcript), resultOf(first.standardOutput));
}

TEST(EngineSearch, DeterministicSearchAfterAnOptionChangeMatchesAFreshProcess) {
  const std::string deterministic = "setoption name deterministic value true\n";
  const std::string fen = "position fen r1bq1rk1/pp2bppp/2n1pn2/2pp4/2P5/1P3NP1/PB1PPPBP/RN1Q1RK1 w - -\n";
  const std::string setting = "setoption name King Safety Aggressiveness value 0\n";
  auto answer = [](const std::string& output) {
    return wordAfter(lastLineStartingWith(output, "info depth 6 "), "nodes") + " " +
           wordAfter(lastLineStartingWith(output, "bestmove"), "bestmove");
  };
  ProcessResult fresh = runProgram(TARVOK_ENGINE_PATH, {}, deterministic + setting + fen + "go depth 6\n");
  EXPECT_EQ(answer(fresh.standardOutput), "11154 d2d3");

  // The change comes after the first search has answered (sent during it,
  // it would take effect inside that search). Evaluations cached under the
  // former setting must not survive it.
  EngineSession engine(TARVOK_ENGINE_PATH);
  engine.send(deterministic + fen + "go depth 6");
  ASSERT_NE(engine.waitFor("bestmove", 30.0), "");
  engine.send(setting + "go depth 6");
  ASSERT_NE(engine.waitFor("bestmove", 30.0), "");
  EXPECT_EQ(answer(engine.transcript), answer(fresh.standardOutput));
}

TEST(EngineSearch, AnswersReadyStopsAtOnceAndQuitsInsideASearch) {
  EngineSession engine(TARVOK_ENGINE_PATH);
  engine.send("position startpos");
  engine.send("go infinite");
  ASSERT_NE(engine.waitFor("info depth 3", 20.0), "");
  engine.send("isready");
  EXPECT_EQ(engine.waitFor("readyok", 5.0), "readyok");
  EXPECT_EQ(engine.transcript.find("bestmove"), std::string::npos);
  auto sent = std::chrono::steady_clock::now();
  engine.send("stop");
  std::string best = engine.waitFor("bestmove", 5.0);
  double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - sent).count();
  EXPECT_TRUE(isLegalMove(startPositionFen, wordAfter(best, "bestmove"))) << best;
  EXPECT_LT(seconds, 0.5);

  engine.send("go infinite");
  ASSERT_NE(engine.waitFor("info depth 3", 20.0), "");
  size_t before = engine.transcript.size();
  engine.send("quit");
  EXPECT_EQ(engine.waitForExit(5.0), 0);
  EXPECT_EQ(engine.transcript.find("bestmove", before), std::string::npos);
}

}  // namespace
