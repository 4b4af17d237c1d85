#include "eval/eval_frame.h"

#include <cstring>

#include "board/attacks.h"

void prepareFrame(const Position& position, EvalFrame& frame) {
  std::memset(&frame, 0, sizeof frame);
  for (int colour = 0; colour < 2; ++colour) {
    const Bitboard* own = position.pieces[colour];
    frame.kingSquare[colour] = kingSquareOf(position, colour);
    frame.kingRing[colour] = kingAttacks[frame.kingSquare[colour]];
    frame.pawnCount[colour] = popCount(own[Pawn]);
    for (Bitboard b = own[Knight]; b;) frame.knightAttackMap[colour] |= knightAttacks[popLowest(b)];
    frame.pawnAttacks[colour] = pawnAttackSet(colour, own[Pawn]);
  }
}
