#include "search/hash_table.h"

#include <gtest/gtest.h>

namespace {

// A mate score goes into the table as its distance from the storing node and
// comes out as its distance from the reading one; other scores pass unchanged.
TEST(HashTable, MateScoresCountFromTheNodeThatStoresOrReadsThem) {
  hashAllocate(1);
  struct Case { int score, storePly, probePly, read; };
  const Case cases[] = {
      {31990, 10, 4, 31996}, {-31990, 10, 4, -31996}, {31800, 3, 3, 31800},
      {-31800, 3, 7, -31796}, {31799, 10, 2, 31799},  {-31799, 10, 2, -31799}, {-250, 7, 1, -250},
  };
  for (const Case& c : cases) {
    hashStore(12345, 8, scoreToStore(c.score, c.storePly), boundExact, 0);
    const HashEntry* entry = hashProbe(12345);
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(scoreFromStore(entry->score, c.probePly), c.read) << c.score << " stored at ply " << c.storePly;
  }
  // Without a table every probe misses; a table beyond any address space
  // (about 2^51 bytes) ends the program.
  hashAllocate(0);
  ASSERT_EQ(hashTable.buckets, nullptr);
  hashStore(12345, 10, 0, boundExact, 1);
  hashClear();
  EXPECT_EQ(hashProbe(12345), nullptr);
  EXPECT_EXIT(hashAllocate(2147483647), ::testing::ExitedWithCode(1), "Hash table too big\n");
}

}  // namespace
