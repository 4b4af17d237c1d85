#include "base/platform.h"

#include <chrono>
#include <cmath>
#include <thread>

ClockSettings clockSettings;

double clock(int mode) {
  using namespace std::chrono;
  double seconds = duration<double>(steady_clock::now().time_since_epoch()).count();
  return mode ? std::trunc(seconds) : seconds;
}

void sleepOneMillisecond() { std::this_thread::sleep_for(std::chrono::milliseconds(1)); }
