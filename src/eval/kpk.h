// King and pawn against king: one bit per position, set when the pawn's side
// wins. Laid out for a pawn that runs down the board on files a to d; callers
// turn the board so that their pawn does, and files e to h are mirrored.
#pragma once

#include <cstdint>

#include "base/types.h"

constexpr int kpkBitbaseBytes = 24576;

// Bit number ((pawn cell * 4096) + strong king * 64 + weak king) * 2 + turn,
// pawn cell = (rank - 1) * 4 + file, turn = 1 with the pawn's side to move.
extern uint8_t kpkBitbase[kpkBitbaseBytes];

// What the retrograde analysis found, for checking the table against known totals.
struct KpkCounts {
  int32_t defined;          // positions that can arise and so get a value
  int32_t winsPawnToMove;
  int32_t winsOtherToMove;
};

// Solves every position from scratch and fills kpkBitbase.
KpkCounts buildKpkBitbase();

inline int kpkBitNumber(Square strongKing, Square pawn, Square weakKing, int turn) {
  const int cell = (rankOfSquare(pawn) - 1) * 4 + fileOfSquare(pawn);
  return ((cell * 4096) + strongKing * 64 + weakKing) * 2 + turn;
}

// Squares in the table's orientation (pawn moving towards rank 1).
inline bool kpkProbe(Square strongKing, Square pawn, Square weakKing, int weakToMove) {
  if (fileOfSquare(pawn) >= 4) {
    strongKing ^= 7;
    pawn ^= 7;
    weakKing ^= 7;
  }
  const int bit = kpkBitNumber(strongKing, pawn, weakKing, weakToMove ? 0 : 1);
  return (kpkBitbase[bit >> 3] >> (bit & 7)) & 1;
}
