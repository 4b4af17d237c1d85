// The input reader: a second thread that only moves lines from standard input
// into a ring, so that the main thread, searching or not, never blocks on input.
#pragma once

#include <cstdint>
#include <mutex>

constexpr int ringSlots = 128;
// The longest line the engine takes, in bytes before its line feed: room for
// the move list of a game of several thousand plies. A longer line is never
// served in part, where a cut move list would set up another game and the
// tail of a line could run as a command: it is dropped whole.
constexpr int longestLine = 65536;
constexpr int slotBytes = longestLine + 2;  // the line, its line feed, a terminator

struct InputSlot {
  bool dropped;          // the client's line was longer than longestLine; text is empty
  char text[slotBytes];  // the line with its line ending and a terminator
};

// About 8 MB of slots, static: no line is ever allocated.
struct InputRing {
  std::mutex inputLock;  // guards the indices, inputEnded and the copy into a slot
  int32_t writeIndex;    // next slot the reader fills
  int32_t readIndex;     // next slot uciPoll takes; equal indices mean empty
  int32_t inputEnded;    // the reader met the end of its input (or a read error)
  InputSlot slots[ringSlots];
};

extern InputRing inputRing;  // fed from standard input

// Starts the reader thread on standard input; doesn't wait for anything.
void startInputReader();

// The reader's loop: reads lines from the file descriptor into the ring until
// end of input, then sets inputEnded. A last line without line ending is
// stored as it is. A line longer than longestLine is read to its end and
// stored as a dropped slot, without its text. While 127 lines are unread the
// reader waits, so no line is lost and the slot of the line taken last is
// never overwritten while it is handled (see takeInputLine).
void readInputLines(InputRing& ring, int fd);

// Copies one line into the next slot, waiting while the ring is full; a
// text longer than a slot is cut.
void storeInputLine(InputRing& ring, const char* line);

// The next unread slot, or null. The line stays in its slot and is handled
// there, outside the lock; the slot is safe until the next take. So a
// command that polls again while it runs (go) must read what it needs from
// its line before its first poll.
InputSlot* takeInputLine(InputRing& ring);

// True once the reader has met the end of its input and every line it read
// has been taken. In UCI mode this is the engine's cue to finish: the main
// loop exits with code 0 when it sees it after a pass, and a search that
// only a command can end (go infinite, go ponder) must treat it as a stop,
// print its bestmove and return. A search with a limit of its own runs to
// that limit first. The batch modes ignore it.
bool inputFinished(InputRing& ring);
