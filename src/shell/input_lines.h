// The client's lines: standard input, read on the engine's input thread a
// line at a time, and a wake-up through which a search that has answered
// interrupts the thread's wait, so that the commands it held back can run.
#pragma once

#include <cstdint>

// The longest line the engine takes, in bytes before its line feed: room for
// the move list of a game of several thousand plies. A longer line is never
// served in part, where a cut move list would set up another game and the
// tail of a line could run as a command: it is dropped whole.
constexpr int longestLine = 65536;
constexpr int lineBytes = longestLine + 1;  // the line and a terminator

struct LineReader {
  int fd = 0;
  int wakePipe[2] = {-1, -1};  // a byte written to [1] ends a wait
  // Bytes read from fd and not yet cut into lines.
  char buffer[4096];
  int start = 0;
  int end = 0;
  bool ended = false;  // fd has met its end (or a read error)
  // The line being cut, without its line feed.
  char line[lineBytes];
  int length = 0;
  bool tooLong = false;
};

extern LineReader clientInput;  // standard input

// Sets the reader up on fd, with its wake-up pipe. False if no pipe can be made.
bool openLineReader(LineReader& reader, int fd);

enum class LineStatus {
  Line,     // reader.line holds the next line
  Dropped,  // a line of more than longestLine bytes was read to its end and dropped
  Woken,    // another thread called wakeLineReader
  Ended,    // the input has ended and every line has been taken
};

// Waits for the next line of the input or a wake-up. A last line without a
// line feed is a line too.
LineStatus nextLine(LineReader& reader);

// Ends the reader's current or next wait with Woken; any thread may call it.
void wakeLineReader(LineReader& reader);
