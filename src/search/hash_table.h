// The transposition table: one global table of four-entry buckets.
#pragma once

#include <cstdint>

#include "search/conventions.h"

// One position's entry as the search reads it.
struct HashEntry {
  uint64_t key;    // whole hashKey; 0 means never used
  int16_t score;   // mate scores stored as distance from this node
  uint16_t move;
  int16_t depth;   // half plies
  uint8_t bound;   // low 4 bits: 1 upper, 2 lower, 3 exact
  uint8_t age;
};

// An entry as the table holds it: the fields packed into one word, and the
// key stored XOR that word. Searches on other threads write the table without
// locks, so a slot can be read half old and half new; such a slot gives back
// a key that is no position's, and the probe passes it by.
struct HashSlot {
  uint64_t check;  // key ^ data
  uint64_t data;   // score, move, depth, bound and age, 16+16+16+8+8 bits
};

struct HashBucket {
  HashSlot slots[4];
};

// The two words of a slot are read and written one whole word at a time,
// as other threads may be writing them.
inline uint64_t loadWord(const uint64_t& word) { return __atomic_load_n(&word, __ATOMIC_RELAXED); }
inline void storeWord(uint64_t& word, uint64_t value) { __atomic_store_n(&word, value, __ATOMIC_RELAXED); }

inline HashEntry unpackEntry(uint64_t check, uint64_t data) {
  return {check ^ data,
          static_cast<int16_t>(data & 0xffff),
          static_cast<uint16_t>(data >> 16),
          static_cast<int16_t>(data >> 32),
          static_cast<uint8_t>(data >> 48),
          static_cast<uint8_t>(data >> 56)};
}

// What the slot holds now, whatever position it belongs to.
inline HashEntry readSlot(const HashSlot& slot) { return unpackEntry(loadWord(slot.check), loadWord(slot.data)); }

// A probe's answer: a copy of the entry, read once, and the slot it came
// from; false on a miss.
struct HashHit {
  HashEntry entry{};
  const HashSlot* slot = nullptr;
  explicit operator bool() const { return slot != nullptr; }
  const HashEntry* operator->() const { return &entry; }
  const HashEntry& operator*() const { return entry; }
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
// The entry of this key, or a miss (always a miss without a table).
HashHit hashProbe(uint64_t key);

// Asks the memory for the bucket of key ahead of the probe. A probe that
// misses the cache waits hundreds of cycles for a random bucket of a large
// table; asked for as soon as a child's key is known, the bucket arrives
// while the legality test and the node's first steps run.
inline void hashPrefetch(uint64_t key) {
  if (hashTable.buckets != nullptr) __builtin_prefetch(&hashTable.buckets[key & hashTable.mask]);
}

int32_t scoreToStore(int32_t score, int ply);
int32_t scoreFromStore(int32_t score, int ply);
