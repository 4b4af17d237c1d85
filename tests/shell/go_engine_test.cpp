// The go command and the options as a client meets them: the engine binary
// driven through pipes.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

#include "../support/legal_moves.h"
#include "../support/uci_lines.h"
#include "engine_process.h"
#include "engine_session.h"

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) { return std::chrono::duration<double>(Clock::now() - start).count(); }

ProcessResult engine(const std::string& input, std::vector<std::string> arguments = {}, double limit = 30.0) {
  return runProgram(TARVOK_ENGINE_PATH, arguments, input, limit);
}

std::vector<std::string> bestMoves(const std::string& output) {
  std::vector<std::string> moves;
  for (const std::string& line : linesStartingWith(output, "bestmove ")) moves.push_back(wordAfter(line, "bestmove"));
  return moves;
}

bool hasLine(const std::string& output, const std::string& prefix) {
  return !linesStartingWith(output, prefix).empty();
}

struct TemporaryLog {
  char name[40] = "/tmp/tarvok-go-log-XXXXXX";
  TemporaryLog() { close(mkstemp(name)); }
  ~TemporaryLog() { std::remove(name); }
  std::string text() const {
    std::ifstream file(name);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
  }
};

// Sends lines (a go and what goes with it) and waits for the bestmove that
// answers them: a go that arrives while a search runs is refused.
std::string search(EngineSession& engine, const std::string& lines, double seconds = 10.0) {
  engine.send(lines);
  return wordAfter(engine.waitFor("bestmove", seconds), "bestmove");
}

TEST(EngineGo, ClockBudgetsOfTheWorkedExamplesShowInTheLog) {
  TemporaryLog log;
  EngineSession engine(TARVOK_ENGINE_PATH, {"-log", log.name});
  auto start = Clock::now();
  // The long goals end at the stop, after their first iteration.
  const char* const fromStart[] = {
      "go wtime 60000 btime 60000 winc 1000 binc 1000\nstop",
      "go wtime 2000 btime 9000 winc 1000 binc 0\nstop",
      "go wtime 300000 btime 1\nstop",
      "go wtime 60000 btime 1000 movestogo 30 winc 5000\nstop",
  };
  for (const char* lines : fromStart) EXPECT_TRUE(isLegalMove(startPositionFen, search(engine, lines))) << lines;
  engine.send("position startpos moves e2e4");
  const char* const afterE4[] = {
      "go wtime 1 btime 10000 movestogo 1 binc 5000\nstop",
      "go depth 3 wtime 1000 btime 1000",
      "go wtime -3000 btime -3000 winc -10 binc -10",
      "go depth",
      "go movetime",
  };
  for (const char* lines : afterE4) EXPECT_TRUE(isLegalMove(startPositionFen, search(engine, lines), {"e2e4"})) << lines;
  EXPECT_LT(secondsSince(start), 5.0) << "each search ends at the stop or by its own tiny goal";
  EXPECT_EQ(engine.transcript.find("refused"), std::string::npos);
  EXPECT_EQ(linesStartingWith(log.text(), "We have "),
            (std::vector<std::string>{
                "We have     60.0 seconds for the game.       2.8 goal set",
                "We have      2.0 seconds for the game.       0.3 goal set",
                "We have    300.0 seconds for the game.       6.0 goal set",
                "We have     60.0 seconds to make 30 moves =      1.9 goal",
                "We have     10.0 seconds to make 1 moves =      3.3 goal",
                "We have      0.0 seconds for the game.       0.0 goal set",
                "We have      0.0 seconds for the game.       0.0 goal set",
                "We have      0.0 seconds for the game.       0.0 goal set",
            }));
}

