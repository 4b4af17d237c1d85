#include "eval/pieces.h"

#include "base/score_pair.h"
#include "board/attacks.h"
#include "eval/geometry.h"
#include "eval/king_safety.h"
#include "eval/pawns.h"
#include "eval/tables.h"

constexpr ScorePair knightMobility[16] = {
    makeScorePair(-548, -470), makeScorePair(-452, -387), makeScorePair(-373, -320), makeScorePair(-305, -261),
    makeScorePair(-244, -209), makeScorePair(-188, -162), makeScorePair(-137, -117), makeScorePair(-88, -76),
    makeScorePair(-43, -37),   makeScorePair(0, 0),       makeScorePair(41, 35),     makeScorePair(80, 68),
    makeScorePair(118, 101),   makeScorePair(154, 132),   makeScorePair(190, 162),   makeScorePair(224, 191),
};

constexpr ScorePair bishopMobility[16] = {
    makeScorePair(-443, -443), makeScorePair(-350, -350), makeScorePair(-274, -274), makeScorePair(-208, -208),
    makeScorePair(-150, -150), makeScorePair(-96, -96),   makeScorePair(-46, -46),   makeScorePair(0, 0),
    makeScorePair(44, 44),     makeScorePair(85, 85),     makeScorePair(125, 125),   makeScorePair(163, 163),
    makeScorePair(199, 199),   makeScorePair(234, 234),   makeScorePair(268, 268),   makeScorePair(301, 301),
};

constexpr ScorePair rookMobility[16] = {
    makeScorePair(-206, -412), makeScorePair(-167, -333), makeScorePair(-135, -269), makeScorePair(-107, -214),
    makeScorePair(-82, -164),  makeScorePair(-60, -119),  makeScorePair(-39, -77),   makeScorePair(-19, -37),
    makeScorePair(0, 0),       makeScorePair(17, 35),     makeScorePair(34, 68),     makeScorePair(50, 100),
    makeScorePair(65, 131),    makeScorePair(80, 161),    makeScorePair(94, 189),    makeScorePair(108, 217),
};

constexpr ScorePair queenMobility[32] = {
    makeScorePair(-320, -469), makeScorePair(-278, -408), makeScorePair(-244, -358), makeScorePair(-215, -314),
    makeScorePair(-188, -275), makeScorePair(-164, -240), makeScorePair(-142, -207), makeScorePair(-121, -177),
    makeScorePair(-101, -148), makeScorePair(-82, -120),  makeScorePair(-65, -94),   makeScorePair(-48, -69),
    makeScorePair(-31, -45),   makeScorePair(-15, -22),   makeScorePair(0, 0),       makeScorePair(15, 22),
    makeScorePair(29, 43),     makeScorePair(43, 63),     makeScorePair(56, 83),     makeScorePair(70, 103),
    makeScorePair(82, 121),    makeScorePair(95, 140),    makeScorePair(107, 158),   makeScorePair(119, 176),
    makeScorePair(131, 193),   makeScorePair(143, 210),   makeScorePair(154, 227),   makeScorePair(165, 243),
    makeScorePair(176, 259),   makeScorePair(187, 275),   makeScorePair(198, 290),   makeScorePair(208, 306),
};

namespace {

void add(EvalFrame& frame, int colour, ScorePair value) {
  frame.score[colour] = scorePairAdd(frame.score[colour], value);
}

void knightPass(const Position& position, EvalFrame& frame, int colour, Bitboard area, KingAttack& attack) {
  for (Bitboard b = position.pieces[colour][Knight]; b;) {
    Square s = popLowest(b);
    Bitboard a = knightAttacks[s];
    // A knight's squares towards the enemy count double.
    int m = popCount(a & area) + popCount(a & area & forwardRanks[colour][s]);
    add(frame, colour, scorePairAdd(knightMobility[m], knightPawns[frame.pawnCount[colour]]));
    frame.materialTally[colour] += 24;
    frame.pieceCount[colour] += 1;
    knightAttack(attack, a);
  }
}

void bishopPass(const Position& position, EvalFrame& frame, int colour, Bitboard area, KingAttack& attack) {
  int enemy = colour ^ 1;
  Bitboard occupied = occupiedSquares(position);
  Bitboard ownPawns = position.pieces[colour][Pawn];
  for (Bitboard b = position.pieces[colour][Bishop]; b;) {
    Square s = popLowest(b);
    Bitboard a = bishopAttacks(s, occupied);
    frame.bishopAttackMap[colour] |= a;
    add(frame, colour, bishopMobility[popCount(a & area)]);
    // Own pawns on the bishop's colour block it; those on the other colour
    // cover what it can't.
    int k = squareColour[s];
    add(frame, colour, bishopSameColourPawns[popCount(ownPawns & colourSquares[k])]);
    add(frame, colour, bishopOtherColourPawns[popCount(ownPawns & colourSquares[k ^ 1])]);
    if (knightGap[s] & ownHalf[enemy] & position.pieces[enemy][Knight]) add(frame, colour, makeScorePair(15, 25));
    frame.materialTally[colour] += 28;
    frame.pieceCount[colour] += 1;
    bishopAttack(attack, s, a);
  }
}

void rookPass(const Position& position, EvalFrame& frame, int colour, Bitboard area, KingAttack& attack) {
  int enemy = colour ^ 1;
  Bitboard occupied = occupiedSquares(position);
  Bitboard ownPawns = position.pieces[colour][Pawn];
  Bitboard enemyPawns = position.pieces[enemy][Pawn];
  bool enemyKingBehind = (position.pieces[enemy][King] & lastRank[colour]) != 0;
  for (Bitboard b = position.pieces[colour][Rook]; b;) {
    Square s = popLowest(b);
    Bitboard a = rookAttacks(s, occupied);
    frame.rookAttackMap[colour] |= a;
    if (enemyKingBehind && (squareBit(s) & seventhRank[colour])) add(frame, colour, makeScorePair(65, 175));
    add(frame, colour, rookPawns[frame.pawnCount[colour]]);
    if ((ownPawns & fileOf[s]) == 0) {
      Bitboard theirs = enemyPawns & fileOf[s];
      if (theirs == 0)
        add(frame, colour, makeScorePair(180, 180));
      else if (theirs & frame.pawnAttacks[enemy])
        add(frame, colour, makeScorePair(30, 50));
      else
        add(frame, colour, makeScorePair(70, 90));
    }
    add(frame, colour, rookMobility[popCount(a & area)]);
    frame.materialTally[colour] += 40;
    frame.pieceCount[colour] += 1;
    rookAttack(attack, s, a);
  }
}

void queenPass(const Position& position, EvalFrame& frame, int colour, Bitboard area, KingAttack& attack) {
  Bitboard occupied = occupiedSquares(position);
  for (Bitboard b = position.pieces[colour][Queen]; b;) {
    Square s = popLowest(b);
    Bitboard a = bishopAttacks(s, occupied) | rookAttacks(s, occupied);
    frame.queenAttackMap[colour] |= a;
    add(frame, colour, queenMobility[popCount(a & area)]);
    frame.materialTally[colour] += 72;
    frame.pieceCount[colour] += 1;
    queenAttack(attack, position, s, a);
  }
}

}  // namespace

