// In-process tests of the shell: every option saved at the start of a test
// and put back at the end, the log sent to a temporary file the test can
// read, and client lines served through the engine's own dispatcher.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "base/log.h"
#include "base/options.h"
#include "shell/tokenise.h"
#include "shell/uci.h"

struct OptionState : testing::Test {
  EngineOptions saved;
  FILE* savedLog;

  void SetUp() override {
    saved = options;
    savedLog = engineLog.file;
    engineLog.file = std::tmpfile();
  }
  void TearDown() override {
    options = saved;
    if (engineLog.file) std::fclose(engineLog.file);
    engineLog.file = savedLog;
  }
  std::string logText() {
    std::string text;
    std::rewind(engineLog.file);
    char buffer[4096];
    for (size_t got; (got = std::fread(buffer, 1, sizeof buffer, engineLog.file)) > 0;) text.append(buffer, got);
    std::fseek(engineLog.file, 0, SEEK_END);
    return text;
  }
  // Every line served in order, as a client's lines arrive; what the engine
  // printed meanwhile.
  std::string serve(const std::vector<std::string>& lines) {
    testing::internal::CaptureStdout();
    for (const std::string& line : lines) takeClientLine(line.c_str());
    runWaitingCommands();
    return testing::internal::GetCapturedStdout();
  }
};

// A command line split into words in place, as the dispatcher hands it over.
struct Words {
  std::vector<char> text;
  std::vector<char*> tokens;
  int count;
  explicit Words(const std::string& line) : text(line.begin(), line.end()), tokens(line.size() / 2 + 2) {
    text.push_back('\0');
    count = tokenise(text.data(), tokens.data());
  }
};
