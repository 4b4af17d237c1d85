// Worked examples of the evaluation's terms, one small board at a time, for
// what the whole-board reference values and the self-test rows rarely reach:
// pawn structures, passers, king safety, piece terms, the endings scored by
// rules of their own, and the KPK table.
#include <gtest/gtest.h>

#include <string>

#include "../support/board.h"
#include "eval/endgames.h"
#include "eval/eval_frame.h"
#include "eval/geometry.h"
#include "eval/king_safety.h"
#include "eval/kpk.h"
#include "eval/passers.h"
#include "eval/pawns.h"
#include "eval/pieces.h"

namespace {

using testboard::expectPair;
using testboard::parsed;
using testboard::sq;

class EvalTerms : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    testboard::useEvaluationTables();
    initGeometry();
    buildKpkBitbase();
  }
};

// A frame as far as evaluate takes it before the threats, every attack map filled.
EvalFrame frameWithAttacks(const Position& p) {
  EvalFrame frame;
  prepareFrame(p, frame);
  for (int colour = 0; colour < 2; ++colour) pieceLoops(p, frame, colour);
  for (int colour = 0; colour < 2; ++colour)
    frame.allAttacks[colour] = frame.pawnAttacks[colour] | frame.knightAttackMap[colour] |
                               frame.bishopAttackMap[colour] | frame.rookAttackMap[colour] |
                               frame.queenAttackMap[colour];
  return frame;
}

TEST_F(EvalTerms, PawnStructure) {
  struct Case { const char* fen; ScorePair (*term)(const PawnWords&); int32_t open, end; };  // white's pawns
  const Case cases[] = {
      // Tripled rook pawns on an open file: three open isolated pawns, the
      // front one doubled and isolated too; b3, b4 and b5 are defended.
      {"4k3/8/8/8/P7/P7/P7/4K3 w", doubledTerm, -100, -160}, {"4k3/8/8/8/P7/P7/P7/4K3 w", defendedSquaresTerm, 30, 30},
      {"4k3/8/8/8/P7/P7/P7/4K3 w", isolatedTerm, -450, -550}, {"4k3/8/8/8/P7/P7/P7/4K3 w", islandTerm, 0, 0},
      {"4k3/8/8/8/8/8/P1P1P1P1/4K3 w", islandTerm, -90, -180},
      {"4k3/8/8/8/8/8/P1P1P1P1/4K3 w", isolatedTerm, -560, -680},
      // d2's neighbour has gone on to e4 and c4 attacks d3, with nothing in
      // front on the d-file: backward and exposed; then hindered but not
      // exposed, free to advance, protected.
      {"4k3/8/8/8/2p1P3/8/3P4/4K3 w", backwardTerm, -95, -129}, {"4k3/8/8/8/4P3/3p4/3P4/4K3 w", backwardTerm, -35, -45},
      {"4k3/8/8/3p4/4P3/8/3P4/4K3 w", backwardTerm, 0, 0}, {"4k3/8/4p3/8/3P4/2P5/8/4K3 w", backwardTerm, 0, 0},
      // A candidate passer has fewer than two sentries.
      {"4k3/p1p5/8/1P6/P7/8/8/4K3 w", candidateTerm, 0, 0}, {"4k3/p7/8/1P6/P7/8/8/4K3 w", candidateTerm, 190, 332},
  };
  for (const Case& c : cases) {
    Position p = parsed(c.fen);
    expectPair(c.term(pawnWords(White, p.pieces[White][Pawn], p.pieces[Black][Pawn])), c.open, c.end, c.fen);
  }
  Position tripled = parsed("4k3/8/8/8/P7/P7/P7/4K3 w");
  PawnWords w = pawnWords(White, tripled.pieces[White][Pawn], tripled.pieces[Black][Pawn]);
  uint8_t passed[8] = {};
  expectPair(pawnStructure(w, passed), -520, -680);
  EXPECT_EQ(passed[0], sq("a4"));
  EXPECT_EQ(passed[1], 0);
}

TEST_F(EvalTerms, PassedPawns) {
  struct Case { const char* fen; const char* square; int32_t open, end; };  // white's passer
  const Case cases[] = {
      // e4: rank, kings at distance 4, free and clear path; no rook term yet.
      {"k7/8/8/8/4P3/8/8/4R2K w", "e4", 90 + 18 + 2, 175 - 118 + 178 + 108 + 8},
      // e5: the rook behind adds (50, 300).
      {"k7/8/8/4P3/8/8/8/4R2K w", "e5", 270 + 50 + 54 + 6, 350 - 416 + 300 + 534 + 324 + 24},
      {"k7/4P3/8/8/8/8/8/4K3 w", "e7", 900 + 180 + 20, 910 - 1754 + 1780 + 1080 + 80},
      // A knight on f6 defends the queening square.
      {"k7/4P3/5N2/8/8/8/8/4K3 w", "e7", 900 + 200 + 20, 910 - 1754 + 1780 + 1200 + 80},
  };
  auto passer = [](const char* fen, const char* square) {
    Position p = parsed(fen);
    EvalFrame frame = frameWithAttacks(p);
    frame.score[White] = frame.score[Black] = 0;
    passedPawnTerms(p, frame, White, sq(square));
    return frame.score[White];
  };
  for (const Case& c : cases) expectPair(passer(c.fen, c.square), c.open, c.end, c.fen);
  // A friend beside or behind supports the passer; d5 covers e6 but not the whole path.
  ScorePair alone = passer("k7/8/8/4P3/8/8/8/7K w", "e5");
  expectPair(scorePairSub(passer("k7/8/8/3PP3/8/8/8/7K w", "e5"), alone), 40, 80);
  expectPair(scorePairSub(passer("k7/8/8/4P3/4P3/8/8/7K w", "e5"), alone), 40, 80);
}

