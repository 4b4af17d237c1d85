// Where castling starts from in the game being played. In standard chess
// the king stands on e1 (e8) and the rooks in the corners; in Chess960 the
// king and its rooks start on other files of the back rank, and the FEN that
// sets up the game says which. Castling always ends with the king on g1 or
// c1 (g8, c8) and the rook beside it on f1 or d1 (f8, d8).
#pragma once

#include <cstdint>

#include "base/types.h"

enum CastlingSide : int { ShortSide = 0, LongSide = 1 };  // towards the h-file, towards the a-file

struct CastlingSetup {
  Square rookHome[2][2];     // [colour][side]
  Bitboard rightMask[2][2];  // the king's home square and the rook's: a right rests while neither has moved
  Bitboard squares;          // every square of the masks: only a move that touches one changes a right
  bool standard;             // king on the e-file and rooks in the corners, for both colours
};

extern CastlingSetup castlingSetup;

// King on e1/e8, rooks in the corners.
void setStandardCastling();
// The rook of colour's side starts on rookHome, its king on kingHome.
void setCastlingRook(int colour, int side, Square kingHome, Square rookHome);

// The four rights that `moved` leaves: bit 0 white short, 1 white long, 2
// black short, 3 black long.
inline int castlingRights(Bitboard moved) {
  const CastlingSetup& s = castlingSetup;
  return ((moved & s.rightMask[White][ShortSide]) ? 0 : 1) | ((moved & s.rightMask[White][LongSide]) ? 0 : 2) |
         ((moved & s.rightMask[Black][ShortSide]) ? 0 : 4) | ((moved & s.rightMask[Black][LongSide]) ? 0 : 8);
}

// Where the king and the rook of a castling end: g1/c1 and f1/d1 (rank 8 for black).
constexpr Square castlingKingTarget(int colour, int side) { return (colour == White ? 0 : 56) + (side == ShortSide ? 6 : 2); }
constexpr Square castlingRookTarget(int colour, int side) { return (colour == White ? 0 : 56) + (side == ShortSide ? 5 : 3); }
