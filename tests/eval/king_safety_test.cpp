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

TEST(KingSafety, StormCountsPawnsInTheEnemyKingsBand) {
  evaltest::useEvaluationTables();
  Bitboard pawns = pawnsOf("6k1/8/6PP/8/8/8/8/K7 w", White);
  expectPair(pawnStormTerm(White, pawns, sq("g8")), 1080, 0);
  EXPECT_EQ(pawnStormTerm(White, pawns, sq("b8")), 0u);
}

// The attack count of `attacker` after its piece pass.
int attackCountOf(const char* fen, int attacker) {
  Position p = fromFen(fen);
  EvalFrame frame;
  prepareFrame(p, frame);
  return pieceLoops(p, frame, attacker);
}

TEST(AttackCount, KnightRingAndSafeChecks) {
  evaltest::useEvaluationTables();
  // Ring square g7; checks from e7 and h6.
  EXPECT_EQ(attackCountOf("6k1/8/8/5N2/8/8/8/K7 w", White), 4 + 3 + 3);
  // The pawn on g7 takes h6 away; g7 itself is still in the ring.
  EXPECT_EQ(attackCountOf("6k1/6p1/8/5N2/8/8/8/K7 w", White), 4 + 3);
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
