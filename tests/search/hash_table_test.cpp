#include <gtest/gtest.h>

#include "search/hash_table.h"

namespace {

// A 1 MB table; keys built by sameBucket all land in bucket 5.
class HashTableTest : public ::testing::Test {
 protected:
  void SetUp() override { hashAllocate(1); }
  void TearDown() override { hashRelease(); }
  static uint64_t sameBucket(uint64_t n) { return (n << 32) | 5; }
  static const HashEntry& slot(int i) { return hashTable.buckets[5].entries[i]; }
  // Fills the four slots with keys 1..4 at the given depths, all of the current age.
  static void fillBucket(int16_t d0, int16_t d1, int16_t d2, int16_t d3) {
    const int16_t depths[4] = {d0, d1, d2, d3};
    for (int i = 0; i < 4; ++i) hashStore(sameBucket(i + 1), depths[i], 0, boundExact, 100 + i);
  }
};

TEST(HashSizing, RoundsHalfTheMemoryUpToAPowerOfTwo) {
  const uint64_t mb = 1 << 20;
  EXPECT_EQ(hashBucketCount(1) * 64, 1 * mb);
  EXPECT_EQ(hashBucketCount(3) * 64, 2 * mb);
  EXPECT_EQ(hashBucketCount(64) * 64, 64 * mb);
  EXPECT_EQ(hashBucketCount(100) * 64, 64 * mb);
  EXPECT_EQ(hashBucketCount(125) * 64, 64 * mb);
  EXPECT_EQ(hashBucketCount(126) * 64, 128 * mb);
  EXPECT_EQ(hashBucketCount(4096) * 64, 4096 * mb);
}

TEST_F(HashTableTest, ATableBeyondMemoryLeavesTheTableInUse) {
  hashStore(sameBucket(1), 20, 50, boundLower, 777);
  HashBucket* inUse = hashTable.buckets;
  // About 2^51 bytes: more than any address space can give.
  hashAllocate(2147483647);
  EXPECT_EQ(hashTable.buckets, inUse);
  EXPECT_EQ(hashTable.bucketCount, hashBucketCount(1));
  EXPECT_NE(hashProbe(sameBucket(1)), nullptr);
}

TEST_F(HashTableTest, SameKeyIsAlwaysOverwrittenAndKeepsItsMoveOnMoveZero) {
  hashStore(sameBucket(1), 20, 50, boundLower, 777);
  hashAdvanceAge();
  hashStore(sameBucket(1), 4, -10, boundUpper, 0);
  const HashEntry* e = hashProbe(sameBucket(1));
  ASSERT_NE(e, nullptr);
  EXPECT_EQ(e, &slot(0));
  EXPECT_EQ(e->depth, 4);
  EXPECT_EQ(e->score, -10);
  EXPECT_EQ(e->bound, boundUpper);
  EXPECT_EQ(e->age, 1);
  EXPECT_EQ(e->move, 777);
  // A new move does replace the old one.
  hashStore(sameBucket(1), 6, 0, boundExact, 888);
  EXPECT_EQ(e->move, 888);
}

TEST_F(HashTableTest, VictimIsOverwrittenWholesaleEvenWithMoveZero) {
  fillBucket(10, 10, 10, 10);
  hashStore(sameBucket(9), 12, 3, boundUpper, 0);
  EXPECT_EQ(slot(0).key, sameBucket(9));
  EXPECT_EQ(slot(0).move, 0);
  EXPECT_EQ(hashProbe(sameBucket(1)), nullptr);
}

TEST_F(HashTableTest, AnOlderSearchLosesFirstWhateverItsDepth) {
  hashStore(sameBucket(1), 6, 0, boundExact, 1);
  hashStore(sameBucket(2), 8, 0, boundExact, 2);
  hashStore(sameBucket(3), 40, 0, boundExact, 3);  // deepest, but of the old search
  hashAdvanceAge();
  hashStore(sameBucket(1), 6, 0, boundExact, 1);
  hashStore(sameBucket(2), 8, 0, boundExact, 2);
  hashStore(sameBucket(4), 2, 0, boundExact, 4);
  hashStore(sameBucket(5), 30, 0, boundExact, 5);
  EXPECT_EQ(slot(2).key, sameBucket(5));
  EXPECT_EQ(hashProbe(sameBucket(3)), nullptr);
  EXPECT_NE(hashProbe(sameBucket(4)), nullptr);
}

TEST_F(HashTableTest, AmongEqualsTheShallowestInTheLowestSlotGoes) {
  fillBucket(10, 6, 6, 8);
  hashStore(sameBucket(9), 2, 0, boundExact, 9);
  EXPECT_EQ(slot(1).key, sameBucket(9));
  // Depths compare signed: a quiescence entry of -2 is shallower than 0.
  hashClear();
  fillBucket(0, 0, -2, 0);
  hashStore(sameBucket(9), 2, 0, boundExact, 9);
  EXPECT_EQ(slot(2).key, sameBucket(9));
}

TEST_F(HashTableTest, AgeWrapsAfter256SearchesAndOldEntriesCountAsCurrent) {
  fillBucket(2, 2, 2, 2);
  hashAdvanceAge();
  hashStore(sameBucket(1), 30, 0, boundExact, 1);
  hashStore(sameBucket(2), 30, 0, boundExact, 2);
  // Slots 0 and 1 are of this search and deep, 2 and 3 old and shallow.
  for (int i = 0; i < 255; ++i) hashAdvanceAge();
  EXPECT_EQ(hashTable.age, 0u);
  // 256 searches on, the shallow entries of age 0 count as current again
  // and the deep ones of age 1 as old.
  hashStore(sameBucket(9), 2, 0, boundExact, 9);
  EXPECT_EQ(slot(0).key, sameBucket(9));
  EXPECT_EQ(slot(2).key, sameBucket(3));
  EXPECT_EQ(slot(3).key, sameBucket(4));
}

TEST(HashAbsent, WithoutATableEveryProbeMissesAndStoresDoNothing) {
  hashRelease();
  ASSERT_EQ(hashTable.buckets, nullptr);
  hashStore(12345, 10, 0, boundExact, 1);
  EXPECT_EQ(hashProbe(12345), nullptr);
  hashClear();
  EXPECT_EQ(hashProbe(0), nullptr);
  hashAllocate(0);
  EXPECT_EQ(hashTable.buckets, nullptr);
}

TEST(MateShift, StoredScoresCountFromTheStoringNode) {
  EXPECT_EQ(scoreToStore(31990, 10), 32000);
  EXPECT_EQ(scoreFromStore(32000, 4), 31996);
  EXPECT_EQ(scoreToStore(-31990, 10), -32000);
  EXPECT_EQ(scoreFromStore(-32000, 4), -31996);
  // Ordinary scores, up to 31799, pass unchanged.
  EXPECT_EQ(scoreToStore(31799, 10), 31799);
  EXPECT_EQ(scoreFromStore(-31799, 10), -31799);
  EXPECT_EQ(scoreToStore(31800, 3), 31803);
  EXPECT_EQ(scoreFromStore(-31800, 3), -31797);
  EXPECT_EQ(scoreToStore(-250, 7), -250);
}

}  // namespace
