#include "eval/geometry.h"

#include <cstdlib>

Bitboard forwardRanks[2][64];
Bitboard fileOf[64];
Bitboard fileOthers[64];
int squareColour[64];
const Bitboard colourSquares[2] = {0x55aa55aa55aa55aaULL, 0xaa55aa55aa55aa55ULL};
Bitboard knightGap[64];
const Bitboard ownHalf[2] = {0x00000000ffffffffULL, 0xffffffff00000000ULL};
const Bitboard lastRank[2] = {0xff00000000000000ULL, 0x00000000000000ffULL};
Square promotionSquare[2][64];
Bitboard sentrySpan[2][64];
int squareDistance[64][64];

namespace {

constexpr Bitboard fileA = 0x0101010101010101ULL;

}  // namespace

void initGeometry() {
  for (Square s = 0; s < 64; ++s) {
    const int rank = rankOfSquare(s);
    const int file = fileOfSquare(s);

    // Rank r occupies bits 8r..8r+7, so "ahead" is everything above the
    // rank's top bit for white and everything below its bottom bit for black.
    forwardRanks[White][s] = rank == 7 ? 0 : ~Bitboard{0} << (8 * (rank + 1));
    forwardRanks[Black][s] = rank == 0 ? 0 : ~Bitboard{0} >> (8 * (8 - rank));

    fileOf[s] = fileA << file;
    fileOthers[s] = fileOf[s] & ~squareBit(s);
    squareColour[s] = (rank + file) % 2 == 0 ? 1 : 0;

    // The edge ranks have no gap: a bishop on the first or last rank never
    // counts an enemy knight three ranks away.
    knightGap[s] = 0;
    if (rank >= 1 && rank <= 6) {
      if (rank + 3 <= 7) knightGap[s] |= squareBit(s + 24);
      if (rank - 3 >= 0) knightGap[s] |= squareBit(s - 24);
    }

    promotionSquare[White][s] = 56 + file;
    promotionSquare[Black][s] = file;

    const Bitboard adjacentFiles = ((fileOf[s] << 1) & notFileA) | ((fileOf[s] >> 1) & notFileH);
    sentrySpan[White][s] = adjacentFiles & forwardRanks[White][s];
    sentrySpan[Black][s] = adjacentFiles & forwardRanks[Black][s];

    for (Square t = 0; t < 64; ++t) {
      const int rankGap = std::abs(rank - rankOfSquare(t));
      const int fileGap = std::abs(file - fileOfSquare(t));
      squareDistance[s][t] = rankGap > fileGap ? rankGap : fileGap;
    }
  }
}
