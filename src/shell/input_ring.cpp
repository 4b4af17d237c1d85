#include "shell/input_ring.h"

#include <cerrno>
#include <cstring>
#include <thread>
#include <unistd.h>

#include "base/platform.h"

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

constexpr int lineTooLong = -1;

// fgets on a raw descriptor, with a limit that cuts nothing: reads the next
// line, its line feed included, into line (slotBytes long). Returns its
// length, 0 only at the end of input, or lineTooLong once a line with more
// than longestLine bytes before its line feed has been read to its end.
int readLine(LineSource& source, char* line) {
  int length = 0;
  bool tooLong = false;
  for (;;) {
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
    if (c != '\n' && length == longestLine) tooLong = true;
    if (!tooLong) line[length++] = c;
    if (c == '\n') break;
  }
  if (tooLong) return lineTooLong;
  line[length] = '\0';
  return length;
}

void storeSlot(InputRing& ring, const char* line, bool dropped) {
  for (;;) {
    {
      std::lock_guard<std::mutex> hold(ring.inputLock);
      int next = (ring.writeIndex + 1) % ringSlots;
      // A full ring holds 127 unread lines; waiting here instead of writing
      // on means a client that floods the engine loses nothing.
      if (next != ring.readIndex) {
        InputSlot& slot = ring.slots[ring.writeIndex];
        size_t length = strnlen(line, slotBytes - 1);
        std::memcpy(slot.text, line, length);
        slot.text[length] = '\0';
        slot.dropped = dropped;
        ring.writeIndex = next;
        return;
      }
    }
    sleepOneMillisecond();
  }
}

}  // namespace

void storeInputLine(InputRing& ring, const char* line) { storeSlot(ring, line, false); }

void readInputLines(InputRing& ring, int fd) {
  LineSource source{};
  source.fd = fd;
  // On the reader thread's own stack, once for all lines.
  char line[slotBytes];
  for (int length; (length = readLine(source, line)) != 0;) {
    if (length == lineTooLong) {
      storeSlot(ring, "", true);
    } else {
      storeSlot(ring, line, false);
    }
  }
  std::lock_guard<std::mutex> hold(ring.inputLock);
  ring.inputEnded = 1;
}

InputSlot* takeInputLine(InputRing& ring) {
  std::lock_guard<std::mutex> hold(ring.inputLock);
  if (ring.readIndex == ring.writeIndex) return nullptr;
  InputSlot* slot = &ring.slots[ring.readIndex];
  ring.readIndex = (ring.readIndex + 1) % ringSlots;
  return slot;
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
