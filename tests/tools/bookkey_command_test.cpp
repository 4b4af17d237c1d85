// tarvok-tool bookkey against the published keys of the book format.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "../shell/engine_process.h"

namespace {

struct PublishedKey {
  const char* fen;
  const char* key;
};

// The reference positions of the format: a short opening with en-passant
// squares that can and can't be taken, lost castling rights, and a king walk.
constexpr PublishedKey publishedKeys[] = {
    {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", "463b96181691fc9c"},
    {"rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1", "823c9b50fd114196"},
    {"rnbqkbnr/ppp1pppp/8/3p4/4P3/8/PPPP1PPP/RNBQKBNR w KQkq d6 0 2", "0756b94461c50fb0"},
    {"rnbqkbnr/ppp1pppp/8/3pP3/8/8/PPPP1PPP/RNBQKBNR b KQkq - 0 2", "662fafb965db29d4"},
    {"rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6 0 3", "22a48b5a8e47ff78"},
    {"rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPPKPPP/RNBQ1BNR b kq - 0 3", "652a607ca3f242c1"},
    {"rnbq1bnr/ppp1pkpp/8/3pPp2/8/8/PPPPKPPP/RNBQ1BNR w - - 0 4", "00fdd303c946bdd9"},
    {"rnbqkbnr/p1pppppp/8/8/PpP4P/8/1P1PPPP1/RNBQKBNR b KQkq c3 0 3", "3c8123ea7b067637"},
    {"rnbqkbnr/p1pppppp/8/8/P6P/R1p5/1P1PPPP1/1NBQKBNR b Kkq - 0 4", "5c3f9b829b279560"},
};

TEST(BookKeyCommand, PrintsThePublishedKeysAsSixteenHexDigits) {
  for (const PublishedKey& reference : publishedKeys) {
    std::vector<std::string> arguments = {"bookkey"};
    std::istringstream fields(reference.fen);
    for (std::string field; fields >> field;) arguments.push_back(field);
    ProcessResult run = runProgram(TARVOK_TOOL_PATH, arguments, "");
    EXPECT_EQ(run.exitCode, 0) << reference.fen;
    EXPECT_EQ(run.standardOutput, std::string(reference.key) + "\n") << reference.fen;
  }
}

}  // namespace
