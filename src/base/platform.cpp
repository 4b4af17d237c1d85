#include "base/platform.h"

#include <chrono>
#include <cmath>
#include <thread>

#ifdef __linux__
#include <sys/mman.h>
#endif

ClockSettings clockSettings;

double clock(int mode) {
  using namespace std::chrono;
  double seconds = duration<double>(steady_clock::now().time_since_epoch()).count();
  return mode ? std::trunc(seconds) : seconds;
}

void sleepOneMillisecond() { std::this_thread::sleep_for(std::chrono::milliseconds(1)); }

void adviseHugePages([[maybe_unused]] void* memory, [[maybe_unused]] unsigned long bytes) {
#ifdef MADV_HUGEPAGE
  madvise(memory, bytes, MADV_HUGEPAGE);
#endif
}
