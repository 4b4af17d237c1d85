// The opening book: a Polyglot file read record by record from disk.
#pragma once

#include <cstdint>
#include <cstdio>

#include "base/types.h"

extern const uint64_t polyglotRandom[781];
struct OpeningBook {
  FILE* file = nullptr;  // null: no book
};

extern OpeningBook openingBook;

enum class BookOpening { Off, Opened, Missing, Unreadable };

// Closes any open book and, if OwnBook is on, opens the named file. A name
// that isn't a regular file, or a file that doesn't read whole to the size
// it claims, is no book, as a missing one is: the engine searches instead.
BookOpening openBook();

// Tells the client, in one info string, that the named book can't be read
// and the engine plays without it.
void sayBookUnreadable();

// The Polyglot key of a position, computed from the board.
uint64_t polyglotKey(const Position& position);

// A weighted random choice among the book's moves for this position, or 0.
Move probeBook(const Position& root);

// Reverses length bytes in place: the book's numbers are big-endian.
void reverseBytes(void* data, int length);
