#include "moves/generate.h"

#include <initializer_list>

#include "board/attacks.h"
#include "board/castling.h"
#include "board/make_move.h"
#include "board/queries.h"

namespace {

// A white pawn steps towards h8 (+8), a black one towards a1 (-8).
constexpr int pawnStep(int colour) { return colour == White ? 8 : -8; }

constexpr Bitboard pushOnce(int colour, Bitboard b) { return colour == White ? b << 8 : b >> 8; }

// Double-step targets: rank 4 for white, rank 5 for black.
constexpr Bitboard doubleStepRank[2] = {0x00000000ff000000ULL, 0x000000ff00000000ULL};

// Pawn captures towards the a-file and towards the h-file, as target sets.
// The file masks throw out the wrap from one edge of the board to the other.
constexpr Bitboard captureTowardsA(int colour, Bitboard pawns) {
  return (colour == White ? pawns << 7 : pawns >> 9) & notFileH;
}
constexpr Bitboard captureTowardsH(int colour, Bitboard pawns) {
  return (colour == White ? pawns << 9 : pawns >> 7) & notFileA;
}
// What to add to a target square to get back to the capturing pawn.
constexpr int backFromA(int colour) { return colour == White ? -7 : 9; }
constexpr int backFromH(int colour) { return colour == White ? -9 : 7; }

// One word per target, all from the same square.
Move* writeTargets(Move* out, Square from, Bitboard targets) {
  while (targets) *out++ = makeMoveWord(from, popLowest(targets));
  return out;
}

// One word per target of a pawn pattern; the pawn stands at to + back.
Move* writeShifted(Move* out, Bitboard targets, int back, uint32_t kind = KindNormal) {
  while (targets) {
    Square to = popLowest(targets);
    *out++ = makeMoveWord(to + back, to, kind);
  }
  return out;
}

// Promotion words for one pawn move: queen and knight only, or all four.
Move* writePromotions(Move* out, Square from, Square to, bool underToo) {
  *out++ = makeMoveWord(from, to, KindPromoteQueen);
  *out++ = makeMoveWord(from, to, KindPromoteKnight);
  if (underToo) {
    *out++ = makeMoveWord(from, to, KindPromoteRook);
    *out++ = makeMoveWord(from, to, KindPromoteBishop);
  }
  return out;
}

// Pawn captures in one direction, en passant and promotions included.
Move* writePawnCaptures(Move* out, Bitboard targets, int back, Bitboard epBit, bool underToo) {
  while (targets) {
    Square to = popLowest(targets);
    Bitboard bit = squareBit(to);
    if (bit & epBit)
      *out++ = makeMoveWord(to + back, to, KindEnPassant);
    else if (bit & backRanks)
      out = writePromotions(out, to + back, to, underToo);
    else
      *out++ = makeMoveWord(to + back, to);
  }
  return out;
}

Move* writePushPromotions(Move* out, int colour, Bitboard pawns, Bitboard occupied, bool underToo) {
  Bitboard targets = pushOnce(colour, pawns) & ~occupied & backRanks;
  while (targets) {
    Square to = popLowest(targets);
    out = writePromotions(out, to - pawnStep(colour), to, underToo);
  }
  return out;
}

Move* writeSinglePushes(Move* out, int colour, Bitboard pawns, Bitboard occupied) {
  Bitboard targets = pushOnce(colour, pawns & ~seventhRank[colour]) & ~occupied;
  return writeShifted(out, targets, -pawnStep(colour));
}

Move* writeDoublePushes(Move* out, int colour, Bitboard pawns, Bitboard occupied) {
  Bitboard once = pushOnce(colour, pawns & pawnHomeRank[colour]) & ~occupied;
  Bitboard twice = pushOnce(colour, once) & ~occupied;
  return writeShifted(out, twice, -2 * pawnStep(colour), KindDoubleStep);
}

// Sliders whose line to `square` is open: the ray table of the square finds
// them, `between` checks that nothing stands in the way.
Bitboard openLineSliders(Bitboard sliders, const Bitboard* rays, Square square, Bitboard occupied) {
  Bitboard found = 0;
  Bitboard candidates = sliders & rays[square];
  while (candidates) {
    Square s = popLowest(candidates);
    if ((between[s][square] & occupied) == 0) found |= squareBit(s);
  }
  return found;
}

// Targets on the slider's rays with an empty path from the slider.
Move* writeLineTargets(Move* out, Square from, Bitboard targets, Bitboard occupied) {
  while (targets) {
    Square to = popLowest(targets);
    if ((between[from][to] & occupied) == 0) *out++ = makeMoveWord(from, to);
  }
  return out;
}


// Moves of the one piece that blocks an own slider's line to the enemy king:
// stepping off the line uncovers check. `lineRays` is the ray table of the
// line's kind. A slider that moves like the line itself gets nothing here,
// since its moves along the line keep blocking and the others are direct
// checks or none. Pieces used here leave `candidates`.
Move* writeDiscoveries(const Position& position, Move* out, Bitboard sliders, const Bitboard* lineRays,
                       bool diagonal, Bitboard& candidates) {
  int c = sideToMove(position);
  Square ek = kingSquareOf(position, c ^ 1);
  Bitboard occupied = occupiedSquares(position);
  Bitboard empty = ~occupied;
  Bitboard own = position.pieces[c][0];
  Bitboard lines = sliders & lineRays[ek];
  while (lines) {
    Square s = popLowest(lines);
    Bitboard blockers = between[s][ek] & occupied;
    if (popCount(blockers) != 1 || (blockers & own) == 0) continue;
    Square x = lowestSquare(blockers);
    switch (pieceOn(position, c, x)) {
      case Pawn:
        // A pawn on the king's file pushes along the rank or file line and
        // keeps blocking it.
        if (!diagonal && fileOfSquare(x) == fileOfSquare(ek)) break;
        out += generatePawnPushes(x, c, occupied, out, 3);
        candidates &= ~blockers;
        break;
      case Knight:
        out = writeTargets(out, x, knightAttacks[x] & empty);
        candidates &= ~blockers;
        break;
      case Bishop:
        if (diagonal) break;
        out = writeTargets(out, x, bishopAttacks(x, occupied) & empty);
        candidates &= ~blockers;
        break;
      case Rook:
        if (!diagonal) break;
        out = writeTargets(out, x, rookAttacks(x, occupied) & empty);
        candidates &= ~blockers;
        break;
      case King:
        // Its steps along the line keep blocking, so only steps off it count.
        out = writeTargets(out, x, kingAttacks[x] & empty & ~lineRays[ek]);
        break;
      default:
        break;
    }
  }
  return out;
}

// Direct checks by sliders along the lines of one kind through the enemy
// king: `targets` are the empty squares on those lines.
Move* writeSliderChecks(const Position& position, Move* out, Bitboard sliders, const Bitboard* sameRays,
                        const Bitboard* crossRays, Bitboard targets) {
  int c = sideToMove(position);
  Square ek = kingSquareOf(position, c ^ 1);
  Bitboard occupied = occupiedSquares(position);
  Bitboard queens = position.pieces[c][Queen];
  while (sliders) {
    Square s = popLowest(sliders);
    Bitboard reach = sameRays[s];
    if (queens & squareBit(s)) reach |= crossRays[s];
    Bitboard onLine = targets & reach;
    while (onLine) {
      Square t = popLowest(onLine);
      if (((between[t][ek] | between[s][t]) & occupied) == 0) *out++ = makeMoveWord(s, t);
    }
  }
  return out;
}

}  // namespace

