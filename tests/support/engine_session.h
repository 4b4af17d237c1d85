// A built program driven through pipes, as a GUI drives the engine: send a
// command, then wait for a line that answers it.
#pragma once

#include <string>
#include <vector>
#include <sys/types.h>

class EngineSession {
 public:
  // The program runs in workingDirectory if one is given, else in the caller's.
  explicit EngineSession(const char* path, const std::vector<std::string>& arguments = {},
                         const char* workingDirectory = nullptr);
  ~EngineSession();
  EngineSession(const EngineSession&) = delete;
  EngineSession& operator=(const EngineSession&) = delete;

  void send(const std::string& line) { write(line + "\n"); }
  // Writes text as it stands, without a line ending of its own.
  void write(const std::string& text);
  void closeInput();
  // Reads lines until one starts with prefix; returns it, or "" after the
  // time limit. Every line read on the way is kept in transcript.
  std::string waitFor(const std::string& prefix, double seconds);
  // Reads to the end of the output and waits for the process to end; its
  // exit code, or -1 if it didn't exit normally or the time ran out first.
  int waitForExit(double seconds);
  // What the program has written to its standard error so far.
  std::string errors();

  std::string transcript;  // a last line without line ending is added by waitForExit
  bool timedOut = false;

 private:
  bool readLine(std::string& line, double seconds);
  pid_t child_ = -1;
  int input_ = -1;
  int output_ = -1;
  int error_ = -1;
  std::string pending_;
};

struct ProcessResult {
  std::string standardOutput;
  std::string standardError;
  int exitCode;   // -1 if the program didn't exit normally
  bool timedOut;  // killed after the time limit
};

// Runs a program on the whole of input and collects what it writes and how it ends.
ProcessResult runProgram(const char* path, const std::vector<std::string>& arguments, const std::string& input,
                         double timeLimitSeconds = 10.0, const char* workingDirectory = nullptr);
