// The fingerprints of the fifty self-test positions as the engine this one
// is built to match gives them: move, score and node count of iteration 13.
#pragma once

#include <cstdint>

#include "base/types.h"

struct ReferenceFingerprint {
  const char* fen;       // the four FEN fields of the row
  Move move;             // the move word
  const char* moveText;  // the same move as text
  int32_t score;         // centipawns, side to move's view
  uint64_t nodes;
};

constexpr int referenceRowCount = 50;
extern const ReferenceFingerprint referenceFingerprints[referenceRowCount];
