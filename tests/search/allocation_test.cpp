// The search runs millions of nodes a second: nothing on its path may ask the
// heap for memory. This file replaces the global operator new of the test
// program with one that counts, while a flag is set, every call.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>

#include "../support/board.h"
#include "base/options.h"
#include "eval/tables.h"
#include "search/hash_table.h"
#include "search/limits.h"
#include "search/think.h"
#include "shell/self_test.h"
#include "shell/setoption.h"

// AddressSanitizer brings its own operator new; replacing it there would mix
// two allocators, so the sanitizer build leaves the count to the plain build.
#if defined(__SANITIZE_ADDRESS__) || defined(TARVOK_SANITIZE)
#define TARVOK_COUNTS_ALLOCATIONS 0
#else
#define TARVOK_COUNTS_ALLOCATIONS 1
#endif

namespace {
std::atomic<bool> countingAllocations{false};
std::atomic<long> countedAllocations{0};
}  // namespace

#if TARVOK_COUNTS_ALLOCATIONS
void* operator new(std::size_t size) {
  if (countingAllocations.load(std::memory_order_relaxed)) countedAllocations.fetch_add(1);
  if (void* memory = std::malloc(size ? size : 1)) return memory;
  throw std::bad_alloc();
}
void* operator new[](std::size_t size) { return operator new(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
#endif

namespace {

TEST(Allocation, ASearchWithItsPickerEvaluationAndTableAsksTheHeapForNothing) {
  if (!TARVOK_COUNTS_ALLOCATIONS) GTEST_SKIP() << "counted in the build without AddressSanitizer";
  rebuildEvaluation();
  hashAllocate(16);
  // Middle game with castling and en passant, then an ending that reaches
  // the ending table's handlers and the passed pawn terms.
  const char* middleGame = "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -";
  const char* ending = "8/R5K1/8/8/1p6/1k6/p6P/8 b - -";
  countedAllocations = 0;
  {
    testboard::BatchMode batch;
    countingAllocations = true;
    searchBatchPosition(middleGame, 8);
    searchBatchPosition(ending, 10);
    countingAllocations = false;
  }
  EXPECT_GT(mainSearch.depthNodes[10], 10000u) << "the searches ran";
  EXPECT_EQ(countedAllocations.load(), 0);

  // The counter itself works: a plain allocation is seen.
  countingAllocations = true;
  int* volatile seen = new int(7);  // volatile: the pair can't be optimised away
  delete seen;
  countingAllocations = false;
  EXPECT_EQ(countedAllocations.load(), 1);
}

}  // namespace
