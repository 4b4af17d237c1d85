// The fuzz builds' stand-in for src/shell/engine_exit.cpp: instead of ending
// the process, an exit goes back to the fuzz target as an exception, so that
// the fuzzer counts an orderly stop as an ordinary outcome of its input.
#include "base/engine_exit.h"

#include "harness.h"

void fatalExit(const char*, ...) { throw EngineExit{1}; }

void quitEngine() { throw EngineExit{0}; }
