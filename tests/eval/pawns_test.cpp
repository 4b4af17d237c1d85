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

TEST(PawnStructure, NoPawnsNoTerms) {
  evaltest::useEvaluationTables();
  uint8_t passed[8] = {};
  EXPECT_EQ(pawnStructure(wordsOf("4k3/8/8/8/8/8/8/4K3 w", White), passed), 0u);
  EXPECT_EQ(passed[0], 0);
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

TEST(PawnStructure, AnEnemyPawnOnTheFileClosesIt) {
  evaltest::useEvaluationTables();
  PawnWords w = wordsOf("4k3/p7/8/8/P7/P7/P7/4K3 w", White);
  expectPair(isolatedTerm(w), -105 - 10, -105 - 15);
  EXPECT_EQ(w.passed, 0u);
  uint8_t passed[8] = {};
  expectPair(pawnStructure(w, passed), -185, -250);
  EXPECT_EQ(passed[0], 0);
}

TEST(PawnStructure, ThreeAbreastAreConnected) {
  evaltest::useEvaluationTables();
  PawnWords w = wordsOf("4k3/8/8/8/8/8/2PPP3/4K3 w", White);
  EXPECT_EQ(islandTerm(w), 0u);
  EXPECT_EQ(doubledTerm(w), 0u);
  expectPair(defendedSquaresTerm(w), 50, 50);
  EXPECT_EQ(isolatedTerm(w), 0u);
  expectPair(connectedTerm(w), 60, 0);
  EXPECT_EQ(backwardTerm(w), 0u);
  EXPECT_EQ(candidateTerm(w), 0u);  // all three are passed
  EXPECT_EQ(popCount(w.passed), 3);
}

TEST(PawnStructure, FourIslandsAllIsolated) {
  evaltest::useEvaluationTables();
  PawnWords w = wordsOf("4k3/8/8/8/8/8/P1P1P1P1/4K3 w", White);
  expectPair(islandTerm(w), -90, -180);
  expectPair(isolatedTerm(w), -560, -680);
}

TEST(PawnStructure, DoubledFrontCountsAsConnectedOnlyWhenProtected) {
  evaltest::useEvaluationTables();
  // d3 is the front of the doubled d-file and c2 protects it; c2 and d2
  // stand side by side.
  PawnWords protectedFront = wordsOf("4k3/8/8/8/8/3P4/2PP4/4K3 w", White);
  EXPECT_EQ(protectedFront.connectedFront, squareBit(sq("d3")));
  expectPair(connectedTerm(protectedFront), 60, 0);
  // With c3 instead, d3 only has a friend beside it and doesn't count; d2
  // has nobody beside it and isn't protected.
  PawnWords besideFront = wordsOf("4k3/8/8/8/8/2PP4/3P4/4K3 w", White);
  EXPECT_EQ(besideFront.connectedFront, 0u);
  EXPECT_EQ(besideFront.connectedOther, squareBit(sq("c3")));
  expectPair(connectedTerm(besideFront), 20, 0);
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

TEST(PawnStructure, BlackPawnsMirrorWhite) {
  evaltest::useEvaluationTables();
  PawnWords w = wordsOf("4k3/3p4/8/2P1p3/8/8/8/4K3 b", Black);
  expectPair(backwardTerm(w), -35 - 60, -45 - 84);
  PawnWords tripled = wordsOf("4k3/p7/p7/p7/8/8/8/4K3 b", Black);
  EXPECT_EQ(tripled.passed, squareBit(sq("a5")));
  expectPair(isolatedTerm(tripled), -450, -550);
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

TEST(PawnStructure, EntryHoldsBothPassedListsAndTheDifference) {
  evaltest::useEvaluationTables(0);
  Position p = fromFen("4k3/8/8/8/P7/P7/P7/4K3 w");
  p.pawnKey = 0x1234;
  EtableEntry entry;
  std::memset(&entry, 0xff, sizeof entry);
  computeEtableEntry(p, entry);
  EXPECT_EQ(entry.key, 0x1234u);
  EXPECT_EQ(entry.passed[White][0], sq("a4"));
  EXPECT_EQ(entry.passed[White][1], 0);
  EXPECT_EQ(entry.passed[Black][0], 0);
  // Without king safety the row is the white pawns' terms alone.
  expectPair(entry.score, -520, -680);
  evaltest::useEvaluationTables();
}

}  // namespace
