// The few services of the operating system that the engine uses: one clock
// and one short sleep. Threads and the lock come from the standard library.
#pragma once

// Nonzero makes every time measure whole seconds (the -cpu switch).
struct ClockSettings {
  int wholeSeconds = 0;
};

extern ClockSettings clockSettings;

// Seconds from an arbitrary origin; only differences are ever used. A nonzero
// mode truncates to whole seconds.
double clock(int mode);

// The pause of every wait loop: about one millisecond.
void sleepOneMillisecond();
