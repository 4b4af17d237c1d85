#include "board/fen.h"

#include <bit>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/engine_exit.h"
#include "base/log.h"
#include "base/options.h"
#include "board/castling.h"
#include "board/keys.h"
#include "board/queries.h"

namespace {

int pieceOfLetter(char letter) {
  switch (letter) {
    case 'P': case 'p': return Pawn;
    case 'N': case 'n': return Knight;
    case 'B': case 'b': return Bishop;
    case 'R': case 'r': return Rook;
    case 'Q': case 'q': return Queen;
    case 'K': case 'k': return King;
    default: return NoPiece;
  }
}

// Reads the en-passant field at text. A target is only kept when a pawn of
// the side to move stands beside the pawn that double-stepped; the double
// step itself goes into lastMove either way.
void readEnPassant(Position& p, const char* text) {
  if (text[0] == '-' || text[0] == 0 || text[1] == 0) return;
  int file = text[0] - 'a';
  // A file letter off the board names no square: the field reads as "-".
  if (file < 0 || file > 7) return;
  Square from, to;
  if (text[1] == '3') {
    from = 8 + file;
    to = 24 + file;
  } else {
    from = 48 + file;
    to = 32 + file;
  }
  p.lastMove = makeMoveWord(from, to);
  if (p.pieces[sideToMove(p)][Pawn] & besideOnRank(squareBit(to))) {
    Square target = (from + to) / 2;
    p.epBit = squareBit(target);
    p.hashKey ^= enPassantKey(target);
  }
}

}  // namespace

void parseFen(Position& position, const char* text) {
  Position& p = position;
  std::memset(&p, 0, sizeof p);
  p.moved = 0xFF000000000000FFULL;
  p.ctm = -1;

  char buffer[255];
  std::strncpy(buffer, text[0] ? text : startPositionFen, 254);
  buffer[254] = 0;

  const char* c = buffer;
  int n = 0;  // runs from a8 along each rank down to h1: square n ^ 56
  for (; *c && *c != ' '; ++c) {
    if (*c >= '0' && *c <= '9') {
      n += *c - '0';
    } else if (*c == '/') {
      n = (n + 7) & ~7;
    } else {
      int piece = pieceOfLetter(*c);
      // Squares past h1 are dropped rather than written off the board.
      if (piece != NoPiece && n < 64) {
        int colour = (*c >= 'a') ? Black : White;
        p.pieces[colour][piece] |= squareBit(n ^ 56);
      }
      ++n;
    }
  }
  for (int colour = White; colour <= Black; ++colour)
    for (int piece = Pawn; piece <= King; ++piece) p.pieces[colour][0] |= p.pieces[colour][piece];

  // A text that stops before a field leaves that field at its plain value:
  // white to move, no castling, no en passant.
  const char* colourField = *c ? c + 1 : c;
  if (*colourField == 'w' || *colourField == 0) {
    p.ctm = 0;
  } else if (*colourField == 'b') {
    p.ctm = 1;
  } else {
    fatalExit("Error in ctm for fen \"%s\"", buffer);
  }

  const char* castling = colourField;
  if (*castling) ++castling;
  if (*castling) ++castling;
  // Each game states its castling rooks anew; until the field names others,
  // they stand in the corners.
  p.castling = standardCastling;
  for (; *castling && *castling != ' '; ++castling) {
    const char letter = *castling;
    const int colour = letter >= 'a' ? Black : White;
    const char upper = static_cast<char>(colour == Black ? letter - 32 : letter);
    const Bitboard backRank = colour == White ? 0xFFULL : 0xFF00000000000000ULL;
    const Bitboard king = p.pieces[colour][King] & backRank;
    const Bitboard rooks = p.pieces[colour][Rook] & backRank;
    int side;
    Square rook;
    if (!options.chess960) {
      // Standard chess: the king on e1 (e8) and the rook in the corner; a
      // right whose pieces aren't there is dropped later as unfit.
      if (upper != 'K' && upper != 'Q') continue;
      side = upper == 'K' ? ShortSide : LongSide;
      p.moved &= ~castlingRightMask(p.castling, colour, side);
      continue;
    }
    if (upper == 'K' || upper == 'Q') {
      // X-FEN: the outermost rook on that side of the king; with none there,
      // the corner (the right is dropped later as unfit).
      side = upper == 'K' ? ShortSide : LongSide;
      const Square corner = (colour == White ? 0 : 56) + (side == ShortSide ? 7 : 0);
      rook = corner;
      if (king && !(rooks & squareBit(corner))) {
        const Square k = lowestSquare(king);
        const Bitboard beyond = side == ShortSide ? rooks & ~((squareBit(k) << 1) - 1) : rooks & (squareBit(k) - 1);
        if (beyond) rook = side == ShortSide ? 63 - std::countl_zero(beyond) : lowestSquare(beyond);
      }
    } else if (upper >= 'A' && upper <= 'H' && king) {
      // Shredder-FEN: the file of the rook; its side is where it stands
      // from the king.
      rook = (colour == White ? 0 : 56) + (upper - 'A');
      side = rook > lowestSquare(king) ? ShortSide : LongSide;
    } else {
      continue;
    }
    const Square kingHome = king ? lowestSquare(king) : (colour == White ? 4 : 60);
    // A rook on the king's own square is no rook to castle with.
    if (rook == kingHome) continue;
    setCastlingRook(p.castling, colour, side, kingHome, rook);
    p.moved &= ~castlingRightMask(p.castling, colour, side);
  }

  p.inCheck = kingInAttackMap(p, p.ctm & 1) ? 1 : 0;

  p.hashKey = sideKey(p.ctm & 1);
  for (int colour = White; colour <= Black; ++colour) {
    for (int piece = Pawn; piece <= King; ++piece) {
      for (Bitboard b = p.pieces[colour][piece]; b;) {
        Square s = popLowest(b);
        p.hashKey ^= pieceKeys[pieceIndex(colour, piece, s)];
        p.pawnKey ^= pawnKeys[pieceIndex(colour, piece, s)];
      }
      // Kings carry a zero weight, so the count over all six slots is exact.
      uint64_t count = static_cast<uint64_t>(popCount(p.pieces[colour][piece]));
      p.materialKey += count * materialWeights[colour * 8 + piece];
    }
  }
  p.hashKey ^= castlingKey(p.castling, p.moved);

  const char* enPassant = castling;
  while (*enPassant == ' ') ++enPassant;
  readEnPassant(p, enPassant);
}

