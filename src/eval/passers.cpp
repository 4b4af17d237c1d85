#include "eval/passers.h"

#include "base/score_pair.h"
#include "board/attacks.h"
#include "eval/geometry.h"
#include "eval/tables.h"

// The further the own king from the stop square, the less the pawn is worth;
// the further the enemy king, the more.
constexpr int32_t passerOwnKing[6][9] = {
    {},
    {},
    {0, -39, -69, -95, -118, -138, -157, -175, -191},
    {0, -118, -210, -287, -355, -416, -473, -526, -575},
    {0, -238, -421, -575, -711, -834, -947, -1052, -1151},
    {0, -397, -702, -959, -1186, -1391, -1579, -1754, -1919},
};

constexpr int32_t passerEnemyKing[6][9] = {
    {},
    {},
    {0, 60, 105, 144, 178, 209, 237, 263, 288},
    {0, 179, 316, 432, 534, 626, 711, 790, 864},
    {0, 358, 632, 864, 1068, 1252, 1422, 1580, 1728},
    {0, 596, 1054, 1440, 1780, 2087, 2370, 2633, 2880},
};

namespace {

void add(EvalFrame& frame, int colour, ScorePair value) {
  frame.score[colour] = scorePairAdd(frame.score[colour], value);
}

constexpr ScorePair endOnly(int32_t end) { return makeScorePair(0, end); }

}  // namespace

void passedPawnTerms(const Position& position, EvalFrame& frame, int colour, Square s) {
  int enemy = colour ^ 1;
  int n = colour == White ? rankOfSquare(s) - 1 : 6 - rankOfSquare(s);
  add(frame, colour, passerRank[n]);
  // On its second and third rank a passer is still far from home.
  if (n < 2) return;

  Square stop = colour == White ? s + 8 : s - 8;
  Square ownKing = frame.kingSquare[colour];
  Square enemyKing = frame.kingSquare[enemy];
  add(frame, colour, endOnly(passerOwnKing[n][squareDistance[ownKing][stop]]));

  Square promotion = promotionSquare[colour][s];
  if (squareDistance[ownKing][promotion] <= 1) add(frame, colour, 100);
  if (squareDistance[enemyKing][promotion] <= 1) add(frame, enemy, 100);

  if (n != 2) {
    // A rook behind a passer, own or enemy, gains in strength as it advances.
    Bitboard behind = fileOf[s] & forwardRanks[enemy][s];
    if (behind & position.pieces[colour][Rook]) add(frame, colour, makeScorePair(50, 300));
    if (behind & position.pieces[enemy][Rook]) add(frame, enemy, makeScorePair(50, 300));
  }

  add(frame, colour, endOnly(passerEnemyKing[n][squareDistance[enemyKing][stop]]));

  Bitboard occupied = occupiedSquares(position);
  if (occupied & squareBit(stop)) return;

  Bitboard ahead = fileOthers[s] & forwardRanks[colour][s];
  Bitboard rearFile = fileOthers[s] & forwardRanks[enemy][s];
  Bitboard defended = ahead & frame.allAttacks[colour];
  Bitboard unsafe = ahead & (frame.allAttacks[enemy] | position.pieces[enemy][0]);
  Bitboard sliders = rearFile & (position.pieces[enemy][Rook] | position.pieces[enemy][Queen]);
  if (sliders) {
    // An enemy rook or queen behind the pawn, with a clear line to it, bears
    // on every square the pawn still has to cross.
    Square f = lowestSquare(sliders);
    if ((between[s][f] & occupied & ~sliders) == 0) unsafe = ahead;
  }

  Bitboard pawnBit = squareBit(s);
  Bitboard supporters = besideOnRank(pawnBit) | (colour == White ? pawnBit >> 8 : pawnBit << 8);
  if (supporters & position.pieces[colour][Pawn]) add(frame, colour, passerSupported[n]);

  if (unsafe == 0)
    add(frame, colour, defended == ahead ? passerFreeDefended[n] : passerFree[n]);
  else
    add(frame, colour, (unsafe & ~defended) == 0 ? passerGuardedDefended[n] : passerGuarded[n]);

  if ((ahead & position.pieces[colour][0]) == 0) add(frame, colour, passerClearPath[n]);
}

void allPassedPawnTerms(const Position& position, EvalFrame& frame, const uint8_t passed[2][8]) {
  for (int colour = 0; colour < 2; ++colour) {
    for (int i = 0; i < 8 && passed[colour][i] != 0; ++i) passedPawnTerms(position, frame, colour, passed[colour][i]);
  }
}
