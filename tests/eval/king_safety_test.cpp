#include "eval/king_safety.h"

#include <gtest/gtest.h>

#include "../support/board_builder.h"
#include "../support/evaluation_setup.h"
#include "eval/eval_frame.h"
#include "eval/pieces.h"
#include "eval/score_pair.h"

namespace {

using testboard::fromFen;
using testboard::sq;

void expectPair(ScorePair actual, int32_t open, int32_t end) {
  EXPECT_EQ(scorePairOpen(actual), open);
  EXPECT_EQ(scorePairEnd(actual), end);
}

Bitboard pawnsOf(const char* fen, int colour) { return fromFen(fen).pieces[colour][Pawn]; }

TEST(KingSafety, CastlingRightsByMovedBits) {
  Position p = fromFen("r3k2r/8/8/8/8/8/8/R3K2R w");
  p.moved = 0x6E0000000000006EULL;
  expectPair(castlingTerms(p, White), 210, 0);
  expectPair(castlingTerms(p, Black), 210, 0);
  p.moved |= squareBit(sq("h1")) | squareBit(sq("a8"));
  expectPair(castlingTerms(p, White), 60, 0);
  expectPair(castlingTerms(p, Black), 150, 0);
  p.moved |= squareBit(sq("e1"));
  EXPECT_EQ(castlingTerms(p, White), 0u);
}

TEST(KingSafety, ShelterDoublesThePawnOnTheKingsFile) {
  evaltest::useEvaluationTables();
  Bitboard pawns = pawnsOf("6k1/8/8/8/8/8/5PPP/6K1 w", White);
  expectPair(kingShelter(White, pawns, sq("g1")), 1296, 0);
  expectPair(shutInKing(White, pawns, sq("g1")), -100, -180);
  // The same from black's side.
  Bitboard blackPawns = pawnsOf("6k1/5ppp/8/8/8/8/8/6K1 b", Black);
  expectPair(kingShelter(Black, blackPawns, sq("g8")), 1296, 0);
  expectPair(shutInKing(Black, blackPawns, sq("g8")), -100, -180);
}

TEST(KingSafety, HomeKingTakesTheBetterOfItsSquareAndTheCastledOne) {
  evaltest::useEvaluationTables();
  Bitboard pawns = pawnsOf("4k3/8/8/8/8/8/5PPP/4K3 w", White);
  expectPair(kingShelter(White, pawns, sq("e1")), 1296, 0);
  EXPECT_EQ(kingShelter(White, pawns, sq("d1")), 0u);
  // Queen-side pawns: no alternative is looked at.
  Bitboard queenSide = pawnsOf("4k3/8/8/8/8/8/PPP5/4K3 w", White);
  expectPair(kingShelter(White, queenSide, sq("b1")), 1296, 0);
  expectPair(kingShelter(White, queenSide, sq("c1")), 324 + 648, 0);
}

TEST(KingSafety, EdgeKingsUseTheNearestThreeFiles) {
  evaltest::useEvaluationTables();
  Bitboard pawns = pawnsOf("4k3/8/8/8/8/1P6/P1P5/4K3 w", White);
  expectPair(kingShelter(White, pawns, sq("b1")), 324 + 528 + 324, 0);
  expectPair(kingShelter(White, pawns, sq("a1")), 648 + 264 + 324, 0);
  // A king on the edge has two squares ahead to be shut in by.
  expectPair(shutInKing(White, pawnsOf("4k3/8/8/8/8/8/PP6/K7 w", White), sq("a1")), -100, -180);
  EXPECT_EQ(shutInKing(White, pawnsOf("4k3/8/8/8/8/8/P7/K7 w", White), sq("a1")), 0u);
  EXPECT_EQ(shutInKing(White, pawnsOf("4k3/8/8/8/8/5PPP/8/6K1 w", White), sq("g1")), 0u);
}

TEST(KingSafety, StormCountsPawnsInTheEnemyKingsBand) {
  evaltest::useEvaluationTables();
  Bitboard pawns = pawnsOf("6k1/8/6PP/8/8/8/8/K7 w", White);
  expectPair(pawnStormTerm(White, pawns, sq("g8")), 1080, 0);
  EXPECT_EQ(pawnStormTerm(White, pawns, sq("b8")), 0u);
}

TEST(KingSafety, AggressivenessZeroLeavesOnlyCastlingAndShutIn) {
  evaltest::useEvaluationTables(0);
  Position p = fromFen("6k1/5ppp/8/8/8/8/5PPP/6K1 w");
  Bitboard pawns = p.pieces[White][Pawn];
  EXPECT_EQ(kingShelter(White, pawns, sq("g1")), 0u);
  EXPECT_EQ(pawnStormTerm(White, pawnsOf("6k1/8/6PP/8/8/8/8/K7 w", White), sq("g8")), 0u);
  expectPair(kingPawnTerms(p, White), -100, -180);
  EXPECT_EQ(kingAttackScore(60), 0u);
  evaltest::useEvaluationTables();
  expectPair(kingPawnTerms(p, White), 1296 - 100, -180);
}

// The attack count of `attacker` after its piece pass.
int attackCountOf(const char* fen, int attacker) {
  Position p = fromFen(fen);
  EvalFrame frame;
  prepareFrame(p, frame);
  return pieceLoops(p, frame, attacker);
}

TEST(AttackCount, KingsInTheOpenStartFromEight) {
  evaltest::useEvaluationTables();
  EXPECT_EQ(attackCountOf("8/8/8/5k2/3K4/8/8/8 w", White), 8);
  EXPECT_EQ(attackCountOf("8/8/8/5k2/3K4/8/8/8 w", Black), 8);
  expectPair(kingAttackScore(8), 270, 0);
  EXPECT_EQ(attackCountOf("6k1/8/8/8/8/8/8/K7 w", White), 0);
  EXPECT_EQ(attackCountOf("6k1/8/8/8/8/8/8/K7 w", Black), 1);
}

TEST(AttackCount, KnightRingAndSafeChecks) {
  evaltest::useEvaluationTables();
  // Ring square g7; checks from e7 and h6.
  EXPECT_EQ(attackCountOf("6k1/8/8/5N2/8/8/8/K7 w", White), 4 + 3 + 3);
  // The pawn on g7 takes h6 away; g7 itself is still in the ring.
  EXPECT_EQ(attackCountOf("6k1/6p1/8/5N2/8/8/8/K7 w", White), 4 + 3);
}

TEST(AttackCount, SlidersCheckOverEmptyLines) {
  evaltest::useEvaluationTables();
  // Bishop d3: ring square h7; checks from h7 and c4.
  EXPECT_EQ(attackCountOf("6k1/8/8/8/8/3B4/8/K7 w", White), 2 + 3 + 3);
  // A pawn on e6 closes the c4 line to the king.
  EXPECT_EQ(attackCountOf("6k1/8/4P3/8/8/3B4/8/K7 w", White), 2 + 3);
  // Rook a7: ring squares f7 to h7; checks from a8 and g7.
  EXPECT_EQ(attackCountOf("6k1/R7/8/8/8/8/8/K7 w", White), 3 + 3 + 3);
  // Queen a1: the long diagonal reaches g7 in the ring; checks from a8, h8,
  // g7 and a2, while the way to g1 is shut by its own king.
  EXPECT_EQ(attackCountOf("6k1/8/8/8/8/8/8/Q3K3 w", White), 2 + 4 * 3);
}

TEST(AttackCount, ASliderGivingCheckCountsTheKingsSquareToo) {
  evaltest::useEvaluationTables();
  // The lines through a square hold the square itself, so the king's own
  // square is a check square of a slider that already sees it: rook e1
  // against the king on e8 has the ring square e7, e2 to e7 and e8 itself.
  EXPECT_EQ(attackCountOf("4k3/8/8/8/8/8/8/K3R3 b", White), 3 + 3 + 7 * 3);
  // A pawn on e4 blocks the file: no ring square and no checks at all.
  EXPECT_EQ(attackCountOf("4k3/8/8/8/4P3/8/8/K3R3 b", White), 3);
}

TEST(AttackCount, QueenBesideTheKingWeighsEachCheckByTheExchange) {
  evaltest::useEvaluationTables();
  // The black knight covers g8, g6 and d5, and the queen shuts the long
  // diagonal itself; e8 is safe to reach (12), on f8, g7 and h7 the king
  // takes the queen (1 each).
  EXPECT_EQ(attackCountOf("6k1/4nQ2/8/8/8/8/8/K7 b", White), 2 + 12 + 1 + 1 + 1);
}

TEST(AttackCount, ACrowdOfQueensPastTheLastRowKeepsIt) {
  evaltest::useEvaluationTables();
  // Nine queens two steps from a bare king, as many as a game can have: the
  // count runs past the table's 128 rows, and the score stays at the last one.
  const char* crowd = "8/2QQQQQ1/2Q3Q1/2Q1k1Q1/8/8/8/K7 w";
  const int count = attackCountOf(crowd, White);
  EXPECT_GT(count, 127);
  const ScorePair last = kingDanger[127];
  expectPair(kingAttackScore(count), scorePairOpen(last), scorePairEnd(last));
}

}  // namespace
