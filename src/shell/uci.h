// The protocol loop: the engine's input thread reads the client's lines and
// carries each command out as it arrives. isready, stop, ponderhit, quit and
// debug are answered at once, also while a search runs; every other command
// that arrives while a search runs waits, in order, until the search has
// answered bestmove, so that nothing changes under a running search and
// nothing a client sends is refused or lost.
#pragma once

#include <cstdint>
#include <deque>
#include <string>

#include "shell/input_lines.h"

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
  hashDebug = 0x0F49A52C,
};

// hash = hash * 33 + byte from 5381, bytes taken as signed, modulo 2^32.
uint32_t commandHash(const char* word);

struct UciSession {
  std::deque<std::string> waiting;  // commands held back until the search has answered
  bool inputEnded = false;
  // The line being carried out, cut into words in place.
  char line[lineBytes];
  char* tokens[lineBytes / 2 + 1];
};

extern UciSession uciSession;

// The answer to "uci": identity, every option with its current value, uciok.
void printUciAnswer();

// Takes one line of the client as the input thread does: answers it at once,
// carries it out, or holds it back behind the running search. Any word not
// in the table is dropped without an answer; its only trace is in the log.
void takeClientLine(const char* text);

// Waits for the running search to answer and carries out every command held
// back behind it (what the input thread does between lines).
void runWaitingCommands();

// UCI mode: reads and carries out the client's lines until quit, or until
// the input ends and every search it started has answered; then the engine
// ends with code 0.
[[noreturn]] void runUciLoop();
