#include "shell/input_lines.h"

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

LineReader clientInput;

namespace {

LineStatus finishLine(LineReader& reader) {
  const bool dropped = reader.tooLong;
  reader.line[reader.length] = '\0';
  reader.length = 0;
  reader.tooLong = false;
  return dropped ? LineStatus::Dropped : LineStatus::Line;
}

// Cuts the next whole line out of the bytes read so far; false if there is none yet.
bool cutLine(LineReader& reader) {
  while (reader.start < reader.end) {
    const char c = reader.buffer[reader.start++];
    if (c == '\n') return true;
    if (reader.length == longestLine) reader.tooLong = true;
    if (!reader.tooLong) reader.line[reader.length++] = c;
  }
  return false;
}

void drainWakePipe(LineReader& reader) {
  char bytes[64];
  while (read(reader.wakePipe[0], bytes, sizeof bytes) > 0) {
  }
}

}  // namespace

bool openLineReader(LineReader& reader, int fd) {
  reader.fd = fd;
  reader.start = reader.end = reader.length = 0;
  reader.ended = reader.tooLong = false;
  if (reader.wakePipe[0] >= 0) return true;
  if (pipe(reader.wakePipe) != 0) return false;
  for (int end : reader.wakePipe) fcntl(end, F_SETFL, fcntl(end, F_GETFL) | O_NONBLOCK);
  return true;
}

LineStatus nextLine(LineReader& reader) {
  for (;;) {
    if (cutLine(reader)) return finishLine(reader);
    if (reader.ended) {
      if (reader.length > 0 || reader.tooLong) return finishLine(reader);
      return LineStatus::Ended;
    }
    pollfd watched[2] = {{reader.fd, POLLIN, 0}, {reader.wakePipe[0], POLLIN, 0}};
    if (poll(watched, 2, -1) < 0) {
      if (errno == EINTR) continue;
      reader.ended = true;
      continue;
    }
    if (watched[1].revents & POLLIN) {
      drainWakePipe(reader);
      return LineStatus::Woken;
    }
    if (watched[0].revents == 0) continue;
    const ssize_t got = read(reader.fd, reader.buffer, sizeof reader.buffer);
    if (got < 0 && (errno == EINTR || errno == EAGAIN)) continue;
    if (got <= 0) {
      reader.ended = true;
      continue;
    }
    reader.start = 0;
    reader.end = static_cast<int>(got);
  }
}

void wakeLineReader(LineReader& reader) {
  const char byte = 1;
  // A full pipe already holds a wake-up; nothing is lost.
  [[maybe_unused]] ssize_t written = write(reader.wakePipe[1], &byte, 1);
}
