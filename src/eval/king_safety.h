// King safety: castling rights, the pawn shelter and storm around the kings,
// a king shut in by its own pawns, and the attack count that a colour's
// pieces build up against the enemy king.
#pragma once

#include <cstdint>

#include "base/types.h"
#include "eval/eval_frame.h"

// What the colour's remaining castling rights are worth.
ScorePair castlingTerms(const Position& position, int colour);

// Pawn-and-king terms kept in the etable.
ScorePair kingShelter(int colour, Bitboard ownPawns, Square king);
ScorePair pawnStormTerm(int colour, Bitboard ownPawns, Square enemyKing);
ScorePair shutInKing(int colour, Bitboard ownPawns, Square king);
// The three above for the colour of the position.
ScorePair kingPawnTerms(const Position& position, int colour);

extern const int32_t kingDangerBase[2][64];

// The running attack count of `attacker` against the enemy king during its
// piece pass.
struct KingAttack {
  int attacker;
  Square king;    // the enemy king
  Bitboard ring;  // squares next to it
  Bitboard safe;  // squares a piece of the attacker could check from safely
  Bitboard occupied;
  int count;
};

// The frame must have both colours' knight and pawn attack maps.
KingAttack startKingAttack(const Position& position, const EvalFrame& frame, int attacker);
void knightAttack(KingAttack& attack, Bitboard attacks);
void bishopAttack(KingAttack& attack, Square s, Bitboard attacks);
void rookAttack(KingAttack& attack, Square s, Bitboard attacks);
void queenAttack(KingAttack& attack, const Position& position, Square s, Bitboard attacks);
// The count turned into the score the attacker gets.
ScorePair kingAttackScore(int count);
