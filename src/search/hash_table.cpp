#include "search/hash_table.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/platform.h"
#include "search/search_trace.h"

static_assert(sizeof(HashSlot) == 16, "four slots must fill a 64-byte bucket");
static_assert(sizeof(HashBucket) == 64, "size arithmetic counts a bucket as 64 bytes");

HashTable hashTable = {0, 0, 0, nullptr};

uint64_t hashBucketCount(int32_t sizeMb) {
  uint64_t units = static_cast<uint64_t>(sizeMb) * (uint64_t{1} << 20) / 64;
  uint64_t wanted = static_cast<uint64_t>(static_cast<double>(units) * 0.51);
  uint64_t count = wanted - 1;
  count |= count >> 1;
  count |= count >> 2;
  count |= count >> 4;
  count |= count >> 8;
  count |= count >> 16;
  count |= count >> 32;
  return count + 1;
}

bool hashAllocate(int32_t sizeMb) {
  // Below 1 MB there is no table at all, as with Hash 0.
  if (sizeMb < 1) {
    hashRelease();
    return true;
  }
  uint64_t count = hashBucketCount(sizeMb);
  uint64_t bytes = count * sizeof(HashBucket);
  // Buckets are aligned to their own size, so that a probe touches one cache
  // line. A table of whole huge pages is aligned to them and, on Linux, asks
  // for them: a probe lands anywhere in the table, and with 4 KB pages
  // nearly every probe would also miss the processor's page cache. The new
  // table is had before the old one goes, so that a size the memory can't
  // give leaves the engine with the table it had.
  const bool wholeHugePages = bytes % hugePageBytes == 0;
  void* memory = std::aligned_alloc(wholeHugePages ? hugePageBytes : sizeof(HashBucket), bytes);
  if (memory == nullptr) return false;
  if (wholeHugePages) adviseHugePages(memory, bytes);
  hashRelease();
  std::memset(memory, 0, bytes);
  hashTable.bucketCount = count;
  hashTable.mask = count - 1;
  hashTable.age = 0;
  hashTable.buckets = static_cast<HashBucket*>(memory);
  return true;
}

void hashRelease() {
  std::free(hashTable.buckets);
  hashTable.buckets = nullptr;
  hashTable.bucketCount = 0;
  hashTable.mask = 0;
}

void hashClear() {
  // Without a table there is nothing to zero. The age still goes back to 0,
  // which changes nothing a user can see: a new table starts at age 0 anyway.
  if (hashTable.buckets != nullptr)
    std::memset(hashTable.buckets, 0, hashTable.bucketCount * sizeof(HashBucket));
  hashTable.age = 0;
}

int hashFullPerMille() {
  if (hashTable.buckets == nullptr) return 0;
  const uint64_t sampled = hashTable.bucketCount * 4 < 1000 ? hashTable.bucketCount * 4 : 1000;
  uint64_t used = 0;
  for (uint64_t i = 0; i < sampled; ++i) {
    const HashEntry entry = readSlot(hashTable.buckets[i / 4].slots[i % 4]);
    used += entry.key != 0 && entry.age == static_cast<uint8_t>(hashTable.age);
  }
  return static_cast<int>(used * 1000 / sampled);
}

void hashAdvanceAge() { hashTable.age = (hashTable.age + 1) & 255; }

namespace {

void writeSlot(HashSlot& slot, uint64_t key, int16_t depth, int32_t score, int bound, uint8_t age, uint16_t move) {
  const uint64_t data = static_cast<uint16_t>(score) | uint64_t{move} << 16 | uint64_t{static_cast<uint16_t>(depth)} << 32 |
                        uint64_t{static_cast<uint8_t>(bound)} << 48 | uint64_t{age} << 56;
  storeWord(slot.data, data);
  storeWord(slot.check, key ^ data);
}

}  // namespace

void hashStore(uint64_t key, int16_t depth, int32_t score, int bound, uint16_t move) {
  if (hashTable.buckets == nullptr) return;
  if (score < -storeLimit || score > storeLimit) return;
  traceCount(&SearchTrace::hashStores);
  HashBucket& bucket = hashTable.buckets[key & hashTable.mask];
  uint8_t age = static_cast<uint8_t>(hashTable.age);

  // An entry of an older search goes before any of this search; among equals
  // the shallowest goes, and of equal depths the one in the lowest slot.
  int victim = 0;
  HashEntry victimEntry{};
  for (int slot = 0; slot < 4; ++slot) {
    const HashEntry entry = readSlot(bucket.slots[slot]);
    if (entry.key == 0 || entry.key == key) {
      // The same position is always overwritten, a shallower result too; a
      // result without a move keeps the move the position had.
      writeSlot(bucket.slots[slot], key, depth, score, bound, age, move != 0 ? move : entry.move);
      return;
    }
    if (slot == 0) {
      victimEntry = entry;
      continue;
    }
    int victimCurrent = victimEntry.age == age ? 1 : 0;
    int slotCurrent = entry.age == age ? 1 : 0;
    int standing = 2 * victimCurrent - 2 * slotCurrent + (entry.depth < victimEntry.depth ? 1 : 0);
    if (standing > 0) victim = slot, victimEntry = entry;
  }
  writeSlot(bucket.slots[victim], key, depth, score, bound, age, move);
}

HashHit hashProbe(uint64_t key) {
  if (hashTable.buckets == nullptr) return {};
  traceCount(&SearchTrace::hashProbes);
  const HashBucket& bucket = hashTable.buckets[key & hashTable.mask];
  for (const HashSlot& slot : bucket.slots) {
    const HashEntry entry = readSlot(slot);
    if (entry.key == key) return traceCount(&SearchTrace::hashHits), HashHit{entry, &slot};
  }
  return {};
}

int32_t scoreToStore(int32_t score, int ply) {
  if (score > mateShiftLimit) return score + ply;
  if (score < -mateShiftLimit) return score - ply;
  return score;
}

int32_t scoreFromStore(int32_t score, int ply) {
  if (score > mateShiftLimit) return score - ply;
  if (score < -mateShiftLimit) return score + ply;
  return score;
}
