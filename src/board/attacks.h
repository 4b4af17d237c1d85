// Attack tables: leapers, empty-board rays, the squares between two squares,
// pawn check origins and the magic-multiplier lookups of the sliders.
#pragma once

#include "base/types.h"

extern Bitboard knightAttacks[64];
extern Bitboard kingAttacks[64];
extern Bitboard bishopRays[64];  // both diagonals, origin included
extern Bitboard rookRays[64];    // rank and file, origin included
extern Bitboard queenRays[64];
extern Bitboard between[64][64];  // strictly between two squares on a line, else 0
// [colour of the checked king][king square]: squares from which an enemy pawn
// reaches a checking square with one push.
extern Bitboard pawnCheckOrigins[2][64];

struct SliderMagic {
  uint64_t multiplier;
  int32_t offset;
};

constexpr int sliderAttackSize = 64 * 512 + 64 * 4096;
extern Bitboard sliderAttacks[sliderAttackSize];
extern SliderMagic bishopMagics[64];
extern SliderMagic rookMagics[64];
extern Bitboard bishopMasks[64];
extern Bitboard rookMasks[64];

// The shifts are the same for every square: a 9-bit index for bishops and a
// 12-bit index for rooks, whatever the size of the square's mask.
inline Bitboard bishopAttacks(Square s, Bitboard occupied) {
  const SliderMagic& m = bishopMagics[s];
  return sliderAttacks[m.offset + (((occupied & bishopMasks[s]) * m.multiplier) >> 55)];
}
inline Bitboard rookAttacks(Square s, Bitboard occupied) {
  const SliderMagic& m = rookMagics[s];
  return sliderAttacks[m.offset + (((occupied & rookMasks[s]) * m.multiplier) >> 52)];
}
inline Bitboard queenAttacks(Square s, Bitboard occupied) {
  return bishopAttacks(s, occupied) | rookAttacks(s, occupied);
}
