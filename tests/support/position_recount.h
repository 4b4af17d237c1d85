// Test-only recount of every incremental field of a position from its board
// alone, square by square, for comparison with what parseFen and makeMove keep.
#pragma once

#include <gtest/gtest.h>

#include "board/keys.h"
#include "board/types.h"
#include "eval/piece_square.h"
#include "eval/score_pair.h"

namespace recount {

struct Counts {
  uint64_t hashKey = 0;
  uint64_t pawnKey = 0;
  uint64_t materialKey = 0;
  ScorePair pstScore = 0;
  int phase = 0;
};

inline Counts countFromScratch(const Position& p) {
  Counts counts;
  for (Square s = 0; s < 64; ++s) {
    for (int colour = 0; colour < 2; ++colour) {
      for (int piece = 1; piece <= 6; ++piece) {
        if (!(p.pieces[colour][piece] >> s & 1)) continue;
        int index = (colour * 8 + piece) * 64 + s;
        counts.hashKey ^= pieceKeys[index];
        counts.pawnKey ^= pawnKeys[index];
        counts.materialKey += materialWeights[colour * 8 + piece];
        counts.pstScore = scorePairAdd(counts.pstScore, pieceSquare[index]);
        counts.phase += phaseWeights[piece];
      }
    }
  }
  counts.hashKey ^= pieceKeys[p.ctm & 1];
  int rights = 0;
  Bitboard m = p.moved;
  if (!(m & 0x90)) rights |= 1;
  if (!(m & 0x11)) rights |= 2;
  if (!(m & 0x9000000000000000ULL)) rights |= 4;
  if (!(m & 0x1100000000000000ULL)) rights |= 8;
  // Every pattern of `moved` that leaves the same rights shares one key, so
  // the canonical pattern of these rights gives the same entry.
  Bitboard canonical = 0;
  if (!(rights & 1)) canonical |= 0x80;
  if (!(rights & 2)) canonical |= 0x01;
  if (!(rights & 4)) canonical |= 0x8000000000000000ULL;
  if (!(rights & 8)) canonical |= 0x0100000000000000ULL;
  counts.hashKey ^= castleKeys[castlingIndex(canonical)];
  if (p.epBit) counts.hashKey ^= pieceKeys[(8 * 64) + std::countr_zero(p.epBit)];
  return counts;
}

// Checks the keys always, and pstScore and phase when the record descends
// from one whose scores were filled in.
inline void expectConsistent(const Position& p, bool withScores = true) {
  Counts counts = countFromScratch(p);
  EXPECT_EQ(p.hashKey, counts.hashKey);
  EXPECT_EQ(p.pawnKey, counts.pawnKey);
  EXPECT_EQ(p.materialKey, counts.materialKey);
  if (withScores) {
    EXPECT_EQ(p.pstScore, counts.pstScore);
    EXPECT_EQ(p.phase, counts.phase);
  }
  for (int colour = 0; colour < 2; ++colour) {
    Bitboard all = 0;
    for (int piece = 1; piece <= 6; ++piece) {
      EXPECT_EQ(all & p.pieces[colour][piece], 0u) << "slots overlap";
      all |= p.pieces[colour][piece];
    }
    EXPECT_EQ(all, p.pieces[colour][0]);
  }
  EXPECT_EQ(p.pieces[0][0] & p.pieces[1][0], 0u);
}

}  // namespace recount