int generateCastling(const Position& position, int colour, Move* list) {
  const CastlingHomes& homes = position.castling;
  if (!castlingRightRests(homes, position.moved, colour, ShortSide) &&
      !castlingRightRests(homes, position.moved, colour, LongSide))
    return 0;
  Bitboard attacked = attackMap(position, colour ^ 1);
  Bitboard occupied = occupiedSquares(position);
  const Square king = kingSquareOf(position, colour);
  const Bitboard enemyRankSliders = position.pieces[colour ^ 1][Rook] | position.pieces[colour ^ 1][Queen];
  Move* out = list;
  for (int side : {ShortSide, LongSide}) {
    if (!castlingRightRests(homes, position.moved, colour, side)) continue;
    const Square rook = castlingRookHome(homes, colour, side);
    const Square kingTo = castlingKingTarget(colour, side);
    const Square rookTo = castlingRookTarget(colour, side);
    // Every square the king or the rook crosses or lands on is empty, but
    // for the two of them; the king may not start, cross or land on an
    // attacked square (the rook may cross one: b1 in standard chess).
    const Bitboard bothPaths = between[king][kingTo] | squareBit(kingTo) | between[rook][rookTo] | squareBit(rookTo);
    if (occupied & bothPaths & ~squareBit(king) & ~squareBit(rook)) continue;
    const Bitboard kingPath = between[king][kingTo] | squareBit(king) | squareBit(kingTo);
    if (attacked & kingPath) continue;
    // The rook may have screened its own back rank: with it gone, a rook or
    // queen behind it could reach the king's path. Never so with the rook in
    // its corner, where nothing stands behind it.
    if (fileOfSquare(rook) != (side == ShortSide ? 7 : 0)) {
      const Bitboard withoutRook = occupied & ~squareBit(rook);
      bool screened = false;
      for (Bitboard b = kingPath; b && !screened;) screened = (rookAttacks(popLowest(b), withoutRook) & enemyRankSliders) != 0;
      if (screened) continue;
    }
    *out++ = makeMoveWord(king, kingTo, KindCastle);
  }
  return static_cast<int>(out - list);
}

