// The transposition table: one global table of four-entry buckets.
#pragma once

#include <cstdint>

#include "search/conventions.h"

struct HashEntry {
  uint64_t key;    // whole hashKey; 0 means never used
  int16_t score;   // mate scores stored as distance from this node
  uint16_t move;
  int16_t depth;   // half plies
  uint8_t bound;   // low 4 bits: 1 upper, 2 lower, 3 exact
  uint8_t age;
};

struct HashBucket {
  HashEntry entries[4];
};

struct HashTable {
  uint64_t bucketCount;
  uint64_t mask;
  uint32_t age;
  HashBucket* buckets;  // null while Hash is 0
};

extern HashTable hashTable;

constexpr int boundUpper = 1;
constexpr int boundLower = 2;
constexpr int boundExact = 3;

constexpr int storeLimit = 32500;

// The number of buckets a table of sizeMb megabytes gets: 0.51 times the
// asked-for memory, rounded up to a power of two.
uint64_t hashBucketCount(int32_t sizeMb);
// Replaces the table by an empty one of sizeMb megabytes (none below 1).
// False when the memory can't be had: the table in use, or none, stays.
bool hashAllocate(int32_t sizeMb);
void hashRelease();
void hashClear();
// Per mille of the table's entries that hold a position stored by the
// search under way, from the first 1000 entries (or all, in a smaller
// table), as a GUI shows the table's use; 0 without a table.
int hashFullPerMille();
// Moves the age on by one search, wrapping after 255.
void hashAdvanceAge();
void hashStore(uint64_t key, int16_t depth, int32_t score, int bound, uint16_t move);
// The entry of this key, or null on a miss (always a miss without a table).
const HashEntry* hashProbe(uint64_t key);

// Asks the memory for the bucket of key ahead of the probe. A probe that
// misses the cache waits hundreds of cycles for a random bucket of a large
// table; asked for as soon as a child's key is known, the bucket arrives
// while the legality test and the node's first steps run.
inline void hashPrefetch(uint64_t key) {
  if (hashTable.buckets != nullptr) __builtin_prefetch(&hashTable.buckets[key & hashTable.mask]);
}

int32_t scoreToStore(int32_t score, int ply);
int32_t scoreFromStore(int32_t score, int ply);
