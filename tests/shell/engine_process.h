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

ProcessResult runProgram(const char* path, const std::vector<std::string>& arguments,
                         const std::string& input, double timeLimitSeconds = 10.0);
