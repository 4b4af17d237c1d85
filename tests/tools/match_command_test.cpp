// tarvok-tool match run as a developer runs it: the engine against itself,
// and against a scripted engine whose every fault the referee must count.
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "../support/engine_session.h"
#include "../support/uci_lines.h"

namespace {

struct MatchDirectory : testing::Test {
  std::string directory;
  void SetUp() override {
    char pattern[] = "/tmp/tarvok-match-XXXXXX";
    directory = mkdtemp(pattern) ? pattern : "";
    ASSERT_FALSE(directory.empty());
  }
  void TearDown() override { std::filesystem::remove_all(directory); }
  std::string read(const std::string& name) {
    std::ifstream file(directory + "/" + name);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
  }
};

size_t countOf(const std::string& text, const std::string& part) {
  size_t count = 0;
  for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

TEST_F(MatchDirectory, TheEngineAgainstItselfPlaysBothColoursOfAnOpening) {
  ProcessResult run = runProgram(TARVOK_TOOL_PATH,
                                 {"match", "-engine", "name=a", std::string("cmd=") + TARVOK_ENGINE_PATH, "-engine",
                                  "name=b", std::string("cmd=") + TARVOK_ENGINE_PATH, "option.Hash=16", "-tc",
                                  "2+0.05", "-games", "2", "-concurrency", "2", "-maxmoves", "6", "-pgn",
                                  directory + "/games.pgn"},
                                 "", 60.0);
  ASSERT_FALSE(run.timedOut);
  EXPECT_EQ(run.exitCode, 0) << run.standardError;
  EXPECT_EQ(lastLineStartingWith(run.standardOutput, "Games:").rfind("Games: 2, a vs b: ", 0), 0u)
      << run.standardOutput;
  EXPECT_EQ(linesStartingWith(run.standardOutput, "Game ").size(), 2u);
  for (const char* name : {"a:", "b:"})
    EXPECT_EQ(lastLineStartingWith(run.standardOutput, name).find("time losses 0, illegal moves 0, crashes 0;"), 3u)
        << run.standardOutput;
  std::string pgn = read("games.pgn");
  EXPECT_EQ(countOf(pgn, "[White \"a\"]"), 1u) << pgn;
  EXPECT_EQ(countOf(pgn, "[White \"b\"]"), 1u) << pgn;
}

// Its first answer shows a pv with a move that can't be played, one that
// plays on after fool's mate and a main line that doesn't start with its
// move. As white all but the first pv are legal and so is the move, and the
// second answer comes too late; as black both other pvs and the move are
// illegal.
constexpr const char* scriptedEngine = R"(#!/bin/sh
n=0
while read -r line; do
  case "$line" in
    uci) echo uciok;;
    isready) echo readyok;;
    go*) n=$((n+1)); [ $n -ge 2 ] && sleep 1
         echo "info depth 1 pv e2e5"
         echo "info depth 3 pv f2f3 e7e5 g2g4 d8h4 a2a3"
         echo "info depth 4 pv g1f3 g8f6"
         echo "bestmove b1c3";;
    quit) exit 0;;
  esac
done
)";

TEST_F(MatchDirectory, CountsEveryFaultOfAScriptedEngineAndLogsTheWarnings) {
  std::string script = directory + "/scripted.sh";
  std::ofstream(script) << scriptedEngine;
  chmod(script.c_str(), 0755);
  ProcessResult run = runProgram(TARVOK_TOOL_PATH,
                                 {"match", "-engine", "name=fake", "cmd=" + script, "-engine", "name=tarvok",
                                  std::string("cmd=") + TARVOK_ENGINE_PATH, "-tc", "0.5", "-games", "2", "-log",
                                  directory + "/match.log"},
                                 "", 60.0);
  ASSERT_FALSE(run.timedOut);
  EXPECT_EQ(run.exitCode, 0) << run.standardError;
  EXPECT_EQ(lastLineStartingWith(run.standardOutput, "Games:"),
            "Games: 2, fake vs tarvok: +0 =0 -2, points 0.0 - 2.0 (0.0%)");
  EXPECT_EQ(lastLineStartingWith(run.standardOutput, "fake:"),
            "fake: time losses 1, illegal moves 1, crashes 0; warnings: Illegal PV move 4, "
            "PV continues after game end 1, Bestmove does not match 2");
  std::string log = read("match.log");
  EXPECT_EQ(countOf(log, "Warning; Illegal PV move - engine fake"), 4u) << log;
  EXPECT_EQ(countOf(log, "Warning; PV continues after game end - engine fake"), 1u) << log;
  EXPECT_EQ(countOf(log, "Warning; Bestmove does not match - engine fake"), 2u) << log;
  EXPECT_EQ(countOf(log, "engine tarvok"), 0u) << log;
}

}  // namespace
