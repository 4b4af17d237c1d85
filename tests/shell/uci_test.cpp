#include <gtest/gtest.h>

#include <string>

#include "option_state.h"
#include "shell/input_ring.h"
#include "shell/search_flags.h"
#include "shell/uci.h"

namespace {

TEST(CommandHash, EightCommandsHaveTheirTableValues) {
  EXPECT_EQ(commandHash("uci"), 0x0B88B1C6u);
  EXPECT_EQ(commandHash("isready"), 0xAAEBBE96u);
  EXPECT_EQ(commandHash("setoption"), 0x687891EAu);
  EXPECT_EQ(commandHash("position"), 0x4CEF7ABAu);
  EXPECT_EQ(commandHash("go"), 0x005977FBu);
  EXPECT_EQ(commandHash("stop"), 0x7C9E1B4Bu);
  EXPECT_EQ(commandHash("ponderhit"), 0x5D4738F2u);
  EXPECT_EQ(commandHash("quit"), 0x7C9D0608u);
}

TEST(CommandHash, StartsAt5381AndTakesBytesAsSigned) {
  EXPECT_EQ(commandHash(""), 5381u);
  EXPECT_EQ(commandHash("a"), 5381u * 33 + 97);
  // A byte above 127 counts as negative: 0xE9 is -23.
  EXPECT_EQ(commandHash("\xE9"), 5381u * 33 - 23);
  EXPECT_NE(commandHash("UCI"), commandHash("uci"));
  EXPECT_NE(commandHash("ISREADY"), commandHash("isready"));
}

// Lines go into the engine's own ring, and one pass of the dispatcher
// handles at most one of them.
struct Dispatcher : OptionState {
  void SetUp() override {
    OptionState::SetUp();
    while (takeInputLine(inputRing)) {
    }
  }
  std::string pass(const char* line) {
    storeInputLine(inputRing, line);
    testing::internal::CaptureStdout();
    uciPoll();
    return testing::internal::GetCapturedStdout();
  }
};

TEST_F(Dispatcher, IsReadyAnswersAndBothLogLinesAreWritten) {
  EXPECT_EQ(pass("isready\r\n"), "readyok\n");
  EXPECT_EQ(logText(), "uci -> isready\ncmd = isready\n");
}

TEST_F(Dispatcher, LineIsCutAtItsFirstLineEndOrFormFeed) {
  EXPECT_EQ(pass("isready\fstop\n"), "readyok\n");
  EXPECT_EQ(pass("\risready\n"), "") << "nothing left before the carriage return";
  EXPECT_EQ(logText(), "uci -> isready\ncmd = isready\n");
}

TEST_F(Dispatcher, BlankLinesDoNothingButBlanksAreLogged) {
  EXPECT_EQ(pass("\n"), "");
  EXPECT_EQ(pass("  \t \n"), "");
  EXPECT_EQ(logText(), "uci ->   \t \n");
}

TEST_F(Dispatcher, UnknownAndCapitalisedCommandsAreDroppedSilently) {
  EXPECT_EQ(pass("ISREADY\n"), "");
  EXPECT_EQ(pass("ucinewgame\n"), "");
  EXPECT_EQ(pass("debug on\n"), "");
  EXPECT_EQ(logText(), "uci -> ISREADY\ncmd = ISREADY\nuci -> ucinewgame\ncmd = ucinewgame\n"
                       "uci -> debug on\ncmd = debug\n");
}

TEST_F(Dispatcher, StopAndPonderHitOnlySetTheirFlags) {
  stopSearch = 0;
  pondering = 1;
  EXPECT_EQ(pass("ponderhit\n"), "");
  EXPECT_EQ(pondering, 0);
  EXPECT_EQ(stopSearch, 0);
  EXPECT_EQ(pass("stop\n"), "");
  EXPECT_EQ(stopSearch, 1);
  stopSearch = 0;
}

TEST_F(Dispatcher, OnePassTakesOneLine) {
  storeInputLine(inputRing, "isready\n");
  storeInputLine(inputRing, "isready\n");
  testing::internal::CaptureStdout();
  uciPoll();
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "readyok\n");
  testing::internal::CaptureStdout();
  uciPoll();
  uciPoll();
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "readyok\n");
}

TEST_F(Dispatcher, UciShowsCurrentValuesAfterSetOption) {
  EXPECT_EQ(pass("setoption name Hash value 128\n"), "info string Hash table size is now 128 meg\n");
  pass("setoption name use lmr value false\n");
  pass("setoption name Drawscore value 12\n");
  pass("setoption name OwnBook value false\n");
  pass("setoption name MultiPV value 3\n");
  pass("setoption name Book File value Wide Book.bin\n");
  const std::string answer = pass("uci\n");
  EXPECT_EQ(answer,
            "id name Tarvok64 4.18 RQ\n"
            "id author Orin Tessaly, Quill Marrow\n"
            "option name Ponder type check default true\n"
            "option name Hash type spin default 128 min 0 max 4096\n"
            "option name OwnBook type check default false\n"
            "option name MultiPV type spin default 3 min 1 max 99\n"
            "option name Book File type string default Wide Book.bin\n"
            "option name use lmr type check default false\n"
            "option name null move pruning type check default true\n"
            "option name deterministic type check default false\n"
            "option name Best Line type check default true\n"
            "option name Red depth threshold type spin default 10 min 0 max 100\n"
            "option name King Safety Aggressiveness type spin default 6 min 0 max 10\n"
            "option name move overhead milliseconds type spin default 20 min 0 max 30000\n"
            "option name Drawscore type spin default 12 min -50 max 50\n"
            "uciok\n");
}

}  // namespace