TEST(EngineGo, DepthWithAClockIsAPureDepthSearch) {
  // With 10 ms on the clock a timed search would end after its first iteration.
  ProcessResult run = engine("go depth 5 wtime 10 btime 10\n");
  EXPECT_TRUE(hasLine(run.standardOutput, "info depth 5 time ")) << run.standardOutput;
  EXPECT_FALSE(hasLine(run.standardOutput, "info depth 6"));
  EXPECT_TRUE(isLegalMove(startPositionFen, wordAfter(lastLineStartingWith(run.standardOutput, "bestmove"), "bestmove")));

  // Only a depth above 0 chooses a depth search: depth 0 is timed, and with
  // half a minute left it deepens past its first iterations.
  run = engine("go depth 0 wtime 30000 btime 30000\n");
  EXPECT_TRUE(hasLine(run.standardOutput, "info depth 3 time ")) << run.standardOutput;
  EXPECT_EQ(bestMoves(run.standardOutput).size(), 1u);
}

TEST(EngineGo, InfiniteWinsOverDepthAndRunsUntilStop) {
  EngineSession engine(TARVOK_ENGINE_PATH);
  engine.send("go infinite depth 3");
  EXPECT_NE(engine.waitFor("info depth 6", 20.0), "");
  EXPECT_EQ(engine.transcript.find("bestmove"), std::string::npos);
  engine.send("stop");
  std::string best = engine.waitFor("bestmove", 5.0);
  EXPECT_TRUE(isLegalMove(startPositionFen, wordAfter(best, "bestmove"))) << best;
}

TEST(EngineGo, MultiPvReportsOneLineFirstThenThreeLinesAnIteration) {
  ProcessResult run = engine("setoption name MultiPV value 3\ngo depth 6\n");
  ASSERT_FALSE(run.timedOut);
  const std::regex row(R"(info multipv (\d+) score cp (-?\d+) depth (\d+) time \d+ nodes \d+ nps \d+ pv ((?:[a-h][1-8][a-h][1-8][qrbn]? )+))");
  std::map<int, std::vector<int>> numbersByDepth;
  std::map<int, std::vector<int>> scoresByDepth;
  std::map<int, std::vector<std::string>> firstMovesByDepth;
  for (const std::string& line : linesStartingWith(run.standardOutput, "info multipv")) {
    std::smatch match;
    ASSERT_TRUE(std::regex_match(line, match, row)) << line;
    int depth = std::stoi(match[3]);
    numbersByDepth[depth].push_back(std::stoi(match[1]));
    scoresByDepth[depth].push_back(std::stoi(match[2]));
    firstMovesByDepth[depth].push_back(match[4].str().substr(0, match[4].str().find(' ')));
  }
  ASSERT_EQ(numbersByDepth.size(), 6u) << run.standardOutput;
  EXPECT_EQ(numbersByDepth[1], std::vector<int>{1});
  for (int depth = 2; depth <= 6; ++depth) {
    EXPECT_EQ(numbersByDepth[depth], (std::vector<int>{1, 2, 3})) << depth;
    const std::vector<int>& scores = scoresByDepth[depth];
    EXPECT_TRUE(scores[0] >= scores[1] && scores[1] >= scores[2]) << depth;
    const std::vector<std::string>& first = firstMovesByDepth[depth];
    EXPECT_TRUE(first[0] != first[1] && first[1] != first[2] && first[0] != first[2]) << depth;
    for (const std::string& move : first) EXPECT_TRUE(isLegalMove(startPositionFen, move)) << move;
  }
  EXPECT_FALSE(hasLine(run.standardOutput, "info currmove"));
  EXPECT_EQ(bestMoves(run.standardOutput), std::vector<std::string>{firstMovesByDepth[6][0]});
}