Bitboard mobilityArea(const Position& position, const EvalFrame& frame, int colour) {
  int enemy = colour ^ 1;
  Bitboard enemyPieces = position.pieces[enemy][0] & ~position.pieces[enemy][Pawn];
  Bitboard excluded = frame.pawnAttacks[enemy] & ~enemyPieces;
  return ~position.pieces[colour][Pawn] & ~excluded;
}

int pieceLoops(const Position& position, EvalFrame& frame, int colour) {
  Bitboard area = mobilityArea(position, frame, colour);
  KingAttack attack = startKingAttack(position, frame, colour);
  knightPass(position, frame, colour, area, attack);
  bishopPass(position, frame, colour, area, attack);
  rookPass(position, frame, colour, area, attack);
  queenPass(position, frame, colour, area, attack);
  // Rooks and queens do much the same job; a second one adds less.
  int rooks = popCount(position.pieces[colour][Rook]);
  if (rooks >= 2) add(frame, colour, makeScorePair(-125, -175));
  if (rooks >= 1 && position.pieces[colour][Queen]) add(frame, colour, makeScorePair(-80, -120));
  return attack.count;
}

void threatTerms(const Position& position, EvalFrame& frame, int colour) {
  int enemy = colour ^ 1;
  const Bitboard* theirs = position.pieces[enemy];
  Bitboard loose = theirs[0] & ~(frame.allAttacks[enemy] | frame.kingRing[enemy]);
  Bitboard minors = frame.knightAttackMap[colour] | frame.bishopAttackMap[colour];
  Bitboard targets =
      (frame.pawnAttacks[colour] & (theirs[0] & ~theirs[Pawn])) | (minors & (theirs[Rook] | theirs[Queen])) |
      (frame.rookAttackMap[colour] & theirs[Queen]) | (loose & frame.bishopAttackMap[colour] & ~theirs[Bishop]) |
      (loose & frame.knightAttackMap[colour] & ~theirs[Rook]) | (loose & frame.rookAttackMap[colour] & ~theirs[Rook]) |
      (loose & frame.queenAttackMap[colour] & ~theirs[Queen]) | (loose & frame.kingRing[colour]);
  add(frame, colour, threats[popCount(targets)]);
}

void lateTerms(const Position& position, EvalFrame& frame, int colour) {
  int enemy = colour ^ 1;
  const Bitboard* own = position.pieces[colour];
  Bitboard enemyPawns = position.pieces[enemy][Pawn];
  Bitboard safeFromPawns = neverAttacked(enemy, frame.pawnAttacks[enemy]);
  Bitboard enemyStops = stepAhead(enemy, enemyPawns);
  add(frame, colour, pawnBlockade[popCount(own[Knight] & enemyStops & safeFromPawns)]);
  add(frame, colour, outposts[popCount((own[Knight] | own[Bishop] | own[Rook]) & safeFromPawns)]);
  Bitboard blocked = enemyPawns & stepBehind(enemy, occupiedSquares(position));
  add(frame, colour, blockedEnemyPawns[popCount(blocked)]);
  add(frame, colour, minorBehindPawn[popCount((own[Knight] | own[Bishop]) & stepBehind(colour, own[Pawn]))]);
  if (own[Bishop] & stepAhead(colour, own[King])) add(frame, colour, makeScorePair(55, 0));
  if (popCount(own[Bishop]) >= 2) add(frame, colour, makeScorePair(300, 500));
}

void pieceCountTerm(EvalFrame& frame) {
  if (frame.pieceCount[White] > frame.pieceCount[Black] + 1)
    add(frame, White, makeScorePair(300, 300));
  else if (frame.pieceCount[Black] > frame.pieceCount[White] + 1)
    add(frame, Black, makeScorePair(300, 300));
}
