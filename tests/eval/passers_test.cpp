#include "eval/passers.h"

#include <gtest/gtest.h>

#include "../support/board_builder.h"
#include "../support/eval_frame_builder.h"
#include "../support/evaluation_setup.h"
#include "eval/score_pair.h"

namespace {

using testboard::fromFen;
using testboard::sq;

struct PasserScores {
  ScorePair own;
  ScorePair enemy;
};

// What the passed pawn on `square` adds to its own colour and to the other.
PasserScores passerScores(const char* fen, int colour, const char* square) {
  Position p = fromFen(fen);
  EvalFrame frame = evaltest::frameWithAttacks(p);
  frame.score[White] = frame.score[Black] = 0;
  passedPawnTerms(p, frame, colour, sq(square));
  return {frame.score[colour], frame.score[colour ^ 1]};
}

void expectPair(ScorePair actual, int32_t open, int32_t end) {
  EXPECT_EQ(scorePairOpen(actual), open);
  EXPECT_EQ(scorePairEnd(actual), end);
}

TEST(PassedPawns, RookBehindCountsFromTheFifthRank) {
  evaltest::useEvaluationTables();
  // e4, n = 2: rank, kings at distance 4, free path, clear path; no rook term.
  expectPair(passerScores("k7/8/8/8/4P3/8/8/4R2K w", White, "e4").own, 90 + 18 + 2, 175 - 118 + 178 + 108 + 8);
  // e5, n = 3: the rook behind adds (50, 300).
  expectPair(passerScores("k7/8/8/4P3/8/8/8/4R2K w", White, "e5").own, 270 + 50 + 54 + 6,
             350 - 416 + 300 + 534 + 324 + 24);
}

TEST(PassedPawns, FreeSeventhRankPawn) {
  evaltest::useEvaluationTables();
  expectPair(passerScores("k7/4P3/8/8/8/8/8/4K3 w", White, "e7").own, 900 + 180 + 20, 910 - 1754 + 1780 + 1080 + 80);
  // A knight on f6 defends the queening square.
  expectPair(passerScores("k7/4P3/5N2/8/8/8/8/4K3 w", White, "e7").own, 900 + 200 + 20, 910 - 1754 + 1780 + 1200 + 80);
}

TEST(PassedPawns, SupportedByAPawnBesideOrBehind) {
  evaltest::useEvaluationTables();
  ScorePair alone = passerScores("k7/8/8/4P3/8/8/8/7K w", White, "e5").own;
  ScorePair beside = passerScores("k7/8/8/3PP3/8/8/8/7K w", White, "e5").own;
  ScorePair behind = passerScores("k7/8/8/4P3/4P3/8/8/7K w", White, "e5").own;
  // d5 covers e6 but not the whole path, so only the support changes.
  expectPair(scorePairSub(beside, alone), 40, 80);
  expectPair(scorePairSub(behind, alone), 40, 80);
}

}  // namespace
