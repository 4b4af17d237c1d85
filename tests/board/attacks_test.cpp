#include <gtest/gtest.h>

#include "board/attacks.h"

namespace {

// Walks the rays square by square: the reference that the magic lookup must match.
Bitboard walkedAttacks(Square s, Bitboard occupied, bool diagonal) {
  static const int bishopSteps[4][2] = {{1, 1}, {1, -1}, {-1, 1}, {-1, -1}};
  static const int rookSteps[4][2] = {{1, 0}, {-1, 0}, {0, 1}, {0, -1}};
  const int (*steps)[2] = diagonal ? bishopSteps : rookSteps;
  Bitboard result = 0;
  for (int d = 0; d < 4; ++d) {
    int r = s / 8 + steps[d][0], f = s % 8 + steps[d][1];
    for (; r >= 0 && r < 8 && f >= 0 && f < 8; r += steps[d][0], f += steps[d][1]) {
      result |= squareBit(r * 8 + f);
      if (occupied & squareBit(r * 8 + f)) break;
    }
  }
  return result;
}

TEST(SliderAttacks, EverySubsetOfEveryMaskGivesTheWalkedSet) {
  for (Square s = 0; s < 64; ++s) {
    Bitboard subset = 0;
    do {
      ASSERT_EQ(bishopAttacks(s, subset), walkedAttacks(s, subset, true)) << "bishop square " << s;
      subset = (subset - bishopMasks[s]) & bishopMasks[s];
    } while (subset);
    do {
      ASSERT_EQ(rookAttacks(s, subset), walkedAttacks(s, subset, false)) << "rook square " << s;
      subset = (subset - rookMasks[s]) & rookMasks[s];
    } while (subset);
  }
}

}  // namespace
