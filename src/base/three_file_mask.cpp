#include "base/three_file_mask.h"

Bitboard threeFileMask[64];

void fillThreeFileMask() {
  constexpr Bitboard fileA = 0x0101010101010101ULL;
  for (Square s = 0; s < 64; ++s) {
    int centre = fileOfSquare(s);
    if (centre == 0) centre = 1;
    if (centre == 7) centre = 6;
    threeFileMask[s] = (fileA << (centre - 1)) | (fileA << centre) | (fileA << (centre + 1));
  }
}
