#include "eval/pawns.h"

#include <gtest/gtest.h>

#include <cstring>

#include "../support/board_builder.h"
#include "../support/evaluation_setup.h"
#include "eval/score_pair.h"

namespace {

using testboard::fromFen;
using testboard::sq;

void expectPair(ScorePair actual, int32_t open, int32_t end) {
  EXPECT_EQ(scorePairOpen(actual), open);
  EXPECT_EQ(scorePairEnd(actual), end);
}

PawnWords wordsOf(const char* fen, int colour) {
  Position p = fromFen(fen);
  return pawnWords(colour, p.pieces[colour][Pawn], p.pieces[colour ^ 1][Pawn]);
}

TEST(PawnStructure, TripledRookPawnsOnAnOpenFile) {
  evaltest::useEvaluationTables();
  PawnWords w = wordsOf("4k3/8/8/8/P7/P7/P7/4K3 w", White);
  EXPECT_EQ(islandTerm(w), 0u);
  expectPair(doubledTerm(w), -100, -160);
  expectPair(defendedSquaresTerm(w), 30, 30);  // b3, b4, b5
  // Three open isolated pawns, and the front one doubled and isolated too.
  expectPair(isolatedTerm(w), -420 - 30, -510 - 40);
  EXPECT_EQ(connectedTerm(w), 0u);
  EXPECT_EQ(backwardTerm(w), 0u);
  EXPECT_EQ(w.passed, squareBit(sq("a4")));
  uint8_t passed[8] = {};
  expectPair(pawnStructure(w, passed), -520, -680);
  EXPECT_EQ(passed[0], sq("a4"));
  EXPECT_EQ(passed[1], 0);
}

TEST(PawnStructure, FourIslandsAllIsolated) {
  evaltest::useEvaluationTables();
  PawnWords w = wordsOf("4k3/8/8/8/8/8/P1P1P1P1/4K3 w", White);
  expectPair(islandTerm(w), -90, -180);
  expectPair(isolatedTerm(w), -560, -680);
}

TEST(PawnStructure, BackwardPawnHeldBackByAnEnemyPawn) {
  evaltest::useEvaluationTables();
  // d2's only neighbour has gone on to e4; c4 attacks the stop square d3,
  // and nothing stands in front of it on the d-file.
  expectPair(backwardTerm(wordsOf("4k3/8/8/8/2p1P3/8/3P4/4K3 w", White)), -35 - 60, -45 - 84);
  // A pawn standing on the stop square hinders it without exposing it.
  expectPair(backwardTerm(wordsOf("4k3/8/8/8/4P3/3p4/3P4/4K3 w", White)), -35, -45);
  // Free to advance: not charged.
  EXPECT_EQ(backwardTerm(wordsOf("4k3/8/8/3p4/4P3/8/3P4/4K3 w", White)), 0u);
  // d4 is protected by c3, so e6 attacking its stop square costs nothing;
  // c3 itself is left behind, but its way is free.
  EXPECT_EQ(backwardTerm(wordsOf("4k3/8/4p3/8/3P4/2P5/8/4K3 w", White)), 0u);
}

TEST(PawnStructure, CandidateNeedsFewerThanTwoSentries) {
  evaltest::useEvaluationTables();
  PawnWords held = wordsOf("4k3/p1p5/8/1P6/P7/8/8/4K3 w", White);
  EXPECT_EQ(held.passed, 0u);
  EXPECT_EQ(candidateTerm(held), 0u);
  PawnWords candidate = wordsOf("4k3/p7/8/1P6/P7/8/8/4K3 w", White);
  EXPECT_EQ(candidate.passed, 0u);
  expectPair(candidateTerm(candidate), 190, 332);
}

}  // namespace
