#include "search/playable_line.h"

#include "board/make_move.h"
#include "board/queries.h"
#include "moves/generate.h"
#include "search/conventions.h"
#include "search/limits.h"

namespace {

bool irreversible(const Position& record) {
  return record.lastMove == 0 || record.capturedPiece != 0 || record.movedPiece == Pawn;
}

// Neither side can ever mate: kings alone, one minor piece, or bishops only,
// all on squares of one colour.
bool deadPosition(const Position& position) {
  const Bitboard heavy = position.pieces[White][Pawn] | position.pieces[Black][Pawn] |
                         position.pieces[White][Rook] | position.pieces[Black][Rook] |
                         position.pieces[White][Queen] | position.pieces[Black][Queen];
  if (heavy) return false;
  const Bitboard knights = position.pieces[White][Knight] | position.pieces[Black][Knight];
  const Bitboard bishops = position.pieces[White][Bishop] | position.pieces[Black][Bishop];
  if (popCount(knights | bishops) <= 1) return true;
  constexpr Bitboard darkSquares = 0xAA55AA55AA55AA55ULL;
  return knights == 0 && ((bishops & darkSquares) == 0 || (bishops & ~darkSquares) == 0);
}

// Whether the game, as a client keeps it, may end with the move that made
// child: no mate is possible any more, or the position stood before with the
// same side to move since the last capture or pawn move (the first
// repetition already scores as a draw in the search), or 100 moves in a row
// were neither. Unlike the searches' own test this one also looks at the
// record the game was set up from.
bool endsInDraw(const Position& child) {
  if (deadPosition(child)) return true;
  int reversible = 0;
  const Position* record = &child;
  while (!irreversible(*record) && record->previous != nullptr) {
    record = record->previous;
    ++reversible;
    if ((reversible & 1) == 0 && record->hashKey == child.hashKey) return true;
  }
  return reversible >= 100;
}

}  // namespace

int playableLine(const Position& root, const Move* line, Move* playable) {
  Position records[lineLength];
  const Position* current = &root;
  int length = 0;
  while (length < lineLength - 1 && line[length] != 0) {
    Position& child = records[length];
    if (!playIfLegal(*current, line[length], child)) break;
    child.inCheck = kingAttacked(child, sideToMove(child));
    playable[length++] = child.lastMove;
    if (endsInDraw(child)) break;
    current = &child;
  }
  playable[length] = 0;
  return length;
}
