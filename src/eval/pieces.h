// Piece terms: mobility and the other terms of knights, bishops, rooks and
// queens, the threats between the two sides, and the late bitboard counts.
#pragma once

#include "base/types.h"
#include "eval/eval_frame.h"

extern const ScorePair knightMobility[16];
extern const ScorePair bishopMobility[16];
extern const ScorePair rookMobility[16];
extern const ScorePair queenMobility[32];

// The squares a piece of the colour counts for mobility: not its own pawns,
// not squares an enemy pawn attacks unless an enemy piece stands there.
Bitboard mobilityArea(const Position& position, const EvalFrame& frame, int colour);

// The colour's pass over its knights, bishops, rooks and queens and the
// major-piece redundancy, adding to its score and attack maps; returns the
// attack count against the enemy king.
int pieceLoops(const Position& position, EvalFrame& frame, int colour);

// Needs allAttacks of both colours: the colour's threats against the other.
void threatTerms(const Position& position, EvalFrame& frame, int colour);

// Blockade, outposts, blocked enemy pawns, minors behind pawns, the bishop in
// front of the king and the bishop pair, for one colour.
void lateTerms(const Position& position, EvalFrame& frame, int colour);
// The bonus for being two or more pieces up, given to at most one colour.
void pieceCountTerm(EvalFrame& frame);
