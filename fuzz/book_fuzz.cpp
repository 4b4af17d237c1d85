// The book reader: the input becomes a book file, probed from a few
// positions and once through a search. Most records get the key of one of
// the probed positions, so that the fuzzer reaches the moves behind a key;
// an odd first byte sorts the records by key, as a real book is.
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "base/options.h"
#include "board/fen.h"
#include "board/make_move.h"
#include "board/queries.h"
#include "book/book.h"
#include "harness.h"
#include "moves/generate.h"

namespace {

const char* const fens[] = {
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -",
    "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3",
    "r3k2r/pppq1ppp/2n2n2/3pp3/1b1PP3/2N2N2/PPPQ1PPP/R3K2R w KQkq -",
    "4k3/1P6/8/3pP3/8/8/6p1/4K2R w K d6",
};
constexpr int fenCount = sizeof fens / sizeof fens[0];

uint64_t probedKeys[fenCount];
std::string bookPath;

using Record = std::array<uint8_t, 16>;

// A book move must be one of the position's legal moves.
bool legalMove(const Position& position, Move move) {
  Move list[maxGeneratedMoves];
  int count = generateAllMoves(position, list);
  for (int i = 0; i < count; ++i) {
    if (list[i] != move) continue;
    Position child;
    makeMove(position, child, move);
    return !kingAttacked(child, sideToMove(position));
  }
  return false;
}

uint64_t recordKey(const Record& record) {
  uint64_t key = 0;
  for (int i = 0; i < 8; ++i) key = key << 8 | record[i];
  return key;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  prepareEngine();
  for (int i = 0; i < fenCount; ++i) {
    Position position;
    parseFen(position, fens[i]);
    probedKeys[i] = polyglotKey(position);
  }
  bookPath = "/tmp/tarvok-fuzz-book-" + std::to_string(getpid()) + ".bin";
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  resetEngine();
  const bool sorted = data[0] & 1;
  std::vector<Record> records;
  size_t i = 1;
  for (; i + 16 <= size; i += 16) {
    Record record;
    std::copy(data + i, data + i + 16, record.begin());
    if (record[0] < 0xC0) {
      uint64_t key = probedKeys[record[0] % fenCount];
      for (int b = 7; b >= 0; --b, key >>= 8) record[b] = static_cast<uint8_t>(key);
    }
    records.push_back(record);
  }
  if (sorted)
    std::stable_sort(records.begin(), records.end(),
                     [](const Record& a, const Record& b) { return recordKey(a) < recordKey(b); });
  FILE* file = std::fopen(bookPath.c_str(), "wb");
  if (!file) return 0;
  for (const Record& record : records) std::fwrite(record.data(), 1, 16, file);
  // A tail shorter than a record, as a cut file would have.
  std::fwrite(data + i, 1, size - i, file);
  std::fclose(file);

  try {
    options.ownBook = 1;
    std::snprintf(options.bookFileName, sizeof options.bookFileName, "%s", bookPath.c_str());
    openBook();
    for (const char* fen : fens) {
      Position position;
      parseFen(position, fen);
      Move move = probeBook(position);
      if (move && !legalMove(position, move)) std::abort();
    }
  } catch (const EngineExit&) {
  }
  serveLines({std::string("position fen ") + fens[data[0] / 2 % fenCount] + "\n", "go depth 2\n"});
  return 0;
}