int generatePawnPushes(Square square, int colour, Bitboard occupied, Move* list, int flags) {
  Bitboard from = squareBit(square);
  Bitboard ahead = pushOnce(colour, from);
  // No promotions here; a pawn on the last rank has nowhere to go either.
  if ((ahead & ~occupied) == 0 || (from & seventhRank[colour])) return 0;
  Move* out = list;
  int step = pawnStep(colour);
  if (flags & 1) *out++ = makeMoveWord(square, square + step);
  if ((flags & 2) && (from & pawnHomeRank[colour]) && (pushOnce(colour, ahead) & occupied) == 0)
    *out++ = makeMoveWord(square, square + 2 * step, KindDoubleStep);
  return static_cast<int>(out - list);
}

int generateEnPassant(const Position& position, Move* list) {
  if (position.epBit == 0) return 0;
  int c = sideToMove(position);
  Square target = lowestSquare(position.epBit);
  // Our pawns that attack the target stand where an enemy pawn on the
  // target would attack.
  Bitboard pawns = pawnAttackSet(c ^ 1, position.epBit) & position.pieces[c][Pawn];
  Move* out = list;
  while (pawns) *out++ = makeMoveWord(popLowest(pawns), target, KindEnPassant);
  return static_cast<int>(out - list);
}

int generateCapturesOn(const Position& position, Move* list, Square square) {
  int c = sideToMove(position);
  const Bitboard* own = position.pieces[c];
  Bitboard occupied = occupiedSquares(position);
  Bitboard bit = squareBit(square);
  Move* out = list;

  Bitboard pawns = pawnAttackSet(c ^ 1, bit) & own[Pawn];
  while (pawns) {
    Square from = popLowest(pawns);
    if (bit & backRanks)
      out = writePromotions(out, from, square, false);
    else
      *out++ = makeMoveWord(from, square);
  }
  Bitboard knights = knightAttacks[square] & own[Knight];
  while (knights) *out++ = makeMoveWord(popLowest(knights), square);
  if (kingAttacks[square] & own[King]) *out++ = makeMoveWord(kingSquareOf(position, c), square);
  Bitboard diagonal = openLineSliders(own[Bishop] | own[Queen], bishopRays, square, occupied);
  while (diagonal) *out++ = makeMoveWord(popLowest(diagonal), square);
  Bitboard straight = openLineSliders(own[Rook] | own[Queen], rookRays, square, occupied);
  while (straight) *out++ = makeMoveWord(popLowest(straight), square);
  return static_cast<int>(out - list);
}

