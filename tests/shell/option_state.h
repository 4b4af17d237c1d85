// Saves every option at the start of a test and puts it back at the end, so
// that tests which set options leave no trace, and sends the log to a
// temporary file that the test can read.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "shell/log.h"
#include "shell/options.h"

struct OptionState : testing::Test {
  static constexpr int count = 12;
  int32_t saved[count];
  char savedBookFile[sizeof bookFileName];
  FILE* savedLog;

  int32_t* variables[count] = {&useLmr, &nullMovePruning, &deterministic, &bestLineOnly, &redDepthThreshold,
                            &kingSafetyAggressiveness, &moveOverheadMs, &drawScore, &hashSizeMb, &ownBook,
                            &multiPv, &ponderOption};

  void SetUp() override {
    for (int i = 0; i < count; ++i) saved[i] = *variables[i];
    std::memcpy(savedBookFile, bookFileName, sizeof bookFileName);
    savedLog = logFile;
    logFile = std::tmpfile();
  }
  void TearDown() override {
    for (int i = 0; i < count; ++i) *variables[i] = saved[i];
    std::memcpy(bookFileName, savedBookFile, sizeof bookFileName);
    if (logFile) std::fclose(logFile);
    logFile = savedLog;
  }
  std::string logText() {
    std::string text;
    std::rewind(logFile);
    char buffer[4096];
    size_t got;
    while ((got = std::fread(buffer, 1, sizeof buffer, logFile)) > 0) text.append(buffer, got);
    std::fseek(logFile, 0, SEEK_END);
    return text;
  }
};
