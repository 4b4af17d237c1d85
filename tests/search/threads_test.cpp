// Threads: helper threads search beside the main one and meet it in the
// hash table. The built engine, driven through its standard input and
// output; `make test-tsan` runs these tests with every program built under
// ThreadSanitizer, whose first report ends the engine with an error.
#include <gtest/gtest.h>

#include <chrono>
#include <sstream>
#include <string>
#include <vector>

#include "../support/engine_session.h"
#include "../support/legal_moves.h"
#include "../support/uci_lines.h"

namespace {

const char* const startFen = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
const std::string opening = "position startpos moves e2e4 c7c5 g1f3 d7d6";
const std::vector<std::string> openingMoves = {"e2e4", "c7c5", "g1f3", "d7d6"};

// The nodes, score and line of the last iteration line, without the times.
std::string lastResult(const std::string& output, int depth) {
  const std::string line = lastLineStartingWith(output, "info depth " + std::to_string(depth) + " seldepth");
  const size_t pv = line.find(" pv ");
  return wordAfter(line, "nodes") + " " + wordAfter(line, "score") + (pv == std::string::npos ? "" : line.substr(pv));
}

std::string searchToDepth(const std::vector<std::string>& settings, int depth = 9) {
  EngineSession engine(TARVOK_ENGINE_PATH);
  for (const std::string& setting : settings) engine.send(setting);
  engine.send(opening + "\ngo depth " + std::to_string(depth));
  EXPECT_NE(engine.waitFor("bestmove", 60.0), "");
  engine.send("quit");
  EXPECT_EQ(engine.waitForExit(20.0), 0);
  EXPECT_EQ(engine.errors().find("WARNING"), std::string::npos) << engine.errors();
  return lastResult(engine.transcript, depth);
}

// One thread is the engine as it always was: after helpers came and went,
// and with the deterministic option whatever Threads says, a search gives
// the same nodes, score and line as in an engine that never had helpers.
TEST(Threads, OneThreadAndTheDeterministicOptionSearchAsTheSingleThreadedEngine) {
  const std::string alone = searchToDepth({"setoption name deterministic value true"});
  ASSERT_NE(alone.find(" pv "), std::string::npos);
  EXPECT_EQ(searchToDepth({"setoption name Threads value 3", "setoption name Threads value 1",
                               "setoption name deterministic value true"}),
            alone);
  EXPECT_EQ(searchToDepth({"setoption name Threads value 2", "setoption name deterministic value true"}), alone);

  // Without the deterministic option the helper searches too: its nodes are
  // counted, and what it stores changes the main search's tree, so the count
  // can't come out as the lone thread's. (Deep enough that the helper is
  // sure to have run, however busy the machine.)
  const std::string deepAlone = searchToDepth({"setoption name deterministic value true"}, 12);
  const std::string together = searchToDepth({"setoption name Threads value 2"}, 12);
  ASSERT_NE(together.find(" pv "), std::string::npos);
  EXPECT_NE(together.substr(0, together.find(' ')), deepAlone.substr(0, deepAlone.find(' ')));

  EngineSession engine(TARVOK_ENGINE_PATH);
  engine.send("uci");
  EXPECT_NE(engine.waitFor("uciok", 10.0), "");
  EXPECT_EQ(countOf(engine.transcript, "option name Threads type spin default 1 min 1 max 256\n"), 1);
}

// With two threads every way a search ends still ends it, on time, with a
// legal move; the node count takes in both threads; settings wait for the
// search; quit in the middle of a search ends the engine cleanly.
TEST(Threads, TwoThreadsEndEverySearchTheWayOneThreadDoes) {
  EngineSession engine(TARVOK_ENGINE_PATH);
  engine.send("setoption name Threads value 2");
  using Clock = std::chrono::steady_clock;
  struct Case {
    std::string go;
    std::string during;  // sent once the search has printed its fifth iteration
    double answerWithin;  // seconds from the go
  };
  const Case cases[] = {
      {"go depth 10", "", 30.0},
      {"go movetime 300", "", 1.5},
      {"go infinite", "stop", 10.0},
      {"go ponder wtime 2000 btime 2000", "ponderhit", 10.0},
      {"go wtime 400 btime 400 winc 10 binc 10", "", 1.0},
      {"go nodes 300000", "", 10.0},
  };
  for (const Case& c : cases) {
    const size_t from = engine.transcript.size();
    const auto start = Clock::now();
    engine.send(opening + "\n" + c.go);
    if (!c.during.empty()) {
      ASSERT_NE(engine.waitFor("info depth 5 seldepth", 20.0), "") << c.go;
      engine.send(c.during);
    }
    const std::string answer = engine.waitFor("bestmove", c.answerWithin + 5.0);
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    ASSERT_NE(answer, "") << c.go;
    EXPECT_LT(seconds, c.answerWithin) << c.go;
    EXPECT_TRUE(isLegalMove(startFen, wordAfter(answer, "bestmove"), openingMoves)) << c.go << ": " << answer;
    if (c.go == "go nodes 300000") {
      // The limit counts every thread's nodes: they stop a little past it (the
      // helper runs on while the main thread is between polls or waits for a
      // core), and well short of twice the limit, where a limit that counted
      // the main thread's nodes alone would end.
      const long long nodes = std::stoll(wordAfter(lastLineStartingWith(engine.transcript.substr(from), "info nodes"), "nodes"));
      EXPECT_GE(nodes, 300000);
      EXPECT_LT(nodes, 400000);
    }
  }

  // A running search keeps its threads, its table and its settings: they
  // change once it has answered.
  engine.send(opening + "\ngo infinite");
  ASSERT_NE(engine.waitFor("info depth 5 seldepth", 20.0), "");
  const size_t from = engine.transcript.size();
  engine.send("setoption name Threads value 1\nsetoption name Hash value 1\nsetoption name MultiPV value 3\nisready");
  ASSERT_EQ(engine.waitFor("readyok", 5.0), "readyok");
  EXPECT_EQ(linesStartingWith(engine.transcript.substr(from), "info string"), std::vector<std::string>{});
  EXPECT_EQ(multiPvLines(engine.transcript.substr(from)), std::vector<std::string>{});
  engine.send("stop\nuci");
  ASSERT_NE(engine.waitFor("uciok", 5.0), "");
  EXPECT_EQ(countOf(engine.transcript.substr(from), "option name Threads type spin default 1 "), 1);
  EXPECT_EQ(countOf(engine.transcript.substr(from), "option name MultiPV type spin default 3 "), 1);
  engine.send("go infinite");
  ASSERT_NE(engine.waitFor("info depth 3", 20.0), "");
  engine.send("quit");
  EXPECT_EQ(engine.waitForExit(5.0), 0);
  EXPECT_EQ(engine.errors().find("WARNING"), std::string::npos) << engine.errors();
}

}  // namespace
