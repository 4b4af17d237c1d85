// Passed pawn bonuses: what a passer found by the pawn structure is worth
// given the kings, the rooks behind it and the control of its path.
#pragma once

#include <cstdint>

#include "base/types.h"
#include "eval/eval_frame.h"

// [pawn index n][king's distance to the stop square]: end-half values.
extern const int32_t passerOwnKing[6][9];
extern const int32_t passerEnemyKing[6][9];

// The terms of one passed pawn of the colour on square s. Needs allAttacks
// of both colours.
void passedPawnTerms(const Position& position, EvalFrame& frame, int colour, Square s);
// All passers of both lists, white's first; a list ends at a 0 or after eight.
void allPassedPawnTerms(const Position& position, EvalFrame& frame, const uint8_t passed[2][8]);
