#include "board/keys.h"

uint64_t pieceKeys[2 * 8 * 64];
uint64_t castleKeys[16];
uint64_t pawnKeys[2 * 8 * 64];

const uint64_t keySeed = 0x2545F4914F6CDD1DULL;

const uint64_t materialWeights[16] = {
    0, 0x959266a48dca47ccULL, 0x71413fd9a034a3c7ULL, 0xd8f63c3ca4d78ba8ULL,
    0xd223436cf274773bULL, 0x8942899c1f94cb9dULL, 0, 0,
    0, 0x4b23294bfbbfad44ULL, 0xf8112711561565ccULL, 0xf4878684694633a3ULL,
    0x874a4612b276e40aULL, 0x1078d7c9fa595856ULL, 0, 0,
};

namespace {

// splitmix64: a small generator with good statistics for key tables.
uint64_t nextRandom(uint64_t& state) {
  uint64_t z = (state += 0x9E3779B97F4A7C15ULL);
  z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
  z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
  return z ^ (z >> 31);
}

}  // namespace

void initKeys(uint64_t seed) {
  uint64_t state = seed;
  for (auto& key : pieceKeys) key = nextRandom(state);
  for (int i = 0; i < 2 * 8 * 64; ++i) {
    int piece = (i >> 6) & 7;
    pawnKeys[i] = (piece == Pawn || piece == King) ? nextRandom(state) : 0;
  }
  // One key for each set of rights, so positions that lost a right in
  // different ways share their key.
  for (auto& key : castleKeys) key = nextRandom(state);
}

namespace {
[[maybe_unused]] const bool keysReady = (initKeys(keySeed), true);
}  // namespace
