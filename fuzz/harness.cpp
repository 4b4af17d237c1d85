#include "harness.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/log.h"
#include "base/options.h"
#include "board/make_move.h"
#include "book/book.h"
#include "eval/tables.h"
#include "moves/picker.h"
#include "search/hash_table.h"
#include "search/limits.h"
#include "search/reductions.h"
#include "search/search_state.h"
#include "search/threads.h"
#include "shell/game.h"
#include "shell/go_command.h"
#include "shell/position_command.h"
#include "shell/setoption.h"
#include "shell/tokenise.h"
#include "shell/uci.h"

namespace {

constexpr int harnessHashMb = 1;
constexpr int largestHashMb = 16;
constexpr int batchLines = 100;  // lines handed over before the searches they start are stopped

EngineOptions defaultOptions;

bool startsWithWord(const std::string& line, const char* word) {
  char copy[lineBytes];
  std::snprintf(copy, sizeof copy, "%s", line.c_str());
  copy[std::strcspn(copy, "\f\n\r")] = 0;
  char* tokens[lineBytes / 2 + 1];
  return tokenise(copy, tokens) > 0 && std::strcmp(tokens[0], word) == 0;
}

// The lines as the input thread takes them; then every search is stopped
// in turn (each ends after its first iteration) and what waited behind it
// runs, until nothing is left.
void serveBatch(std::vector<std::string>& batch) {
  for (const std::string& line : batch) takeClientLine(line.c_str());
  batch.clear();
  for (;;) {
    stopTheSearch();
    waitForMainSearch();
    if (uciSession.waiting.empty()) break;
    const std::string line = std::move(uciSession.waiting.front());
    uciSession.waiting.pop_front();
    takeClientLine(line.c_str());
  }
}

}  // namespace

void prepareEngine() {
  int devNull = open("/dev/null", O_WRONLY);
  dup2(devNull, 1);
  close(devNull);
  engineLog.file = std::fopen("/dev/null", "w");
  options.hashSizeMb = harnessHashMb;
  defaultOptions = options;
  rebuildEvaluation();
  buildReductionTables();
  hashAllocate(options.hashSizeMb);
  openBook();
}

void resetEngine() {
  const bool bookChanged = std::strcmp(options.bookFileName, defaultOptions.bookFileName) != 0;
  EngineOptions sameBook = options;
  std::memcpy(sameBook.bookFileName, defaultOptions.bookFileName, sizeof sameBook.bookFileName);
  const bool changed = !(sameBook == defaultOptions);
  options = defaultOptions;
  if (changed) {
    rebuildEvaluation();
    buildReductionTables();
  }
  if (changed || hashTable.buckets == nullptr || hashTable.bucketCount != hashBucketCount(harnessHashMb))
    hashAllocate(options.hashSizeMb);
  if (changed || bookChanged || openingBook.file) openBook();
  // The tables a search learns from start empty, so that an input behaves
  // the same way whatever ran before it.
  hashClear();
  mainSearch.history = MoveHistory{};

  searchLimits = SearchLimits{};
  searchSession = SearchSession{};
  game.startPositionPending = 1;
  uciSession.waiting.clear();
  uciSession.inputEnded = false;
}

std::vector<std::string> readerLines(const uint8_t* data, size_t size) {
  std::vector<std::string> lines;
  std::string line;
  // A line longer than the reader takes is dropped whole; the dispatcher
  // only answers it with an info string.
  auto keep = [&] {
    if (line.size() <= static_cast<size_t>(longestLine) + (line.back() == '\n' ? 1 : 0)) lines.push_back(line);
    line.clear();
  };
  for (size_t i = 0; i < size; ++i) {
    line.push_back(static_cast<char>(data[i]));
    if (data[i] == '\n') keep();
  }
  if (!line.empty()) keep();
  return lines;
}

std::string withSmallHash(const std::string& line) {
  if (!startsWithWord(line, "setoption")) return line;
  char copy[lineBytes];
  std::snprintf(copy, sizeof copy, "%s", line.c_str());
  copy[std::strcspn(copy, "\f\n\r")] = 0;
  char* tokens[lineBytes / 2 + 1];
  int count = tokenise(copy, tokens);
  static OptionText text;
  readOptionText(tokens, count, text);
  if (std::strcmp(text.optionName + 1, "hash") != 0) return line;
  int32_t asked = static_cast<int32_t>(std::strtol(text.optionValue + 1, nullptr, 10));
  return asked > largestHashMb ? "setoption name Hash value 16\n" : line;
}

int serveLines(const std::vector<std::string>& lines) {
  std::vector<std::string> batch;
  try {
    for (const std::string& line : lines) {
      batch.push_back(withSmallHash(line));
      if (static_cast<int>(batch.size()) >= batchLines) serveBatch(batch);
    }
    serveBatch(batch);
  } catch (const EngineExit& exit) {
    return exit.code;
  }
  return -1;
}
