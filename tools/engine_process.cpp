#include "engine_process.h"

#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

bool EngineProcess::start(const EngineSetup& setup) {
  // A write to an engine that has died must fail, not end this process.
  std::signal(SIGPIPE, SIG_IGN);
  std::vector<char*> argv{const_cast<char*>(setup.command.c_str())};
  for (const std::string& argument : setup.arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  // Close-on-exec keeps the pipes of any other child out of this engine, so
  // an end of file means what it says.
  int in[2], out[2];
  if (pipe2(in, O_CLOEXEC) != 0) return false;
  if (pipe2(out, O_CLOEXEC) != 0) {
    close(in[0]);
    close(in[1]);
    return false;
  }
  child_ = fork();
  if (child_ == 0) {
    dup2(in[0], 0);
    dup2(out[1], 1);
    int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    dup2(nowhere, 2);
    execvp(argv[0], argv.data());
    _exit(127);
  }
  close(in[0]);
  close(out[1]);
  input_ = in[1];
  output_ = out[0];
  if (child_ < 0) {
    stop(0);
    return false;
  }
  return true;
}

bool EngineProcess::send(const std::string& line) {
  if (input_ < 0) return false;
  std::string text = line + "\n";
  for (size_t done = 0; done < text.size();) {
    ssize_t wrote = write(input_, text.data() + done, text.size() - done);
    if (wrote <= 0) {
      close(input_);
      input_ = -1;
      return false;
    }
    done += static_cast<size_t>(wrote);
  }
  return true;
}

EngineRead EngineProcess::readLine(std::string& line, EngineClock::time_point deadline) {
  for (;;) {
    size_t end = pending_.find('\n');
    if (end != std::string::npos) {
      line = pending_.substr(0, end);
      pending_.erase(0, end + 1);
      if (!line.empty() && line.back() == '\r') line.pop_back();
      return EngineRead::Line;
    }
    if (output_ < 0) return EngineRead::Closed;
    auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - EngineClock::now()).count();
    if (left < 0) return EngineRead::Timeout;
    pollfd ready{output_, POLLIN, 0};
    // Rounded up, so that a poll never returns a hair before the deadline.
    if (poll(&ready, 1, static_cast<int>(left) + 1) <= 0) continue;
    char buffer[4096];
    ssize_t got = read(output_, buffer, sizeof buffer);
    if (got <= 0) {
      close(output_);
      output_ = -1;
      // A last line without its line ending still counts.
      if (!pending_.empty()) pending_ += '\n';
      continue;
    }
    pending_.append(buffer, static_cast<size_t>(got));
  }
}

void EngineProcess::stop(double graceSeconds) {
  if (input_ >= 0) {
    send("quit");
    if (input_ >= 0) close(input_);
    input_ = -1;
  }
  if (child_ > 0) {
    auto deadline = secondsAfter(EngineClock::now(), graceSeconds);
    while (waitpid(child_, nullptr, WNOHANG) == 0) {
      if (EngineClock::now() >= deadline) {
        kill(child_, SIGKILL);
        waitpid(child_, nullptr, 0);
        break;
      }
      usleep(5000);
    }
    child_ = -1;
  }
  if (output_ >= 0) close(output_);
  output_ = -1;
  pending_.clear();
}
