#include "search/conventions.h"

namespace {

constexpr Bitboard whiteUpperRanks = 0xffffff0000000000ULL;  // ranks 6 to 8
constexpr Bitboard blackUpperRanks = 0x0000000000ffffffULL;  // ranks 3 to 1

}  // namespace

Bitboard passerSquares(const Position& position) {
  int us = sideToMove(position);
  Bitboard enemyPawns = position.pieces[us ^ 1][Pawn];
  // Everything an enemy pawn can still block or capture on: the square in
  // front of it, the two beside that, and all further squares of those files
  // towards our own side.
  if (us == White) {
    Bitboard step = enemyPawns >> 8;
    Bitboard covered = step | besideOnRank(step);
    covered |= covered >> 8;
    covered |= covered >> 16;
    covered |= covered >> 32;
    return ~covered & whiteUpperRanks;
  }
  Bitboard step = enemyPawns << 8;
  Bitboard covered = step | besideOnRank(step);
  covered |= covered << 8;
  covered |= covered << 16;
  covered |= covered << 32;
  return ~covered & blackUpperRanks;
}
