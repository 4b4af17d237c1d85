// Static exchange values: what a series of captures on one square yields.
#pragma once

#include "base/types.h"

// In pawn units from the mover's view; flip 1 lets the side not to move make
// the move. 0 for en passant, castling and rook or bishop promotions.
int exchangeValue(const Position& position, Move move, int flip);
// exchangeValue(position, move, 0) < 0, answered without the exchange where
// the victim is worth at least the capturer.
bool exchangeLoses(const Position& position, Move move);
// What the side to move's piece on square stands to lose, in the finer scale
// (queen 19); 0 or negative.
int hangingValue(const Position& position, Square square);
// The lowest hangingValue among the side to move's pieces, king left out.
int worstHanging(const Position& position);
