// The engine as a client meets it: the built binary driven through pipes,
// every bestmove judged by the engine's own move generator.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <set>
#include <regex>
#include <string>
#include <vector>

#include "../support/engine_session.h"
#include "../support/legal_moves.h"
#include "../support/uci_lines.h"

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) { return std::chrono::duration<double>(Clock::now() - start).count(); }

// Sends lines (a go and what goes with it) and returns the move of the
// bestmove that answers them.
std::string search(EngineSession& engine, const std::string& lines, double seconds = 10.0) {
  engine.send(lines);
  return wordAfter(engine.waitFor("bestmove", seconds), "bestmove");
}

TEST(UciSession, AnInfiniteSearchAnswersIsReadyAtOnceHoldsOtherCommandsBackAndEndsOnlyAtStopOrQuit) {
  EngineSession engine(TARVOK_ENGINE_PATH);
  engine.send("go infinite depth 3");
  ASSERT_NE(engine.waitFor("info depth 6", 20.0), "") << "infinite wins over depth";
  // What would change the search's ground waits until it has answered.
  engine.send("position startpos moves e2e4\ngo depth 2\nsetoption name HASH value 8");
  engine.send("setoption name Drawscore value 3");
  auto asked = Clock::now();
  engine.send("isready");
  ASSERT_EQ(engine.waitFor("readyok", 5.0), "readyok");
  EXPECT_LT(secondsSince(asked), 0.5) << "answered during the search";
  EXPECT_EQ(linesStartingWith(engine.transcript, "info string"), std::vector<std::string>{}) << "nothing refused";
  EXPECT_EQ(countOf(engine.transcript, "bestmove"), 0) << "the search goes on";
  // The stop answers the infinite search; then the held-back commands run
  // in order: the second search starts from the position sent during the
  // first.
  auto stopped = Clock::now();
  engine.send("stop");
  EXPECT_TRUE(isLegalMove(startPositionFen, wordAfter(engine.waitFor("bestmove", 5.0), "bestmove")));
  EXPECT_LT(secondsSince(stopped), 2.0);
  EXPECT_TRUE(isLegalMove(startPositionFen, wordAfter(engine.waitFor("bestmove", 5.0), "bestmove"), {"e2e4"}));
  engine.send("uci");
  EXPECT_NE(engine.waitFor("option name Drawscore type spin default 3 ", 5.0), "") << "set after the search";
  EXPECT_NE(engine.waitFor("uciok", 5.0), "");
  EXPECT_EQ(linesStartingWith(engine.transcript, "option name Hash"),
            std::vector<std::string>{"option name Hash type spin default 8 min 0 max 4096"});

  // quit during a search: its answer, then the end.
  engine.send("go infinite");
  ASSERT_NE(engine.waitFor("info depth 3", 20.0), "");
  size_t before = engine.transcript.size();
  engine.send("quit");
  EXPECT_EQ(engine.waitForExit(5.0), 0);
  EXPECT_NE(engine.transcript.find("bestmove", before), std::string::npos);
}

TEST(UciSession, MoveTimeEndsWithinItsHardLimitAndPonderHoldsItsBestMoveUntilPonderHitOrStop) {
  EngineSession engine(TARVOK_ENGINE_PATH);
  auto start = Clock::now();
  EXPECT_TRUE(isLegalMove(startPositionFen, search(engine, "go movetime 400")));
  EXPECT_GT(secondsSince(start), 0.01);
  EXPECT_LT(secondsSince(start), 4.0) << "2 seconds: 500 percent of the goal";

  // Goal 0.1 s, hard limit 0.5 s: both lie behind us when the ponderhit comes.
  engine.send("go ponder movetime 100");
  EXPECT_EQ(engine.waitFor("bestmove", 0.8), "") << "no limit ends a ponder search";
  auto hit = Clock::now();
  EXPECT_TRUE(isLegalMove(startPositionFen, search(engine, "ponderhit", 5.0)));
  EXPECT_LT(secondsSince(hit), 2.0) << "past its hard limit, the search ends at the next poll";
  engine.send("go ponder wtime 100000 btime 100000");
  EXPECT_EQ(engine.waitFor("bestmove", 0.3), "");
  EXPECT_TRUE(isLegalMove(startPositionFen, search(engine, "stop", 2.0)));
}

