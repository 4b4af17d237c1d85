#include "search/book.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "../shell/option_state.h"
#include "../support/book_writer.h"
#include "board/fen.h"

namespace {

using testbook::Entry;
using testbook::keyOf;
using testbook::moveField;

constexpr const char* startFen = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
constexpr const char* castlingFen = "r3k2r/pppppppp/8/8/8/8/PPPPPPPP/R3K2R w KQkq - 0 1";

struct Book : OptionState {
  std::string directory;
  std::string path;

  void SetUp() override {
    OptionState::SetUp();
    directory = testbook::makeTemporaryDirectory();
    ASSERT_FALSE(directory.empty());
    path = directory + "/book.bin";
    ownBook = 1;
    bestLineOnly = 1;
  }
  void TearDown() override {
    if (bookFile) std::fclose(bookFile);
    bookFile = nullptr;
    std::filesystem::remove_all(directory);
    OptionState::TearDown();
  }
  void useBook(const std::vector<Entry>& entries, int tailBytes = 0) {
    testbook::writeBook(path, entries, tailBytes);
    std::snprintf(bookFileName, sizeof bookFileName, "%s", path.c_str());
    openBook();
    ASSERT_NE(bookFile, nullptr);
  }
  std::string probe(const char* fen) {
    Position position;
    parseFen(position, fen);
    Move move = probeBook(position);
    if (!move) return "none";
    char text[8];
    moveToText(move, text);
    return text;
  }
  // How often each move text comes back in a number of probes from one seed.
  std::map<std::string, int> draws(const char* fen, int count) {
    std::srand(20240229);
    std::map<std::string, int> seen;
    for (int i = 0; i < count; ++i) ++seen[probe(fen)];
    return seen;
  }
  int logCount(const std::string& text) {
    std::string log = logText();
    int count = 0;
    for (size_t at = log.find(text); at != std::string::npos; at = log.find(text, at + 1)) ++count;
    return count;
  }
};

TEST(BookKey, PublishedReferenceKeys) {
  // Published with the format: the en-passant file counts only where a pawn
  // can take (after 1.e4 it doesn't, after 3...b4xc3 is possible it does).
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

TEST_F(Book, KeyInTheFirstAndInTheLastRecord) {
  const uint64_t start = keyOf(startFen);
  std::vector<Entry> entries = {{start, moveField("g1f3"), 7}};
  for (uint64_t k = 1; k <= 20; ++k) entries.push_back({start + k, moveField("a2a3"), 1});
  useBook(entries);
  EXPECT_EQ(probe(startFen), "g1f3");
  EXPECT_EQ(logText().find("book: g1f3      7\n") != std::string::npos, true);

  entries.clear();
  for (uint64_t k = 20; k >= 1; --k) entries.push_back({start - k, moveField("a2a3"), 1});
  entries.push_back({start, moveField("d2d4"), 3});
  useBook(entries);
  EXPECT_EQ(probe(startFen), "d2d4");
  // A key between records, or beyond both ends, isn't in the book.
  EXPECT_EQ(probe("rnbqkbnr/pppppppp/8/8/8/5N2/PPPPPPPP/RNBQKB1R b KQkq - 1 1"), "none");
}

TEST_F(Book, SeveralEntriesOfOneKeyAreAllCollectedInFileOrder) {
  const uint64_t start = keyOf(startFen);
  // Three entries at the head of the file: the walk back stops at its start.
  useBook({{start, moveField("e2e4"), 10},
           {start, moveField("d2d4"), 10},
           {start, moveField("c2c4"), 10},
           {start + 1, moveField("a2a3"), 1},
           {start + 2, moveField("a2a3"), 1}});
  std::map<std::string, int> seen = draws(startFen, 300);
  EXPECT_GT(seen["e2e4"], 60);
  EXPECT_GT(seen["d2d4"], 60);
  EXPECT_GT(seen["c2c4"], 60);
  EXPECT_EQ(seen["e2e4"] + seen["d2d4"] + seen["c2c4"], 300);
  std::string log = logText();
  EXPECT_EQ(log.substr(0, 54), "book: e2e4     10\nbook: d2d4     10\nbook: c2c4     10\n");
}

TEST_F(Book, WeightZeroIsIgnored) {
  const uint64_t start = keyOf(startFen);
  useBook({{start, moveField("e2e4"), 0}, {start, moveField("d2d4"), 0}});
  EXPECT_EQ(probe(startFen), "none");
  EXPECT_EQ(logCount("book:"), 0);

  useBook({{start, moveField("e2e4"), 0}, {start, moveField("d2d4"), 1}, {start, moveField("c2c4"), 0}});
  bestLineOnly = 0;
  std::map<std::string, int> seen = draws(startFen, 100);
  EXPECT_EQ(seen["d2d4"], 100);
  EXPECT_EQ(logCount("book: e2e4"), 0);
}

TEST_F(Book, BestLineOffDrawsByWeight) {
  const uint64_t start = keyOf(startFen);
  useBook({{start, moveField("e2e4"), 30}, {start, moveField("d2d4"), 10}});
  bestLineOnly = 0;
  std::map<std::string, int> seen = draws(startFen, 4000);
  // Three to one: 3000 expected, with a spread of about 27.
  EXPECT_GT(seen["e2e4"], 2850);
  EXPECT_LT(seen["e2e4"], 3150);
  EXPECT_EQ(seen["e2e4"] + seen["d2d4"], 4000);
}

TEST_F(Book, BestLineKeepsOnlyTheHighestWeights) {
  const uint64_t start = keyOf(startFen);
  useBook({{start, moveField("e2e4"), 30}, {start, moveField("d2d4"), 10}});
  EXPECT_EQ(draws(startFen, 500)["e2e4"], 500);

  // The highest weight wins wherever it stands in the file.
  useBook({{start, moveField("d2d4"), 10}, {start, moveField("e2e4"), 30}});
  EXPECT_EQ(draws(startFen, 500)["e2e4"], 500);

  useBook({{start, moveField("e2e4"), 5}, {start, moveField("d2d4"), 5}, {start, moveField("c2c4"), 1}});
  std::map<std::string, int> seen = draws(startFen, 4000);
  EXPECT_EQ(seen["c2c4"], 0);
  EXPECT_GT(seen["e2e4"], 1850);
  EXPECT_LT(seen["e2e4"], 2150);
  EXPECT_EQ(seen["e2e4"] + seen["d2d4"], 4000);
}

TEST_F(Book, CastlingIsWrittenAsTheKingTakingItsRook) {
  const uint64_t white = keyOf(castlingFen);
  const char* blackFen = "r3k2r/pppppppp/8/8/8/8/PPPPPPPP/R3K2R b KQkq - 0 1";
  const uint64_t black = keyOf(blackFen);
  useBook({{white, moveField("e1h1"), 1}, {black, moveField("e8a8"), 1}});
  EXPECT_EQ(probe(castlingFen), "e1g1");
  EXPECT_EQ(probe(blackFen), "e8c8");
  Position position;
  parseFen(position, castlingFen);
  EXPECT_EQ(probeBook(position), castleWhiteShort);

  useBook({{white, moveField("e1a1"), 1}, {black, moveField("e8h8"), 1}});
  EXPECT_EQ(probe(castlingFen), "e1c1");
  EXPECT_EQ(probe(blackFen), "e8g8");

  // Without the king on e1, e1h1 is a plain move: here the rook's.
  const char* rookFen = "4k3/8/8/8/8/8/6K1/4R3 w - - 0 1";
  useBook({{keyOf(rookFen), moveField("e1h1"), 1}});
  EXPECT_EQ(probe(rookFen), "e1h1");
}

TEST_F(Book, PromotionTakesItsLetterFromTheHighBits) {
  const char* fen = "4k3/P7/8/8/8/8/8/4K3 w - - 0 1";
  useBook({{keyOf(fen), moveField("a7a8", 4), 1}});
  EXPECT_EQ(probe(fen), "a7a8q");
  useBook({{keyOf(fen), moveField("a7a8", 1), 1}});
  EXPECT_EQ(probe(fen), "a7a8n");
  Position position;
  parseFen(position, fen);
  EXPECT_EQ(moveKind(probeBook(position)), KindPromoteKnight);

  // A promotion letter on a move that promotes nothing has no legal counterpart.
  useBook({{keyOf(fen), moveField("e1e2", 4), 1}});
  EXPECT_EQ(probe(fen), "none");
  EXPECT_EQ(logCount("Hey, book seems broken\n"), 1);
}

TEST_F(Book, AMoveThatIsntLegalHereMakesTheWholePositionSilent) {
  const uint64_t start = keyOf(startFen);
  useBook({{start, moveField("e2e4"), 10}, {start, moveField("e2e5"), 10}, {start, moveField("d2d4"), 10}});
  EXPECT_EQ(probe(startFen), "none");
  EXPECT_EQ(logText(), "book: e2e4     10\nHey, book seems broken\n");

  // With the castling right gone, e1h1 maps to e1g1, which isn't legal.
  const char* noRights = "r3k2r/pppppppp/8/8/8/8/PPPPPPPP/R3K2R w kq - 0 1";
  useBook({{keyOf(noRights), moveField("e1h1"), 1}});
  EXPECT_EQ(probe(noRights), "none");
  EXPECT_EQ(logCount("Hey, book seems broken\n"), 2);
}

TEST_F(Book, ATailShorterThanARecordIsIgnored) {
  const uint64_t start = keyOf(startFen);
  useBook({{start - 1, moveField("a2a3"), 1}, {start, moveField("b1c3"), 1}}, 15);
  EXPECT_EQ(probe(startFen), "b1c3");
  useBook({}, 15);
  EXPECT_EQ(probe(startFen), "none");
}

TEST_F(Book, ADirectoryOrAMissingFileIsNoBook) {
  std::snprintf(bookFileName, sizeof bookFileName, "%s", directory.c_str());
  openBook();
  EXPECT_EQ(bookFile, nullptr);
  EXPECT_EQ(probe(startFen), "none");
  std::snprintf(bookFileName, sizeof bookFileName, "%s/absent.bin", directory.c_str());
  openBook();
  EXPECT_EQ(bookFile, nullptr);
}

TEST_F(Book, MoreThanSixtyFourEntriesKeepTheFirstSixtyFour) {
  const uint64_t start = keyOf(startFen);
  std::vector<Entry> entries(64, Entry{start, moveField("e2e4"), 1});
  for (int i = 0; i < 6; ++i) entries.push_back({start, moveField("d2d4"), 60000});
  useBook(entries);
  EXPECT_EQ(draws(startFen, 200)["e2e4"], 200);
  bestLineOnly = 0;
  EXPECT_EQ(draws(startFen, 200)["e2e4"], 200);
  EXPECT_EQ(logCount("book: e2e4"), 64 * 400);
  EXPECT_EQ(logCount("book: d2d4"), 0);

  // Dropped entries are still checked against the legal moves.
  entries.back().move = moveField("e2e5");
  useBook(entries);
  EXPECT_EQ(probe(startFen), "none");
  EXPECT_EQ(logCount("Hey, book seems broken\n"), 1);
}

TEST_F(Book, AFailedReadOrSeekDropsTheBookAndSaysSoOnce) {
  const std::string message = "info string book file " + path + " can't be read, playing without a book\n";
  useBook({{keyOf(startFen), moveField("e2e4"), 1}, {keyOf(startFen) + 1, moveField("e2e4"), 1}});
  std::fclose(bookFile);
  // A stream that can seek but not read.
  bookFile = std::fopen(path.c_str(), "ab");
  ASSERT_NE(bookFile, nullptr);
  testing::internal::CaptureStdout();
  EXPECT_EQ(probe(startFen), "none");
  EXPECT_EQ(bookFile, nullptr);
  EXPECT_EQ(probe(startFen), "none");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), message);

  // A pipe can't seek.
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  bookFile = fdopen(ends[0], "rb");
  testing::internal::CaptureStdout();
  EXPECT_EQ(probe(startFen), "none");
  EXPECT_EQ(bookFile, nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), message);
  close(ends[1]);
}

}  // namespace
