// The go reader: the first byte picks the position, the rest are the words
// of a go command. A stop waits in the ring behind it, so every search ends
// at its first poll, after the first iteration.
#include <cstddef>
#include <cstdint>
#include <string>

#include "harness.h"

namespace {

const char* const positions[] = {
    "position startpos\n",
    "position startpos moves e2e4 e7e5 g1f3 b8c6 f1b5\n",
    // White mated, then black stalemated: no legal move at the root.
    "position fen rnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR w KQkq -\n",
    "position fen 7k/5Q2/6K1/8/8/8/8/8 b - -\n",
    // One legal move, a promotion, en passant and castling in reach.
    "position fen 8/P6k/8/8/8/8/8/K7 w - -\n",
    "position fen r3k2r/8/8/3pP3/8/8/8/R3K2R w KQkq d6\n",
    "position fen 8/8/8/4k3/8/8/3PK3/8 w - -\n",
    "position fen 6k1/5ppp/8/8/8/8/5PPP/3R2K1 w - -\n",
};

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  prepareEngine();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  resetEngine();
  std::string words(reinterpret_cast<const char*>(data + 1), size - 1);
  words = words.substr(0, words.find_first_of("\n\r\f"));
  serveLines({positions[data[0] % (sizeof positions / sizeof positions[0])], "go " + words + "\n", "isready\n"});
  return 0;
}
