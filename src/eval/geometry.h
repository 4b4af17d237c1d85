// Fixed board geometry that the evaluation terms read: files, ranks ahead,
// square colours and the like. Filled once by initGeometry().
#pragma once

#include "base/types.h"

extern Bitboard forwardRanks[2][64];     // all ranks strictly ahead of the square for the colour
extern Bitboard fileOf[64];              // the whole file of the square
extern Bitboard fileOthers[64];          // the file without the square
extern int squareColour[64];             // 1 for squares of a1's colour
extern const Bitboard colourSquares[2];  // [0] = squares with squareColour 0, [1] = with 1
extern Bitboard knightGap[64];           // same file, exactly three ranks away
extern const Bitboard ownHalf[2];
extern const Bitboard lastRank[2];
extern Square promotionSquare[2][64];
extern Bitboard sentrySpan[2][64];       // adjacent files, ranks strictly ahead
extern int squareDistance[64][64];       // king distance: max of rank and file difference

void initGeometry();