TEST(EngineGo, NoMoveToSearchAnswersTheNullMoveAndSearchMovesIgnoreCase) {
  struct Case {
    const char* lines;
    const char* best;
  };
  const Case cases[] = {
      {"position fen 7k/6Q1/6K1/8/8/8/8/8 b - -\ngo depth 3", "0000"},  // mated
      {"position fen 7k/8/6QK/8/8/8/8/8 b - -\ngo depth 3", "0000"},    // stalemate
      {"position startpos\ngo depth 3 searchmoves a1a1 zz", "0000"},
      {"position startpos\ngo depth 3 searchmoves G1F3", "g1f3"},
      {"position startpos moves e2e4 d7d5 e4d5 c7c6 d5c6 d8d6 c6b7 d6d2 b1d2 e7e5\ngo depth 3 searchmoves B7A8Q", "b7a8q"},
  };
  EngineSession session(TARVOK_ENGINE_PATH);
  for (const Case& c : cases) EXPECT_EQ(search(session, c.lines), c.best) << c.lines;
  // Two variations of one move list in capitals: each move once.
  ProcessResult run = engine("setoption name MultiPV value 2\ngo depth 4 searchmoves E2E4 D2D4\n");
  std::vector<std::string> lastTwo = linesStartingWith(run.standardOutput, "info multipv");
  ASSERT_GE(lastTwo.size(), 2u) << run.standardOutput;
  lastTwo.erase(lastTwo.begin(), lastTwo.end() - 2);
  std::vector<std::string> firstMoves = {wordAfter(lastTwo[0], "pv"), wordAfter(lastTwo[1], "pv")};
  std::sort(firstMoves.begin(), firstMoves.end());
  EXPECT_EQ(firstMoves, (std::vector<std::string>{"d2d4", "e2e4"})) << run.standardOutput;
}

TEST(EngineGo, PonderHoldsItsBestMoveUntilPonderHitAndCountsFromItsStart) {
  EngineSession engine(TARVOK_ENGINE_PATH);
  // Goal 0.3 s, hard limit 1.5 s: both lie behind us when the ponderhit comes.
  engine.send("go ponder movetime 300");
  EXPECT_EQ(engine.waitFor("bestmove", 2.0), "") << "no limit ends a ponder search";
  auto hit = Clock::now();
  engine.send("ponderhit");
  std::string best = engine.waitFor("bestmove", 5.0);
  double afterHit = secondsSince(hit);
  EXPECT_TRUE(isLegalMove(startPositionFen, wordAfter(best, "bestmove"))) << best;
  EXPECT_LT(afterHit, 0.3) << "past its hard limit, the search ends at the next poll";

  engine.send("go ponder wtime 100000 btime 100000");
  EXPECT_EQ(engine.waitFor("bestmove", 0.5), "");
  engine.send("stop");
  best = engine.waitFor("bestmove", 2.0);
  EXPECT_TRUE(isLegalMove(startPositionFen, wordAfter(best, "bestmove"))) << best;
}

TEST(EngineGo, MoveTimeEndsWithinItsHardLimit) {
  EngineSession engine(TARVOK_ENGINE_PATH);
  auto start = Clock::now();
  engine.send("go movetime 1000");
  std::string best = engine.waitFor("bestmove", 10.0);
  double seconds = secondsSince(start);
  EXPECT_TRUE(isLegalMove(startPositionFen, wordAfter(best, "bestmove"))) << best;
  EXPECT_GT(seconds, 0.01);
  EXPECT_LT(seconds, 6.0) << "5 seconds: 500 percent of the goal";
  RecordProperty("movetime1000Seconds", std::to_string(seconds));
  std::printf("go movetime 1000 answered after %.3f s\n", seconds);
}

TEST(EngineGo, CommandsAfterStopWaitForTheBestMove) {
  EngineSession engine(TARVOK_ENGINE_PATH);
  engine.send("go infinite");
  ASSERT_NE(engine.waitFor("info depth 3", 20.0), "");
  engine.send("stop\nposition startpos moves e2e4\ngo depth 3");
  std::string first = engine.waitFor("bestmove", 5.0);
  std::string second = engine.waitFor("bestmove", 5.0);
  EXPECT_TRUE(isLegalMove(startPositionFen, wordAfter(first, "bestmove"))) << first;
  EXPECT_TRUE(isLegalMove(startPositionFen, wordAfter(second, "bestmove"), {"e2e4"})) << engine.transcript;
  EXPECT_EQ(engine.transcript.find("refused"), std::string::npos);
}

