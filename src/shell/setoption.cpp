#include "shell/setoption.h"

#include <algorithm>
#include <cctype>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <strings.h>

#include "base/log.h"
#include "base/options.h"
#include "book/book.h"
#include "eval/evaluate.h"
#include "search/hash_table.h"
#include "search/reductions.h"
#include "search/threads.h"

namespace {

// Appends a blank and at most wordLimit bytes of the word, within the buffer.
void appendWord(char* text, int size, const char* word, size_t wordLimit) {
  size_t length = std::strlen(text);
  if (length + 1 >= static_cast<size_t>(size)) return;
  text[length++] = ' ';
  size_t room = static_cast<size_t>(size) - 1 - length;
  size_t take = std::min({std::strlen(word), wordLimit, room});
  std::memcpy(text + length, word, take);
  text[length + take] = '\0';
}

void lowerCase(char* text) {
  for (char* c = text; *c; ++c) *c = static_cast<char>(std::tolower(static_cast<unsigned char>(*c)));
}

// A number beyond 32 bits saturates.
int32_t toInteger(const char* text) {
  long long value = std::strtoll(text, nullptr, 10);
  return static_cast<int32_t>(std::clamp<long long>(value, INT32_MIN, INT32_MAX));
}

const EngineOption* findOption(const EngineOption* table, const char* name) {
  for (const EngineOption* row = table; row->name[0]; ++row)
    if (strcasecmp(row->name, name) == 0) return row;
  return nullptr;
}

}  // namespace

void rebuildEvaluation() {
  initEvaluation();
  hashClear();
  clearEvaluationCaches(evalCaches);
}

void readOptionText(char** tokens, int count, OptionText& text) {
  for (char* t : {text.optionName, text.optionValue}) {
    t[0] = '\0';
    t[1] = ' ';
    t[2] = ' ';
    t[3] = '\0';
  }
  text.bookFileValue[0] = '\0';

  enum { NoMode, NameMode, ValueMode } mode = NoMode;
  int firstValueWord = count;
  for (int i = 1; i < count; ++i) {
    const char* word = tokens[i];
    if (std::strcmp(word, "name") == 0) {
      mode = NameMode;
    } else if (std::strcmp(word, "value") == 0) {
      mode = ValueMode;
      if (firstValueWord == count) firstValueWord = i + 1;
    } else if (mode == NameMode) {
      appendWord(text.optionName, optionTextSize, word, optionTextSize);
    } else if (mode == ValueMode) {
      appendWord(text.optionValue, optionTextSize, word, optionTextSize);
      // Words of a value go in pairs: the second of each pair is cut and
      // can't switch the mode.
      if (i + 1 < count) appendWord(text.optionValue, optionTextSize, tokens[++i], 8);
    }
  }
  lowerCase(text.optionName);
  lowerCase(text.optionValue);

  for (int i = firstValueWord; i < count; ++i) {
    if (i == firstValueWord) {
      std::snprintf(text.bookFileValue, sizeof text.bookFileValue, "%s", tokens[i]);
    } else {
      appendWord(text.bookFileValue, sizeof text.bookFileValue, tokens[i], sizeof text.bookFileValue);
    }
  }
}

bool namesOption(char** tokens, int count, const char* name) {
  OptionText text;
  readOptionText(tokens, count, text);
  return std::strcmp(text.optionName + 1, name) == 0;
}

void setoptionCommand(char** tokens, int count) {
  OptionText text;
  readOptionText(tokens, count, text);
  const char* name = text.optionName + 1;
  const char* value = text.optionValue + 1;

  if (const EngineOption* row = findOption(spinOptions, name)) {
    // A value outside the announced range is held to the nearer end, so that
    // no setting can make a draw outweigh a mate or a margin overflow; the
    // uci answer shows the value in force.
    options.*row->value = std::clamp(toInteger(value), row->minimum, row->maximum);
    if (row->value == &EngineOptions::threads) {
      // Who searches, not what a search knows: the helpers start now and wait
      // for the searches, with tables of their own that start empty.
      setThreadCount(options.threads);
      return;
    }
    rebuildEvaluation();
    buildReductionTables();
    return;
  }
  if (const EngineOption* row = findOption(checkOptions, name)) {
    if (std::strcmp(value, "true") == 0) {
      options.*row->value = 1;
    } else if (std::strcmp(value, "false") == 0) {
      options.*row->value = 0;
    } else {
      std::printf("info string %s not recognized as checkbox argument\n", value);
      std::fflush(stdout);
    }
    rebuildEvaluation();
    return;
  }
  if (std::strcmp(name, "hash") == 0) {
    // Held to its announced range like the other spins; hashSizeMb always
    // names the table in force, which the uci answer shows.
    const int32_t asked = std::clamp(toInteger(value), 0, maxHashMb);
    if (asked < 1) {
      hashAllocate(0);
      options.hashSizeMb = 0;
      std::printf("info string Hash tables turned OFF\n");
      logPrintf("Hash tables turned off\n");
    } else if (hashAllocate(asked)) {
      options.hashSizeMb = asked;
      std::printf("info string Hash table size is now %d meg\n", options.hashSizeMb);
    } else if (options.hashSizeMb > 0) {
      hashClear();
      std::printf("info string no memory for a hash table of %d meg, keeping %d meg\n", asked, options.hashSizeMb);
    } else {
      std::printf("info string no memory for a hash table of %d meg, Hash tables stay OFF\n", asked);
    }
    // Like every other setting, a new size starts the search from empty caches.
    clearEvaluationCaches(evalCaches);
    std::fflush(stdout);
    return;
  }
  if (std::strcmp(name, "clear hash") == 0) {
    // A button: no value, the table is emptied at once.
    hashClear();
    return;
  }
  if (std::strcmp(name, "multipv") == 0) {
    // The search keeps room for 1 to 99 lines: a value outside is held to
    // the nearer end, and the uci answer shows the value in force.
    options.multiPv = std::min(std::max(toInteger(value), 1), 99);
    return;
  }
  if (std::strcmp(name, "ownbook") == 0) {
    options.ownBook = std::strcmp(value, "true") == 0 ? 1 : 0;
    // A missing default book is the usual case and goes unsaid; a file that
    // is there but can't be read is worth a line.
    if (openBook() == BookOpening::Unreadable) sayBookUnreadable();
    return;
  }
  if (std::strcmp(name, "ponder") == 0) {
    options.ponder = std::strcmp(value, "true") == 0 ? 1 : 0;
    logPrintf("Ponder set to %d\n", options.ponder);
    return;
  }
  if (std::strcmp(name, "book file") == 0) {
    // A file name keeps its case and its long words; a longer name is cut to
    // the 511 bytes that fit.
    std::snprintf(options.bookFileName, sizeof options.bookFileName, "%s", text.bookFileValue);
    // With OwnBook off the name is only kept: it is tried when OwnBook goes on.
    BookOpening opening = openBook();
    if (opening == BookOpening::Opened || opening == BookOpening::Off) {
      std::printf("info string book file is %s\n", options.bookFileName);
      std::fflush(stdout);
    } else {
      sayBookUnreadable();
    }
    return;
  }
  std::printf("info string %s not recognized\n", name);
  std::fflush(stdout);
  logPrintf("option %s (value %s) not understood.\n", name, value);
}
