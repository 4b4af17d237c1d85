#include "eval/king_safety.h"

#include "base/fills.h"
#include "base/score_pair.h"
#include "base/three_file_mask.h"
#include "board/attacks.h"
#include "board/castling.h"
#include "board/exchange.h"
#include "eval/tables.h"

namespace {

constexpr Square e1 = 4;
constexpr Square g1 = 6;
constexpr Square e8 = 60;
constexpr Square g8 = 62;

constexpr int relativeRank(int colour, Square s) { return colour == White ? rankOfSquare(s) : 7 - rankOfSquare(s); }

// Pawns in the three files around the centre square; those on the centre's
// own file shield twice.
ScorePair shelterAround(int colour, Bitboard ownPawns, Square centre) {
  ScorePair sum = 0;
  for (Bitboard b = ownPawns & threeFileMask[centre]; b;) {
    Square s = popLowest(b);
    ScorePair value = pawnShelter[relativeRank(colour, s)];
    sum = scorePairAdd(sum, value);
    if (fileOfSquare(s) == fileOfSquare(centre)) sum = scorePairAdd(sum, value);
  }
  return sum;
}

// Check squares a slider of the attacker reaches from s in one move, on the
// present board: both legs of the path must be empty.
Bitboard sliderCheckSquares(const KingAttack& attack, Square s, Bitboard candidates) {
  Bitboard found = 0;
  for (Bitboard b = candidates & attack.safe; b;) {
    Square t = popLowest(b);
    if ((between[t][s] & attack.occupied) == 0 && (between[t][attack.king] & attack.occupied) == 0)
      found |= squareBit(t);
  }
  return found;
}

}  // namespace

// [colour of the king][square], from white's side rank 1 first, black's the
// mirror. Out in the open, from the fourth rank on, a king starts with a full
// count against it.
const int32_t kingDangerBase[2][64] = {
    {
        1, 0, 1, 3, 3, 1, 0, 1,  //
        1, 1, 2, 4, 4, 2, 1, 1,  //
        4, 5, 6, 6, 6, 6, 6, 4,  //
        8, 8, 8, 8, 8, 8, 8, 8,  //
        8, 8, 8, 8, 8, 8, 8, 8,  //
        8, 8, 8, 8, 8, 8, 8, 8,  //
        8, 8, 8, 8, 8, 8, 8, 8,  //
        8, 8, 8, 8, 8, 8, 8, 8,
    },
    {
        8, 8, 8, 8, 8, 8, 8, 8,  //
        8, 8, 8, 8, 8, 8, 8, 8,  //
        8, 8, 8, 8, 8, 8, 8, 8,  //
        8, 8, 8, 8, 8, 8, 8, 8,  //
        8, 8, 8, 8, 8, 8, 8, 8,  //
        4, 5, 6, 6, 6, 6, 6, 4,  //
        1, 1, 2, 4, 4, 2, 1, 1,  //
        1, 0, 1, 3, 3, 1, 0, 1,
    },
};

ScorePair castlingTerms(const Position& position, int colour) {
  Bitboard shortMask = castlingRightMask(position.castling, colour, ShortSide);
  Bitboard longMask = castlingRightMask(position.castling, colour, LongSide);
  ScorePair sum = 0;
  if ((position.moved & shortMask) == 0) sum = scorePairAdd(sum, makeScorePair(150, 0));
  if ((position.moved & longMask) == 0) sum = scorePairAdd(sum, makeScorePair(60, 0));
  return sum;
}

ScorePair kingShelter(int colour, Bitboard ownPawns, Square king) {
  ScorePair shelter = shelterAround(colour, ownPawns, king);
  // A king still on its home square is credited with where short castling
  // would take it, if that is better.
  if (king == (colour == White ? e1 : e8)) {
    ScorePair castled = shelterAround(colour, ownPawns, colour == White ? g1 : g8);
    if (scorePairOpen(castled) > scorePairOpen(shelter)) shelter = castled;
  }
  return shelter;
}

ScorePair pawnStormTerm(int colour, Bitboard ownPawns, Square enemyKing) {
  ScorePair sum = 0;
  for (Bitboard b = ownPawns & threeFileMask[enemyKing]; b;)
    sum = scorePairAdd(sum, pawnStorm[relativeRank(colour, popLowest(b))]);
  return sum;
}

ScorePair shutInKing(int colour, Bitboard ownPawns, Square king) {
  if (relativeRank(colour, king) != 0) return 0;
  Bitboard front = stepAhead(colour, squareBit(king));
  Bitboard exits = front | besideOnRank(front);
  if (exits & ~ownPawns) return 0;
  return makeScorePair(-100, -180);
}

ScorePair kingPawnTerms(const Position& position, int colour) {
  Bitboard ownPawns = position.pieces[colour][Pawn];
  Square king = kingSquareOf(position, colour);
  ScorePair sum = kingShelter(colour, ownPawns, king);
  sum = scorePairAdd(sum, pawnStormTerm(colour, ownPawns, kingSquareOf(position, colour ^ 1)));
  return scorePairAdd(sum, shutInKing(colour, ownPawns, king));
}

KingAttack startKingAttack(const Position& position, const EvalFrame& frame, int attacker) {
  int defender = attacker ^ 1;
  KingAttack attack;
  attack.attacker = attacker;
  attack.king = kingSquareOf(position, defender);
  attack.ring = kingAttacks[attack.king];
  attack.occupied = occupiedSquares(position);
  // An enemy pawn only spoils a square it could recapture on, that is, an
  // empty one or one of the attacker's.
  attack.safe = ~(position.pieces[attacker][0] | frame.knightAttackMap[defender] |
                  (frame.pawnAttacks[defender] & ~position.pieces[defender][0]));
  attack.count = kingDangerBase[defender][attack.king];
  return attack;
}

void knightAttack(KingAttack& attack, Bitboard attacks) {
  if (attacks & attack.ring) attack.count += 4;
  attack.count += 3 * popCount(attacks & knightAttacks[attack.king] & attack.safe);
}

void bishopAttack(KingAttack& attack, Square s, Bitboard attacks) {
  if (attacks & attack.ring) attack.count += 2;
  attack.count += 3 * popCount(sliderCheckSquares(attack, s, bishopRays[attack.king] & bishopRays[s]));
}

void rookAttack(KingAttack& attack, Square s, Bitboard attacks) {
  if (attacks & attack.ring) attack.count += 3;
  attack.count += 3 * popCount(sliderCheckSquares(attack, s, rookRays[attack.king] & rookRays[s]));
}

void queenAttack(KingAttack& attack, const Position& position, Square s, Bitboard attacks) {
  if (attacks & attack.ring) attack.count += 2;
  Bitboard checks = sliderCheckSquares(attack, s, queenRays[attack.king] & queenRays[s]);
  if ((kingAttacks[attack.king] & squareBit(s)) == 0) {
    attack.count += 3 * popCount(checks);
    return;
  }
  // A queen already beside the king: a check that survives the exchange is
  // close to mate, one that loses the queen is worth little. The exchange is
  // asked from the attacker's side whoever is to move.
  int flip = sideToMove(position) != attack.attacker ? 1 : 0;
  for (Bitboard b = checks; b;)
    attack.count += exchangeValue(position, makeMoveWord(s, popLowest(b)), flip) >= 0 ? 12 : 1;
}

ScorePair kingAttackScore(int count) {
  // Counts past the table's end (many promoted queens) keep the last row.
  return kingDanger[count < 127 ? count : 127];
}
