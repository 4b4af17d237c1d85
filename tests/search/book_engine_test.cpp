// The book as a client meets it: the engine run in a directory that holds a
// book, driven through its standard input.
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <string>
#include <vector>

#include "../shell/engine_process.h"
#include "../shell/engine_session.h"
#include "../support/book_writer.h"
#include "../support/uci_lines.h"

namespace {

using testbook::keyOf;
using testbook::moveField;

constexpr const char* startFen = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
constexpr const char* afterE4Fen = "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1";

struct BookDirectory : testing::Test {
  std::string directory;
  void SetUp() override {
    directory = testbook::makeTemporaryDirectory();
    ASSERT_FALSE(directory.empty());
    // Moves no search of a few plies would choose, so that a book answer shows.
    testbook::writeBook(directory + "/tarvok.bin", {{keyOf(startFen), moveField("b1a3"), 5},
                                                    {keyOf(startFen), moveField("d2d4"), 0},
                                                    {keyOf(afterE4Fen), moveField("h7h5"), 1}});
  }
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

TEST_F(BookDirectory, GoFromABookPositionAnswersWithoutSearching) {
  EngineSession engine(TARVOK_ENGINE_PATH, {}, directory.c_str());
  std::string first = answerTo(engine, "position startpos\ngo depth 6");
  EXPECT_TRUE(isBookAnswer(first, "b1a3")) << first;
  std::string reply = answerTo(engine, "position startpos moves e2e4\ngo wtime 60000 btime 60000");
  EXPECT_TRUE(isBookAnswer(reply, "h7h5")) << reply;
  // Out of book the search answers.
  std::string searched = answerTo(engine, "position startpos moves e2e4 h7h5\ngo depth 2");
  EXPECT_NE(searched.find("info depth 2\n"), std::string::npos) << searched;
  engine.send("quit");
  EXPECT_EQ(engine.waitForExit(10.0), 0);
}

TEST_F(BookDirectory, BookFileKeepsCaseAndBlanksAndAFileThatCantBeReadWholeIsNoBook) {
  std::filesystem::create_directory(directory + "/Opening Books");
  const std::string wide = directory + "/Opening Books/Wide Lines.BIN";
  testbook::writeBook(wide, {{keyOf(startFen), moveField("g1h3"), 1}});
  EngineSession engine(TARVOK_ENGINE_PATH, {}, directory.c_str());

  engine.send("setoption name Book File value " + wide);
  EXPECT_EQ(engine.waitFor("info string", 10.0), "info string book file is " + wide);
  std::string booked = answerTo(engine, "position startpos\ngo depth 3");
  EXPECT_TRUE(isBookAnswer(booked, "g1h3")) << booked;

  // A directory, a missing file and a file that reads shorter than its size
  // (the files of /sys claim a page): no book, said once, and the search answers.
  std::vector<std::string> unreadable = {"/tmp", "no-such-book.bin"};
  for (const char* file : {"/sys/power/state", "/sys/kernel/mm/transparent_hugepage/enabled"})
    if (std::filesystem::is_regular_file(file)) unreadable.push_back(file);
  for (const std::string& file : unreadable) {
    engine.send("setoption name Book File value " + file);
    std::string searched = answerTo(engine, "position startpos\ngo depth 2");
    EXPECT_NE(searched.find("info depth 2\n"), std::string::npos) << searched;
  }
  EXPECT_GT(unreadable.size(), 2u) << "no file of /sys to try";
  std::vector<std::string> said;
  for (const std::string& file : unreadable)
    said.push_back("info string book file " + file + " can't be read, playing without a book");
  std::vector<std::string> info = linesStartingWith(engine.transcript, "info string");
  info.erase(info.begin());
  EXPECT_EQ(info, said);

  engine.send("setoption name Book File value tarvok.bin");
  EXPECT_EQ(engine.waitFor("info string", 10.0), "info string book file is tarvok.bin");
  booked = answerTo(engine, "go depth 2");
  EXPECT_TRUE(isBookAnswer(booked, "b1a3")) << booked;
}

TEST_F(BookDirectory, TheSelfTestConsultsTheBookAndFailsOnAHit) {
  // The first row of the self-test, with a move the book gives at once.
  const char* firstRow = "r4qnk/p1p5/5r1b/3P1b1p/2p2N2/2N4P/PP1QB3/2K2RR1 w - - 0 1";
  testbook::writeBook(directory + "/tarvok.bin", {{keyOf(firstRow), moveField("g1g3"), 1}});
  ProcessResult result = runProgram(TARVOK_ENGINE_PATH, {"-test"}, "", 30.0, directory.c_str());
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_NE(result.standardOutput.find("   1 Error in position 0 - self test failed\n"), std::string::npos);
}

}  // namespace
