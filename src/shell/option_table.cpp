#include "shell/option_table.h"

#include <cstdio>
#include <cstring>
#include <strings.h>

#include "base/log.h"
#include "book/book.h"
#include "eval/evaluate.h"
#include "search/hash_table.h"
#include "search/reductions.h"
#include "search/threads.h"

namespace {

int32_t tableMegabytes() { return static_cast<int32_t>(hashTable.bucketCount * sizeof(HashBucket) >> 20); }

// The reduction tables read Red depth threshold; the spins that tune the
// search rebuild them with the evaluation.
void rebuildEvaluationAndReductions() {
  rebuildEvaluation();
  buildReductionTables();
}

// options.hashSizeMb holds the size asked for and, on the way out, the size
// of the table in force.
void changeHashSize() {
  const int32_t asked = options.hashSizeMb;
  if (asked < 1) {
    hashAllocate(0);
    std::printf("info string Hash tables turned OFF\n");
    logPrintf("Hash tables turned off\n");
  } else if (hashAllocate(asked)) {
    std::printf("info string Hash table size is now %d meg\n", tableMegabytes());
  } else if (hashTable.buckets != nullptr) {
    // The table in use stays, emptied like any table a new size replaces.
    hashClear();
    std::printf("info string no memory for a hash table of %d meg, keeping %d meg\n", hashMegabytesFor(asked),
                tableMegabytes());
  } else {
    std::printf("info string no memory for a hash table of %d meg, Hash tables stay OFF\n", hashMegabytesFor(asked));
  }
  options.hashSizeMb = tableMegabytes();
  // Like every other setting, a new size starts the search from empty caches.
  clearEvaluationCaches(evalCaches);
  std::fflush(stdout);
}

// Who searches, not what a search knows: the helpers start now and wait for
// the searches, with tables of their own that start empty.
void changeThreadCount() { setThreadCount(options.threads); }

// OwnBook: the book named is opened or closed. A missing default book is the
// usual case and goes unsaid; any other book that can't be had is worth a
// line, as the engine plays on without it.
void reopenBook() {
  const BookOpening opening = openBook();
  const bool defaultName = std::strcmp(options.bookFileName, EngineOptions{}.bookFileName) == 0;
  if (opening == BookOpening::Unreadable || (opening == BookOpening::Missing && !defaultName)) sayBookUnreadable();
}

// Book File: the name the client gave is said back. With OwnBook off the
// name is only kept: it is tried when OwnBook goes on.
void changeBookFile() {
  const BookOpening opening = openBook();
  if (opening == BookOpening::Opened || opening == BookOpening::Off) {
    std::printf("info string book file is %s\n", options.bookFileName);
    std::fflush(stdout);
  } else {
    sayBookUnreadable();
  }
}

void recordPonder() { logPrintf("Ponder set to %d\n", options.ponder); }

constexpr OptionDeclaration check(const char* name, int32_t EngineOptions::*field, void (*change)()) {
  return {name, OptionType::Check, field, nullptr, 0, 1, change};
}

constexpr OptionDeclaration spin(const char* name, int32_t EngineOptions::*field, int32_t minimum, int32_t maximum,
                                 void (*change)(), const char* formerName = nullptr) {
  return {name, OptionType::Spin, field, nullptr, minimum, maximum, change, formerName};
}

const OptionDeclaration optionRows[] = {
    // Pondering is the client's choice, made with go ponder; the option
    // only tells a GUI that the engine can.
    check("Ponder", &EngineOptions::ponder, recordPonder),
    // A value above 0 gets the power of two of buckets at or above 0.51 times
    // the memory asked for, at least 1 MB: 100 gets 64 MB.
    spin("Hash", &EngineOptions::hashSizeMb, 0, 4096, changeHashSize),
    {"Clear Hash", OptionType::Button, nullptr, nullptr, 0, 0, hashClear},
    check("OwnBook", &EngineOptions::ownBook, reopenBook),
    // The search keeps room for 99 lines.
    spin("MultiPV", &EngineOptions::multiPv, 1, 99, nullptr),
    {"Book File", OptionType::String, nullptr, &EngineOptions::bookFileName, 0, 0, changeBookFile},
    check("use lmr", &EngineOptions::useLmr, rebuildEvaluation),
    check("null move pruning", &EngineOptions::nullMovePruning, rebuildEvaluation),
    check("deterministic", &EngineOptions::deterministic, rebuildEvaluation),
    check("Best Line", &EngineOptions::bestLineOnly, rebuildEvaluation),
    check("UCI_Chess960", &EngineOptions::chess960, rebuildEvaluation),
    // Ranges that keep every setting playable: no draw outweighs a mate, no
    // margin overflows.
    spin("Red depth threshold", &EngineOptions::redDepthThreshold, 0, 100, rebuildEvaluationAndReductions),
    spin("King Safety Aggressiveness", &EngineOptions::kingSafetyAggressiveness, 0, 10,
         rebuildEvaluationAndReductions),
    // Announced under the name GUIs and bots set for this setting; the
    // engine's own former name is still taken.
    spin("Move Overhead", &EngineOptions::moveOverheadMs, 0, 30000, rebuildEvaluationAndReductions,
         "move overhead milliseconds"),
    spin("Drawscore", &EngineOptions::drawScore, -50, 50, rebuildEvaluationAndReductions),
    spin("Threads", &EngineOptions::threads, 1, 256, changeThreadCount),
};

}  // namespace

const std::span<const OptionDeclaration> declaredOptions = optionRows;

void rebuildEvaluation() {
  initEvaluation();
  hashClear();
  clearEvaluationCaches(evalCaches);
}

const OptionDeclaration* findOption(const char* name) {
  for (const OptionDeclaration& option : declaredOptions)
    if (strcasecmp(option.name, name) == 0 || (option.formerName && strcasecmp(option.formerName, name) == 0))
      return &option;
  return nullptr;
}

const char* optionTypeWord(OptionType type) {
  switch (type) {
    case OptionType::Check: return "check";
    case OptionType::Spin: return "spin";
    case OptionType::Button: return "button";
    case OptionType::String: return "string";
  }
  return "";
}

void announceOption(const OptionDeclaration& option) {
  std::printf("option name %s type %s", option.name, optionTypeWord(option.type));
  switch (option.type) {
    case OptionType::Check:
      std::printf(" default %s", options.*option.number ? "true" : "false");
      break;
    case OptionType::Spin:
      std::printf(" default %d min %d max %d", options.*option.number, option.minimum, option.maximum);
      break;
    case OptionType::String:
      std::printf(" default %s", options.*option.text);
      break;
    case OptionType::Button:
      break;
  }
  std::printf("\n");
}

int32_t hashMegabytesFor(int32_t askedMb) {
  if (askedMb < 1) return 0;
  return static_cast<int32_t>(hashBucketCount(askedMb) * sizeof(HashBucket) >> 20);
}
