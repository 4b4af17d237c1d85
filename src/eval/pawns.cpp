#include "eval/pawns.h"

#include <cstring>

#include "base/score_pair.h"
#include "eval/geometry.h"
#include "eval/king_safety.h"
#include "eval/tables.h"


PawnWords pawnWords(int colour, Bitboard own, Bitboard enemy) {
  PawnWords w;
  int enemyColour = colour ^ 1;
  w.colour = colour;
  w.own = own;
  w.enemy = enemy;
  Bitboard ownFiles = fileFill(own);
  w.occupiedFiles = static_cast<int>(ownFiles & 0xff);
  w.ownAttacks = pawnAttackSet(colour, own);
  w.enemyAttacks = pawnAttackSet(enemyColour, enemy);
  w.link = besideOnRank(own) | w.ownAttacks;
  w.lonely = ~besideOnRank(ownFiles);
  w.enemyFiles = fileFill(enemy);
  w.frontFree = ~fillBehind(colour, stepBehind(colour, own) | enemy);
  w.neverAttacked = neverAttacked(colour, w.ownAttacks);
  // The front pawn of a file has no friend ahead; a file holds two or more
  // when its front pawn also has a friend behind.
  Bitboard front = own & ~fillBehind(colour, stepBehind(colour, own));
  Bitboard hasFriendBehind = own & fillAhead(colour, stepAhead(colour, own));
  w.doubledFront = front & hasFriendBehind;
  w.connectedFront = w.ownAttacks & own & w.doubledFront;
  w.connectedOther = w.link & own & ~w.doubledFront;
  w.passed = own & w.frontFree & neverAttacked(enemyColour, w.enemyAttacks);
  return w;
}

ScorePair islandTerm(const PawnWords& w) { return pawnIslands[w.occupiedFiles]; }

ScorePair doubledTerm(const PawnWords& w) {
  return doubledPawn[popCount(w.own) - popCount(static_cast<Bitboard>(w.occupiedFiles))];
}

ScorePair defendedSquaresTerm(const PawnWords& w) { return defendedSquares[popCount(w.ownAttacks)]; }

ScorePair isolatedTerm(const PawnWords& w) {
  Bitboard isolated = w.own & w.lonely;
  ScorePair sum =
      scorePairAdd(isolatedClosed[popCount(isolated & w.enemyFiles)], isolatedOpen[popCount(isolated & ~w.enemyFiles)]);
  // Doubled and isolated at once is worse than the two charges added.
  Bitboard doubled = w.doubledFront & w.lonely;
  if (doubled) {
    sum = scorePairAdd(sum, isolatedDoubledClosed[popCount(doubled & w.enemyFiles)]);
    sum = scorePairAdd(sum, isolatedDoubledOpen[popCount(doubled & ~w.enemyFiles)]);
  }
  return sum;
}

ScorePair connectedTerm(const PawnWords& w) {
  return scorePairAdd(connectedPawn[popCount(w.connectedFront)], connectedPawn[popCount(w.connectedOther)]);
}

ScorePair backwardTerm(const PawnWords& w) {
  // A pawn whose friends on the adjacent files have all gone past it can
  // never be protected where it stands; it only suffers if its advance is hindered.
  Bitboard backward = w.own & ~w.lonely & w.neverAttacked & ~w.connectedFront & ~w.connectedOther;
  Bitboard stops = stepAhead(w.colour, backward);
  ScorePair sum = backwardPawn[popCount(stops & (w.own | w.enemy | w.enemyAttacks))];
  return scorePairAdd(sum, backwardExposed[popCount(stops & w.enemyAttacks & w.frontFree)]);
}

ScorePair candidateTerm(const PawnWords& w) {
  ScorePair sum = 0;
  for (Bitboard b = w.own & w.link & w.frontFree & ~w.passed; b;) {
    Square s = popLowest(b);
    if (popCount(w.enemy & sentrySpan[w.colour][s]) < 2) sum = scorePairAdd(sum, candidatePawn[w.colour][s]);
  }
  return sum;
}

ScorePair pawnStructure(const PawnWords& w, uint8_t passed[8]) {
  ScorePair sum = islandTerm(w);
  sum = scorePairAdd(sum, doubledTerm(w));
  sum = scorePairAdd(sum, defendedSquaresTerm(w));
  sum = scorePairAdd(sum, isolatedTerm(w));
  sum = scorePairAdd(sum, connectedTerm(w));
  sum = scorePairAdd(sum, backwardTerm(w));
  int count = 0;
  for (Bitboard b = w.passed; b;) passed[count++] = static_cast<uint8_t>(popLowest(b));
  return scorePairAdd(sum, candidateTerm(w));
}

void computeEtableEntry(const Position& position, EtableEntry& entry) {
  std::memset(entry.passed, 0, sizeof entry.passed);
  entry.key = position.pawnKey;
  ScorePair sum[2];
  for (int colour = 0; colour < 2; ++colour) {
    PawnWords w = pawnWords(colour, position.pieces[colour][Pawn], position.pieces[colour ^ 1][Pawn]);
    sum[colour] = pawnStructure(w, entry.passed[colour]);
  }
  for (int colour = 0; colour < 2; ++colour) sum[colour] = scorePairAdd(sum[colour], kingPawnTerms(position, colour));
  entry.score = scorePairSub(sum[White], sum[Black]);
}
