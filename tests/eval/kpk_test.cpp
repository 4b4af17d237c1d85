#include "eval/kpk.h"

#include <gtest/gtest.h>

namespace {

constexpr Square sq(const char* name) { return (name[1] - '1') * 8 + (name[0] - 'a'); }

TEST(KpkBitbase, RetrogradeAnalysisFindsTheKnownTotals) {
  const KpkCounts counts = buildKpkBitbase();
  EXPECT_EQ(counts.defined, 165676);
  EXPECT_EQ(counts.winsPawnToMove, 62480);
  EXPECT_EQ(counts.winsOtherToMove, 48802);
  EXPECT_EQ(counts.winsPawnToMove + counts.winsOtherToMove, 111282);

  int bits = 0;
  for (uint8_t byte : kpkBitbase) bits += popCount(byte);
  EXPECT_EQ(bits, 111282);
}

TEST(KpkBitbase, PromotionsAndCapturesDecideAtOnce) {
  buildKpkBitbase();
  // Pawn one step from promoting, defender far away.
  EXPECT_TRUE(kpkProbe(sq("h8"), sq("c2"), sq("h1"), 0));
  // The defender takes an unguarded pawn next to it.
  EXPECT_FALSE(kpkProbe(sq("h8"), sq("c2"), sq("d3"), 1));
  // The same pawn guarded by its king can't be taken.
  EXPECT_TRUE(kpkProbe(sq("b3"), sq("c2"), sq("d3"), 1));
  // Defender on the promotion square, attacker behind the pawn: stalemate if
  // the defender must move, a win if the attacker can step aside.
  EXPECT_FALSE(kpkProbe(sq("e3"), sq("e2"), sq("e1"), 1));
  EXPECT_TRUE(kpkProbe(sq("e3"), sq("e2"), sq("e1"), 0));
  // The rook's pawn with the defender in its corner is drawn whoever moves.
  EXPECT_FALSE(kpkProbe(sq("b3"), sq("a4"), sq("a1"), 0));
  EXPECT_FALSE(kpkProbe(sq("b3"), sq("a4"), sq("a1"), 1));
}

}  // namespace
