// Piece-square values with the material inside them, and the root sums that
// makeMove keeps up to date from there.
#pragma once

#include "base/types.h"

// [colour][piece][square]; black's entries are the negatives of white's
// mirrored ones, so one sum over the board is white minus black.
extern ScorePair pieceSquare[2 * 8 * 64];

void initPieceSquare();

// Computes pstScore and phase of a root record from scratch, as a search does
// before it starts.
void fillRootScores(Position& position);