TEST(EngineGo, GoPositionAndHashAreRefusedWhileASearchRuns) {
  EngineSession engine(TARVOK_ENGINE_PATH);
  engine.send("go infinite");
  ASSERT_NE(engine.waitFor("info depth 3", 20.0), "");
  engine.send("position startpos moves e2e4");
  engine.send("go depth 2");
  engine.send("setoption name HASH value 8");
  engine.send("setoption name Drawscore value 3");
  engine.send("isready");
  ASSERT_EQ(engine.waitFor("readyok", 5.0), "readyok");
  EXPECT_EQ(linesStartingWith(engine.transcript, "info string"),
            (std::vector<std::string>{"info string position refused while a search runs",
                                      "info string go refused while a search runs",
                                      "info string setoption name Hash refused while a search runs"}));
  EXPECT_EQ(engine.transcript.find("bestmove"), std::string::npos) << "the search goes on";
  engine.send("stop");
  EXPECT_TRUE(isLegalMove(startPositionFen, wordAfter(engine.waitFor("bestmove", 5.0), "bestmove")));
  engine.send("go depth 3");
  std::string best = engine.waitFor("bestmove", 5.0);
  EXPECT_TRUE(isLegalMove(startPositionFen, wordAfter(best, "bestmove"))) << "the game is still the start position";
  engine.send("uci");
  EXPECT_NE(engine.waitFor("option name Drawscore type spin default 3 ", 5.0), "");
  EXPECT_NE(engine.waitFor("uciok", 5.0), "");
  EXPECT_EQ(linesStartingWith(engine.transcript, "option name Hash"),
            std::vector<std::string>{"option name Hash type spin default 64 min 0 max 4096"});
}

TEST(EngineOptions, SecondUciShowsWhatSetOptionChangedInAnyCase) {
  ProcessResult run = engine("setoption name USE LMR value FALSE\n"
                             "setoption name null MOVE pruning value Maybe\n"
                             "setoption name drawscore value 7\n"
                             "setoption name MULTIPV value 250\n"
                             "setoption name ownbook value FALSE\n"
                             "setoption name book file value My Books/Big Opening File.BIN\n"
                             "setoption name Move Overhead Milliseconds value 150\n"
                             "uci\n");
  ASSERT_FALSE(run.timedOut);
  EXPECT_EQ(linesStartingWith(run.standardOutput, "info string"),
            (std::vector<std::string>{"info string maybe not recognized as checkbox argument",
                                      "info string book file is My Books/Big Opening File.BIN"}));
  EXPECT_EQ(linesStartingWith(run.standardOutput, "option name"),
            (std::vector<std::string>{
                "option name Ponder type check default true",
                "option name Hash type spin default 64 min 0 max 4096",
                "option name OwnBook type check default false",
                "option name MultiPV type spin default 99 min 1 max 99",
                "option name Book File type string default My Books/Big Opening File.BIN",
                "option name use lmr type check default false",
                "option name null move pruning type check default true",
                "option name deterministic type check default false",
                "option name Best Line type check default true",
                "option name Red depth threshold type spin default 10 min 0 max 100",
                "option name King Safety Aggressiveness type spin default 6 min 0 max 10",
                "option name move overhead milliseconds type spin default 150 min 0 max 30000",
                "option name Drawscore type spin default 7 min -50 max 50",
            }));
}

