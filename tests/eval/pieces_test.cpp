#include "eval/pieces.h"

#include <gtest/gtest.h>

#include "../support/board_builder.h"
#include "../support/eval_frame_builder.h"
#include "../support/evaluation_setup.h"
#include "eval/eval_frame.h"
#include "eval/score_pair.h"

namespace {

using testboard::fromFen;

void expectPair(ScorePair actual, int32_t open, int32_t end) {
  EXPECT_EQ(scorePairOpen(actual), open);
  EXPECT_EQ(scorePairEnd(actual), end);
}

// The colour's score after its piece pass alone.
ScorePair passScore(const char* fen, int colour) {
  Position p = fromFen(fen);
  EvalFrame frame;
  prepareFrame(p, frame);
  pieceLoops(p, frame, colour);
  return frame.score[colour];
}

TEST(PieceTerms, KnightSquaresAheadCountTwice) {
  evaltest::useEvaluationTables();
  // b3 and c2, both ahead: m = 4; no own pawns costs (125, 125).
  expectPair(passScore("7k/8/8/8/8/8/8/N6K w", White), -244 - 125, -209 - 125);
  // An enemy pawn on d3 takes c2 out of the mobility area.
  expectPair(passScore("7k/8/8/8/8/3p4/8/N6K w", White), -373 - 125, -320 - 125);
}

TEST(PieceTerms, RookFiles) {
  evaltest::useEvaluationTables();
  // Open file, 14 squares, no own pawns.
  expectPair(passScore("7k/8/8/8/8/8/8/R6K w", White), 180 + 125 + 94, 180 + 125 + 189);
  // An own pawn behind on the file: no file term, and a2 isn't mobility.
  expectPair(passScore("7k/8/8/8/8/R7/P7/7K w", White), 100 + 65, 100 + 131);
  // A loose enemy pawn on the file.
  expectPair(passScore("7k/p7/8/8/8/8/8/R6K w", White), 125 + 70 + 80, 125 + 90 + 161);
  // A protected one: and a6 leaves the mobility area, being guarded by b7.
  expectPair(passScore("7k/1p6/p7/8/8/8/8/R6K w", White), 125 + 30 + 50, 125 + 50 + 100);
}

// What the threat count adds to each colour.
void expectThreats(const char* fen, int32_t open, int32_t end, int32_t blackOpen = 0, int32_t blackEnd = 0) {
  Position p = fromFen(fen);
  EvalFrame frame = evaltest::frameWithAttacks(p);
  ScorePair before[2] = {frame.score[White], frame.score[Black]};
  threatTerms(p, frame, White);
  threatTerms(p, frame, Black);
  expectPair(scorePairSub(frame.score[White], before[White]), open, end);
  expectPair(scorePairSub(frame.score[Black], before[Black]), blackOpen, blackEnd);
}

TEST(PieceTerms, ThreatsAgainstLoosePiecesAndMajors) {
  evaltest::useEvaluationTables();
  // A knight attacks an undefended pawn.
  expectThreats("7k/8/4p3/8/3N4/8/8/K7 w", 100, 120);
  // Defended by f7, it's no threat.
  expectThreats("7k/5p2/4p3/8/3N4/8/8/K7 w", 0, 0);
  // A knight forks rook and queen, both defended: two threats.
  expectThreats("4k3/2r1q3/8/3N4/8/8/8/K7 w", 400, 480);
  // A pawn attacks a knight that is also loose: one threat, T is a set.
  expectThreats("7k/8/8/3n4/4P3/8/8/K7 w", 100, 120);
}

ScorePair lateScore(const char* fen, int colour) {
  Position p = fromFen(fen);
  EvalFrame frame = evaltest::frameWithAttacks(p);
  ScorePair before = frame.score[colour];
  lateTerms(p, frame, colour);
  return scorePairSub(frame.score[colour], before);
}

TEST(PieceTerms, LateTerms) {
  evaltest::useEvaluationTables();
  // Without pawns every knight, bishop and rook is an outpost.
  expectPair(lateScore("7k/8/8/8/3N4/8/1B6/R6K w", White), 90, 90);
  // A knight blocking d6 where no black pawn can reach it: blockade, outpost
  // and a blocked enemy pawn.
  expectPair(lateScore("7k/8/3p4/3N4/8/8/8/K7 w", White), 20 + 30 + 36, 40 + 30 + 115);
  // A bishop behind its own pawn and in front of its king.
  expectPair(lateScore("7k/8/8/8/3P4/3B4/3K4/8 w", White), 36 + 55 + 30, 30);
  // The bishop pair, both outposts.
  expectPair(lateScore("7k/8/8/8/8/8/8/2B1KB2 w", White), 300 + 60, 500 + 60);
}

}  // namespace
