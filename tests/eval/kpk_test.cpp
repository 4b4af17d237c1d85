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

}  // namespace
