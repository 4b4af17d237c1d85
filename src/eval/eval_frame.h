// The working record of one evaluation: each colour's running score and the
// attack sets and counts that later terms read from earlier ones.
#pragma once

#include <cstdint>

#include "base/types.h"

struct EvalFrame {
  ScorePair score[2];  // the colour's terms, pawn score and pstScore aside
  Bitboard pawnAttacks[2];
  Bitboard knightAttackMap[2];  // known for both colours before any piece pass
  Bitboard bishopAttackMap[2];
  Bitboard rookAttackMap[2];
  Bitboard queenAttackMap[2];
  Bitboard kingRing[2];
  Bitboard allAttacks[2];  // pawns and pieces; the king is not in it
  // Knight 24, bishop 28, rook 40, queen 72: & 7 == 4 means an odd number of
  // bishops, >> 3 is material in whole points, 28 is a lone bishop.
  int32_t materialTally[2];
  int32_t pieceCount[2];  // knights, bishops, rooks and queens
  int32_t pawnCount[2];
  int32_t kingSquare[2];
};

// Step by step as evaluate does it before the piece passes: kings, pawn
// counts, knight and pawn attack maps and king rings of both colours. The
// scores stay zero.
void prepareFrame(const Position& position, EvalFrame& frame);
