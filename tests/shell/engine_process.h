// Runs a built program with arguments and a given standard input, and
// collects what it writes and how it ends.
#pragma once

#include <string>
#include <vector>

struct ProcessResult {
  std::string standardOutput;
  std::string standardError;
  int exitCode;    // -1 if the program didn't exit normally
  bool timedOut;   // killed after the time limit
};

// The program runs in workingDirectory if one is given, else in the caller's.
ProcessResult runProgram(const char* path, const std::vector<std::string>& arguments,
                         const std::string& input, double timeLimitSeconds = 10.0,
                         const char* workingDirectory = nullptr);
