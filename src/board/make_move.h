// The only way a position changes: copy the record and apply one move.
#pragma once

#include <cstdint>

#include "base/types.h"

// Copies source into destination and plays move there (0 is the null move),
// keeping every key and sum up to date. No legality test
// and no inCheck: the caller asks kingAttacked afterwards and sets inCheck.
// Always returns true.
bool makeMove(const Position& source, Position& destination, Move move);
