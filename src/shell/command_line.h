// The command-line switches: a table of names, destinations and actions.
#pragma once

#include <cstdint>

enum SwitchType : int {
  SwitchNone = 0,     // accepted, no effect
  SwitchString = 1,   // copies the next argument
  SwitchInteger = 2,  // converts the next argument, base 10
  SwitchFlag = 4,     // sets the destination to 1
};

struct SwitchRow {
  const char* name;  // matched without regard to case; empty ends the table
  void* destination;
  int type;
};

constexpr int logFileNameSize = 512;

extern int32_t selfTestRequested;      // -test
extern int32_t makeTestDataRequested;  // -makeTestData
extern int32_t pgnRequested;           // -pgn: accepted, nothing reads it
extern char logFileName[logFileNameSize];  // -log; empty means no log

extern const SwitchRow switchTable[];

// The short help on standard error.
void usage(const char* programName);

// Clears logFileName and reads argv[1..argc-1] into the table's destinations.
// Returns 0, or -1 after printing the error and the usage text.
int readSwitches(int argc, char** argv);
