// The built engine as a process: what it answers, how it ends, and what it
// makes of its command line.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "../support/engine_session.h"

namespace {

const char* const uciAnswer =
    "id name Tarvok64 4.18 RQ\n"
    "id author Orin Tessaly, Quill Marrow\n"
    "option name Ponder type check default true\n"
    "option name Hash type spin default 64 min 0 max 4096\n"
    "option name Clear Hash type button\n"
    "option name OwnBook type check default true\n"
    "option name MultiPV type spin default 1 min 1 max 99\n"
    "option name Book File type string default tarvok.bin\n"
    "option name use lmr type check default true\n"
    "option name null move pruning type check default true\n"
    "option name deterministic type check default false\n"
    "option name Best Line type check default true\n"
    "option name UCI_Chess960 type check default false\n"
    "option name Red depth threshold type spin default 10 min 0 max 100\n"
    "option name King Safety Aggressiveness type spin default 6 min 0 max 10\n"
    "option name Move Overhead type spin default 20 min 0 max 30000\n"
    "option name Drawscore type spin default -5 min -50 max 50\n"
    "option name Threads type spin default 1 min 1 max 256\n"
    "uciok\n";

TEST(Engine, AnswersEveryLineUpToTheEndOfItsInputThenExitsWithZero) {
  struct Case { const char* input; std::string output; };
  const Case cases[] = {
      {"uci\nisready\nquit\n", std::string(uciAnswer) + "readyok\n"},
      {"isready\n", "readyok\n"},
      // Blank lines and unknown commands are skipped; a last line without
      // line ending is served.
      {"\nucinewgame\nUCI\nisready\nuci", std::string("readyok\n") + uciAnswer},
      {"", ""},
  };
  for (const Case& c : cases) {
    ProcessResult run = runProgram(TARVOK_ENGINE_PATH, {}, c.input);
    ASSERT_FALSE(run.timedOut) << c.input;
    EXPECT_EQ(run.exitCode, 0) << c.input;
    EXPECT_EQ(run.standardOutput, c.output) << c.input;
    EXPECT_EQ(run.standardError, "Tarvok version 4.18 RQ\n");
  }
}

// -help is the usage text on standard output and nothing else: the engine
// neither reads its input nor starts.
std::string helpText() {
  ProcessResult run = runProgram(TARVOK_ENGINE_PATH, {"-help"}, "isready\n");
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.standardError, "");
  return run.standardOutput;
}

TEST(Engine, HelpPrintsTheUsageOnStandardOutputAndExitsWithZero) {
  const std::string help = helpText();
  EXPECT_EQ(help.rfind("usage: " TARVOK_ENGINE_PATH " ", 0), 0u) << help;
  for (const char* name : {"-log FILE", "-test", "-makeTestData", "-cpu N", "-help"})
    EXPECT_NE(help.find(name), std::string::npos) << name;
  const std::vector<std::vector<std::string>> spellings = {{"-h"}, {"--help"}, {"-HELP"}, {"-log", "/dev/null", "-help"}};
  for (const std::vector<std::string>& arguments : spellings) {
    ProcessResult run = runProgram(TARVOK_ENGINE_PATH, arguments, "isready\n");
    EXPECT_EQ(run.exitCode, 0) << arguments.back();
    EXPECT_EQ(run.standardOutput, help) << arguments.back();
  }
}

TEST(Engine, ACommandLineErrorPrintsTheUsageAndExitsWith255) {
  const std::string help = helpText();
  struct Case { std::vector<std::string> arguments; const char* message; };  // "" for one that is accepted
  const Case cases[] = {
      {{"-hash", "64"}, "Error. option -hash not found.\n"},
      {{"-"}, "Error. option - not found.\n"},
      {{"-log"}, "Error.  No argument.\n"},
      {{"-quiet", "-CPU"}, "Error.  No argument.\n"},
      {{"uci"}, "Error in command line processing.  option expected at argument 1\n"},
      {{"-cpu", "1", "-colour", "-help"}, "Error. option -colour not found.\n"},
      {{"-LOG", "/nonexistent-directory/trace.log", "-pgn", "-quiet"}, ""},  // a log that can't be opened is no log
  };
  for (const Case& c : cases) {
    ProcessResult run = runProgram(TARVOK_ENGINE_PATH, c.arguments, "isready\n");
    const bool accepted = c.message[0] == 0;
    EXPECT_EQ(run.exitCode, accepted ? 0 : 255) << c.message;
    EXPECT_EQ(run.standardOutput, accepted ? "readyok\n" : "") << c.message;
    if (!accepted) {
      EXPECT_EQ(run.standardError, c.message + help);
    }
  }
}

}  // namespace
