// The vocabulary every part of the engine speaks: squares, colours, pieces,
// move words and the position record.
#pragma once

#include <bit>
#include <cstdint>

using Bitboard = uint64_t;
using Square = int;     // 0..63, a1 = 0, b1 = 1, ... h8 = 63
using Move = uint32_t;  // bits 0-5 to, 6-11 from, 12-14 kind; 0 is "no move"
using ScorePair = uint64_t;  // two signed 31-bit halves, see eval/score_pair.h

enum Colour : int { White = 0, Black = 1 };

enum PieceCode : int {
  NoPiece = 0,
  Pawn = 1,
  Knight = 2,
  Bishop = 3,
  Rook = 4,
  Queen = 5,
  King = 6,
};

// Move kinds, already shifted into place (bits 12-14 of the word).
enum MoveKind : uint32_t {
  KindNormal = 0x0000,
  KindDoubleStep = 0x1000,
  KindEnPassant = 0x2000,
  KindCastle = 0x3000,
  KindPromoteQueen = 0x4000,
  KindPromoteKnight = 0x5000,
  KindPromoteRook = 0x6000,
  KindPromoteBishop = 0x7000,
};

constexpr Move castleWhiteShort = 12550;  // e1g1
constexpr Move castleWhiteLong = 12546;   // e1c1
constexpr Move castleBlackShort = 16190;  // e8g8
constexpr Move castleBlackLong = 16186;   // e8c8

constexpr Square moveTo(Move m) { return static_cast<Square>(m & 63); }
constexpr Square moveFrom(Move m) { return static_cast<Square>((m >> 6) & 63); }
constexpr uint32_t moveKind(Move m) { return m & 0x7000; }     // shifted kind
constexpr int moveKindIndex(Move m) { return (m >> 12) & 7; }  // 0..7
constexpr Move makeMoveWord(Square from, Square to, uint32_t kind = KindNormal) {
  return static_cast<Move>(from * 64 + to) | kind;
}
constexpr bool isPromotion(Move m) { return moveKindIndex(m) > 3; }

constexpr int fileOfSquare(Square s) { return s & 7; }
constexpr int rankOfSquare(Square s) { return s >> 3; }
constexpr Bitboard squareBit(Square s) { return Bitboard{1} << s; }

inline int popCount(Bitboard b) { return std::popcount(b); }
inline Square lowestSquare(Bitboard b) { return std::countr_zero(b); }
// Takes the lowest set square out of b and returns it: the scan loop of the engine.
inline Square popLowest(Bitboard& b) {
  Square s = std::countr_zero(b);
  b &= b - 1;
  return s;
}

constexpr Bitboard notFileA = 0xfefefefefefefefeULL;
constexpr Bitboard notFileH = 0x7f7f7f7f7f7f7f7fULL;
constexpr Bitboard backRanks = 0xff000000000000ffULL;
constexpr Bitboard seventhRank[2] = {0x00ff000000000000ULL, 0x000000000000ff00ULL};
constexpr Bitboard pawnHomeRank[2] = {0x000000000000ff00ULL, 0x00ff000000000000ULL};

// Castling bookkeeping: a set bit in `moved` means no right rests on that
// square. The squares of each right in standard chess:
constexpr Bitboard whiteShortMask = 0x90ULL;
constexpr Bitboard whiteLongMask = 0x11ULL;
constexpr Bitboard blackShortMask = 0x9000000000000000ULL;
constexpr Bitboard blackLongMask = 0x1100000000000000ULL;

// Game phase weight by piece code: knight 1, bishop 3, rook 9, queen 22.
constexpr int phaseWeights[8] = {0, 0, 1, 3, 9, 22, 0, 0};

// Index of [colour][piece][square] tables: 8 piece rows per colour.
constexpr int pieceIndex(int colour, int piece, Square s) { return (colour * 8 + piece) * 64 + s; }

// Pawn geometry for a set of pawns of one colour.
constexpr Bitboard whitePawnAttacks(Bitboard b) { return ((b << 9) & notFileA) | ((b << 7) & notFileH); }
constexpr Bitboard blackPawnAttacks(Bitboard b) { return ((b >> 7) & notFileA) | ((b >> 9) & notFileH); }
constexpr Bitboard pawnAttackSet(int colour, Bitboard b) {
  return colour == White ? whitePawnAttacks(b) : blackPawnAttacks(b);
}
constexpr Bitboard besideOnRank(Bitboard b) { return ((b << 1) & notFileA) | ((b >> 1) & notFileH); }

// Where the castling pieces of a game start (board/castling.h reads them):
// the FEN that begins the game sets them and every move copies them on, so
// positions of different Chess960 games can stand side by side. Four bytes,
// which fit in the padding at the end of Position.
struct CastlingHomes {
  uint8_t rightFiles[2][2];  // [colour][side]: the files of the king and the rook of each right, a bit each
};

// A position and everything kept incrementally with it. Records are values:
// a move is made by copying into a fresh record, and `previous` links a line
// of play back through the search frames into the game.
struct Position {
  int32_t ctm;            // turn counter; colour to move is ctm & 1
  int32_t inCheck;        // side to move is in check
  Bitboard pieces[2][7];  // [colour][0] all pieces, [1..6] pawn..king
  Bitboard moved;         // castling bookkeeping
  Bitboard epBit;         // en-passant target, only if a capture is possible
  uint64_t hashKey;
  uint64_t pawnKey;       // pawns and both kings
  uint64_t materialKey;   // additive material signature
  ScorePair pstScore;     // piece-square sum, valid below a searched root
  int32_t phase;
  Move lastMove;
  int32_t movedPiece;
  int32_t capturedPiece;
  const Position* previous;
  uint8_t pvPly;
  uint8_t extensionRemainder;
  uint8_t horizonExtensions;
  CastlingHomes castling;
};

inline int sideToMove(const Position& p) { return p.ctm & 1; }
inline Bitboard occupiedSquares(const Position& p) { return p.pieces[0][0] | p.pieces[1][0]; }
inline Square kingSquareOf(const Position& p, int colour) { return lowestSquare(p.pieces[colour][King]); }
