#include "eval/endgames.h"

#include "eval/geometry.h"
#include "eval/kpk.h"

int32_t endKpk(const Position& position) {
  const Square whiteKing = kingSquareOf(position, White);
  const Square blackKing = kingSquareOf(position, Black);
  const int toMove = sideToMove(position);
  if (position.pieces[White][Pawn]) {
    // The table's pawn runs down the board, so white's squares are turned over.
    const Square pawn = lowestSquare(position.pieces[White][Pawn]);
    if (kpkProbe(whiteKing ^ 56, pawn ^ 56, blackKing ^ 56, toMove)) return 450 + 16 * rankOfSquare(pawn);
    return 3;
  }
  const Square pawn = lowestSquare(position.pieces[Black][Pawn]);
  if (kpkProbe(blackKing, pawn, whiteKing, toMove ^ 1)) return -(450 + 16 * (7 - rankOfSquare(pawn)));
  return -3;
}

int32_t endKbnk(const Position& position) {
  const int strong = position.pieces[White][Knight] ? White : Black;
  const int sign = strong == White ? 1 : -1;
  const Square strongKing = kingSquareOf(position, strong);
  const Square weakKing = kingSquareOf(position, strong ^ 1);
  const Square knight = lowestSquare(position.pieces[strong][Knight]);
  const Square bishop = lowestSquare(position.pieces[strong][Bishop]);
  const int r = rankOfSquare(weakKing);
  const int f = fileOfSquare(weakKing);
  // Mate can only be forced in a corner of the bishop's colour.
  int cornerDistance;
  if (squareColour[bishop] == 1) {
    const int toA1 = r + f;
    const int toH8 = (7 - r) + (7 - f);
    cornerDistance = toA1 < toH8 ? toA1 : toH8;
  } else {
    const int toA8 = (7 - r) + f;
    const int toH1 = r + (7 - f);
    cornerDistance = toA8 < toH1 ? toA8 : toH1;
  }
  return sign * (400 - 20 * cornerDistance - 4 * squareDistance[strongKing][weakKing] -
                 2 * squareDistance[knight][weakKing]);
}

namespace {

// The squares of a minor piece and pawn ending, turned over when black is the
// stronger side so that the pawn always runs up the board.
struct MinorPawnSquares {
  int strong;
  int sign;
  Square strongKing, weakKing, piece, pawn, promotion;
  int file, rank;
};

MinorPawnSquares minorPawnSquares(const Position& position, int piece) {
  const int strong = position.pieces[White][piece] ? White : Black;
  const Square flip = strong == White ? 0 : 56;
  MinorPawnSquares m;
  m.strong = strong;
  m.sign = strong == White ? 1 : -1;
  m.strongKing = kingSquareOf(position, strong) ^ flip;
  m.weakKing = kingSquareOf(position, strong ^ 1) ^ flip;
  m.piece = lowestSquare(position.pieces[strong][piece]) ^ flip;
  m.pawn = lowestSquare(position.pieces[strong][Pawn]) ^ flip;
  m.file = fileOfSquare(m.pawn);
  m.rank = rankOfSquare(m.pawn);
  m.promotion = 56 + m.file;
  return m;
}

}  // namespace

int32_t endKbpk(const Position& position) {
  const MinorPawnSquares m = minorPawnSquares(position, Bishop);
  const int strongMoves = sideToMove(position) == m.strong ? 1 : 0;
  const int pawnDistance = 7 - m.rank;
  const int own = squareDistance[m.strongKing][m.promotion];
  const int weak = squareDistance[m.weakKing][m.promotion];
  // A rook's pawn whose corner the bishop can't cover, with the defending king
  // there first: a fortress, worth a little more the closer the attack stands.
  if ((m.file == 0 || m.file == 7) && own - weak - strongMoves > 0 &&
      squareColour[m.promotion] != squareColour[m.piece] && pawnDistance + 1 - strongMoves >= weak)
    return m.sign * (12 - own + weak - pawnDistance);
  return m.sign * (440 - 10 * pawnDistance - 2 * own + 2 * weak);
}

int32_t endKnpk(const Position& position) {
  const MinorPawnSquares m = minorPawnSquares(position, Knight);
  const int pawnDistance = 7 - m.rank;
  // A rook's pawn on the seventh with the defending king in the corner can't
  // be forced through by the knight.
  if ((m.file == 0 || m.file == 7) && pawnDistance == 1 && squareDistance[m.weakKing][m.promotion] <= 1)
    return m.sign * (10 - squareDistance[m.strongKing][m.promotion]);
  return m.sign * (420 - 10 * pawnDistance - 5 * squareDistance[m.strongKing][m.pawn] +
                   5 * squareDistance[m.weakKing][m.pawn] - 3 * squareDistance[m.piece][m.pawn]);
}