TEST(UciSession, MultiPvReportsThreeDistinctLinesEachIterationBestFirst) {
  ProcessResult run = runProgram(TARVOK_ENGINE_PATH, {}, "setoption name MultiPV value 3\ngo depth 6\n", 30.0);
  ASSERT_FALSE(run.timedOut);
  const std::regex row(
      R"(info depth (\d+) seldepth (\d+) multipv (\d+) score cp (-?\d+) nodes (\d+) nps \d+ hashfull \d+ time (\d+) )"
      R"(pv ((?:[a-h][1-8][a-h][1-8][qrbn]? )+))");
  // Every line of analysis names its rank: none repeats the first without it.
  for (const std::string& line : linesStartingWith(run.standardOutput, "info depth "))
    if (line.find(" pv ") != std::string::npos) {
      EXPECT_NE(line.find(" multipv "), std::string::npos) << line;
    }
  std::map<int, std::vector<int>> numbers, scores;
  std::map<int, std::set<std::string>> nodesAndTimes;
  std::map<int, std::vector<std::string>> firstMoves;
  for (const std::string& line : multiPvLines(run.standardOutput)) {
    std::smatch match;
    ASSERT_TRUE(std::regex_match(line, match, row)) << line;
    int depth = std::stoi(match[1]);
    EXPECT_GE(std::stoi(match[2]), depth) << line;  // seldepth counts plies, depth iterations
    numbers[depth].push_back(std::stoi(match[3]));
    scores[depth].push_back(std::stoi(match[4]));
    nodesAndTimes[depth].insert(match[5].str() + " " + match[6].str());
    firstMoves[depth].push_back(wordAfter("pv " + match[7].str(), "pv"));
  }
  ASSERT_EQ(numbers.size(), 6u) << run.standardOutput;
  for (int depth = 1; depth <= 6; ++depth) {
    EXPECT_EQ(numbers[depth], (std::vector<int>{1, 2, 3})) << depth;
    EXPECT_EQ(nodesAndTimes[depth].size(), 1u) << "the lines of one depth are one report: depth " << depth;
    EXPECT_TRUE(scores[depth][0] >= scores[depth][1] && scores[depth][1] >= scores[depth][2]) << depth;
    const std::vector<std::string>& first = firstMoves[depth];
    EXPECT_TRUE(first[0] != first[1] && first[1] != first[2] && first[0] != first[2]) << depth;
    for (const std::string& move : first) EXPECT_TRUE(isLegalMove(startPositionFen, move)) << move;
  }
  EXPECT_EQ(linesStartingWith(run.standardOutput, "bestmove ").size(), 1u);
  EXPECT_EQ(wordAfter(lastLineStartingWith(run.standardOutput, "bestmove "), "bestmove"), firstMoves[6][0]);
}

// A node limit that stops an iteration between its lines leaves the lines
// not searched again with the score of their last finished search. A queen
// against three pawns, every line loses, wherever the limit falls; the
// answer is the first move of the best line shown.
TEST(UciSession, MultiPvStoppedBetweenItsLinesShowsEachWithItsLastFinishedScore) {
  EngineSession engine(TARVOK_ENGINE_PATH);
  engine.send("setoption name MultiPV value 2\nposition fen 3qk3/8/8/8/8/8/PPP5/1K6 w - -");
  for (int limit = 1000; limit <= 40000; limit += 1300) {
    const size_t from = engine.transcript.size();
    engine.send("go nodes " + std::to_string(limit));
    ASSERT_NE(engine.waitFor("bestmove", 10.0), "") << limit;
    const std::vector<std::string> rows = multiPvLines(engine.transcript.substr(from));
    ASSERT_FALSE(rows.empty()) << limit;
    for (const std::string& line : rows) EXPECT_LT(std::stoi(wordAfter(line, "cp")), -200) << limit << ": " << line;
    const std::string best = lastLineStartingWith(engine.transcript.substr(from), "bestmove ");
    std::string lastFirst;
    for (const std::string& line : rows)
      if (wordAfter(line, "multipv") == "1") lastFirst = line;
    EXPECT_EQ(wordAfter(best, "bestmove"), wordAfter(lastFirst, "pv")) << limit << ": " << lastFirst;
  }
}

