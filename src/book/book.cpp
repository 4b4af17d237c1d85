#include "book/book.h"

#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/log.h"
#include "base/options.h"
#include "board/castling.h"
#include "board/fen.h"
#include "moves/generate.h"

OpeningBook openingBook;

namespace {

constexpr int maxCandidates = 64;

struct BookRecord {
  uint64_t key;
  uint16_t move;
  uint16_t weight;
};

// Reads the record at index; false when the seek or the read fails.
bool readRecordAt(long index, BookRecord& record) {
  if (std::fseek(openingBook.file, index * 16, SEEK_SET) != 0) return false;
  unsigned char bytes[16];
  if (std::fread(bytes, 1, 16, openingBook.file) != 16) return false;
  std::memcpy(&record.key, bytes, 8);
  std::memcpy(&record.move, bytes + 8, 2);
  std::memcpy(&record.weight, bytes + 10, 2);
  reverseBytes(&record.key, 8);
  reverseBytes(&record.move, 2);
  reverseBytes(&record.weight, 2);
  return true;
}

// The number of whole records, or -1 when the stream can't seek.
long recordCount() {
  if (std::fseek(openingBook.file, 0, SEEK_END) != 0) return -1;
  long length = std::ftell(openingBook.file);
  return length > 0 ? length / 16 : 0;  // a tail shorter than a record is ignored
}

// Reading the whole file once at opening finds a file whose size promises
// more than it gives (the files of /sys claim a page), before any probe.
bool readsWhole(FILE* file, off_t size) {
  char buffer[4096];
  off_t total = 0;
  for (size_t got; (got = std::fread(buffer, 1, sizeof buffer, file)) > 0;) total += static_cast<off_t>(got);
  return !std::ferror(file) && total == size;
}

// A book that fails a probe is closed for good, so the client hears of it once.
Move dropUnreadableBook() {
  std::fclose(openingBook.file);
  openingBook.file = nullptr;
  sayBookUnreadable();
  return 0;
}

void bookMoveText(uint16_t bookMove, const Position& position, char* text) {
  moveToText(position, bookMove & 0xfff, text);
  int promotion = (bookMove >> 12) & 7;
  if (promotion >= 1 && promotion <= 4) {
    size_t length = std::strlen(text);
    text[length] = " nbrq"[promotion];
    text[length + 1] = 0;
  }
  // The book writes castling as the king taking its own rook.
  if (position.pieces[White][King] & squareBit(4)) {
    if (std::strcmp(text, "e1h1") == 0) std::strcpy(text, "e1g1");
    if (std::strcmp(text, "e1a1") == 0) std::strcpy(text, "e1c1");
  }
  if (position.pieces[Black][King] & squareBit(60)) {
    if (std::strcmp(text, "e8h8") == 0) std::strcpy(text, "e8g8");
    if (std::strcmp(text, "e8a8") == 0) std::strcpy(text, "e8c8");
  }
}

}  // namespace

void reverseBytes(void* data, int length) {
  unsigned char* bytes = static_cast<unsigned char*>(data);
  for (int i = 0, j = length - 1; i < j; ++i, --j) {
    unsigned char swap = bytes[i];
    bytes[i] = bytes[j];
    bytes[j] = swap;
  }
}

BookOpening openBook() {
  if (openingBook.file) {
    std::fclose(openingBook.file);
    openingBook.file = nullptr;
  }
  if (options.ownBook != 1) return BookOpening::Off;
  struct stat status;
  if (stat(options.bookFileName, &status) != 0) return BookOpening::Missing;
  // A directory opens for reading here: only a regular file can be a book.
  if (!S_ISREG(status.st_mode)) return BookOpening::Unreadable;
  openingBook.file = std::fopen(options.bookFileName, "rb");
  if (openingBook.file && readsWhole(openingBook.file, status.st_size)) return BookOpening::Opened;
  if (openingBook.file) std::fclose(openingBook.file);
  openingBook.file = nullptr;
  return BookOpening::Unreadable;
}

void sayBookUnreadable() {
  std::printf("info string book file %s can't be read, playing without a book\n", options.bookFileName);
  std::fflush(stdout);
}

