#include "base/engine_exit.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

void fatalExit(const char* format, ...) {
  va_list args;
  va_start(args, format);
  std::vfprintf(stderr, format, args);
  va_end(args);
  std::fflush(stderr);
  std::exit(1);
}

void quitEngine() { std::exit(0); }