void moveToText(const Position& position, Move move, char* buffer) {
  move &= 0x7fff;
  if (move == 0) {
    std::strcpy(buffer, "null");
    return;
  }
  Square from = moveFrom(move);
  Square to = moveTo(move);
  // Chess960 writes castling as the king taking its own rook.
  if (options.chess960 && moveKind(move) == KindCastle) {
    const int colour = rankOfSquare(from) == 0 ? White : Black;
    to = castlingRookHome(position.castling, colour, fileOfSquare(to) == 6 ? ShortSide : LongSide);
  }
  buffer[0] = static_cast<char>('a' + fileOfSquare(from));
  buffer[1] = static_cast<char>('1' + rankOfSquare(from));
  buffer[2] = static_cast<char>('a' + fileOfSquare(to));
  buffer[3] = static_cast<char>('1' + rankOfSquare(to));
  buffer[4] = "....qnrb"[moveKindIndex(move)];
  buffer[isPromotion(move) ? 5 : 4] = 0;
}

void logBoard(const Position& position) {
  if (!engineLog.file) return;
  const Position& p = position;
  char parentMove[8] = "N/A";
  if (p.previous) moveToText(p, p.previous->lastMove, parentMove);
  char thisMove[8];
  moveToText(p, p.lastMove, thisMove);
  char rights[5];
  int r = 0;
  const int held = castlingRights(p.castling, p.moved);
  for (int i = 0; i < 4; ++i)
    if (held & (1 << i)) rights[r++] = "KQkq"[i];
  if (r == 0) rights[r++] = '-';
  rights[r] = 0;
  logPrintf("\n-----[ CTM = %d   INCHECK = %d   last: %s %s   rights: %s]-----", p.ctm, p.inCheck, parentMove,
            thisMove, rights);

  for (int rank = 7; rank >= 0; --rank) {
    char line[2 + 16 + 1];
    int k = 0;
    line[k++] = '\n';
    for (int file = 0; file < 8; ++file) {
      Bitboard bit = squareBit(rank * 8 + file);
      char shown = '-';
      for (int piece = Pawn; piece <= King; ++piece) {
        if (p.pieces[White][piece] & bit) shown = "-PNBRQK"[piece];
        if (p.pieces[Black][piece] & bit) shown = "-pnbrqk"[piece];
      }
      line[k++] = ' ';
      line[k++] = shown;
    }
    line[k] = 0;
    logPrintf("%s", line);
  }
  logPrintf("\n\n");
}
