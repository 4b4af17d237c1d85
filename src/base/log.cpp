#include "base/log.h"

#include <cstdarg>

EngineLog engineLog;

void openLog(const char* fileName) {
  engineLog.file = std::fopen(fileName, "a+");
  if (engineLog.file) std::setvbuf(engineLog.file, nullptr, _IONBF, 0);
}

void logPrintf(const char* format, ...) {
  if (!engineLog.file) return;
  char text[8200];
  va_list args;
  va_start(args, format);
  std::vsnprintf(text, sizeof text, format, args);
  va_end(args);
  std::fputs(text, engineLog.file);
  std::fflush(engineLog.file);
}
