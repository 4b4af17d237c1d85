// The trace file: off unless -log names a file, unbuffered, appended to.
#pragma once

#include <cstdio>

struct EngineLog {
  FILE* file = nullptr;  // null means no log anywhere
};

extern EngineLog engineLog;

// Opens the log for appending; a file that can't be opened means no log.
void openLog(const char* fileName);

// printf-style write to the log. Does nothing without a log; a text longer
// than the 8200-byte buffer is cut, never overrun.
void logPrintf(const char* format, ...) __attribute__((format(printf, 1, 2)));
