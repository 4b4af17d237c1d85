#include "engine_session.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

double secondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

EngineSession::EngineSession(const char* path, const std::vector<std::string>& arguments,
                             const char* workingDirectory) {
  std::vector<char*> argv{const_cast<char*>(path)};
  for (const std::string& a : arguments) argv.push_back(const_cast<char*>(a.c_str()));
  argv.push_back(nullptr);
  int in[2], out[2], err[2];
  if (pipe(in) || pipe(out) || pipe(err)) return;
  child_ = fork();
  if (child_ == 0) {
    dup2(in[0], 0);
    dup2(out[1], 1);
    dup2(err[1], 2);
    for (int fd : {in[0], in[1], out[0], out[1], err[0], err[1]}) close(fd);
    if (workingDirectory && chdir(workingDirectory) != 0) _exit(126);
    execv(path, argv.data());
    _exit(127);
  }
  close(in[0]);
  close(out[1]);
  close(err[1]);
  input_ = in[1];
  output_ = out[0];
  error_ = err[0];
  fcntl(error_, F_SETFL, O_NONBLOCK);
  signal(SIGPIPE, SIG_IGN);
}

EngineSession::~EngineSession() {
  closeInput();
  for (int fd : {output_, error_})
    if (fd >= 0) close(fd);
  if (child_ > 0) {
    kill(child_, SIGKILL);
    waitpid(child_, nullptr, 0);
  }
}

void EngineSession::write(const std::string& text) {
  if (input_ >= 0 && ::write(input_, text.data(), text.size()) < 0) closeInput();
}

void EngineSession::closeInput() {
  if (input_ >= 0) close(input_);
  input_ = -1;
}

bool EngineSession::readLine(std::string& line, double seconds) {
  auto start = std::chrono::steady_clock::now();
  for (;;) {
    size_t end = pending_.find('\n');
    if (end != std::string::npos) {
      line = pending_.substr(0, end);
      pending_.erase(0, end + 1);
      transcript += line + "\n";
      return true;
    }
    double left = seconds - secondsSince(start);
    if (left <= 0 || output_ < 0) return false;
    pollfd fd{output_, POLLIN, 0};
    if (poll(&fd, 1, static_cast<int>(left * 1000) + 1) <= 0) continue;
    char buffer[4096];
    ssize_t got = read(output_, buffer, sizeof buffer);
    if (got <= 0) {
      close(output_);
      output_ = -1;
      return false;
    }
    pending_.append(buffer, static_cast<size_t>(got));
  }
}

std::string EngineSession::waitFor(const std::string& prefix, double seconds) {
  auto start = std::chrono::steady_clock::now();
  std::string line;
  while (readLine(line, seconds - secondsSince(start)))
    if (line.compare(0, prefix.size(), prefix) == 0) return line;
  return "";
}

int EngineSession::waitForExit(double seconds) {
  auto start = std::chrono::steady_clock::now();
  for (std::string line; output_ >= 0 && readLine(line, seconds - secondsSince(start));) {
  }
  transcript += pending_;
  pending_.clear();
  for (int status = 0; secondsSince(start) < seconds; usleep(1000)) {
    if (waitpid(child_, &status, WNOHANG) != child_) continue;
    child_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  timedOut = true;
  return -1;
}

std::string EngineSession::errors() {
  std::string text;
  char buffer[4096];
  for (ssize_t got; error_ >= 0 && (got = read(error_, buffer, sizeof buffer)) > 0;) text.append(buffer, got);
  return text;
}

ProcessResult runProgram(const char* path, const std::vector<std::string>& arguments, const std::string& input,
                         double timeLimitSeconds, const char* workingDirectory) {
  EngineSession program(path, arguments, workingDirectory);
  // The inputs of the tests are far below a pipe's buffer, so writing all
  // of it before reading can't stall either side.
  program.write(input);
  program.closeInput();
  const int exitCode = program.waitForExit(timeLimitSeconds);
  return {program.transcript, program.errors(), exitCode, program.timedOut};
}