TEST(UciSession, SetOptionTakesNamesInAnyCaseASecondUciShowsTheValuesInForceAndHashZeroStillPlays) {
  EngineSession engine(TARVOK_ENGINE_PATH);
  engine.send("setoption name USE LMR value FALSE\nsetoption name null MOVE pruning value Maybe\n"
              "setoption name drawscore value 7\nsetoption name MULTIPV value 0\nsetoption name ownbook value FALSE\n"
              "setoption name book file value My Books/Big Opening File.BIN\n"
              "setoption name Move Overhead Milliseconds value 150\nsetoption name No Such Option value 1\n"
              "setoption name THREADS value 2\n"
              "uci\nsetoption name multipv value 250\nuci");
  engine.waitFor("uciok", 5.0);
  engine.waitFor("uciok", 5.0);
  const std::vector<std::string> options = linesStartingWith(engine.transcript, "option name");
  ASSERT_EQ(options.size(), 32u) << engine.transcript;
  for (const char* changed : {"OwnBook type check default false", "MultiPV type spin default 1 min 1 max 99",
                              "Book File type string default My Books/Big Opening File.BIN",
                              "use lmr type check default false", "null move pruning type check default true",
                              "Move Overhead type spin default 150 min 0 max 30000",
                              "Drawscore type spin default 7 min -50 max 50", "Threads type spin default 2 min 1 max 256"})
    EXPECT_EQ(std::count(options.begin(), options.begin() + 16, std::string("option name ") + changed), 1) << changed;
  EXPECT_EQ(options[20], "option name MultiPV type spin default 99 min 1 max 99");

  engine.send("setoption name Hash value 0");
  EXPECT_TRUE(isLegalMove(startPositionFen, search(engine, "go depth 5")));
  engine.send("setoption name hash");
  EXPECT_TRUE(isLegalMove(startPositionFen, search(engine, "go depth 4")));
  engine.send("setoption name Hash value 1");
  EXPECT_TRUE(isLegalMove(startPositionFen, search(engine, "go depth 5")));
  engine.send("uci");
  EXPECT_NE(engine.waitFor("option name Hash type spin default 1 min 0 max 4096", 5.0), "");
  EXPECT_EQ(linesStartingWith(engine.transcript, "info string"),
            (std::vector<std::string>{"info string maybe not recognized as checkbox argument",
                                      "info string book file is My Books/Big Opening File.BIN",
                                      "info string no such option not recognized", "info string Hash tables turned OFF",
                                      "info string Hash tables turned OFF",
                                      "info string Hash table size is now 1 meg"}));
}

TEST(UciSession, FindsMatesAndReportsTheirDistance) {
  struct Case { const char* fen; const char* firstMove; int mateIn; };  // firstMove "" where several mate as fast
  const Case cases[] = {
      {"6k1/5ppp/8/8/8/8/8/R5K1 w - -", "a1a8", 1},      // back-rank mate
      {"7k/8/5K2/8/8/8/8/R7 w - -", "", 2},              // rook ending
      {"r6k/6pp/8/6N1/8/1Q6/8/6K1 w - -", "g5f7", 4},    // smothered mate after a queen sacrifice
  };
  EngineSession engine(TARVOK_ENGINE_PATH);
  for (const Case& c : cases) {
    std::string best = search(engine, std::string("position fen ") + c.fen + "\ngo depth 8", 30.0);
    std::string last = lastLineStartingWith(engine.transcript, "info depth");
    EXPECT_NE(last.find("score mate " + std::to_string(c.mateIn) + " "), std::string::npos) << c.fen << "\n" << last;
    if (c.firstMove[0]) {
      EXPECT_EQ(best, c.firstMove) << c.fen;
    }
    EXPECT_TRUE(isLegalMove(c.fen, best)) << c.fen;
  }
}

// The final iteration line without its time and speed, which vary.
std::string resultOf(const std::string& output) {
  std::string line = lastLineStartingWith(output, "info depth 7 seldepth");
  return wordAfter(line, "nodes") + " " + wordAfter(line, "score") + " " + line.substr(line.find(" pv "));
}

