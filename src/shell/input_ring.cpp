#include "shell/input_ring.h"

#include <cerrno>
#include <cstring>
#include <thread>
#include <unistd.h>

#include "shell/platform.h"

InputRing inputRing;

namespace {

// Reads from the descriptor with a small buffer of its own, so that standard
// input is never touched through a stdio stream that exit() would flush.
struct LineSource {
  int fd;
  char buffer[4096];
  int start;
  int end;
  bool ended;
};

// fgets on a raw descriptor: at most limit - 1 bytes, up to and including the
// first line feed. Returns the length; 0 only at end of input.
int readLine(LineSource& source, char* line, int limit) {
  int length = 0;
  while (length < limit - 1) {
    if (source.start == source.end) {
      if (source.ended) break;
      ssize_t got = read(source.fd, source.buffer, sizeof source.buffer);
      if (got < 0 && errno == EINTR) continue;
      if (got <= 0) {
        source.ended = true;
        break;
      }
      source.start = 0;
      source.end = static_cast<int>(got);
    }
    char c = source.buffer[source.start++];
    line[length++] = c;
    if (c == '\n') break;
  }
  line[length] = '\0';
  return length;
}

}  // namespace

void storeInputLine(InputRing& ring, const char* line) {
  for (;;) {
    {
      std::lock_guard<std::mutex> hold(ring.inputLock);
      int next = (ring.writeIndex + 1) % ringSlots;
      // A full ring holds 127 unread lines; waiting here instead of writing
      // on means a client that floods the engine loses nothing.
      if (next != ring.readIndex) {
        size_t length = strnlen(line, slotBytes - 1);
        std::memcpy(ring.lines[ring.writeIndex], line, length);
        ring.lines[ring.writeIndex][length] = '\0';
        ring.writeIndex = next;
        return;
      }
    }
    sleepOneMillisecond();
  }
}

void readInputLines(InputRing& ring, int fd) {
  LineSource source{};
  source.fd = fd;
  char line[readLimit];
  while (readLine(source, line, readLimit) > 0) storeInputLine(ring, line);
  std::lock_guard<std::mutex> hold(ring.inputLock);
  ring.inputEnded = 1;
}

char* takeInputLine(InputRing& ring) {
  std::lock_guard<std::mutex> hold(ring.inputLock);
  if (ring.readIndex == ring.writeIndex) return nullptr;
  char* line = ring.lines[ring.readIndex];
  ring.readIndex = (ring.readIndex + 1) % ringSlots;
  return line;
}

bool inputFinished(InputRing& ring) {
  std::lock_guard<std::mutex> hold(ring.inputLock);
  return ring.inputEnded && ring.readIndex == ring.writeIndex;
}

void startInputReader() {
  {
    std::lock_guard<std::mutex> hold(inputRing.inputLock);
    inputRing.writeIndex = 0;
    inputRing.readIndex = 0;
    inputRing.inputEnded = 0;
  }
  // Detached: the process ends by exit() while the reader may still be
  // blocked in read(), and nothing ever waits for it.
  std::thread(readInputLines, std::ref(inputRing), 0).detach();
}