int generateMovesTo(const Position& position, Move* list, Bitboard targets) {
  int c = sideToMove(position);
  const Bitboard* own = position.pieces[c];
  Bitboard occupied = occupiedSquares(position);
  int step = pawnStep(c);
  Move* out = list;

  Bitboard singles = pushOnce(c, own[Pawn]) & targets;
  while (singles) {
    Square to = popLowest(singles);
    // Interposing on the back rank is worth only the queen.
    *out++ = makeMoveWord(to - step, to, (squareBit(to) & backRanks) ? KindPromoteQueen : KindNormal);
  }
  Bitboard passed = pushOnce(c, own[Pawn] & pawnHomeRank[c]) & ~occupied;
  out = writeShifted(out, pushOnce(c, passed) & targets & doubleStepRank[c], -2 * step, KindDoubleStep);

  Bitboard knights = own[Knight];
  while (knights) {
    Square from = popLowest(knights);
    out = writeTargets(out, from, knightAttacks[from] & targets);
  }
  Bitboard diagonal = own[Bishop] | own[Queen];
  while (diagonal) {
    Square from = popLowest(diagonal);
    out = writeLineTargets(out, from, bishopRays[from] & targets, occupied);
  }
  Bitboard straight = own[Rook] | own[Queen];
  while (straight) {
    Square from = popLowest(straight);
    out = writeLineTargets(out, from, rookRays[from] & targets, occupied);
  }
  return static_cast<int>(out - list);
}

int generateCaptures(const Position& position, Move* list) {
  int c = sideToMove(position);
  const Bitboard* own = position.pieces[c];
  Bitboard enemy = position.pieces[c ^ 1][0];
  Bitboard occupied = occupiedSquares(position);
  Move* out = list;

  Bitboard victims = enemy | position.epBit;
  out = writePawnCaptures(out, captureTowardsA(c, own[Pawn]) & victims, backFromA(c), position.epBit, false);
  out = writePawnCaptures(out, captureTowardsH(c, own[Pawn]) & victims, backFromH(c), position.epBit, false);
  out = writePushPromotions(out, c, own[Pawn], occupied, false);

  Bitboard knights = own[Knight];
  while (knights) {
    Square from = popLowest(knights);
    out = writeTargets(out, from, knightAttacks[from] & enemy);
  }
  Bitboard diagonal = own[Bishop] | own[Queen];
  while (diagonal) {
    Square from = popLowest(diagonal);
    out = writeTargets(out, from, bishopAttacks(from, occupied) & enemy);
  }
  Bitboard straight = own[Rook] | own[Queen];
  while (straight) {
    Square from = popLowest(straight);
    out = writeTargets(out, from, rookAttacks(from, occupied) & enemy);
  }
  Square king = kingSquareOf(position, c);
  out = writeTargets(out, king, kingAttacks[king] & enemy);
  return static_cast<int>(out - list);
}

namespace {

// Moves of the knights, bishops, rooks, queens and the king, in that order and
// each kind from the lowest square up, to the squares of targets.
Move* writePieceMoves(Move* out, const Bitboard* own, Square king, Bitboard occupied, Bitboard targets) {
  for (Bitboard knights = own[Knight]; knights;) {
    Square from = popLowest(knights);
    out = writeTargets(out, from, knightAttacks[from] & targets);
  }
  for (Bitboard bishops = own[Bishop]; bishops;) {
    Square from = popLowest(bishops);
    out = writeTargets(out, from, bishopAttacks(from, occupied) & targets);
  }
  for (Bitboard rooks = own[Rook]; rooks;) {
    Square from = popLowest(rooks);
    out = writeTargets(out, from, rookAttacks(from, occupied) & targets);
  }
  for (Bitboard queens = own[Queen]; queens;) {
    Square from = popLowest(queens);
    out = writeTargets(out, from, queenAttacks(from, occupied) & targets);
  }
  return writeTargets(out, king, kingAttacks[king] & targets);
}

}  // namespace

