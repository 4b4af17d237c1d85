#include "board/fen.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/engine_exit.h"
#include "base/log.h"
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
  for (; *castling && *castling != ' '; ++castling) {
    switch (*castling) {
      case 'K': p.moved &= ~0x90ULL; break;
      case 'Q': p.moved &= ~0x11ULL; break;
      case 'k': p.moved &= 0x6FFFFFFFFFFFFFFFULL; break;
      case 'q': p.moved &= 0xEEFFFFFFFFFFFFFFULL; break;
      default: break;
    }
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
  p.hashKey ^= castleKeys[castlingIndex(p.moved)];

  const char* enPassant = castling;
  while (*enPassant == ' ') ++enPassant;
  readEnPassant(p, enPassant);
}

void moveToText(Move move, char* buffer) {
  move &= 0x7fff;
  if (move == 0) {
    std::strcpy(buffer, "null");
    return;
  }
  Square from = moveFrom(move);
  Square to = moveTo(move);
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
  if (p.previous) moveToText(p.previous->lastMove, parentMove);
  char thisMove[8];
  moveToText(p.lastMove, thisMove);
  char rights[5];
  int r = 0;
  if (!(p.moved & whiteShortMask)) rights[r++] = 'K';
  if (!(p.moved & whiteLongMask)) rights[r++] = 'Q';
  if (!(p.moved & blackShortMask)) rights[r++] = 'k';
  if (!(p.moved & blackLongMask)) rights[r++] = 'q';
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
