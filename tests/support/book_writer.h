// Test-only writer of small opening-book files: 16-byte big-endian records of
// key, move, weight and an unused learn field, in the order given.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "board/fen.h"
#include "book/book.h"

namespace testbook {

struct Entry { uint64_t key; uint16_t move; uint16_t weight; };

// The book's move field from coordinate text "e2e4"; promotion 1..4 is
// knight, bishop, rook, queen.
inline uint16_t moveField(const char* text, int promotion = 0) {
  int fromFile = text[0] - 'a', fromRank = text[1] - '1';
  int toFile = text[2] - 'a', toRank = text[3] - '1';
  return static_cast<uint16_t>(toFile | toRank << 3 | fromFile << 6 | fromRank << 9 | promotion << 12);
}

inline uint64_t keyOf(const char* fen) {
  Position position;
  parseFen(position, fen);
  return polyglotKey(position);
}

// Writes the entries sorted by key, as the format wants them, those of one
// key in the order given; then tailBytes bytes of 0xff that make no record.
inline void writeBook(const std::string& path, std::vector<Entry> entries, int tailBytes = 0) {
  std::stable_sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a.key < b.key; });
  FILE* file = std::fopen(path.c_str(), "wb");
  ASSERT_NE(file, nullptr) << path;
  for (const Entry& entry : entries) {
    unsigned char record[16] = {};
    for (int i = 0; i < 8; ++i) record[i] = static_cast<unsigned char>(entry.key >> (56 - 8 * i));
    record[8] = static_cast<unsigned char>(entry.move >> 8);
    record[9] = static_cast<unsigned char>(entry.move);
    record[10] = static_cast<unsigned char>(entry.weight >> 8);
    record[11] = static_cast<unsigned char>(entry.weight);
    std::fwrite(record, 1, 16, file);
  }
  for (int i = 0; i < tailBytes; ++i) std::fputc(0xff, file);
  std::fclose(file);
}

inline std::string makeTemporaryDirectory() {
  char pattern[] = "/tmp/tarvok-book-XXXXXX";
  const char* made = mkdtemp(pattern);
  return made ? made : "";
}

}  // namespace testbook
