// The opening book: a Polyglot file read record by record from disk.
#pragma once

#include <cstdint>
#include <cstdio>

#include "board/types.h"

extern const uint64_t polyglotRandom[781];
extern FILE* bookFile;  // null: no book

// Closes any open book and, if OwnBook is on, opens the named file.
void openBook();

// The Polyglot key of a position, computed from the board.
uint64_t polyglotKey(const Position& position);

// A weighted random choice among the book's moves for this position, or 0.
Move probeBook(const Position& root);

// Reverses length bytes in place: the book's numbers are big-endian.
void reverseBytes(void* data, int length);
