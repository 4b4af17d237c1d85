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
    const HashHit entry = hashProbe(12345);
    ASSERT_TRUE(entry);
    EXPECT_EQ(scoreFromStore(entry->score, c.probePly), c.read) << c.score << " stored at ply " << c.storePly;
  }
  // A table beyond any address space (about 2^51 bytes) leaves the table
  // in use; without a table every probe misses.
  HashBucket* inUse = hashTable.buckets;
  hashAllocate(2147483647);
  EXPECT_EQ(hashTable.buckets, inUse);
  EXPECT_TRUE(hashProbe(12345));
  hashAllocate(0);
  ASSERT_EQ(hashTable.buckets, nullptr);
  hashStore(12345, 10, 0, boundExact, 1);
  hashClear();
  EXPECT_FALSE(hashProbe(12345));
}

// Four entries share a bucket. A store takes an empty slot, else its own
// key's, else the entry of an older search whatever its depth, else the
// shallowest, the lowest slot first.
TEST(HashTable, AStoreReplacesTheOldestEntryElseTheShallowest) {
  hashAllocate(1);
  auto store = [](uint64_t n, int16_t depth) { hashStore(n << 32 | 5, depth, 0, boundExact, 1); };
  auto slotOf = [](uint64_t n) {
    for (int i = 0; i < 4; ++i)
      if (readSlot(hashTable.buckets[5].slots[i]).key == (n << 32 | 5)) return i;
    return -1;
  };
  store(1, 6), store(2, 8), store(3, 40);
  EXPECT_EQ(readSlot(hashTable.buckets[5].slots[3]).key, 0u) << "a new table is empty";
  store(4, 10);
  EXPECT_EQ(slotOf(1) * 1000 + slotOf(2) * 100 + slotOf(3) * 10 + slotOf(4), 123) << "a fresh table fills in order";
  hashAdvanceAge();
  store(1, 6), store(2, 8), store(4, 2), store(5, 30);
  EXPECT_EQ(slotOf(5), 2) << "the old deep entry goes first";
  store(6, 6);
  EXPECT_EQ(slotOf(6), 3) << "then the shallowest";
  store(7, 9);
  EXPECT_EQ(slotOf(7), 0) << "of equal depths the lowest slot";
  hashRelease();
}

// hashfull: the entries of the current search among the table's first 1000
// (the first 250 buckets), per mille; older searches' entries are free room.
TEST(HashTable, HashfullCountsThisSearchsEntriesAmongTheFirstThousand) {
  auto fill = [](uint64_t firstBucket, uint64_t endBucket, int slots) {
    for (uint64_t b = firstBucket; b < endBucket; ++b)
      for (uint64_t n = 1; n <= static_cast<uint64_t>(slots); ++n) hashStore(n << 32 | b, 5, 0, boundExact, 1);
  };
  struct Case { const char* what; uint64_t oldFrom, oldEnd, newFrom, newEnd; int slots, perMille; };
  const Case cases[] = {
      {"an empty table", 0, 0, 0, 0, 4, 0},
      {"25 full buckets", 0, 0, 0, 25, 4, 100},
      {"the whole sample", 0, 0, 0, 250, 4, 1000},
      {"one slot in each sampled bucket", 0, 0, 0, 250, 1, 250},
      {"the last sampled bucket", 0, 0, 249, 250, 3, 3},
      {"only beyond the sample", 0, 0, 250, 600, 4, 0},
      {"an older search's 100 buckets", 0, 100, 0, 0, 4, 0},
      {"older entries under this search's", 0, 100, 100, 150, 4, 200},
  };
  hashAllocate(1);
  ASSERT_GT(hashTable.bucketCount, 600u);
  for (const Case& c : cases) {
    hashClear();
    fill(c.oldFrom, c.oldEnd, c.slots);
    hashAdvanceAge();
    fill(c.newFrom, c.newEnd, c.slots);
    EXPECT_EQ(hashFullPerMille(), c.perMille) << c.what;
  }
  hashRelease();
  EXPECT_EQ(hashFullPerMille(), 0) << "no table";
}

// Threads write the table without locks: a slot whose two words come from
// different stores (one thread's data under another's check) must read as
// no position at all, so that no search takes its move or score.
TEST(HashTable, ASlotWrittenHalfByOneStoreAndHalfByAnotherIsAMiss) {
  hashAllocate(1);
  const uint64_t first = uint64_t{7} << 32 | 9, second = uint64_t{8} << 32 | 9;
  hashStore(first, 12, 150, boundLower, 0x1234);
  HashSlot& slot = hashTable.buckets[9].slots[0];
  const HashSlot firstWords = slot;
  hashClear();
  hashStore(second, 20, -40, boundUpper, 0x4321);
  ASSERT_EQ(readSlot(slot).key, second);
  const HashSlot secondWords = slot;
  struct Case { uint64_t check, data; };
  const Case torn[] = {{firstWords.check, secondWords.data}, {secondWords.check, firstWords.data}};
  for (const Case& c : torn) {
    slot.check = c.check;
    slot.data = c.data;
    EXPECT_FALSE(hashProbe(first));
    EXPECT_FALSE(hashProbe(second));
  }
  slot = firstWords;
  const HashHit whole = hashProbe(first);
  ASSERT_TRUE(whole);
  EXPECT_EQ(whole->move, 0x1234);
  EXPECT_EQ(whole->depth * 1000 + whole->score, 12 * 1000 + 150);
  EXPECT_EQ(whole->bound, boundLower);
  hashRelease();
}

}  // namespace
