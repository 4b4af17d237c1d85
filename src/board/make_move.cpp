#include "board/make_move.h"

#include "base/log.h"
#include "base/score_pair.h"
#include "board/castling.h"
#include "board/fen.h"
#include "board/keys.h"
#include "board/piece_square.h"
#include "board/queries.h"

namespace {

void addScore(Position& p, int index) { p.pstScore = scorePairAdd(p.pstScore, pieceSquare[index]); }
void takeScore(Position& p, int index) {
  p.pstScore = scorePairAdd(p.pstScore, scorePairNeg(pieceSquare[index]));
}

// Promotion kinds 4..7 give queen, knight, rook, bishop.
constexpr int promotionPiece[8] = {0, 0, 0, 0, Queen, Knight, Rook, Bishop};

}  // namespace

bool makeMove(const Position& source, Position& destination, Move move) {
  Position& d = destination;
  d = source;
  d.previous = &source;
  d.lastMove = move;
  d.movedPiece = 0;
  d.capturedPiece = 0;

  const int c = sideToMove(source);
  const int e = c ^ 1;
  if (d.epBit) {
    d.hashKey ^= enPassantKey(lowestSquare(d.epBit));
    d.epBit = 0;
  }
  d.hashKey ^= sideKey(c) ^ sideKey(e);

  if (move == 0) {
    d.inCheck = 0;
    ++d.ctm;
    return true;
  }

  const Square from = moveFrom(move);
  const Square to = moveTo(move);
  const uint32_t kind = moveKind(move);
  const Bitboard F = squareBit(from);
  const Bitboard T = squareBit(to);

  const int p = pieceOn(source, c, from);
  if (p == NoPiece) {
    char text[8];
    moveToText(source, move, text);
    logPrintf("\n ILLEGAL MOVE IN SEARCH\n  move in question: %s", text);
    logBoard(source);
    // A move that does not fit the position plays as a pass, so the record
    // stays a consistent position with the other side to move.
    ++d.ctm;
    return true;
  }
  d.movedPiece = p;

  if (kind == KindCastle) {
    // Both pieces leave before either lands: in Chess960 the king may land
    // where its rook stood, or the rook where the king stood, or the king
    // may not move at all.
    const int side = fileOfSquare(to) == 6 ? ShortSide : LongSide;
    const Square rookFrom = castlingRookHome(d.castling, c, side);
    const Square rookTo = castlingRookTarget(c, side);
    const Bitboard R = squareBit(rookFrom);
    const Bitboard landed = T | squareBit(rookTo);
    d.hashKey ^= castlingKey(d.castling, d.moved);
    d.pawnKey ^= pawnKeys[pieceIndex(c, King, from)] ^ pawnKeys[pieceIndex(c, King, to)];
    takeScore(d, pieceIndex(c, King, from));
    addScore(d, pieceIndex(c, King, to));
    d.hashKey ^= pieceKeys[pieceIndex(c, King, from)] ^ pieceKeys[pieceIndex(c, King, to)];
    d.hashKey ^= pieceKeys[pieceIndex(c, Rook, rookFrom)] ^ pieceKeys[pieceIndex(c, Rook, rookTo)];
    addScore(d, pieceIndex(c, Rook, rookTo));
    takeScore(d, pieceIndex(c, Rook, rookFrom));
    d.pieces[c][King] = (d.pieces[c][King] & ~F) | T;
    d.pieces[c][Rook] = (d.pieces[c][Rook] & ~R) | squareBit(rookTo);
    d.pieces[c][0] = (d.pieces[c][0] & ~(F | R)) | landed;
    d.moved |= F | T | R | squareBit(rookTo);
    d.hashKey ^= castlingKey(d.castling, d.moved);
    ++d.ctm;
    return true;
  }

  d.pawnKey ^= pawnKeys[pieceIndex(c, p, from)] ^ pawnKeys[pieceIndex(c, p, to)];
  takeScore(d, pieceIndex(c, p, from));
  addScore(d, pieceIndex(c, p, to));
  d.pieces[c][p] ^= F | T;
  d.pieces[c][0] ^= F | T;
  d.hashKey ^= pieceKeys[pieceIndex(c, p, from)] ^ pieceKeys[pieceIndex(c, p, to)];
  // Only a move from or to a square where a right rests changes the rights.
  // The FEN reader sets every back-rank bit of `moved` but those of the
  // rights it gives, so a clear one is where a right may rest.
  if ((F | T) & backRanks & ~d.moved) {
    d.hashKey ^= castlingKey(d.castling, d.moved);
    d.moved |= F | T;
    d.hashKey ^= castlingKey(d.castling, d.moved);
  } else {
    d.moved |= F | T;
  }

  if (kind >= KindPromoteQueen) {
    const int n = promotionPiece[moveKindIndex(move)];
    d.hashKey ^= pieceKeys[pieceIndex(c, Pawn, to)];
    d.pawnKey ^= pawnKeys[pieceIndex(c, Pawn, to)];
    takeScore(d, pieceIndex(c, Pawn, to));
    d.materialKey -= materialWeights[c * 8 + Pawn];
    d.pieces[c][Pawn] ^= T;
    d.pieces[c][n] ^= T;
    d.materialKey += materialWeights[c * 8 + n];
    d.phase += phaseWeights[n];
    addScore(d, pieceIndex(c, n, to));
    d.hashKey ^= pieceKeys[pieceIndex(c, n, to)];
  } else if (kind == KindEnPassant) {
    const Square victim = (from & 56) | (to & 7);
    const Bitboard X = squareBit(victim);
    d.pieces[e][Pawn] ^= X;
    d.pieces[e][0] ^= X;
    d.materialKey -= materialWeights[e * 8 + Pawn];
    d.hashKey ^= pieceKeys[pieceIndex(e, Pawn, victim)];
    d.pawnKey ^= pawnKeys[pieceIndex(e, Pawn, victim)];
    takeScore(d, pieceIndex(e, Pawn, victim));
    ++d.ctm;
    return true;
  } else if (kind == KindDoubleStep) {
    // Only a target that an enemy pawn could take on enters the key, so a
    // double step nobody can answer en passant transposes with other orders.
    if (d.pieces[e][Pawn] & besideOnRank(T)) {
      const Square target = (from + to) / 2;
      d.epBit = squareBit(target);
      d.hashKey ^= enPassantKey(target);
    }
    ++d.ctm;
    return true;
  }

  if (d.pieces[e][0] & T) {
    const int q = pieceOn(d, e, to);
    if (q == King) logPrintf("ERROR: king capture here\n");
    d.capturedPiece = q;
    d.hashKey ^= pieceKeys[pieceIndex(e, q, to)];
    d.pawnKey ^= pawnKeys[pieceIndex(e, q, to)];
    d.materialKey -= materialWeights[e * 8 + q];
    takeScore(d, pieceIndex(e, q, to));
    d.phase -= phaseWeights[q];
    d.pieces[e][q] ^= T;
    d.pieces[e][0] ^= T;
  }
  ++d.ctm;
  return true;
}
