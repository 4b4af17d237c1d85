#include "eval/tables.h"

#include <gtest/gtest.h>

#include "../support/evaluation_setup.h"
#include "eval/score_pair.h"

namespace {

void expectPair(ScorePair actual, int32_t open, int32_t end) {
  EXPECT_EQ(scorePairOpen(actual), open);
  EXPECT_EQ(scorePairEnd(actual), end);
}

TEST(EvaluationTables, DangerCurveSamples) {
  evaltest::useEvaluationTables();
  const int rows[] = {0, 1, 2, 3, 4, 5, 8, 10, 16, 24, 32, 48, 64, 96, 127};
  const int values[] = {0, 0, 1, 4, 10, 16, 45, 70, 160, 298, 439, 704, 932, 1288, 1538};
  for (int i = 0; i < 15; ++i) EXPECT_EQ(dangerCurve[rows[i]], values[i]) << "row " << rows[i];
}

TEST(EvaluationTables, TempoAndPieceValuesByPhase) {
  evaltest::useEvaluationTables();
  EXPECT_EQ(tempoBonus[0], 40);
  EXPECT_EQ(tempoBonus[48], 70);
  EXPECT_EQ(tempoBonus[96], 100);
  const int32_t row0[7] = {0, 105, 390, 425, 620, 1180, 10000};
  const int32_t row48[7] = {0, 92, 370, 400, 560, 1080, 10000};
  const int32_t row96[7] = {0, 80, 350, 375, 500, 980, 10000};
  for (int piece = 0; piece < 7; ++piece) {
    EXPECT_EQ(phasePieceValues[0][piece], row0[piece]);
    EXPECT_EQ(phasePieceValues[48][piece], row48[piece]);
    EXPECT_EQ(phasePieceValues[96][piece], row96[piece]);
  }
}

TEST(EvaluationTables, CountTablesScaleByCount) {
  evaltest::useEvaluationTables();
  expectPair(knightPawns[0], -125, -125);
  expectPair(knightPawns[5], 0, 0);
  expectPair(knightPawns[8], 75, 75);
  expectPair(rookPawns[0], 125, 125);
  expectPair(rookPawns[8], -75, -75);
  expectPair(passerSupported[0], -20, -40);
  expectPair(doubledPawn[3], -150, -240);
  expectPair(isolatedOpen[2], -280, -340);
  expectPair(outposts[17], 510, 510);
  EXPECT_EQ(threats[0], 0u);
  expectPair(threats[1], 100, 120);
  expectPair(threats[2], 400, 480);
  expectPair(threats[3], 500, 600);
  expectPair(threats[4], 600, 720);
}

TEST(EvaluationTables, PassedPawnRowsByIndex) {
  evaltest::useEvaluationTables();
  expectPair(passerRank[0], 0, 35);
  expectPair(passerRank[1], 0, 70);
  expectPair(passerRank[2], 90, 175);
  expectPair(passerRank[5], 900, 910);
  expectPair(passerSupported[5], 80, 160);
  expectPair(passerFreeDefended[3], 60, 360);
  expectPair(passerFree[4], 108, 648);
  expectPair(passerGuardedDefended[5], 160, 960);
  expectPair(passerGuarded[2], 10, 60);
  expectPair(passerClearPath[5], 20, 80);
}

TEST(EvaluationTables, PawnIslandsCountRunsOfFiles) {
  evaltest::useEvaluationTables();
  EXPECT_EQ(pawnIslands[0], 0u);
  EXPECT_EQ(pawnIslands[0xff], 0u);
  EXPECT_EQ(pawnIslands[0x38], 0u);          // d, e, f
  expectPair(pawnIslands[0x55], -90, -180);  // a, c, e, g
  expectPair(pawnIslands[0x85], -60, -120);  // a, c, h
  expectPair(pawnIslands[0x81], -30, -60);   // a, h
}

TEST(EvaluationTables, CandidatePawnsAreThreeQuartersOfTheBase) {
  evaltest::useEvaluationTables();
  const int32_t open[8] = {0, 10, 10, 70, 190, 370, 610, 0};
  const int32_t end[8] = {0, 17, 17, 122, 332, 647, 1067, 0};
  for (int r = 0; r < 8; ++r) {
    expectPair(candidatePawn[White][r * 8 + 3], open[r], end[r]);
    expectPair(candidatePawn[Black][(7 - r) * 8 + 5], open[r], end[r]);
  }
}

}  // namespace
