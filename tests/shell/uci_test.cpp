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

}  // namespace
