// The book as a client meets it: the engine run in a directory that holds a
// book, driven through its standard input.
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <string>
#include <vector>

#include "../support/book_writer.h"
#include "../support/engine_session.h"

namespace {

using testbook::keyOf;
using testbook::moveField;

constexpr const char* startFen = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

struct BookDirectory : testing::Test {
  std::string directory = testbook::makeTemporaryDirectory();
  void TearDown() override { std::filesystem::remove_all(directory); }
};

// The lines of the answer to one go: everything up to and with bestmove.
std::string answerTo(EngineSession& engine, const std::string& commands) {
  size_t before = engine.transcript.size();
  engine.send(commands);
  engine.waitFor("bestmove", 30.0);
  return engine.transcript.substr(before);
}

// A book answer: the nodes of the move lists made, then the book's move,
// with no iteration line and no ponder move.
bool isBookAnswer(const std::string& answer, const std::string& move) {
  return std::regex_match(answer, std::regex("info nodes [0-9]+\nbestmove " + move + "\n"));
}

TEST_F(BookDirectory, ABookMoveAnswersAtOnceAndTheBookFileOptionChoosesTheFile) {
  // Moves no search of a few plies would choose, so that a book answer shows.
  testbook::writeBook(directory + "/tarvok.bin",
                      {{keyOf(startFen), moveField("b1a3"), 5},
                       {keyOf(startFen), moveField("d2d4"), 0},
                       {keyOf("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1"), moveField("h7h5"), 1}});
  std::filesystem::create_directory(directory + "/Opening Books");
  const std::string wide = directory + "/Opening Books/Wide Lines.BIN";
  testbook::writeBook(wide, {{keyOf(startFen), moveField("g1h3"), 1}});

  EngineSession engine(TARVOK_ENGINE_PATH, {}, directory.c_str());
  std::string answer = answerTo(engine, "position startpos\ngo depth 6");
  EXPECT_TRUE(isBookAnswer(answer, "b1a3")) << answer;
  answer = answerTo(engine, "position startpos moves e2e4\ngo wtime 60000 btime 60000");
  EXPECT_TRUE(isBookAnswer(answer, "h7h5")) << answer;
  answer = answerTo(engine, "position startpos moves e2e4 h7h5\ngo depth 2");
  EXPECT_NE(answer.find("info depth 2\n"), std::string::npos) << "out of book the search answers: " << answer;

  // A file name keeps its case and blanks.
  engine.send("setoption name Book File value " + wide + "\nposition startpos");
  EXPECT_EQ(engine.waitFor("info string", 10.0), "info string book file is " + wide);
  answer = answerTo(engine, "go depth 3");
  EXPECT_TRUE(isBookAnswer(answer, "g1h3")) << answer;
  // A directory, a missing file and a file that reads shorter than its size
  // (the files of /sys claim a page) are no book: said once, and the search
  // answers.
  std::vector<std::string> unreadable = {"/tmp", "no-such-book.bin"};
  if (std::filesystem::is_regular_file("/sys/power/state")) unreadable.push_back("/sys/power/state");
  for (const std::string& file : unreadable) {
    engine.send("setoption name Book File value " + file);
    EXPECT_EQ(engine.waitFor("info string", 10.0), "info string book file " + file + " can't be read, playing without a book");
    answer = answerTo(engine, "go depth 2");
    EXPECT_NE(answer.find("info depth 2\n"), std::string::npos) << answer;
    EXPECT_EQ(answer.find("info string"), std::string::npos) << answer;
  }
  engine.send("setoption name OwnBook value false\nsetoption name Book File value tarvok.bin");
  answer = answerTo(engine, "go depth 2");
  EXPECT_NE(answer.find("info depth 2\n"), std::string::npos) << "OwnBook off: " << answer;
  engine.send("setoption name OwnBook value true");
  answer = answerTo(engine, "go depth 2");
  EXPECT_TRUE(isBookAnswer(answer, "b1a3")) << answer;
}

TEST_F(BookDirectory, TheSelfTestConsultsTheBookAndFailsOnAHit) {
  // A row of the self-test with a move the book gives at once: the rows
  // before it pass (a dot each), and the pass stops at that row.
  struct Case { const char* row; const char* move; const char* failure; };
  const Case cases[] = {
      {"r4qnk/p1p5/5r1b/3P1b1p/2p2N2/2N4P/PP1QB3/2K2RR1 w - - 0 1", "g1g3", "   1 Error in position 0 - self test failed\n"},
      {"5rk1/1npbnppp/3p4/1p1Pp1b1/1P2P3/2P1N3/2BB1PPP/q3RNK1 w - - 0 1", "g2g3",
       "   1 .Error in position 1 - self test failed\n"},
  };
  for (const Case& c : cases) {
    testbook::writeBook(directory + "/tarvok.bin", {{keyOf(c.row), moveField(c.move), 1}});
    ProcessResult result = runProgram(TARVOK_ENGINE_PATH, {"-test"}, "", 120.0, directory.c_str());
    EXPECT_EQ(result.exitCode, 1) << c.row;
    EXPECT_NE(result.standardOutput.find(c.failure), std::string::npos) << result.standardOutput;
  }
}

}  // namespace
