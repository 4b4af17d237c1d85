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

}  // namespace
