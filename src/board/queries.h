// Attack and check questions about a position, and what stands where.
#pragma once

#include "base/types.h"

// The piece of colour on the square, looked for from pawn to king; NoPiece
// if the square holds none of colour's pieces.
inline int pieceOn(const Position& position, int colour, Square square) {
  const Bitboard bit = squareBit(square);
  for (int piece = Pawn; piece <= King; ++piece)
    if (position.pieces[colour][piece] & bit) return piece;
  return NoPiece;
}

// All squares attacked by colour, defended own pieces included.
Bitboard attackMap(const Position& position, int colour);
// 1 if the king of colour stands on a square the other colour attacks.
int kingInAttackMap(const Position& position, int colour);
// Same answer without building the map; only the low bit of colour is used.
int kingAttacked(const Position& position, int colour);
// 1 if the move (of the side to move, not yet made) gives check by the moved
// piece in its old form or by a line it uncovers. 0 proves nothing.
int givesCheck(const Position& position, Move move);
