#include "moves/threats.h"

#include "board/attacks.h"
#include "board/exchange.h"
#include "board/make_move.h"
#include "board/queries.h"
#include "moves/picker.h"

namespace {

// The piece that has just moved, standing on `from`, is judged by the side
// not to move taking what stands on `target`.
bool winsExchange(const Position& position, Square from, Square target) {
  return exchangeValue(position, makeMoveWord(from, target), 1) > 0;
}

// Targets a slider on `from` reaches now, with nothing standing between.
Bitboard reached(Bitboard targets, Square from, Bitboard occupied) {
  Bitboard result = 0;
  for (Bitboard b = targets; b;) {
    Square s = popLowest(b);
    if ((between[s][from] & occupied) == 0) result |= squareBit(s);
  }
  return result;
}

bool anyExchangeWon(const Position& position, Square from, Bitboard targets) {
  for (Bitboard b = targets; b;)
    if (winsExchange(position, from, popLowest(b))) return true;
  return false;
}

}  // namespace

int moveThreat(const Position& position) {
  if (position.lastMove == 0 || position.ctm == 0) return 0;
  int us = sideToMove(position);
  const Bitboard* own = position.pieces[us];
  const Bitboard* mover = position.pieces[us ^ 1];
  Square to = moveTo(position.lastMove);
  Bitboard bit = squareBit(to);
  Bitboard occupied = occupiedSquares(position);

  // An attack on something bigger needs no exchange worked out: it is a
  // threat whatever defends the target. Against equal or smaller pieces only
  // a won exchange counts, and a piece attacking its own kind is ignored.
  if (mover[Pawn] & bit) {
    return (pawnAttackSet(us ^ 1, bit) & own[0] & ~own[Pawn]) ? 2 : 0;
  }
  if (mover[Knight] & bit) {
    if (knightAttacks[to] & (own[Rook] | own[Queen])) return 2;
    return anyExchangeWon(position, to, knightAttacks[to] & (own[Bishop] | own[Pawn])) ? 1 : 0;
  }
  if (mover[Bishop] & bit) {
    if (reached(bishopRays[to] & (own[Rook] | own[Queen]), to, occupied)) return 2;
    return anyExchangeWon(position, to, reached(bishopRays[to] & (own[Knight] | own[Pawn]), to, occupied)) ? 1 : 0;
  }
  if (mover[Rook] & bit) {
    if (reached(rookRays[to] & own[Queen], to, occupied)) return 2;
    Bitboard smaller = own[Knight] | own[Bishop] | own[Pawn];
    return anyExchangeWon(position, to, reached(rookRays[to] & smaller, to, occupied)) ? 1 : 0;
  }
  if (mover[Queen] & bit) {
    Bitboard targets = queenRays[to] & own[0] & ~own[Queen];
    return anyExchangeWon(position, to, reached(targets, to, occupied)) ? 1 : 0;
  }
  if (mover[King] & bit) {
    return anyExchangeWon(position, to, kingAttacks[to] & own[0]) ? 1 : 0;
  }
  return 0;
}

int countEvasions(const Position& position, const MoveHistory& history, int& made) {
  MovePicker picker;
  initPicker(picker, position, history, 4, 0, 0, 0);
  int mover = sideToMove(position);
  int count = 0;
  made = 0;
  Position child;
  while (Move move = nextMove(picker)) {
    makeMove(position, child, move);
    ++made;
    // Three replies are as good as many for the single-reply question.
    if (!kingAttacked(child, mover) && ++count == 3) break;
  }
  return count;
}
