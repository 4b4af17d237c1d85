// Pawn fills: a bitboard smeared along its files, the tool of every pawn
// term (passed, backward, shelter, storm) and of the king-safety zones.
#pragma once

#include "base/types.h"

// Whole-board pawn fills, shifting by 8, 16 and 32.
constexpr Bitboard fillNorth(Bitboard b) {
  b |= b << 8;
  b |= b << 16;
  return b | b << 32;
}
constexpr Bitboard fillSouth(Bitboard b) {
  b |= b >> 8;
  b |= b >> 16;
  return b | b >> 32;
}
// Towards the far side of the board for the colour, and back towards its own.
constexpr Bitboard fillAhead(int colour, Bitboard b) { return colour == White ? fillNorth(b) : fillSouth(b); }
constexpr Bitboard fillBehind(int colour, Bitboard b) { return colour == White ? fillSouth(b) : fillNorth(b); }
constexpr Bitboard stepAhead(int colour, Bitboard b) { return colour == White ? b << 8 : b >> 8; }
constexpr Bitboard stepBehind(int colour, Bitboard b) { return colour == White ? b >> 8 : b << 8; }
// Every square of each file that holds a bit of b.
constexpr Bitboard fileFill(Bitboard b) { return fillNorth(fillSouth(b)); }

// Squares that the colour's pawns (given by their attack set) attack now or
// could attack after any number of advances, complemented.
constexpr Bitboard neverAttacked(int colour, Bitboard pawnAttacks) { return ~fillAhead(colour, pawnAttacks); }
