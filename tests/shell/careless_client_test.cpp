// What a careless or hurried client sends: values beyond their ranges, lines
// longer than any buffer, bursts of lines, moves in capitals, positions with
// nothing to play. The engine answers each sensibly and plays on.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

#include "../support/engine_session.h"
#include "../support/legal_moves.h"
#include "../support/uci_lines.h"

namespace {

ProcessResult engine(const std::string& input, double seconds = 20.0) {
  return runProgram(TARVOK_ENGINE_PATH, {}, input, seconds);
}

std::string lastBestMove(const std::string& output) {
  return wordAfter(lastLineStartingWith(output, "bestmove"), "bestmove");
}

TEST(CarelessClient, SpinValuesBeyondTheirRangesAreHeldToTheNearerEnd) {
  // A draw worth more than a mate made the search of bare kings endless, and
  // the most negative 32-bit value overflowed when the draw value was negated.
  ProcessResult run = engine("setoption name Drawscore value 32001\n"
                             "setoption name King Safety Aggressiveness value -7\n"
                             "setoption name Red depth threshold value 2147483648\n"
                             "setoption name move overhead milliseconds value -2147483648\n"
                             "setoption name hash value -5\n"
                             "setoption name Threads value -2147483648\n"
                             "uci\n"
                             "position fen 8/8/8/4k3/8/8/8/4K3 w - - 0 1\n"
                             "go depth 6\n"
                             "setoption name Drawscore value -2147483648\n"
                             "go depth 6\n");
  ASSERT_FALSE(run.timedOut);
  EXPECT_EQ(run.exitCode, 0);
  std::vector<std::string> spins = linesStartingWith(run.standardOutput, "option name");
  spins.erase(std::remove_if(spins.begin(), spins.end(),
                             [](const std::string& line) { return line.find("type spin") == std::string::npos ||
                                                                  line.find("MultiPV") != std::string::npos; }),
              spins.end());
  EXPECT_EQ(spins, (std::vector<std::string>{
                       "option name Hash type spin default 0 min 0 max 4096",
                       "option name Red depth threshold type spin default 100 min 0 max 100",
                       "option name King Safety Aggressiveness type spin default 0 min 0 max 10",
                       "option name Move Overhead type spin default 0 min 0 max 30000",
                       "option name Drawscore type spin default 50 min -50 max 50",
                       "option name Threads type spin default 1 min 1 max 256",
                   }));
  std::vector<std::string> answers = linesStartingWith(run.standardOutput, "bestmove");
  ASSERT_EQ(answers.size(), 2u);
  for (const std::string& answer : answers)
    EXPECT_TRUE(isLegalMove("8/8/8/4k3/8/8/8/4K3 w - -", wordAfter(answer, "bestmove"))) << answer;
}

TEST(CarelessClient, AHashTableBeyondMemoryKeepsTheTableInUse) {
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
  EXPECT_TRUE(isLegalMove(startPositionFen, lastBestMove(run.standardOutput)));
}

TEST(CarelessClient, LinesUpTo64KilobytesRunWholeAndLongerOnesAreDroppedWhole) {
  // 1,640 knight moves lead back to the start position, white to move.
  std::string knightDance = "position startpos moves";
  for (int i = 0; i < 410; ++i) knightDance += " g1f3 g8f6 f3g1 f6g8";
  EXPECT_TRUE(isLegalMove(startPositionFen, lastBestMove(engine(knightDance + "\ngo depth 1\n").standardOutput)));
  // The tail of a long line never runs as a command of its own.
  ProcessResult run = engine("setoption name Book File value " + std::string(8159, 'a') + " quit\nisready\n");
  EXPECT_EQ(lastLineStartingWith(run.standardOutput, "readyok"), "readyok");

  const std::string dropped = "info string line of more than 65536 bytes dropped\n";
  auto padded = [](const std::string& command, size_t length) { return command + std::string(length - command.size(), ' '); };
  run = engine(padded("isready", 65536) + "\n" + padded("isready", 65537) + "\n" + padded("quit", 200000) +
               "\nisready\n" + padded("quit", 70000));
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.standardOutput, "readyok\n" + dropped + dropped + "readyok\n" + dropped);
}

TEST(CarelessClient, ABurstOfLinesIsServedWithoutPausesBetweenThem) {
  // Served at a line a millisecond, as the main loop once did, these would
  // take over four seconds.
  std::string burst;
  for (int i = 0; i < 4000; ++i) burst += "isready\n";
  EngineSession session(TARVOK_ENGINE_PATH);
  session.send("isready");
  ASSERT_EQ(session.waitFor("readyok", 10.0), "readyok");
  auto start = std::chrono::steady_clock::now();
  session.write(burst);
  for (int i = 0; i < 4000; ++i) ASSERT_EQ(session.waitFor("readyok", 10.0), "readyok") << i;
  EXPECT_LT(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(), 2.0);
}

TEST(CarelessClient, NothingToPlayAnswersTheNullMoveAndSearchMovesIgnoreCase) {
  const std::pair<const char*, const char*> cases[] = {
      {"position fen 7k/6Q1/6K1/8/8/8/8/8 b - -\ngo depth 3", "0000"},  // mated
      {"position fen 7k/8/6QK/8/8/8/8/8 b - -\ngo depth 3", "0000"},    // stalemate
      {"position startpos\ngo depth 3 searchmoves a1a1 zz", "0000"},
      {"position startpos\ngo depth 3 searchmoves G1F3", "g1f3"},
      {"position startpos moves e2e4 d7d5 e4d5 c7c6 d5c6 d8d6 c6b7 d6d2 b1d2 e7e5\ngo depth 3 searchmoves B7A8Q", "b7a8q"},
  };
  EngineSession session(TARVOK_ENGINE_PATH);
  for (const auto& [lines, best] : cases) {
    session.send(lines);
    EXPECT_EQ(wordAfter(session.waitFor("bestmove", 10.0), "bestmove"), best) << lines;
  }
  // Two variations of one move list in capitals: each move once.
  ProcessResult run = engine("setoption name MultiPV value 2\ngo depth 4 searchmoves E2E4 D2D4\n");
  std::vector<std::string> lastTwo = multiPvLines(run.standardOutput);
  ASSERT_GE(lastTwo.size(), 2u) << run.standardOutput;
  std::vector<std::string> firstMoves = {wordAfter(lastTwo.end()[-2], "pv"), wordAfter(lastTwo.back(), "pv")};
  std::sort(firstMoves.begin(), firstMoves.end());
  EXPECT_EQ(firstMoves, (std::vector<std::string>{"d2d4", "e2e4"})) << run.standardOutput;
}

}  // namespace