int generateQuiets(const Position& position, Move* list) {
  int c = sideToMove(position);
  const Bitboard* own = position.pieces[c];
  Bitboard occupied = occupiedSquares(position);
  Bitboard empty = ~occupied;
  Move* out = list;

  out += generateCastling(position, c, out);
  out = writeSinglePushes(out, c, own[Pawn], occupied);
  out = writePieceMoves(out, own, kingSquareOf(position, c), occupied, empty);
  out = writeDoublePushes(out, c, own[Pawn], occupied);
  return static_cast<int>(out - list);
}

int generateAllMoves(const Position& position, Move* list) {
  int c = sideToMove(position);
  const Bitboard* own = position.pieces[c];
  Bitboard enemy = position.pieces[c ^ 1][0];
  Bitboard occupied = occupiedSquares(position);
  Bitboard notOwn = ~own[0];
  Move* out = list;

  out = writePushPromotions(out, c, own[Pawn], occupied, true);
  out += generateCastling(position, c, out);
  Bitboard victims = enemy | position.epBit;
  out = writePawnCaptures(out, captureTowardsA(c, own[Pawn]) & victims, backFromA(c), position.epBit, true);
  out = writePawnCaptures(out, captureTowardsH(c, own[Pawn]) & victims, backFromH(c), position.epBit, true);
  out = writeSinglePushes(out, c, own[Pawn], occupied);
  out = writePieceMoves(out, own, kingSquareOf(position, c), occupied, notOwn);
  out = writeDoublePushes(out, c, own[Pawn], occupied);
  return static_cast<int>(out - list);
}

namespace {

// Makes move into child; true if the mover's king is not left attacked.
bool leavesKingSafe(const Position& position, Move move, Position& child) {
  makeMove(position, child, move);
  return !kingAttacked(child, sideToMove(position));
}

}  // namespace

int generateLegalMoves(const Position& position, Move* list) {
  const int count = generateAllMoves(position, list);
  int legal = 0;
  Position child;
  for (int i = 0; i < count; ++i)
    if (leavesKingSafe(position, list[i], child)) list[legal++] = list[i];
  return legal;
}

bool playIfLegal(const Position& position, Move move, Position& child) {
  Move list[maxGeneratedMoves];
  const int count = generateAllMoves(position, list);
  for (int i = 0; i < count; ++i)
    if (list[i] == move) return leavesKingSafe(position, move, child);
  return false;
}

int generateEvasions(const Position& position, Move* list) {
  int c = sideToMove(position);
  int e = c ^ 1;
  const Bitboard* enemy = position.pieces[e];
  Bitboard occupied = occupiedSquares(position);
  Square k = kingSquareOf(position, c);
  Move* out = list;

  out = writeTargets(out, k, kingAttacks[k] & ~position.pieces[c][0]);

  // A knight's check can't be blocked: only taking the knight or moving the
  // king helps. The knight is the piece that has just moved there.
  if (Bitboard knights = knightAttacks[k] & enemy[Knight]) {
    Square checker = moveTo(position.lastMove);
    // A position read from FEN has no such move: then the lowest checking
    // knight is the one taken.
    if (position.lastMove == 0 || (knights & squareBit(checker)) == 0) checker = lowestSquare(knights);
    out += generateCapturesOn(position, out, checker);
    return static_cast<int>(out - list);
  }
  if (Bitboard pawns = pawnAttackSet(c, squareBit(k)) & enemy[Pawn]) {
    out += generateCapturesOn(position, out, lowestSquare(pawns));
    out += generateEnPassant(position, out);
    return static_cast<int>(out - list);
  }
  Bitboard diagonal = openLineSliders(enemy[Bishop] | enemy[Queen], bishopRays, k, occupied);
  while (diagonal) {
    Square s = popLowest(diagonal);
    out += generateCapturesOn(position, out, s);
    out += generateMovesTo(position, out, between[s][k]);
  }
  Bitboard straight = openLineSliders(enemy[Rook] | enemy[Queen], rookRays, k, occupied);
  while (straight) {
    Square s = popLowest(straight);
    out += generateCapturesOn(position, out, s);
    out += generateMovesTo(position, out, between[s][k]);
  }
  return static_cast<int>(out - list);
}

