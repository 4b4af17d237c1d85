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

TEST(CommandLine, NoSwitchesClearsTheLogName) {
  SwitchRun run = readArguments({"tarvok"});
  EXPECT_EQ(run.result, 0);
  EXPECT_EQ(run.errors, "");
  EXPECT_STREQ(logFileName, "");
  EXPECT_EQ(selfTestRequested, 0);
}

TEST(CommandLine, NamesMatchInAnyCase) {
  SwitchRun run = readArguments({"tarvok", "-LOG", "trace.txt", "-Test", "-MAKETESTDATA", "-Pgn", "-quiet"});
  EXPECT_EQ(run.result, 0);
  EXPECT_EQ(run.errors, "");
  EXPECT_STREQ(logFileName, "trace.txt");
  EXPECT_EQ(selfTestRequested, 1);
  EXPECT_EQ(makeTestDataRequested, 1);
  EXPECT_EQ(pgnRequested, 1);
}

TEST(CommandLine, CpuTakesABaseTenNumberAndLaterValuesWin) {
  selfTestRequested = 0;
  std::vector<std::string> arguments = {"tarvok", "-cpu", "7", "-log", "a.log", "-log", "b.log"};
  std::vector<char*> argv;
  for (std::string& a : arguments) argv.push_back(a.data());
  ASSERT_EQ(readSwitches(static_cast<int>(argv.size()), argv.data()), 0);
  EXPECT_EQ(wholeSecondClock, 7);
  EXPECT_STREQ(logFileName, "b.log");
  arguments = {"tarvok", "-cpu", "fast"};
  argv.clear();
  for (std::string& a : arguments) argv.push_back(a.data());
  ASSERT_EQ(readSwitches(static_cast<int>(argv.size()), argv.data()), 0);
  EXPECT_EQ(wholeSecondClock, 0) << "a value that isn't a number converts to 0";
  wholeSecondClock = 0;
}

TEST(CommandLine, HelpIsNotASwitch) {
  SwitchRun run = readArguments({"tarvok", "-help"});
  EXPECT_EQ(run.result, -1);
  EXPECT_EQ(run.errors, "Error. option -help not found.\n" + usageText);
}

TEST(CommandLine, SwitchThatNeedsAValueIsLast) {
  for (const char* name : {"-log", "-cpu", "-Cpu"}) {
    SwitchRun run = readArguments({"tarvok", "-quiet", name});
    EXPECT_EQ(run.result, -1) << name;
    EXPECT_EQ(run.errors, "Error.  No argument.\n" + usageText) << name;
  }
}

TEST(CommandLine, ArgumentWithoutDashIsCountedFromOne) {
  SwitchRun run = readArguments({"tarvok", "-pgn", "log", "x"});
  EXPECT_EQ(run.result, -1);
  EXPECT_EQ(run.errors, "Error in command line processing.  option expected at argument 2\n" + usageText);
}

TEST(CommandLine, UnknownSwitchIsQuotedWithItsDash) {
  SwitchRun run = readArguments({"tarvok", "-logfile", "x"});
  EXPECT_EQ(run.result, -1);
  EXPECT_EQ(run.errors, "Error. option -logfile not found.\n" + usageText);
}

TEST(CommandLine, LongLogNameIsCutToItsField) {
  std::string longName(700, 'n');
  SwitchRun run = readArguments({"tarvok", "-log", longName});
  EXPECT_EQ(run.result, 0);
  EXPECT_EQ(std::string(logFileName), longName.substr(0, logFileNameSize - 1));
}

}  // namespace
