#include "batch_search.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/options.h"
#include "board/keys.h"
#include "eval/tables.h"
#include "search/hash_table.h"
#include "search/limits.h"
#include "shell/setoption.h"

namespace {

void removeArguments(int& argc, char** argv, int at, int count) {
  for (int i = at; i + count < argc; ++i) argv[i] = argv[i + count];
  argc -= count;
}

}  // namespace

bool takeSeedOption(int& argc, char** argv, uint64_t& seed) {
  for (int i = 0; i < argc; ++i) {
    if (std::strcmp(argv[i], "--seed") != 0) continue;
    char* end = nullptr;
    errno = 0;
    uint64_t value = i + 1 < argc ? std::strtoull(argv[i + 1], &end, 0) : 0;
    if (i + 1 >= argc || end == argv[i + 1] || *end != 0 || errno != 0) {
      std::fprintf(stderr, "--seed needs a number\n");
      return false;
    }
    seed = value;
    removeArguments(argc, argv, i, 2);
    return true;
  }
  return true;
}

bool takeFlag(int& argc, char** argv, const char* flag) {
  for (int i = 0; i < argc; ++i) {
    if (std::strcmp(argv[i], flag) != 0) continue;
    removeArguments(argc, argv, i, 1);
    return true;
  }
  return false;
}

const char* takeFlagValue(int& argc, char** argv, const char* flag) {
  for (int i = 0; i + 1 < argc; ++i) {
    if (std::strcmp(argv[i], flag) != 0) continue;
    const char* value = argv[i + 1];
    removeArguments(argc, argv, i, 2);
    return value;
  }
  return nullptr;
}

void prepareBatchSearch(uint64_t seed) {
  // Every key-derived value is made later, from parseFen on; the evaluation
  // caches are keyed by hashKey and pawnKey, so they start after the keys.
  initKeys(seed);
  searchLimits.batchMode = 1;
  rebuildEvaluation();
  if (options.hashSizeMb != 0 && hashTable.buckets == nullptr) hashAllocate(options.hashSizeMb);
}
