// The command-line switches: a table of names, destinations and actions.
#pragma once

#include <cstdint>
#include <cstdio>

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

struct CommandLine {
  int32_t selfTest = 0;                // -test
  int32_t makeTestData = 0;            // -makeTestData
  int32_t pgn = 0;                     // -pgn: accepted, nothing reads it
  int32_t help = 0;                    // -help, -h, --help: print the usage text and exit
  char logFileName[logFileNameSize] = "";  // -log; empty means no log
};

extern CommandLine commandLine;

extern const SwitchRow switchTable[];

// The short help: on standard output for -help, on standard error after a
// command-line error.
void usage(std::FILE* out, const char* programName);

// Clears commandLine.logFileName and reads argv[1..argc-1] into the table's destinations.
// Returns 0, or -1 after printing the error and the usage text.
int readSwitches(int argc, char** argv);
