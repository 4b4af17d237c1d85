#include "search/hash_table.h"

#include <gtest/gtest.h>

namespace {

// A 1 MB table; keys built by inBucket all land in bucket 5.
class HashTableTest : public ::testing::Test {
 protected:
  void SetUp() override { hashAllocate(1); }
  void TearDown() override { hashRelease(); }
  static uint64_t inBucket(uint64_t n) { return (n << 32) | 5; }
  static uint64_t slotKey(int i) { return hashTable.buckets[5].entries[i].key; }
  static void store(uint64_t n, int16_t depth) {
    hashStore(inBucket(n), depth, 0, boundExact, static_cast<uint16_t>(n));
  }
};

TEST_F(HashTableTest, MateScoresCountFromTheNodeThatStoresOrReadsThem) {
  struct Case { int score, storePly, probePly, read; };
  const Case cases[] = {
      {31990, 10, 4, 31996},   {-31990, 10, 4, -31996}, {31800, 3, 3, 31800},
      {-31800, 3, 7, -31796},  {31799, 10, 2, 31799},   {-250, 7, 1, -250},
  };
  for (const Case& c : cases) {
    hashStore(inBucket(1), 8, scoreToStore(c.score, c.storePly), boundExact, 0);
    const HashEntry* entry = hashProbe(inBucket(1));
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(scoreFromStore(entry->score, c.probePly), c.read) << c.score << " stored at ply " << c.storePly;
  }
}

TEST_F(HashTableTest, AStoreReplacesItsOwnKeyElseTheOldestThenTheShallowest) {
  // The same key is overwritten whatever its depth, and keeps its move when
  // the new store has none.
  hashStore(inBucket(1), 20, 50, boundLower, 777);
  hashAdvanceAge();
  hashStore(inBucket(1), 4, -10, boundUpper, 0);
  const HashEntry* e = hashProbe(inBucket(1));
  ASSERT_EQ(e, &hashTable.buckets[5].entries[0]);
  EXPECT_EQ(e->depth, 4);
  EXPECT_EQ(e->score, -10);
  EXPECT_EQ(e->bound, boundUpper);
  EXPECT_EQ(e->age, 1);
  EXPECT_EQ(e->move, 777);

  // An entry of an older search goes first, however deep.
  hashClear();
  store(1, 6), store(2, 8), store(3, 40);
  hashAdvanceAge();
  store(1, 6), store(2, 8), store(4, 2), store(5, 30);
  EXPECT_EQ(slotKey(2), inBucket(5));
  EXPECT_EQ(hashProbe(inBucket(3)), nullptr);
  EXPECT_NE(hashProbe(inBucket(4)), nullptr);

  // Among entries of this search the shallowest goes, the lowest slot first;
  // depths compare signed, so a quiescence entry of -2 is shallower than 0.
  hashClear();
  store(1, 10), store(2, 6), store(3, 6), store(4, 8), store(9, 2);
  EXPECT_EQ(slotKey(1), inBucket(9));
  hashClear();
  store(1, 0), store(2, 0), store(3, -2), store(4, 0), store(9, 2);
  EXPECT_EQ(slotKey(2), inBucket(9));

  // The age wraps after 256 searches: shallow entries of age 0 count as
  // current again, deep ones of age 1 as old.
  hashClear();
  store(1, 2), store(2, 2), store(3, 2), store(4, 2);
  hashAdvanceAge();
  store(1, 30), store(2, 30);
  for (int i = 0; i < 255; ++i) hashAdvanceAge();
  store(9, 2);
  EXPECT_EQ(slotKey(0), inBucket(9));
  EXPECT_EQ(slotKey(2), inBucket(3));
}

TEST(HashAbsent, WithoutATableEveryProbeMissesAndTooMuchMemoryEndsTheProgram) {
  hashAllocate(0);
  ASSERT_EQ(hashTable.buckets, nullptr);
  hashStore(12345, 10, 0, boundExact, 1);
  hashClear();
  EXPECT_EQ(hashProbe(12345), nullptr);
  // About 2^51 bytes: more than any address space can give.
  EXPECT_EXIT(hashAllocate(2147483647), ::testing::ExitedWithCode(1), "Hash table too big\n");
}

}  // namespace