uint64_t polyglotKey(const Position& position) {
  uint64_t key = 0;
  for (int colour = White; colour <= Black; ++colour)
    for (int piece = Pawn; piece <= King; ++piece) {
      int kind = 2 * (piece - 1) + (colour == White ? 1 : 0);
      for (Bitboard b = position.pieces[colour][piece]; b;) key ^= polyglotRandom[64 * kind + popLowest(b)];
    }
  // Polyglot keys the rights in the same order: white short, white long,
  // black short, black long.
  const int rights = castlingRights(position.castling, position.moved);
  for (int right = 0; right < 4; ++right)
    if (rights & (1 << right)) key ^= polyglotRandom[768 + right];
  if (position.epBit) key ^= polyglotRandom[772 + fileOfSquare(lowestSquare(position.epBit))];
  if (sideToMove(position) == White) key ^= polyglotRandom[780];
  return key;
}

Move probeBook(const Position& root) {
  // Polyglot books and their keys know standard chess only.
  if (!openingBook.file || options.chess960) return 0;
  const uint64_t key = polyglotKey(root);
  const long count = recordCount();
  if (count < 0) return dropUnreadableBook();
  if (count == 0) return 0;
  long low = 0, high = count - 1, mid = 0;
  bool found = false;
  BookRecord record;
  while (low <= high) {
    mid = low + (high - low) / 2;
    if (!readRecordAt(mid, record)) return dropUnreadableBook();
    uint64_t recordKey = record.key;
    if (recordKey > key) {
      high = mid - 1;
    } else if (recordKey < key) {
      low = mid + 1;
    } else {
      found = true;
      break;
    }
  }
  if (!found) return 0;

  // The legal moves of the root, with their texts.
  Move legal[maxGeneratedMoves];
  const int legalCount = generateLegalMoves(root, legal);
  char legalText[maxGeneratedMoves][8];
  for (int i = 0; i < legalCount; ++i) moveToText(root, legal[i], legalText[i]);

  long first = mid;
  for (; first > 0; --first) {
    if (!readRecordAt(first - 1, record)) return dropUnreadableBook();
    if (record.key != key) break;
  }

  struct Candidate {
    Move move;
    int weight;
  } candidates[maxCandidates];
  int candidateCount = 0;
  int total = 0;
  // The walk ends at the end of the file as measured, or earlier if the file
  // has shrunk since: a book rewritten under the engine ends the walk. A read
  // that fails otherwise than at the end drops the book.
  for (long index = first; index < count; ++index) {
    if (!readRecordAt(index, record)) {
      if (std::ferror(openingBook.file)) return dropUnreadableBook();
      break;
    }
    if (record.key != key) break;
    if (record.weight == 0) continue;
    char text[8];
    bookMoveText(record.move, root, text);
    int match = -1;
    for (int i = 0; i < legalCount && match < 0; ++i)
      if (std::strcmp(legalText[i], text) == 0) match = i;
    if (match < 0) {
      logPrintf("Hey, book seems broken\n");
      return 0;
    }
    // Past 64 weighted entries the rest are dropped in file order (still
    // checked against the legal moves); the choice is among the first 64.
    if (candidateCount == maxCandidates) continue;
    candidates[candidateCount++] = {legal[match], record.weight};
    total += record.weight;
    logPrintf("book: %-5s %5d\n", text, record.weight);
  }
  if (total == 0) return 0;

  if (options.bestLineOnly) {
    for (int i = 0; i < candidateCount; ++i)
      for (int j = i + 1; j < candidateCount; ++j)
        if (candidates[j].weight > candidates[i].weight) {
          Candidate swap = candidates[i];
          candidates[i] = candidates[j];
          candidates[j] = swap;
        }
    int kept = 1;
    total = candidates[0].weight;
    while (kept < candidateCount && candidates[kept].weight >= candidates[kept - 1].weight) {
      total += candidates[kept].weight;
      ++kept;
    }
    candidateCount = kept;
  }

  int mask = 0;
  while (mask < total - 1) mask = mask * 2 + 1;
  int draw;
  do draw = std::rand() & mask;
  while (draw >= total);
  int sum = 0;
  for (int i = 0; i < candidateCount; ++i) {
    sum += candidates[i].weight;
    if (draw < sum) return candidates[i].move;
  }
  return 0;
}
