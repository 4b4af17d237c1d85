// Leaf count of the legal move tree: the check on move generation and
// making moves against known totals.
#pragma once

#include <cstdint>

#include "base/types.h"

// Number of legal move sequences of exactly depth plies; 1 at depth 0.
uint64_t perft(const Position& position, int depth);
