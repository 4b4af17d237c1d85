// The only way a position changes: copy the record and apply one move.
#pragma once

#include <cstdint>

#include "base/shared_word.h"
#include "base/types.h"

// The search's node count is the number of positions makeMove makes. Once a
// search is told to stop, the count is frozen: the moves it makes on its way
// back search nothing and count for nothing. Each thread counts its own
// positions; the main thread reads the helpers' counts while they run.
struct NodeCounter {
  SharedWord<uint64_t> nodes = 0;
  int32_t frozen = 0;
};

extern thread_local NodeCounter nodeCounter;

// Copies source into destination and plays move there (0 is the null move),
// keeping every key and sum up to date and counting a node. No legality test
// and no inCheck: the caller asks kingAttacked afterwards and sets inCheck.
// Always returns true.
bool makeMove(const Position& source, Position& destination, Move move);
