// The evaluation's computed tables: per-count terms, king danger, shelter and
// storm, tempo, candidate passers and the piece values that quiescence reads.
// buildWeightTables() fills them from a few dozen constants and the King
// Safety Aggressiveness option.
#pragma once

#include <cstdint>

#include "base/types.h"

// Row i is a constant pair times the count i (or a stated function of i).
extern ScorePair doubledPawn[9];
extern ScorePair connectedPawn[9];
extern ScorePair isolatedClosed[9];
extern ScorePair isolatedOpen[9];
extern ScorePair isolatedDoubledClosed[9];
extern ScorePair isolatedDoubledOpen[9];
extern ScorePair backwardPawn[9];
extern ScorePair backwardExposed[9];
extern ScorePair knightPawns[9];  // by own pawn count, centred on five
extern ScorePair rookPawns[9];
extern ScorePair bishopSameColourPawns[9];
extern ScorePair bishopOtherColourPawns[9];
extern ScorePair pawnBlockade[9];
extern ScorePair blockedEnemyPawns[9];
extern ScorePair minorBehindPawn[9];
// Passed pawn tables, by the pawn's index n = relative rank - 1.
extern ScorePair passerRank[9];
extern ScorePair passerSupported[9];
extern ScorePair passerFreeDefended[9];
extern ScorePair passerFree[9];
extern ScorePair passerGuardedDefended[9];
extern ScorePair passerGuarded[9];
extern ScorePair passerClearPath[9];

extern ScorePair defendedSquares[18];
extern ScorePair outposts[18];
extern ScorePair threats[18];

// By the byte of files that hold a pawn of the colour.
extern ScorePair pawnIslands[256];

extern int32_t dangerCurve[128];
extern ScorePair kingDanger[128];  // open half only, scaled by the option
// By rank counted from the colour's own side; open half only.
extern ScorePair pawnShelter[8];
extern ScorePair pawnStorm[8];

// Thousandths of a pawn, by capped phase 0..96.
extern int32_t tempoBonus[97];

// [colour][square]: three quarters of a passed pawn's base value by rank.
extern ScorePair candidatePawn[2][64];

// [phase][piece code], centipawns: material values sliding from the ending
// (row 0) to the opening (row 96).
extern int32_t phasePieceValues[97][7];

// Fills the weight tables; those of the king's safety scale with the option.
void buildWeightTables(int32_t kingSafetyAggressiveness);
