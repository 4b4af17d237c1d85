// What the four searches have in common: the line they hand up, how far a
// node lies below the last PV node, how a move is classified, and where a
// pawn push counts as a passer's advance.
//
// Depth counts half plies (a ply is 2); extensions count quarter plies.
// Scores are centipawns from the side to move's view; the full window is
// -fullWindow to fullWindow, and a side mated at ply p scores p - mateScore.
#pragma once

#include "base/types.h"

constexpr int fullWindow = 32001;      // beyond every score a search returns
constexpr int mateScore = 32000;
constexpr int mateThreshold = 31800;   // larger magnitudes count as mate scores
constexpr int mateShiftLimit = 31799;  // stored scores beyond this move with the ply
// A best score below this says the node is mated within a hundred plies:
// while it stands, no later move is pruned or reduced, since only a full
// search can find the way out.
constexpr int prunableScoreFloor = -31900;

// A principal variation: Move words ended by a 0 word. A search fills the
// line its caller hands down, and the caller puts its own move in front.
constexpr int lineLength = 64;

// 1 at an odd distance below the nearest PV node, 0 at an even one.
inline int nodeParity(int ply, const Position& position) { return (ply ^ position.pvPly) & 1; }

// Bits of moveClass.
constexpr int moveClassCapture = 1;    // a capture, en passant or a promotion
constexpr int moveClassChecking = 2;   // the child is in check
constexpr int moveClassEvasion = 4;    // the move was made out of check

// Worked out once the child exists and its inCheck is set.
inline int moveClass(const Position& position, const Position& child, Move move) {
  int kind = moveKindIndex(move);
  int result = 0;
  if (child.capturedPiece != 0 || kind == 2 || kind >= 4) result |= moveClassCapture;
  if (child.inCheck) result |= moveClassChecking;
  if (position.inCheck) result |= moveClassEvasion;
  return result;
}

// Captures and promotes nothing and is made out of no check, whether it gives
// check or not: the moves that killers, history and futility deal with.
inline bool isQuietNonEvasion(int moveClassBits) {
  return (moveClassBits & (moveClassCapture | moveClassEvasion)) == 0;
}

// A capture or promotion made out of no check.
inline bool isCaptureNonEvasion(int moveClassBits) {
  return (moveClassBits & (moveClassCapture | moveClassEvasion)) == moveClassCapture;
}

// Captures nothing, gives no check and evades none: a move that changes
// nothing at once, the first to be reduced.
inline bool isPlainQuiet(int moveClassBits) { return moveClassBits == 0; }

// The squares of the side to move's sixth to eighth ranks on which a pawn
// that arrives can no longer be stopped or taken by an enemy pawn.
Bitboard passerSquares(const Position& position);