TEST_F(EvalTerms, KingSafety) {
  // The shelter doubles the pawn on the king's file; the same for black.
  for (const char* fen : {"6k1/8/8/8/8/8/5PPP/6K1 w", "6k1/5ppp/8/8/8/8/8/6K1 b"}) {
    Position p = parsed(fen);
    const int us = sideToMove(p);
    expectPair(kingShelter(us, p.pieces[us][Pawn], kingSquareOf(p, us)), 1296, 0, fen);
    expectPair(shutInKing(us, p.pieces[us][Pawn], kingSquareOf(p, us)), -100, -180, fen);
  }
  Position storm = parsed("6k1/8/6PP/8/8/8/8/K7 w");
  expectPair(pawnStormTerm(White, storm.pieces[White][Pawn], sq("g8")), 1080, 0);
  expectPair(pawnStormTerm(White, storm.pieces[White][Pawn], sq("b8")), 0, 0);

  auto attackCount = [](const char* fen) {
    Position p = parsed(fen);
    EvalFrame frame;
    prepareFrame(p, frame);
    return pieceLoops(p, frame, White);
  };
  // Ring square g7, safe checks from e7 and h6; the pawn on g7 takes h6 away.
  EXPECT_EQ(attackCount("6k1/8/8/5N2/8/8/8/K7 w"), 4 + 3 + 3);
  EXPECT_EQ(attackCount("6k1/6p1/8/5N2/8/8/8/K7 w"), 4 + 3);
  // Nine queens around a bare king run the count past the table's 128 rows;
  // the score stays at the last one.
  const int crowd = attackCount("8/2QQQQQ1/2Q3Q1/2Q1k1Q1/8/8/8/K7 w");
  EXPECT_GT(crowd, 127);
  EXPECT_EQ(kingAttackScore(crowd), kingDanger[127]);
}

TEST_F(EvalTerms, PieceTerms) {
  enum Pass { Pieces, Threats, Late };
  struct Case { const char* fen; Pass pass; int32_t open, end; };  // white's terms
  const Case cases[] = {
      // Knight: b3 and c2 both ahead; no own pawns costs (125, 125). An enemy
      // pawn on d3 takes c2 out of the mobility area.
      {"7k/8/8/8/8/8/8/N6K w", Pieces, -244 - 125, -209 - 125},
      {"7k/8/8/8/8/3p4/8/N6K w", Pieces, -373 - 125, -320 - 125},
      // Rook: open file, an own pawn behind it, a loose and a protected enemy pawn on the file.
      {"7k/8/8/8/8/8/8/R6K w", Pieces, 180 + 125 + 94, 180 + 125 + 189},
      {"7k/8/8/8/8/R7/P7/7K w", Pieces, 100 + 65, 100 + 131},
      {"7k/p7/8/8/8/8/8/R6K w", Pieces, 125 + 70 + 80, 125 + 90 + 161},
      {"7k/1p6/p7/8/8/8/8/R6K w", Pieces, 125 + 30 + 50, 125 + 50 + 100},
      // Threats: a loose pawn; the same defended; a fork of two defended
      // majors; a pawn on a loose knight counts once.
      {"7k/8/4p3/8/3N4/8/8/K7 w", Threats, 100, 120}, {"7k/5p2/4p3/8/3N4/8/8/K7 w", Threats, 0, 0},
      {"4k3/2r1q3/8/3N4/8/8/8/K7 w", Threats, 400, 480}, {"7k/8/8/3n4/4P3/8/8/K7 w", Threats, 100, 120},
      // Without pawns every minor and rook is an outpost; a knight blocking a
      // pawn no enemy pawn can chase; a bishop behind its pawn in front of
      // its king; the bishop pair.
      {"7k/8/8/8/3N4/8/1B6/R6K w", Late, 90, 90}, {"7k/8/3p4/3N4/8/8/8/K7 w", Late, 20 + 30 + 36, 40 + 30 + 115},
      {"7k/8/8/8/3P4/3B4/3K4/8 w", Late, 36 + 55 + 30, 30}, {"7k/8/8/8/8/8/8/2B1KB2 w", Late, 300 + 60, 500 + 60},
  };
  for (const Case& c : cases) {
    Position p = parsed(c.fen);
    EvalFrame frame;
    if (c.pass == Pieces) {
      prepareFrame(p, frame);
      pieceLoops(p, frame, White);
      expectPair(frame.score[White], c.open, c.end, c.fen);
      continue;
    }
    frame = frameWithAttacks(p);
    const ScorePair before = frame.score[White];
    if (c.pass == Threats) threatTerms(p, frame, White);
    else lateTerms(p, frame, White);
    expectPair(scorePairSub(frame.score[White], before), c.open, c.end, c.fen);
  }
}

