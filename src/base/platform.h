// The few services of the operating system that the engine uses: one clock,
// one short sleep and a hint about memory pages. Threads and the lock come from the standard library.
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

// The size of a huge page, and the alignment of the large tables that ask
// for them.
constexpr unsigned long hugePageBytes = 2ul * 1024 * 1024;

// Asks the system to back [memory, memory + bytes) with huge pages, before
// the memory is first written. Tables that are looked up at random, far
// larger than the processor's cache of page translations, otherwise pay a
// page walk on many lookups. Only a hint: where the system has no such
// pages, or doesn't give them, nothing changes but the speed.
void adviseHugePages(void* memory, unsigned long bytes);