TEST(EngineOptions, HashZeroTurnsTheTableOffAndTheEngineStillPlays) {
  EngineSession engine(TARVOK_ENGINE_PATH);
  engine.send("setoption name Hash value 0");
  EXPECT_TRUE(isLegalMove(startPositionFen, search(engine, "go depth 5")));
  engine.send("setoption name hash");
  EXPECT_TRUE(isLegalMove(startPositionFen, search(engine, "go depth 4")));
  engine.send("setoption name Hash value 1");
  EXPECT_TRUE(isLegalMove(startPositionFen, search(engine, "go depth 5")));
  engine.send("uci");
  EXPECT_NE(engine.waitFor("uciok", 5.0), "");
  EXPECT_EQ(linesStartingWith(engine.transcript, "info string"),
            (std::vector<std::string>{"info string Hash tables turned OFF", "info string Hash tables turned OFF",
                                      "info string Hash table size is now 1 meg"}));
  EXPECT_EQ(linesStartingWith(engine.transcript, "option name Hash"),
            std::vector<std::string>{"option name Hash type spin default 1 min 0 max 4096"});
}

TEST(EngineOptions, SpinValuesBeyondTheirRangesAreHeldToTheNearerEnd) {
  // A draw worth more than a mate made the search of bare kings endless, and
  // the most negative 32-bit value overflowed when the draw value was negated.
  ProcessResult run = engine("setoption name Drawscore value 32001\n"
                             "setoption name King Safety Aggressiveness value -7\n"
                             "setoption name Red depth threshold value 2147483648\n"
                             "setoption name move overhead milliseconds value -2147483648\n"
                             "uci\n"
                             "position fen 8/8/8/4k3/8/8/8/4K3 w - - 0 1\n"
                             "go depth 6\n"
                             "setoption name Drawscore value -2147483648\n"
                             "go depth 6\n",
                             {}, 20.0);
  ASSERT_FALSE(run.timedOut) << run.standardOutput.substr(run.standardOutput.size() - 300);
  EXPECT_EQ(run.exitCode, 0);
  std::vector<std::string> spins = linesStartingWith(run.standardOutput, "option name");
  spins.erase(spins.begin(), spins.end() - 4);
  EXPECT_EQ(spins, (std::vector<std::string>{
                       "option name Red depth threshold type spin default 100 min 0 max 100",
                       "option name King Safety Aggressiveness type spin default 0 min 0 max 10",
                       "option name move overhead milliseconds type spin default 0 min 0 max 30000",
                       "option name Drawscore type spin default 50 min -50 max 50",
                   }));
  std::vector<std::string> moves = bestMoves(run.standardOutput);
  ASSERT_EQ(moves.size(), 2u);
  for (const std::string& move : moves) EXPECT_TRUE(isLegalMove("8/8/8/4k3/8/8/8/4K3 w - - 0 1", move)) << move;
}

TEST(EngineOptions, HashBeyondItsRangeOrMemoryKeepsTheTableInUse) {
#ifdef TARVOK_SANITIZE
  GTEST_SKIP() << "the sanitizer's shadow memory doesn't start inside an address-space limit";
#endif
  // In 2 GB of address space the 4096 MB that the value is held to can't be
  // had: the engine says so and plays on with the table it has.
  ProcessResult run = runProgram("/bin/sh", {"-c", "ulimit -v 2000000 && exec " TARVOK_ENGINE_PATH},
                                 "setoption name Hash value 2147483648\nuci\ngo depth 5\n", 20.0);
  EXPECT_EQ(run.exitCode, 0) << run.standardError;
  EXPECT_EQ(linesStartingWith(run.standardOutput, "info string"),
            std::vector<std::string>{"info string no memory for a hash table of 4096 meg, keeping 64 meg"});
  EXPECT_EQ(linesStartingWith(run.standardOutput, "option name Hash"),
            std::vector<std::string>{"option name Hash type spin default 64 min 0 max 4096"});
  EXPECT_TRUE(isLegalMove(startPositionFen, wordAfter(lastLineStartingWith(run.standardOutput, "bestmove"), "bestmove")));
}

}  // namespace
