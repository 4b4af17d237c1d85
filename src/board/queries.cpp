#include "board/queries.h"

#include "board/attacks.h"

Bitboard attackMap(const Position& position, int colour) {
  const Bitboard(&own)[7] = position.pieces[colour];
  Bitboard occupied = occupiedSquares(position);
  Bitboard attacked = pawnAttackSet(colour, own[Pawn]);
  for (Bitboard b = own[Knight]; b;) attacked |= knightAttacks[popLowest(b)];
  for (Bitboard b = own[Bishop] | own[Queen]; b;) attacked |= bishopAttacks(popLowest(b), occupied);
  for (Bitboard b = own[Rook] | own[Queen]; b;) attacked |= rookAttacks(popLowest(b), occupied);
  for (Bitboard b = own[King]; b;) attacked |= kingAttacks[popLowest(b)];
  return attacked;
}

int kingInAttackMap(const Position& position, int colour) {
  colour &= 1;
  return (position.pieces[colour][King] & attackMap(position, colour ^ 1)) != 0;
}

int kingAttacked(const Position& position, int colour) {
  colour &= 1;
  const Bitboard(&enemy)[7] = position.pieces[colour ^ 1];
  Square k = kingSquareOf(position, colour);
  Bitboard occupied = occupiedSquares(position);
  if (knightAttacks[k] & enemy[Knight]) return 1;
  if (bishopAttacks(k, occupied) & (enemy[Bishop] | enemy[Queen])) return 1;
  if (rookAttacks(k, occupied) & (enemy[Rook] | enemy[Queen])) return 1;
  // A pawn attacks the king exactly when the king, standing as a pawn of its
  // own colour, would attack that pawn.
  if (pawnAttackSet(colour, squareBit(k)) & enemy[Pawn]) return 1;
  // Moving next to the enemy king is illegal like any other self-check.
  if (kingAttacks[k] & enemy[King]) return 1;
  return 0;
}

int givesCheck(const Position& position, Move move) {
  int c = sideToMove(position);
  const Bitboard(&own)[7] = position.pieces[c];
  Square k = kingSquareOf(position, c ^ 1);
  Bitboard K = squareBit(k);
  Square from = moveFrom(move);
  Square to = moveTo(move);
  Bitboard F = squareBit(from);
  Bitboard T = squareBit(to);
  Bitboard occupied = occupiedSquares(position);
  Bitboard blockers = between[to][k] & occupied;

  // The mover is judged in its old form: a promotion checks as a pawn,
  // castling as the king alone.
  if (own[King] & F) {
    if (kingAttacks[to] & K) return 1;
  } else if (own[Queen] & F) {
    if ((queenRays[to] & K) && !blockers) return 1;
  } else if (own[Rook] & F) {
    if ((rookRays[to] & K) && !blockers) return 1;
  } else if (own[Bishop] & F) {
    if ((bishopRays[to] & K) && !blockers) return 1;
  } else if (own[Knight] & F) {
    if (knightAttacks[to] & K) return 1;
  } else if (own[Pawn] & F) {
    if (pawnAttackSet(c, T) & K) return 1;
  }

  // Lines through the vacated square. An en-passant victim still counts as
  // standing on its square here.
  Bitboard after = (occupied ^ F) | T;
  if (bishopAttacks(k, after) & (own[Bishop] | own[Queen])) return 1;
  if (rookAttacks(k, after) & (own[Rook] | own[Queen])) return 1;
  return 0;
}
