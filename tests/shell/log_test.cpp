#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>

#include "shell/log.h"

namespace {

std::string readBack(FILE* file) {
  std::rewind(file);
  std::string text;
  char buffer[4096];
  size_t got;
  while ((got = std::fread(buffer, 1, sizeof buffer, file)) > 0) text.append(buffer, got);
  return text;
}

struct LogToTemporaryFile : testing::Test {
  FILE* saved = logFile;
  void SetUp() override { logFile = std::tmpfile(); }
  void TearDown() override {
    if (logFile) std::fclose(logFile);
    logFile = saved;
  }
};

TEST_F(LogToTemporaryFile, WritesFormattedTextAsItIs) {
  logPrintf("uci -> %s\n", "isready");
  logPrintf("Ponder set to %d\n", 0);
  logPrintf("%8.1f|%-5s|%5d\n", 2.25, "e2e4", 17);
  EXPECT_EQ(readBack(logFile), "uci -> isready\nPonder set to 0\n     2.2|e2e4 |   17\n");
}

TEST_F(LogToTemporaryFile, LongTextIsCutToTheBuffer) {
  std::string text(9000, 'q');
  text[8198] = 'A';
  text[8199] = 'B';
  logPrintf("%s", text.c_str());
  logPrintf("%s\n", "next");
  std::string written = readBack(logFile);
  ASSERT_EQ(written.size(), 8199u + 5u);
  EXPECT_EQ(written.substr(8190, 14), "qqqqqqqqAnext\n");
}

TEST(Log, WithoutAFileNothingHappens) {
  FILE* saved = logFile;
  logFile = nullptr;
  logPrintf("%s\n", "lost");
  openLog("/nonexistent-directory/tarvok.log");
  EXPECT_EQ(logFile, nullptr) << "a log that can't be opened means no log";
  logPrintf("%s\n", "still lost");
  logFile = saved;
}

TEST(Log, OpenLogAppendsToAnExistingFile) {
  char name[] = "/tmp/tarvok-log-XXXXXX";
  int fd = mkstemp(name);
  ASSERT_GE(fd, 0);
  ASSERT_EQ(write(fd, "old\n", 4), 4);
  close(fd);
  FILE* saved = logFile;
  openLog(name);
  ASSERT_NE(logFile, nullptr);
  logPrintf("new\n");
  EXPECT_EQ(readBack(logFile), "old\nnew\n");
  std::fclose(logFile);
  logFile = saved;
  std::remove(name);
}

}  // namespace
