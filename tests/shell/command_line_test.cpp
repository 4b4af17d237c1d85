#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "shell/command_line.h"
#include "shell/platform.h"

namespace {

const std::string usageText =
    "\nusage: tarvok {options} \n\n"
    "  -log FILE      log file name\n"
    "  -help          display this help message\n"
    "\n";

struct SwitchRun {
  int result;
  std::string errors;
};

SwitchRun readArguments(std::vector<std::string> arguments) {
  selfTestRequested = 0;
  makeTestDataRequested = 0;
  pgnRequested = 0;
  wholeSecondClock = 0;
  std::snprintf(logFileName, sizeof logFileName, "%s", "stale.log");
  std::vector<char*> argv;
  for (std::string& a : arguments) argv.push_back(a.data());
  testing::internal::CaptureStderr();
  int result = readSwitches(static_cast<int>(argv.size()), argv.data());
  SwitchRun run{result, testing::internal::GetCapturedStderr()};
  wholeSecondClock = 0;
  return run;
}

TEST(CommandLine, LongLogNameIsCutToItsField) {
  std::string longName(700, 'n');
  SwitchRun run = readArguments({"tarvok", "-log", longName});
  EXPECT_EQ(run.result, 0);
  EXPECT_EQ(std::string(logFileName), longName.substr(0, logFileNameSize - 1));
}

}  // namespace