// Deterministic: cleared tables every search, and evaluation caches that a
// new setting empties, so nothing of a search under other options survives.
TEST(UciSession, DeterministicSearchesRepeatAcrossProcessesAndAfterOtherSearches) {
  const std::string setUp = "setoption name deterministic value true\n";
  const std::string setting = "setoption name King Safety Aggressiveness value 0\n";
  const std::string target = "position fen r1bqkbnr/1pp2ppp/p1p5/4p3/4P3/5N2/PPPP1PPP/RNBQK2R w KQkq -\ngo depth 7\n";
  ProcessResult first = runProgram(TARVOK_ENGINE_PATH, {}, setUp + setting + target, 60.0);
  EngineSession later(TARVOK_ENGINE_PATH);
  later.write(setUp + target);
  ASSERT_NE(later.waitFor("bestmove", 30.0), "");
  later.write(setting + target);
  ASSERT_NE(later.waitFor("bestmove", 30.0), "");
  ASSERT_NE(lastLineStartingWith(first.standardOutput, "info depth 7 seldepth"), "");
  EXPECT_EQ(resultOf(later.transcript), resultOf(first.standardOutput));
}

}  // namespace

namespace {

constexpr const char* mateInTwo = "kbK5/pp6/1P6/8/8/8/8/R7 w - -";

// Commands piped behind a search wait for it and then run in order; a
// position the engine can't set up is refused and the game is kept.
TEST(UciSession, PipedCommandsRunInOrderBehindTheSearchAndABadPositionKeepsTheGame) {
  ProcessResult run = runProgram(TARVOK_ENGINE_PATH, {},
                                 "position startpos moves e2e4\ngo depth 6\ngo depth 6\n"
                                 "position foo\ngo depth 3\n"
                                 "position fen 4k3/8/8/8/8/8/8/4K3 x - -\ngo depth 3\n",
                                 30.0);
  ASSERT_FALSE(run.timedOut);
  EXPECT_EQ(run.exitCode, 0);
  const std::vector<std::string> answers = linesStartingWith(run.standardOutput, "bestmove ");
  ASSERT_EQ(answers.size(), 4u) << run.standardOutput;
  for (const std::string& answer : answers)
    EXPECT_TRUE(isLegalMove(startPositionFen, wordAfter(answer, "bestmove"), {"e2e4"})) << answer;
  EXPECT_EQ(linesStartingWith(run.standardOutput, "info string"),
            (std::vector<std::string>{"info string position refused: position needs startpos or fen",
                                      "info string position refused: the side to move must be w or b"}));
}

// Analysis never answers on its own: a go infinite that has found a mate
// waits for stop, and with several lines every depth shows them all.
TEST(UciSession, AnalysisOfAMateWaitsForStopAndShowsEveryLineAtEveryDepth) {
  EngineSession engine(TARVOK_ENGINE_PATH);
  engine.send(std::string("position fen ") + mateInTwo + "\ngo infinite");
  ASSERT_NE(engine.waitFor("info depth 2 seldepth 4 score mate 2 ", 10.0), "");
  EXPECT_EQ(engine.waitFor("bestmove", 1.0), "") << "no answer before stop";
  auto asked = Clock::now();
  engine.send("isready");
  EXPECT_EQ(engine.waitFor("readyok", 5.0), "readyok");
  EXPECT_LT(secondsSince(asked), 0.5);
  auto stopped = Clock::now();
  engine.send("stop");
  EXPECT_EQ(wordAfter(engine.waitFor("bestmove", 5.0), "bestmove"), "a1a6");
  EXPECT_LT(secondsSince(stopped), 0.5);

  const size_t from = engine.transcript.size();
  engine.send("setoption name MultiPV value 3\ngo depth 12");
  ASSERT_NE(engine.waitFor("bestmove", 30.0), "");
  std::map<int, std::vector<int>> ranks;
  for (const std::string& line : multiPvLines(engine.transcript.substr(from)))
    ranks[std::stoi(wordAfter(line, "depth"))].push_back(std::stoi(wordAfter(line, "multipv")));
  ASSERT_EQ(ranks.size(), 12u) << engine.transcript.substr(from);
  for (const auto& [depth, seen] : ranks) EXPECT_EQ(seen, (std::vector<int>{1, 2, 3})) << depth;
  EXPECT_NE(engine.transcript.find(" multipv 1 score mate 2 ", from), std::string::npos);
}

}  // namespace
