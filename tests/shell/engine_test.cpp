// The built engine driven through pipes, as a client drives it.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>

#include "../support/legal_moves.h"
#include "../support/uci_lines.h"
#include "engine_process.h"
#include "engine_session.h"

namespace {

const char* const uciAnswer =
    "id name Tarvok64 4.18 RQ\n"
    "id author Orin Tessaly, Quill Marrow\n"
    "option name Ponder type check default true\n"
    "option name Hash type spin default 64 min 0 max 4096\n"
    "option name OwnBook type check default true\n"
    "option name MultiPV type spin default 1 min 1 max 99\n"
    "option name Book File type string default tarvok.bin\n"
    "option name use lmr type check default true\n"
    "option name null move pruning type check default true\n"
    "option name deterministic type check default false\n"
    "option name Best Line type check default true\n"
    "option name Red depth threshold type spin default 10 min 0 max 100\n"
    "option name King Safety Aggressiveness type spin default 6 min 0 max 10\n"
    "option name move overhead milliseconds type spin default 20 min 0 max 30000\n"
    "option name Drawscore type spin default -5 min -50 max 50\n"
    "uciok\n";

const std::string usageText =
    "\nusage: " TARVOK_ENGINE_PATH " {options} \n\n"
    "  -log FILE      log file name\n"
    "  -help          display this help message\n"
    "\n";

ProcessResult engine(const std::string& input, std::vector<std::string> arguments = {}) {
  return runProgram(TARVOK_ENGINE_PATH, arguments, input);
}

TEST(Engine, UciAnswerThenReadyOkThenQuit) {
  ProcessResult run = engine("uci\nisready\nquit\n");
  ASSERT_FALSE(run.timedOut);
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.standardOutput, std::string(uciAnswer) + "readyok\n");
  EXPECT_EQ(run.standardError, "Tarvok version 4.18 RQ\n");
}

TEST(Engine, EndOfInputServesEveryLineThenExitsWithZero) {
  ProcessResult run = engine("isready\n");
  ASSERT_FALSE(run.timedOut);
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.standardOutput, "readyok\n");

  run = engine("\nucinewgame\nUCI\nisready\nuci");
  ASSERT_FALSE(run.timedOut);
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.standardOutput, std::string("readyok\n") + uciAnswer) << "a last line without ending is served";

  run = engine("");
  ASSERT_FALSE(run.timedOut);
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.standardOutput, "");
}

TEST(Engine, LogThatCantBeOpenedMeansNoLog) {
  ProcessResult run = engine("isready\n", {"-log", "/nonexistent-directory/trace.log"});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.standardOutput, "readyok\n");
}

TEST(Engine, CommandLineErrorsPrintUsageAndExitWith255) {
  struct Case {
    std::vector<std::string> arguments;
    std::string message;
  };
  const Case cases[] = {
      {{"-help"}, "Error. option -help not found.\n"},
      {{"-log"}, "Error.  No argument.\n"},
      {{"-quiet", "-CPU"}, "Error.  No argument.\n"},
      {{"uci"}, "Error in command line processing.  option expected at argument 1\n"},
      {{"-cpu", "1", "-colour"}, "Error. option -colour not found.\n"},
  };
  for (const Case& c : cases) {
    ProcessResult run = engine("isready\n", c.arguments);
    EXPECT_EQ(run.exitCode, 255) << c.message;
    EXPECT_EQ(run.standardError, c.message + usageText);
    EXPECT_EQ(run.standardOutput, "");
  }
}

TEST(Engine, LinesUpTo64KilobytesRunWholeAndLongerOnesAreDroppedWhole) {
  // 1,640 knight moves lead back to the start position, white to move.
  std::string knightDance = "position startpos moves";
  for (int i = 0; i < 410; ++i) knightDance += " g1f3 g8f6 f3g1 f6g8";
  ProcessResult run = engine(knightDance + "\ngo depth 1\n");
  std::string best = wordAfter(lastLineStartingWith(run.standardOutput, "bestmove"), "bestmove");
  EXPECT_TRUE(isLegalMove(startPositionFen, best)) << best;

  // The tail of a cut line must not run as a command of its own.
  run = engine("setoption name Book File value " + std::string(8159, 'a') + " quit\nisready\n");
  EXPECT_EQ(lastLineStartingWith(run.standardOutput, "readyok"), "readyok");

  const std::string dropped = "info string line of more than 65536 bytes dropped\n";
  auto padded = [](const std::string& command, size_t length) { return command + std::string(length - command.size(), ' '); };
  run = engine(padded("isready", 65536) + "\n" + padded("isready", 65537) + "\n" + padded("quit", 200000) +
               "\nisready\n" + padded("quit", 70000));
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.standardOutput, "readyok\n" + dropped + dropped + "readyok\n" + dropped);
}

TEST(Engine, ABurstOfLinesIsServedWithoutPausesBetweenThem) {
  // Served at a line a millisecond, these would take over four seconds.
  std::string burst;
  for (int i = 0; i < 4000; ++i) burst += "isready\n";
  EngineSession engine(TARVOK_ENGINE_PATH);
  engine.send("isready");
  ASSERT_EQ(engine.waitFor("readyok", 10.0), "readyok");
  auto start = std::chrono::steady_clock::now();
  engine.write(burst);
  for (int i = 0; i < 4000; ++i) ASSERT_EQ(engine.waitFor("readyok", 10.0), "readyok") << i;
  EXPECT_LT(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(), 2.0);
}

}  // namespace
