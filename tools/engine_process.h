// An engine as a child process on two pipes, as `tarvok-tool bench` drives
// it: lines go in, lines come out, and every wait has a deadline, because an
// engine that hangs must end the command with an error, not stall it.
#pragma once

#include <chrono>
#include <string>
#include <utility>
#include <vector>
#include <sys/types.h>

using EngineClock = std::chrono::steady_clock;

inline EngineClock::time_point secondsAfter(EngineClock::time_point start, double seconds) {
  return start + std::chrono::duration_cast<EngineClock::duration>(std::chrono::duration<double>(seconds));
}

struct EngineSetup {
  std::string command;
  std::vector<std::string> arguments;
  std::vector<std::pair<std::string, std::string>> options;  // UCI option name, value
};

enum class EngineRead { Line, Timeout, Closed };

class EngineProcess {
 public:
  EngineProcess() = default;
  ~EngineProcess() { stop(); }
  EngineProcess(const EngineProcess&) = delete;
  EngineProcess& operator=(const EngineProcess&) = delete;

  // Starts the program with its standard error thrown away. A program that
  // can't be run shows up as a closed output at the first read.
  bool start(const EngineSetup& setup);
  // False once the engine no longer reads its input.
  bool send(const std::string& line);
  // The next line without its line ending, waiting until deadline at most.
  EngineRead readLine(std::string& line, EngineClock::time_point deadline);
  // Sends quit, gives the engine graceSeconds to exit, then kills it.
  void stop(double graceSeconds = 2.0);

 private:
  pid_t child_ = -1;
  int input_ = -1;
  int output_ = -1;
  std::string pending_;
};