int generateQuietChecks(const Position& position, Move* list) {
  int c = sideToMove(position);
  int e = c ^ 1;
  const Bitboard* own = position.pieces[c];
  Bitboard occupied = occupiedSquares(position);
  Bitboard empty = ~occupied;
  Square ek = kingSquareOf(position, e);
  // Pieces that move to uncover a check are not tried again for direct checks.
  Bitboard candidates = ~Bitboard{0};
  Move* out = list;

  out = writeDiscoveries(position, out, own[Bishop] | own[Queen], bishopRays, true, candidates);
  out = writeDiscoveries(position, out, own[Rook] | own[Queen], rookRays, false, candidates);

  Bitboard pawns = pawnCheckOrigins[e][ek] & own[Pawn];
  while (pawns) {
    Square p = popLowest(pawns);
    // One push away from a checking square if the king is a knight's jump
    // away; otherwise only the double step gets there.
    out += generatePawnPushes(p, c, occupied, out, (knightAttacks[p] & squareBit(ek)) ? 1 : 2);
  }
  Bitboard knights = own[Knight] & candidates;
  while (knights) {
    Square n = popLowest(knights);
    out = writeTargets(out, n, knightAttacks[ek] & knightAttacks[n] & empty);
  }
  // A queen reaches a checking square by either kind of line.
  out = writeSliderChecks(position, out, (own[Rook] | own[Queen]) & candidates, rookRays, bishopRays,
                          rookRays[ek] & empty);
  out = writeSliderChecks(position, out, (own[Bishop] | own[Queen]) & candidates, bishopRays, rookRays,
                          bishopRays[ek] & empty);
  return static_cast<int>(out - list);
}

int isPseudoLegal(const Position& position, Move move) {
  move &= 0xffff;
  uint32_t kind = moveKind(move);
  if (move == 0 || kind == KindEnPassant) return 0;
  int c = sideToMove(position);
  if (kind == KindCastle) {
    Move castles[2];
    int count = generateCastling(position, c, castles);
    for (int i = 0; i < count; ++i)
      if (castles[i] == move) return 1;
    return 0;
  }
  Square from = moveFrom(move);
  Square to = moveTo(move);
  Bitboard own = position.pieces[c][0];
  if ((own & squareBit(from)) == 0 || (own & squareBit(to)) != 0) return 0;

  Bitboard occupied = occupiedSquares(position);
  int piece = pieceOn(position, c, from);
  if (piece != Pawn && (kind == KindDoubleStep || isPromotion(move))) return 0;
  switch (piece) {
    case Knight:
      return (knightAttacks[from] & squareBit(to)) ? 1 : 0;
    case King:
      return (kingAttacks[from] & squareBit(to)) ? 1 : 0;
    case Bishop:
      return (bishopRays[from] & squareBit(to)) && (between[from][to] & occupied) == 0 ? 1 : 0;
    case Rook:
      return (rookRays[from] & squareBit(to)) && (between[from][to] & occupied) == 0 ? 1 : 0;
    case Queen:
      return (queenRays[from] & squareBit(to)) && (between[from][to] & occupied) == 0 ? 1 : 0;
    default:
      break;
  }
  int step = pawnStep(c);
  Square ahead = from + step;
  // Only a FEN can put a pawn on its last rank, and such a pawn never moves.
  if (ahead < 0 || ahead > 63) return 0;
  if ((squareBit(ahead) & backRanks) && !isPromotion(move)) return 0;
  if (position.pieces[c ^ 1][0] & squareBit(to)) {
    int apart = to > ahead ? to - ahead : ahead - to;
    return apart == 1 && rankOfSquare(to) == rankOfSquare(ahead) ? 1 : 0;
  }
  if (occupied & squareBit(ahead)) return 0;
  if (to == ahead) return 1;
  Square twoAhead = from + 2 * step;
  return (squareBit(from) & pawnHomeRank[c]) && kind == KindDoubleStep && to == twoAhead &&
                 (occupied & squareBit(twoAhead)) == 0
             ? 1
             : 0;
}
