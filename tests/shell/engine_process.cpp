#include "engine_process.h"

#include <chrono>
#include <csignal>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

ProcessResult runProgram(const char* path, const std::vector<std::string>& arguments,
                         const std::string& input, double timeLimitSeconds, const char* workingDirectory) {
  ProcessResult result{"", "", -1, false};
  int in[2], out[2], err[2];
  if (pipe(in) || pipe(out) || pipe(err)) return result;

  pid_t child = fork();
  if (child == 0) {
    dup2(in[0], 0);
    dup2(out[1], 1);
    dup2(err[1], 2);
    for (int fd : {in[0], in[1], out[0], out[1], err[0], err[1]}) close(fd);
    if (workingDirectory && chdir(workingDirectory) != 0) _exit(126);
    std::vector<char*> argv;
    argv.push_back(const_cast<char*>(path));
    for (const std::string& a : arguments) argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);
    execv(path, argv.data());
    _exit(127);
  }
  close(in[0]);
  close(out[1]);
  close(err[1]);
  signal(SIGPIPE, SIG_IGN);  // an engine that quits early closes its input

  // Input goes in between reads, so that neither side can stall the other
  // on a full pipe. fds[i].fd < 0 makes poll skip a closed stream.
  pollfd fds[3] = {{out[0], POLLIN, 0}, {err[0], POLLIN, 0}, {in[1], POLLOUT, 0}};
  std::string* sinks[2] = {&result.standardOutput, &result.standardError};
  size_t written = 0;
  if (input.empty()) {
    close(fds[2].fd);
    fds[2].fd = -1;
  }
  auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(timeLimitSeconds);
  while (fds[0].fd >= 0 || fds[1].fd >= 0) {
    auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    if (left.count() <= 0) {
      kill(child, SIGKILL);
      result.timedOut = true;
      break;
    }
    if (poll(fds, 3, static_cast<int>(left.count())) <= 0) continue;
    for (int k = 0; k < 2; ++k) {
      if (fds[k].fd < 0 || !(fds[k].revents & (POLLIN | POLLHUP | POLLERR))) continue;
      char buffer[4096];
      ssize_t got = read(fds[k].fd, buffer, sizeof buffer);
      if (got > 0) {
        sinks[k]->append(buffer, static_cast<size_t>(got));
      } else {
        close(fds[k].fd);
        fds[k].fd = -1;
      }
    }
    if (fds[2].fd >= 0 && (fds[2].revents & (POLLOUT | POLLERR | POLLHUP))) {
      ssize_t put = write(fds[2].fd, input.data() + written, input.size() - written);
      if (put > 0) written += static_cast<size_t>(put);
      if (put < 0 || written == input.size()) {
        close(fds[2].fd);
        fds[2].fd = -1;
      }
    }
  }
  for (pollfd& p : fds)
    if (p.fd >= 0) close(p.fd);

  int status = 0;
  waitpid(child, &status, 0);
  if (WIFEXITED(status)) result.exitCode = WEXITSTATUS(status);
  return result;
}