TEST_F(EvalTerms, EndingsScoredByTheirOwnRules) {
  struct Case { const char* fen; int32_t (*handler)(const Position&); int32_t value; };  // white's view
  const Case cases[] = {
      // KPK draws give three to the pawn's side: the corner, the pawn on the
      // seventh in front of the king (won only with white to move), the
      // rook's pawn.
      {"7k/7P/8/8/8/8/8/K7 w", endKpk, 3},
      {"7k/7P/8/8/8/8/8/K7 b", endKpk, 3},
      {"4k3/4P3/4K3/8/8/8/8/8 b", endKpk, 3},
      {"4k3/4P3/4K3/8/8/8/8/8 w", endKpk, 546},
      {"4k3/4P3/3K4/8/8/8/8/8 w", endKpk, 3},
      {"k7/8/1K6/P7/8/8/8/8 w", endKpk, 3},
      {"8/5k2/8/8/3P4/8/5K2/8 w", endKpk, 3},
      {"8/8/8/8/8/pk6/8/K7 b", endKpk, -3},
      // KBNK drives towards the corners of the bishop's colour.
      {"8/8/8/8/3B4/2KN4/8/k7 w", endKbnk, 400 - 0 - 4 * 2 - 2 * 3},
      {"7k/8/8/8/3B4/2KN4/8/8 b", endKbnk, 400 - 0 - 4 * 5 - 2 * 5},
      {"8/8/8/8/4B3/2KN4/8/k7 w", endKbnk, 400 - 20 * 7 - 4 * 2 - 2 * 3},
      {"k7/8/8/8/4B3/2KN4/8/8 w", endKbnk, 400 - 0 - 4 * 5 - 2 * 5},
      {"8/8/8/8/3b4/2kn4/8/K7 w", endKbnk, -(400 - 0 - 4 * 2 - 2 * 3)},
      {"8/8/8/3kKN2/8/8/8/2B5 w", endKbnk, 400 - 20 * 7 - 4 * 1 - 2 * 2},
      // KBPK: the wrong rook's pawn with the defender in the corner is a fortress.
      {"k7/8/P7/8/4K3/8/8/2B5 w", endKbpk, 6},
      {"k7/8/P7/8/4K3/8/8/2B5 b", endKbpk, 6},
      {"k7/8/P7/8/4K3/8/8/3B4 w", endKbpk, 412},
      {"7k/8/8/7P/8/8/8/KB6 w", endKbpk, 12 - 7 + 0 - 3},
      {"2b5/8/8/4k3/8/p7/8/K7 w", endKbpk, -6},
      {"3b4/8/8/4k3/8/p7/8/K7 w", endKbpk, -412},
      // KNPK: a rook's pawn on the seventh is held from the corner.
      {"k7/P7/8/8/4K3/2N5/8/8 w", endKnpk, 10 - 4},
      {"1k6/P7/8/8/4K3/2N5/8/8 b", endKnpk, 10 - 4},
      {"8/Pk6/8/8/4K3/2N5/8/8 w", endKnpk, 10 - 4},
      {"k7/8/P7/8/4K3/2N5/8/8 w", endKnpk, 420 - 20 - 5 * 4 + 5 * 2 - 3 * 3},
      {"2k5/P7/8/8/4K3/2N5/8/8 w", endKnpk, 420 - 10 - 5 * 4 + 5 * 2 - 3 * 4},
      {"6k1/7P/8/8/5K2/5N2/8/8 w", endKnpk, 10 - 4},
      {"8/8/2n5/4k3/8/8/p7/K7 w", endKnpk, -(10 - 4)},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(c.handler(parsed(c.fen)), c.value) << c.fen;
    std::string mirror = testboard::colourMirror(std::string(c.fen) + " - -");
    EXPECT_EQ(c.handler(parsed(mirror.c_str())), -c.value) << mirror;
  }
}

TEST_F(EvalTerms, KpkRetrogradeAnalysisFindsTheKnownTotals) {
  const KpkCounts counts = buildKpkBitbase();
  EXPECT_EQ(counts.defined, 165676);
  EXPECT_EQ(counts.winsPawnToMove, 62480);
  EXPECT_EQ(counts.winsOtherToMove, 48802);
  int bits = 0;
  for (uint8_t byte : kpkBitbase) bits += popCount(byte);
  EXPECT_EQ(bits, 62480 + 48802);
}

}  // namespace
