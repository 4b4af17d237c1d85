#include "eval/eval_frame.h"

#include "board/attacks.h"

void prepareFrame(const Position& position, EvalFrame& frame) {
  // Field by field rather than one clearing of the whole record: this runs
  // at nearly every node, and a block clear costs more than the stores.
  for (int colour = 0; colour < 2; ++colour) {
    const Bitboard* own = position.pieces[colour];
    frame.score[colour] = 0;
    frame.kingSquare[colour] = kingSquareOf(position, colour);
    frame.kingRing[colour] = kingAttacks[frame.kingSquare[colour]];
    frame.pawnCount[colour] = popCount(own[Pawn]);
    Bitboard knightMap = 0;
    for (Bitboard b = own[Knight]; b;) knightMap |= knightAttacks[popLowest(b)];
    frame.knightAttackMap[colour] = knightMap;
    frame.pawnAttacks[colour] = pawnAttackSet(colour, own[Pawn]);
    frame.bishopAttackMap[colour] = 0;
    frame.rookAttackMap[colour] = 0;
    frame.queenAttackMap[colour] = 0;
    frame.allAttacks[colour] = 0;
    frame.materialTally[colour] = 0;
    frame.pieceCount[colour] = 0;
  }
}
