// Test-only: an evaluation frame taken as far as evaluate takes it before
// the threats, with every attack map filled, so that later terms can be
// looked at one by one.
#pragma once

#include "board/types.h"
#include "eval/eval_frame.h"
#include "eval/pieces.h"

namespace evaltest {

inline EvalFrame frameWithAttacks(const Position& p) {
  EvalFrame frame;
  prepareFrame(p, frame);
  for (int colour = 0; colour < 2; ++colour) pieceLoops(p, frame, colour);
  for (int colour = 0; colour < 2; ++colour)
    frame.allAttacks[colour] = frame.pawnAttacks[colour] | frame.knightAttackMap[colour] |
                               frame.bishopAttackMap[colour] | frame.rookAttackMap[colour] |
                               frame.queenAttackMap[colour];
  return frame;
}

}  // namespace evaltest
