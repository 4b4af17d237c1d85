#include "book/book.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "../support/board.h"
#include "../support/book_writer.h"
#include "../support/legal_moves.h"
#include "../support/option_state.h"

namespace {

using testbook::Entry;
using testbook::keyOf;
using testbook::moveField;

constexpr const char* startFen = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
constexpr const char* castlingFen = "r3k2r/pppppppp/8/8/8/8/PPPPPPPP/R3K2R w KQkq - 0 1";
constexpr const char* blackCastlingFen = "r3k2r/pppppppp/8/8/8/8/PPPPPPPP/R3K2R b KQkq - 0 1";
constexpr const char* noRightsFen = "r3k2r/pppppppp/8/8/8/8/PPPPPPPP/R3K2R w kq - 0 1";
constexpr const char* rookFen = "4k3/8/8/8/8/8/6K1/4R3 w - - 0 1";
constexpr const char* pawnFen = "4k3/P7/8/8/8/8/8/4K3 w - - 0 1";

TEST(BookKey, PublishedReferenceKeys) {
  // The en-passant file counts only where a pawn can take (after 1.e4 it
  // doesn't, after 3...b4xc3 is possible it does).
  EXPECT_EQ(keyOf(startFen), 0x463b96181691fc9cULL);
  EXPECT_EQ(keyOf("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1"), 0x823c9b50fd114196ULL);
  EXPECT_EQ(keyOf("rnbqkbnr/ppp1pppp/8/3p4/4P3/8/PPPP1PPP/RNBQKBNR w KQkq d6 0 2"), 0x0756b94461c50fb0ULL);
  EXPECT_EQ(keyOf("rnbqkbnr/ppp1pppp/8/3pP3/8/8/PPPP1PPP/RNBQKBNR b KQkq - 0 2"), 0x662fafb965db29d4ULL);
  EXPECT_EQ(keyOf("rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6 0 3"), 0x22a48b5a8e47ff78ULL);
  EXPECT_EQ(keyOf("rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPPKPPP/RNBQ1BNR b kq - 0 3"), 0x652a607ca3f242c1ULL);
  EXPECT_EQ(keyOf("rnbq1bnr/ppp1pkpp/8/3pPp2/8/8/PPPPKPPP/RNBQ1BNR w - - 0 4"), 0x00fdd303c946bdd9ULL);
  EXPECT_EQ(keyOf("rnbqkbnr/p1pppppp/8/8/PpP4P/8/1P1PPPP1/RNBQKBNR b KQkq c3 0 3"), 0x3c8123ea7b067637ULL);
  EXPECT_EQ(keyOf("rnbqkbnr/p1pppppp/8/8/P6P/R1p5/1P1PPPP1/1NBQKBNR b Kkq - 0 4"), 0x5c3f9b829b279560ULL);
}

struct Book : OptionState {
  std::string directory;
  void SetUp() override {
    OptionState::SetUp();
    directory = testbook::makeTemporaryDirectory();
    ASSERT_FALSE(directory.empty());
    options.ownBook = 1;
    options.bestLineOnly = 1;
  }
  void TearDown() override {
    if (openingBook.file) std::fclose(openingBook.file);
    openingBook.file = nullptr;
    std::filesystem::remove_all(directory);
    OptionState::TearDown();
  }
  void useBook(const std::vector<Entry>& entries, int tailBytes = 0) {
    const std::string path = directory + "/book.bin";
    testbook::writeBook(path, entries, tailBytes);
    std::snprintf(options.bookFileName, sizeof options.bookFileName, "%s", path.c_str());
    openBook();
    ASSERT_NE(openingBook.file, nullptr);
  }
  static std::string probe(const char* fen) {
    const Position root = testboard::parsed(fen);
    Move move = probeBook(root);
    return move ? moveText(root, move) : "none";
  }
};

// An entry of the start position.
Entry opening(const char* move, uint16_t weight) { return {keyOf(startFen), moveField(move), weight}; }

// The entries with records of other keys just before and after the start position's.
std::vector<Entry> around(std::vector<Entry> entries, int before, int after) {
  const uint64_t key = keyOf(startFen);
  for (int k = 1; k <= before; ++k) entries.push_back({key - k, moveField("a2a3"), 1});
  for (int k = 1; k <= after; ++k) entries.push_back({key + k, moveField("a2a3"), 1});
  return entries;
}

TEST_F(Book, EachProbeFindsTheMoveItsRecordsName) {
  std::vector<Entry> crowded(64, opening("e2e4", 1));
  for (int i = 0; i < 6; ++i) crowded.push_back(opening("d2d4", 60000));
  std::vector<Entry> crowdedBroken = crowded;
  crowdedBroken.back().move = moveField("e2e5");
  struct Case { std::vector<Entry> entries; const char* fen; const char* move; int tailBytes = 0; };
  const Case cases[] = {
      {around({opening("g1f3", 7)}, 0, 20), startFen, "g1f3"},  // the first record
      {around({opening("d2d4", 3)}, 20, 0), startFen, "d2d4"},  // the last
      {around({opening("d2d4", 3)}, 20, 0), "rnbqkbnr/pppppppp/8/8/8/5N2/PPPPPPPP/RNBQKB1R b KQkq -",
       "none"},  // between records
      {{opening("e2e4", 0), opening("d2d4", 0)}, startFen, "none"},  // weight 0 is no move
      // Castling is written as the king taking its own rook.
      {{{keyOf(castlingFen), moveField("e1h1"), 1}}, castlingFen, "e1g1"},
      {{{keyOf(castlingFen), moveField("e1a1"), 1}}, castlingFen, "e1c1"},
      {{{keyOf(blackCastlingFen), moveField("e8a8"), 1}}, blackCastlingFen, "e8c8"},
      {{{keyOf(blackCastlingFen), moveField("e8h8"), 1}}, blackCastlingFen, "e8g8"},
      {{{keyOf(rookFen), moveField("e1h1"), 1}}, rookFen, "e1h1"},  // no king on e1: a plain move
      // A promotion takes its piece from the high bits.
      {{{keyOf(pawnFen), moveField("a7a8", 4), 1}}, pawnFen, "a7a8q"},
      {{{keyOf(pawnFen), moveField("a7a8", 1), 1}}, pawnFen, "a7a8n"},
      // A move that isn't legal here silences the whole position.
      {{{keyOf(pawnFen), moveField("e1e2", 4), 1}}, pawnFen, "none"},
      {{opening("e2e4", 10), opening("e2e5", 10), opening("d2d4", 10)}, startFen, "none"},
      {{{keyOf(noRightsFen), moveField("e1h1"), 1}}, noRightsFen, "none"},
      // A tail shorter than a record is no record.
      {around({opening("b1c3", 1)}, 1, 0), startFen, "b1c3", 15},
      {{}, startFen, "none", 15},
      // Only the first 64 entries of a position count, but all must be legal.
      {crowded, startFen, "e2e4"},
      {crowdedBroken, startFen, "none"},
  };
  for (const Case& c : cases) {
    useBook(c.entries, c.tailBytes);
    EXPECT_EQ(probe(c.fen), c.move) << c.fen << " with " << c.entries.size() << " entries";
  }
  // No book: a directory, a missing file.
  for (std::string name : {directory, directory + "/absent.bin"}) {
    std::snprintf(options.bookFileName, sizeof options.bookFileName, "%s", name.c_str());
    openBook();
    EXPECT_EQ(openingBook.file, nullptr) << name;
    EXPECT_EQ(probe(startFen), "none");
  }
}

TEST_F(Book, MovesAreDrawnByWeightOrWithBestLineOnlyAmongTheHeaviest) {
  // The share of 2000 draws each move gets, within 0.05.
  struct Case { std::vector<Entry> entries; bool bestLine; std::map<std::string, double> shares; };
  const Case cases[] = {
      // Three at the head of the file: the walk back stops at its start.
      {around({opening("e2e4", 10), opening("d2d4", 10), opening("c2c4", 10)}, 0, 2), true,
       {{"e2e4", 1 / 3.0}, {"d2d4", 1 / 3.0}, {"c2c4", 1 / 3.0}}},
      {{opening("e2e4", 30), opening("d2d4", 10)}, false, {{"e2e4", 0.75}, {"d2d4", 0.25}}},
      {{opening("e2e4", 0), opening("d2d4", 1), opening("c2c4", 0)}, false, {{"d2d4", 1}}},
      {{opening("d2d4", 10), opening("e2e4", 30)}, true, {{"e2e4", 1}}},
      {{opening("d2d4", 255), opening("e2e4", 256)}, true, {{"e2e4", 1}}},  // a weight takes both bytes
      {{opening("e2e4", 5), opening("d2d4", 5), opening("c2c4", 1)}, true, {{"e2e4", 0.5}, {"d2d4", 0.5}}},
  };
  for (const Case& c : cases) {
    useBook(c.entries);
    options.bestLineOnly = c.bestLine;
    std::srand(20240229);
    std::map<std::string, int> seen;
    for (int i = 0; i < 2000; ++i) ++seen[probe(startFen)];
    int total = 0;
    for (const auto& [move, share] : c.shares) {
      EXPECT_NEAR(seen[move] / 2000.0, share, share == 1 ? 0 : 0.05) << move;
      total += seen[move];
    }
    EXPECT_EQ(total, 2000) << "no other move";
  }
}

}  // namespace
