// What a GUI sends between games and shows beside the lines: ucinewgame,
// the Clear Hash button, seldepth and hashfull, go mate. The built engine,
// driven through its standard input and output.
#include <gtest/gtest.h>

#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "../support/engine_session.h"
#include "../support/legal_moves.h"
#include "../support/uci_lines.h"

namespace {

const std::string openingA = "position fen r1bqkbnr/1pp2ppp/p1p5/4p3/4P3/5N2/PPPP1PPP/RNBQK2R w KQkq -";
const std::string openingB = "position startpos moves e2e4 c7c5";

// Sends a position and a go, waits for the answer, and returns the last
// iteration line of that search.
std::string searchLine(EngineSession& engine, const std::string& position, const std::string& go) {
  const size_t from = engine.transcript.size();
  engine.send(position + "\n" + go);
  EXPECT_NE(engine.waitFor("bestmove", 30.0), "") << position;
  return lastLineStartingWith(engine.transcript.substr(from), "info depth 8 seldepth");
}

// The result of an iteration line: nodes, score and line, without the times.
std::string resultOf(const std::string& line) {
  const size_t pv = line.find(" pv ");
  return wordAfter(line, "nodes") + " " + wordAfter(line, "score") + (pv == std::string::npos ? "" : line.substr(pv));
}

TEST(GuiConveniences, UciNewGameMakesTheNextSearchAsIfInAFreshEngine) {
  EngineSession fresh(TARVOK_ENGINE_PATH);
  const std::string alone = resultOf(searchLine(fresh, openingB, "go depth 8"));
  ASSERT_NE(alone, " ");

  // After another search its table and history shape the next one...
  EngineSession carried(TARVOK_ENGINE_PATH);
  searchLine(carried, openingA, "go depth 8");
  EXPECT_NE(resultOf(searchLine(carried, openingB, "go depth 8")), alone);

  // ...unless the client says a new game begins.
  EngineSession renewed(TARVOK_ENGINE_PATH);
  searchLine(renewed, openingA, "go depth 8");
  renewed.send("ucinewgame");
  EXPECT_EQ(resultOf(searchLine(renewed, openingB, "go depth 8")), alone);

  // A running search is left alone: the new game waits for its answer, and
  // then the next search starts as in a fresh engine.
  renewed.send("go infinite");
  ASSERT_NE(renewed.waitFor("info depth 5", 20.0), "");
  renewed.send("ucinewgame\nisready");
  ASSERT_EQ(renewed.waitFor("readyok", 5.0), "readyok");
  EXPECT_EQ(lastLineStartingWith(renewed.transcript, "info string"), "");
  renewed.send("stop");
  EXPECT_NE(renewed.waitFor("bestmove", 5.0), "");
  EXPECT_EQ(resultOf(searchLine(renewed, openingB, "go depth 8")), alone);
}

TEST(GuiConveniences, ClearHashEmptiesTheTableAtOnceOrOnceTheSearchHasAnswered) {
  EngineSession engine(TARVOK_ENGINE_PATH);
  engine.send("uci");
  EXPECT_NE(engine.waitFor("option name Clear Hash type button", 5.0), "");
  const auto nodes = [](const std::string& line) { return std::stoull("0" + wordAfter(line, "nodes")); };
  const unsigned long long first = nodes(searchLine(engine, openingA, "go depth 8"));
  // The same search again finds its work in the table...
  const unsigned long long repeated = nodes(searchLine(engine, openingA, "go depth 8"));
  // ...and after the button it has to do it again.
  engine.send("setoption name Clear Hash");
  const unsigned long long cleared = nodes(searchLine(engine, openingA, "go depth 8"));
  EXPECT_LT(repeated * 2, first) << first << " " << repeated;
  EXPECT_GT(cleared, repeated * 2) << cleared << " " << repeated;

  // During a search the button waits for its answer, then empties the table.
  searchLine(engine, openingA, "go depth 8");
  engine.send("go infinite");
  ASSERT_NE(engine.waitFor("info depth 5", 20.0), "");
  engine.send("setoption name clear hash\nisready");
  ASSERT_EQ(engine.waitFor("readyok", 5.0), "readyok");
  EXPECT_EQ(lastLineStartingWith(engine.transcript, "info string"), "");
  engine.send("stop");
  EXPECT_NE(engine.waitFor("bestmove", 5.0), "");
  const unsigned long long afterSearch = nodes(searchLine(engine, openingA, "go depth 8"));
  EXPECT_GT(afterSearch, repeated * 2) << afterSearch << " " << repeated;
}

// Every line a GUI reads, in the shapes it knows: the iteration lines carry
// seldepth and hashfull in the convention's order, and nothing else changed.
TEST(GuiConveniences, EveryLineParsesAndIterationLinesCarrySelDepthAndHashFull) {
  const std::regex iteration(
      R"(info depth (\d+) seldepth (\d+) score (?:cp -?\d+|mate -?\d+) nodes \d+ nps \d+ hashfull (\d+) time \d+ )"
      R"(pv(?: [a-h][1-8][a-h][1-8][qrbn]?)+ )");
  const std::regex multiPv(
      R"(info depth (\d+) seldepth (\d+) multipv \d+ score cp -?\d+ nodes \d+ nps \d+ hashfull (\d+) time \d+ )"
      R"(pv(?: [a-h][1-8][a-h][1-8][qrbn]?)+ )");
  const std::regex other(
      R"(info depth \d+|info currmove [a-h][1-8][a-h][1-8][qrbn]? currmovenumber \d+|info nodes \d+|)"
      R"(bestmove [a-h][1-8][a-h][1-8][qrbn]?( ponder [a-h][1-8][a-h][1-8][qrbn]?)?|readyok)");
  // A one-megabyte table, so that a short search fills part of it. Each
  // line waits for the answer before it, as a GUI's would.
  EngineSession engine(TARVOK_ENGINE_PATH);
  engine.send("setoption name Hash value 1\n" + openingA + "\ngo depth 11");
  ASSERT_NE(engine.waitFor("bestmove", 60.0), "");
  engine.send("setoption name MultiPV value 3\n" + openingB + "\ngo depth 8");
  ASSERT_NE(engine.waitFor("bestmove", 60.0), "");
  engine.send("isready");
  ASSERT_EQ(engine.waitFor("readyok", 5.0), "readyok");
  std::istringstream lines(engine.transcript);
  int iterationLines = 0, multiPvLines = 0, highestHashFull = 0;
  for (std::string line; std::getline(lines, line);) {
    if (line.rfind("info string", 0) == 0) continue;
    std::smatch match;
    const bool isIteration = std::regex_match(line, match, iteration);
    if (isIteration || std::regex_match(line, match, multiPv)) {
      (isIteration ? iterationLines : multiPvLines) += 1;
      EXPECT_GE(std::stoi(match[2]), std::stoi(match[1])) << line;  // plies reached, at least the iterations
      const int hashFull = std::stoi(match[3]);
      EXPECT_LE(hashFull, 1000) << line;
      if (hashFull > highestHashFull) highestHashFull = hashFull;
      continue;
    }
    EXPECT_TRUE(std::regex_match(line, other)) << line;
  }
  EXPECT_GE(iterationLines, 11);
  EXPECT_EQ(multiPvLines, 8 * 3);
  EXPECT_GT(highestHashFull, 0);
}

TEST(GuiConveniences, GoMateAnswersOnceTheMateIsProvenElseSearchesUntilStop) {
  struct Case { const char* fen; int mateIn; };
  const Case cases[] = {
      {"6k1/5ppp/8/8/8/8/8/R5K1 w - -", 1},    // back-rank mate
      {"7k/8/5K2/8/8/8/8/R7 w - -", 2},        // rook ending
      {"r6k/6pp/8/6N1/8/1Q6/8/6K1 w - -", 4},  // smothered mate after a queen sacrifice
  };
  EngineSession engine(TARVOK_ENGINE_PATH);
  for (const Case& c : cases) {
    const size_t from = engine.transcript.size();
    engine.send(std::string("position fen ") + c.fen + "\ngo mate " + std::to_string(c.mateIn));
    const std::string best = wordAfter(engine.waitFor("bestmove", 20.0), "bestmove");
    EXPECT_TRUE(isLegalMove(c.fen, best)) << c.fen;
    const std::string last = lastLineStartingWith(engine.transcript.substr(from), "info depth");
    EXPECT_NE(last.find("score mate " + std::to_string(c.mateIn) + " "), std::string::npos) << c.fen << "\n" << last;
  }
  // A mate in 4 is no mate in 3: the search goes on until the client stops it.
  engine.send(std::string("position fen ") + cases[2].fen + "\ngo mate 3");
  EXPECT_EQ(engine.waitFor("bestmove", 1.5), "");
  engine.send("stop");
  EXPECT_TRUE(isLegalMove(cases[2].fen, wordAfter(engine.waitFor("bestmove", 5.0), "bestmove")));
}

// Chess960: castling from the rook files the FEN names, written and read as
// the king taking its own rook; without UCI_Chess960 the file letters name
// no right.
TEST(GuiConveniences, Chess960CastlesFromAnyRookFileAndWritesKingTakesRook) {
  const std::string fen = "1r3k1r/8/8/8/8/8/8/1R3K1R w HBhb - 0 1";
  const auto answer = [&](bool chess960, const std::string& lines) {
    EngineSession engine(TARVOK_ENGINE_PATH);
    engine.send(std::string("setoption name UCI_Chess960 value ") + (chess960 ? "true" : "false") + "\n" + lines);
    return wordAfter(engine.waitFor("bestmove", 10.0), "bestmove");
  };
  // Short castling: king f1 to g1, rook h1 to f1; long: king to c1, rook b1 to d1.
  EXPECT_EQ(answer(true, "position fen " + fen + "\ngo depth 2 searchmoves f1h1"), "f1h1");
  EXPECT_EQ(answer(true, "position fen " + fen + "\ngo depth 2 searchmoves f1b1"), "f1b1");
  EXPECT_EQ(answer(false, "position fen " + fen + "\ngo depth 2 searchmoves f1h1 f1b1"), "0000");
  // After white's short castling the rook on f1 checks the king on f8: the
  // answer must get out of it, so the castling was played as such.
  const std::string reply = answer(true, "position fen " + fen + " moves f1h1\ngo depth 3");
  EXPECT_TRUE(reply == "f8e8" || reply == "f8e7" || reply == "f8g7" || reply == "f8g8") << reply;
}

}  // namespace
