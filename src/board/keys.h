// Zobrist keys of the position, the pawn structure and the material.
#pragma once

#include "base/types.h"
#include "board/castling.h"

// [colour][piece][square]. Row 0 of white holds the side keys (entry 0 white
// to move, entry 1 black to move); row 0 of black the en-passant keys by square.
extern uint64_t pieceKeys[2 * 8 * 64];
// One key per set of the four castling rights (see castlingRights).
extern uint64_t castleKeys[16];
// Like pieceKeys, but only the pawn and king rows are non-zero.
extern uint64_t pawnKeys[2 * 8 * 64];
// Additive material signature addends, [colour * 8 + piece].
extern const uint64_t materialWeights[16];

// Seed of the generator that fills the three random key tables. The keys are
// free; changing the seed only moves transposition-table collisions around.
extern const uint64_t keySeed;

inline uint64_t sideKey(int colour) { return pieceKeys[colour]; }
inline uint64_t enPassantKey(Square s) { return pieceKeys[pieceIndex(Black, 0, s)]; }

// The key of the castling rights that `moved` leaves in a game whose castling
// pieces start on homes.
inline uint64_t castlingKey(const CastlingHomes& homes, Bitboard moved) { return castleKeys[castlingRights(homes, moved)]; }

// Fills the tables from a seed; runs at start-up with keySeed, and tests may
// call it with other seeds.
void initKeys(uint64_t seed);
