// Pawn structure: the terms that depend only on pawns and kings, computed
// once per structure and kept in the etable, keyed by pawnKey.
#pragma once

#include <cstdint>

#include "base/fills.h"
#include "base/types.h"

struct EtableEntry {
  uint64_t key;     // the whole pawnKey
  ScorePair score;  // white's pawn and king-shelter terms minus black's
  // Per colour, the squares of its passed pawns in ascending order, ended by
  // a 0 (no pawn stands on a1) unless all eight bytes are used.
  uint8_t passed[2][8];
};

constexpr int etableSize = 131072;


// The words the pawn terms of one colour are made from.
struct PawnWords {
  int colour;
  Bitboard own;             // P
  Bitboard enemy;           // E
  int occupiedFiles;        // bit f: file f holds a pawn of the colour
  Bitboard ownAttacks;      // pawnAttacks of the colour
  Bitboard enemyAttacks;    // pawnAttacks of the enemy
  Bitboard link;            // beside or protected by a friend
  Bitboard lonely;          // files with no own pawn on an adjacent file
  Bitboard enemyFiles;      // files that hold an enemy pawn
  Bitboard frontFree;       // no own pawn ahead, no enemy pawn on or ahead
  Bitboard neverAttacked;   // out of reach of the colour's pawns for good
  Bitboard doubledFront;    // the most advanced pawn of a file with two or more
  Bitboard connectedFront;  // C1: protected front pawns of doubled files
  Bitboard connectedOther;  // C2: all other pawns beside or protected by a friend
  Bitboard passed;
};

PawnWords pawnWords(int colour, Bitboard own, Bitboard enemy);

// The terms of one colour, each a sum over its pawns.
ScorePair islandTerm(const PawnWords& w);
ScorePair doubledTerm(const PawnWords& w);
ScorePair defendedSquaresTerm(const PawnWords& w);
ScorePair isolatedTerm(const PawnWords& w);  // isolated, and doubled and isolated
ScorePair connectedTerm(const PawnWords& w);
ScorePair backwardTerm(const PawnWords& w);
ScorePair candidateTerm(const PawnWords& w);

// All pawn terms of the colour (no king terms); writes its passed pawns'
// squares into passed as the etable keeps them.
ScorePair pawnStructure(const PawnWords& w, uint8_t passed[8]);

// Fills the row for the position: key, both passed lists, and the pawn and
// king-shelter score, white minus black.
void computeEtableEntry(const Position& position, EtableEntry& entry);
