// Where castling starts from in the game being played. In standard chess
// the king stands on e1 (e8) and the rooks in the corners; in Chess960 the
// king and its rooks start on other files of the back rank, and the FEN that
// sets up the game says which. Castling always ends with the king on g1 or
// c1 (g8, c8) and the rook beside it on f1 or d1 (f8, d8). Each position
// carries its game's homes (Position::castling): no game's setup is held
// anywhere else.
#pragma once

#include <bit>
#include <cstdint>

#include "base/types.h"

enum CastlingSide : int { ShortSide = 0, LongSide = 1 };  // towards the h-file, towards the a-file

// King on e1/e8, rooks in the corners.
constexpr CastlingHomes standardCastling = {{{0x90, 0x11}, {0x90, 0x11}}};

// The rook of colour's side starts on rookHome, its king on kingHome.
void setCastlingRook(CastlingHomes& homes, int colour, int side, Square kingHome, Square rookHome);

// The king's home square and the rook's: the right rests while `moved` has
// neither bit.
inline Bitboard castlingRightMask(const CastlingHomes& homes, int colour, int side) {
  return Bitboard{homes.rightFiles[colour][side]} << (colour == White ? 0 : 56);
}

inline bool castlingRightRests(const CastlingHomes& homes, Bitboard moved, int colour, int side) {
  return (moved & castlingRightMask(homes, colour, side)) == 0;
}

// The rook stands beyond its king: on the higher of the right's two files
// for the short side, on the lower for the long side.
inline Square castlingRookHome(const CastlingHomes& homes, int colour, int side) {
  const unsigned files = homes.rightFiles[colour][side];
  const int file = side == ShortSide ? std::bit_width(files) - 1 : std::countr_zero(files);
  return (colour == White ? 0 : 56) + file;
}

inline Square castlingKingHome(const CastlingHomes& homes, int colour, int side) {
  const unsigned files = homes.rightFiles[colour][side];
  const int file = side == ShortSide ? std::countr_zero(files) : std::bit_width(files) - 1;
  return (colour == White ? 0 : 56) + file;
}

// The four rights that `moved` leaves: bit 0 white short, 1 white long, 2
// black short, 3 black long.
inline int castlingRights(const CastlingHomes& homes, Bitboard moved) {
  int rights = 0;
  for (int colour = White; colour <= Black; ++colour)
    for (int side = ShortSide; side <= LongSide; ++side)
      if (castlingRightRests(homes, moved, colour, side)) rights |= 1 << (2 * colour + side);
  return rights;
}

// Where the king and the rook of a castling end: g1/c1 and f1/d1 (rank 8 for black).
constexpr Square castlingKingTarget(int colour, int side) { return (colour == White ? 0 : 56) + (side == ShortSide ? 6 : 2); }
constexpr Square castlingRookTarget(int colour, int side) { return (colour == White ? 0 : 56) + (side == ShortSide ? 5 : 3); }
