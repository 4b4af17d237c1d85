#include <gtest/gtest.h>

#include "shell/three_file_mask.h"

namespace {

constexpr Bitboard fileA = 0x0101010101010101ULL;

TEST(ThreeFileMask, EdgeFilesBorrowTheNextFileInward) {
  fillThreeFileMask();
  const Bitboard abc = fileA * 0x07;
  const Bitboard fgh = fileA * 0xe0;
  EXPECT_EQ(threeFileMask[0], abc);        // a1
  EXPECT_EQ(threeFileMask[1 + 8 * 5], abc);  // b6
  EXPECT_EQ(threeFileMask[2], fileA * 0x0e);  // c1: b-d
  EXPECT_EQ(threeFileMask[4 + 8 * 3], fileA * 0x38);  // e4: d-f
  EXPECT_EQ(threeFileMask[6 + 8 * 7], fgh);  // g8
  EXPECT_EQ(threeFileMask[63], fgh);         // h8
  for (Square s = 0; s < 64; ++s) {
    EXPECT_EQ(threeFileMask[s], threeFileMask[fileOfSquare(s)]) << "rank matters at " << s;
    EXPECT_EQ(popCount(threeFileMask[s]), 24);
  }
}

}  // namespace
