#include "board/exchange.h"

#include "board/attacks.h"
#include "board/queries.h"

namespace {

// Piece values by code (none, pawn .. king). The piece standing on the target
// square and the first piece to move there count by the routine's own column;
// every later capturer counts by `laterValue`, the same for both routines. The
// king's 999 makes a capture into a defended square by the king lose at once.
constexpr int exchangeFirstValue[7] = {0, 1, 3, 3, 5, 9, 999};
constexpr int hangingFirstValue[7] = {0, 2, 6, 7, 10, 19, 999};
constexpr int laterValue[7] = {0, 1, 3, 3, 5, 10, 999};


// Everything of colour c that would reach `square` over an empty board.
// Sliders behind other pieces are included; the blocking test comes when a
// capturer is chosen.
Bitboard attackersOnEmptyBoard(const Position& position, int colour, Square square) {
  const Bitboard* own = position.pieces[colour];
  // A pawn captures onto `square` from where a pawn of the other colour on
  // `square` would capture.
  Bitboard pawnOrigins = pawnAttackSet(colour ^ 1, squareBit(square));
  return (own[Pawn] & pawnOrigins) | (own[Knight] & knightAttacks[square]) |
         (own[Bishop] & bishopRays[square]) | (own[Rook] & rookRays[square]) |
         (own[Queen] & queenRays[square]) | (own[King] & kingAttacks[square]);
}

// The next capturer of `colour` onto `target`: the cheapest kind first, but
// only the lowest-numbered piece of each slider kind is looked at, so a
// blocked bishop hands the turn to the rooks even if another bishop is free.
// Returns the piece code, and its square in `from`; NoPiece if none is left.
int nextCapturer(const Position& position, int colour, Bitboard attackers, Bitboard occupied,
                 Square target, Square& from) {
  const Bitboard* own = position.pieces[colour];
  for (int piece = Pawn; piece <= Knight; ++piece) {
    if (Bitboard b = attackers & own[piece]) {
      from = lowestSquare(b);
      return piece;
    }
  }
  for (int piece = Bishop; piece <= Queen; ++piece) {
    if (Bitboard b = attackers & own[piece]) {
      Square s = lowestSquare(b);
      if ((between[s][target] & occupied) == 0) {
        from = s;
        return piece;
      }
    }
  }
  if (Bitboard b = attackers & own[King]) {
    from = lowestSquare(b);
    return King;
  }
  return NoPiece;
}

// The minimax of a capture sequence on `to` in which A's first capture is
// forced and from then on either side may stop. A's first capture wins
// `victim` with a piece worth `onSquare`. The two bounds end the loop as soon
// as the outcome can no longer change.
int exchangeCore(const Position& position, Square from, Square to, int sideA, int victim, int onSquare) {
  int sideB = sideA ^ 1;
  Bitboard attackers[2];
  attackers[sideB] = attackersOnEmptyBoard(position, sideB, to) & ~squareBit(to);
  // Nothing of B's could ever reach the square: A keeps the victim.
  if (attackers[sideB] == 0) return victim;
  attackers[sideA] = attackersOnEmptyBoard(position, sideA, to) & ~squareBit(from);
  Bitboard occupied = occupiedSquares(position) & ~squareBit(from) & ~squareBit(to);

  int bound[2] = {-9999, -9999};
  int s = sideA;
  int cur = victim;
  for (;;) {
    int o = s ^ 1;
    if (-cur >= bound[o]) {
      if (cur <= bound[s]) {
        bound[o] = -bound[s];
        break;
      }
      bound[o] = -cur;
    }
    Square capturerSquare = 0;
    int capturer = nextCapturer(position, o, attackers[o], occupied, to, capturerSquare);
    if (capturer == NoPiece) {
      if (bound[s] <= cur) bound[s] = -bound[o];
      break;
    }
    cur = onSquare - cur;
    onSquare = laterValue[capturer];
    attackers[o] &= ~squareBit(capturerSquare);
    occupied &= ~squareBit(capturerSquare);
    s = o;
  }
  return bound[sideA];
}

}  // namespace

int exchangeValue(const Position& position, Move move, int flip) {
  // En passant, castling and promotions to rook or bishop all carry this bit;
  // none of them is judged.
  if (move & 0x2000) return 0;
  const int side = sideToMove(position) ^ flip;
  const Square from = moveFrom(move);
  const Square to = moveTo(move);
  return exchangeCore(position, from, to, side, exchangeFirstValue[pieceOn(position, side ^ 1, to)],
                      exchangeFirstValue[pieceOn(position, side, from)]);
}

bool exchangeLoses(const Position& position, Move move) {
  if (move & 0x2000) return false;
  const int side = sideToMove(position);
  const Square from = moveFrom(move);
  const Square to = moveTo(move);
  const int victim = exchangeFirstValue[pieceOn(position, side ^ 1, to)];
  const int mover = exchangeFirstValue[pieceOn(position, side, from)];
  // Taking a piece worth at least the capturer can't lose: at worst the
  // capturer is taken back and the capturing side stops there. (A king's 999
  // is never reached by a victim.)
  if (victim >= mover) return false;
  return exchangeCore(position, from, to, side, victim, mover) < 0;
}

int hangingValue(const Position& position, Square square) {
  const int side = sideToMove(position);
  return exchangeCore(position, square, square, side, 0, hangingFirstValue[pieceOn(position, side, square)]);
}

int worstHanging(const Position& position) {
  const Bitboard* own = position.pieces[sideToMove(position)];
  // The callers only need the rough size of the worst threat, so once a
  // valuable piece is known to hang the cheaper kinds are not looked at.
  struct KindScan {
    int piece;
    int stopBelow;
  };
  constexpr KindScan kinds[5] = {{Queen, -4}, {Rook, -3}, {Bishop, -2}, {Knight, -1}, {Pawn, -9999}};
  int worst = 0;
  for (const KindScan& kind : kinds) {
    for (Bitboard b = own[kind.piece]; b;) {
      int value = hangingValue(position, popLowest(b));
      if (value < worst) worst = value;
    }
    if (worst < kind.stopBelow) break;
  }
  return worst;
}
