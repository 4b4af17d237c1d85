// The command dispatcher: one pass takes at most one line from the input ring
// and carries its command out at once. The wait loop of UCI mode, the polls
// inside the searches and the wait loop at the end of a search all call it,
// on the main thread.
#pragma once

#include <cstdint>

// The first word of a line is known by its hash alone, so a command in
// capitals is another word and is dropped.
enum CommandHash : uint32_t {
  hashUci = 0x0B88B1C6,
  hashIsReady = 0xAAEBBE96,
  hashSetOption = 0x687891EA,
  hashPosition = 0x4CEF7ABA,
  hashGo = 0x005977FB,
  hashStop = 0x7C9E1B4B,
  hashPonderHit = 0x5D4738F2,
  hashQuit = 0x7C9D0608,
  hashUciNewGame = 0x0964E38A,
};

// hash = hash * 33 + byte from 5381, bytes taken as signed, modulo 2^32.
uint32_t commandHash(const char* word);

// The answer to "uci": identity, every option with its current value, uciok.
void printUciAnswer();

// One pass of the dispatcher; true when it took a line. Any word not in the
// table is dropped without an answer; its only trace is in the log. A line
// the reader dropped for its length is answered with an info string.
bool uciPoll();
