#include "engine_process.h"

#include <cstdio>
#include <fstream>
#include <sstream>
#include <unistd.h>

#include "engine_session.h"

ProcessResult runProgram(const char* path, const std::vector<std::string>& arguments,
                         const std::string& input, double timeLimitSeconds, const char* workingDirectory) {
  ProcessResult result{"", "", -1, false};
  char errorPath[] = "/tmp/tarvok-stderr-XXXXXX";
  close(mkstemp(errorPath));
  {
    // The inputs of the tests are far below a pipe's buffer, so writing all
    // of it before reading can't stall either side.
    EngineSession program(path, arguments, workingDirectory, errorPath);
    program.write(input);
    program.closeInput();
    result.exitCode = program.waitForExit(timeLimitSeconds);
    result.timedOut = program.timedOut;
    result.standardOutput = program.transcript;
  }
  std::ifstream file(errorPath);
  std::stringstream text;
  text << file.rdbuf();
  result.standardError = text.str();
  std::remove(errorPath);
  return result;
}
