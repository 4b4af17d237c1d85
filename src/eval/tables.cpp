#include "eval/tables.h"

#include "base/score_pair.h"

ScorePair doubledPawn[9];
ScorePair connectedPawn[9];
ScorePair isolatedClosed[9];
ScorePair isolatedOpen[9];
ScorePair isolatedDoubledClosed[9];
ScorePair isolatedDoubledOpen[9];
ScorePair backwardPawn[9];
ScorePair backwardExposed[9];
ScorePair knightPawns[9];
ScorePair rookPawns[9];
ScorePair bishopSameColourPawns[9];
ScorePair bishopOtherColourPawns[9];
ScorePair pawnBlockade[9];
ScorePair blockedEnemyPawns[9];
ScorePair minorBehindPawn[9];
ScorePair passerRank[9];
ScorePair passerSupported[9];
ScorePair passerFreeDefended[9];
ScorePair passerFree[9];
ScorePair passerGuardedDefended[9];
ScorePair passerGuarded[9];
ScorePair passerClearPath[9];

ScorePair defendedSquares[18];
ScorePair outposts[18];
ScorePair threats[18];

ScorePair pawnIslands[256];

int32_t dangerCurve[128];
ScorePair kingDanger[128];
ScorePair pawnShelter[8];
ScorePair pawnStorm[8];

int32_t tempoBonus[97];

ScorePair candidatePawn[2][64];

int32_t phasePieceValues[97][7];

namespace {

constexpr double oneNinetySixth = 0.010416666666666666;

constexpr int shelterSource[8] = {0, 27, 22, 10, 5, 0, 0, 0};
constexpr int stormSource[8] = {6, 0, 0, 6, 13, 45, 0, 0};

// A passed pawn's worth by rank from its own side; candidates get three quarters.
constexpr int32_t passerBase[8][2] = {{0, 0},     {14, 23},   {14, 23},    {94, 163},
                                      {254, 443}, {494, 863}, {814, 1423}, {0, 0}};

ScorePair times(int32_t open, int32_t end, int32_t count) {
  return scorePairMul(makeScorePair(open, end), makeScorePair(count, count));
}

void fillCountRow(ScorePair* table, int rows, int32_t open, int32_t end) {
  for (int i = 0; i < rows; ++i) table[i] = times(open, end, i);
}

int countRuns(int byte) {
  int runs = 0;
  for (int f = 0; f < 8; ++f)
    if ((byte >> f & 1) && (f == 0 || !(byte >> (f - 1) & 1))) ++runs;
  return runs;
}

void buildKingDangerTables(int32_t ksa) {
  dangerCurve[0] = 0;
  for (int i = 1; i < 128; ++i) {
    double x = (i - 1) * 0.02;
    double y = x / (x + 1.0);
    dangerCurve[i] = static_cast<int32_t>(y * y * 3000.0 + 0.5);
  }
  for (int byte = 0; byte < 256; ++byte) {
    int extra = byte == 0 ? 0 : countRuns(byte) - 1;
    pawnIslands[byte] = makeScorePair(-30 * extra, -60 * extra);
  }
  for (int i = 0; i < 128; ++i)
    kingDanger[i] = scorePairMul(makeScorePair(dangerCurve[i], dangerCurve[i]), makeScorePair(ksa, 0));
}

void buildCountTables() {
  fillCountRow(doubledPawn, 9, -50, -80);
  fillCountRow(connectedPawn, 9, 20, 0);
  fillCountRow(isolatedClosed, 9, -35, -35);
  fillCountRow(isolatedOpen, 9, -140, -170);
  fillCountRow(isolatedDoubledClosed, 9, -10, -15);
  fillCountRow(isolatedDoubledOpen, 9, -30, -40);
  fillCountRow(backwardPawn, 9, -35, -45);
  fillCountRow(backwardExposed, 9, -60, -84);
  fillCountRow(bishopSameColourPawns, 9, -20, -20);
  fillCountRow(bishopOtherColourPawns, 9, 20, 20);
  fillCountRow(pawnBlockade, 9, 20, 40);
  fillCountRow(blockedEnemyPawns, 9, 36, 115);
  fillCountRow(minorBehindPawn, 9, 36, 0);
  for (int i = 0; i < 9; ++i) {
    knightPawns[i] = times(25, 25, i - 5);
    rookPawns[i] = times(-25, -25, i - 5);
    passerRank[i] = makeScorePair(45 * i * (i - 1), 35 * (i * i + 1));
    passerSupported[i] = times(20, 40, i - 1);
    int square = i * (i - 1);
    passerFreeDefended[i] = times(10, 60, square);
    passerFree[i] = times(9, 54, square);
    passerGuardedDefended[i] = times(8, 48, square);
    passerGuarded[i] = times(5, 30, square);
    passerClearPath[i] = times(1, 4, square);
  }

  fillCountRow(defendedSquares, 18, 10, 10);
  fillCountRow(outposts, 18, 30, 30);
  // A single threat is a nuisance; two at once usually win something.
  for (int i = 0; i < 18; ++i) threats[i] = times(100, 120, i < 2 ? i : i + 2);
}

void buildTempoShelterStorm(int32_t ksa) {
  for (int p = 0; p <= 96; ++p) tempoBonus[p] = static_cast<int32_t>((3840 + 60 * p) * oneNinetySixth + 0.5);
  for (int r = 0; r < 8; ++r) {
    pawnShelter[r] = makeScorePair(2 * ksa * shelterSource[r], 0);
    pawnStorm[r] = makeScorePair(2 * ksa * stormSource[r], 0);
  }
}

void buildCandidatePawns() {
  for (int colour = 0; colour < 2; ++colour) {
    for (Square s = 0; s < 64; ++s) {
      int r = colour == White ? rankOfSquare(s) : 7 - rankOfSquare(s);
      candidatePawn[colour][s] = makeScorePair(passerBase[r][0] * 3 / 4, passerBase[r][1] * 3 / 4);
    }
  }
}

void buildPhasePieceValues() {
  for (int p = 0; p <= 96; ++p) {
    phasePieceValues[p][NoPiece] = 0;
    phasePieceValues[p][Pawn] = (100800 - 250 * p) / 960;
    phasePieceValues[p][Knight] = (374400 - 400 * p) / 960;
    phasePieceValues[p][Bishop] = (408000 - 500 * p) / 960;
    phasePieceValues[p][Rook] = (595200 - 1200 * p) / 960;
    phasePieceValues[p][Queen] = (1132800 - 2000 * p) / 960;
    phasePieceValues[p][King] = 10000;
  }
}

}  // namespace

void buildWeightTables(int32_t kingSafetyAggressiveness) {
  buildKingDangerTables(kingSafetyAggressiveness);
  buildCountTables();
  buildTempoShelterStorm(kingSafetyAggressiveness);
  buildCandidatePawns();
  buildPhasePieceValues();
}
