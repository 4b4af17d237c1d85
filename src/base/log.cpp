#include "base/log.h"

#include <cstdarg>

FILE* logFile = nullptr;

void openLog(const char* fileName) {
  logFile = std::fopen(fileName, "a+");
  if (logFile) std::setvbuf(logFile, nullptr, _IONBF, 0);
}

void logPrintf(const char* format, ...) {
  if (!logFile) return;
  char text[8200];
  va_list args;
  va_start(args, format);
  std::vsnprintf(text, sizeof text, format, args);
  va_end(args);
  std::fputs(text, logFile);
  std::fflush(logFile);
}
