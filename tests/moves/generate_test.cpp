#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "../support/board_builder.h"
#include "board/fen.h"
#include "board/make_move.h"
#include "board/queries.h"
#include "moves/generate.h"

namespace {

using testboard::mv;
using testboard::sq;

Position fromFen(const char* text) {
  Position p;
  parseFen(p, text);
  return p;
}

// The list as coordinate text, blank-separated, in generation order.
std::string listText(const Move* list, int count) {
  std::string text;
  char buffer[8];
  for (int i = 0; i < count; ++i) {
    moveToText(list[i], buffer);
    if (i) text += ' ';
    text += buffer;
  }
  return text;
}

using Generator = int (*)(const Position&, Move*);

std::string generated(Generator generator, const Position& p) {
  Move list[maxGeneratedMoves];
  return listText(list, generator(p, list));
}

std::vector<Move> generatedList(Generator generator, const Position& p) {
  Move list[maxGeneratedMoves];
  return std::vector<Move>(list, list + generator(p, list));
}

TEST(GenerationOrder, StartPositionStepsThenKnightsThenDoubleSteps) {
  Position p = fromFen("");
  std::vector<Move> all = generatedList(generateAllMoves, p);
  EXPECT_EQ(listText(all.data(), static_cast<int>(all.size())),
            "a2a3 b2b3 c2c3 d2d3 e2e3 f2f3 g2g3 h2h3 b1a3 b1c3 g1f3 g1h3 "
            "a2a4 b2b4 c2c4 d2d4 e2e4 f2f4 g2g4 h2h4");
  for (int i = 12; i < 20; ++i) EXPECT_EQ(moveKind(all[i]), KindDoubleStep);
  // The same moves split into the quiet stage, with nothing to capture.
  EXPECT_EQ(generated(generateQuiets, p), listText(all.data(), 20));
  EXPECT_EQ(generated(generateCaptures, p), "");
}

TEST(GenerationOrder, CapturesPromoteToQueenAndKnightOnly) {
  Position lone = fromFen("4k3/P7/8/8/8/8/8/4K3 w - -");
  Move list[maxGeneratedMoves];
  int count = generateCaptures(lone, list);
  ASSERT_EQ(count, 2);
  EXPECT_EQ(list[0], mv("a7", "a8", KindPromoteQueen));
  EXPECT_EQ(list[1], mv("a7", "a8", KindPromoteKnight));
  count = generateAllMoves(lone, list);
  ASSERT_GE(count, 4);
  EXPECT_EQ(listText(list, 4), "a7a8q a7a8n a7a8r a7a8b");

  // Towards the a-file first, then towards the h-file, then the push.
  Position both = fromFen("r1r1k3/1P6/8/8/8/8/8/4K3 w - -");
  EXPECT_EQ(generated(generateCaptures, both), "b7a8q b7a8n b7c8q b7c8n b7b8q b7b8n");
  EXPECT_EQ(generated(generateAllMoves, both).substr(0, 23), "b7b8q b7b8n b7b8r b7b8b");
}

TEST(Evasions, KnightCheckFromFenIsFoundByItsPattern) {
  // No move led here, and the en-passant field names a pawn's double step
  // that has nothing to do with the knight on d3.
  for (const char* fen : {"4k3/8/8/8/8/3n4/8/4KB2 w - -", "4k3/8/8/2p5/8/3n4/8/4KB2 w - c6"}) {
    Position p = fromFen(fen);
    ASSERT_EQ(p.inCheck, 1) << fen;
    EXPECT_EQ(generated(generateEvasions, p), "e1d1 e1d2 e1e2 e1f2 f1d3") << fen;
  }
}

TEST(PseudoLegal, StoredWordsAreJudgedByWhatStandsOnTheBoardNow) {
  Position start = fromFen("");
  EXPECT_EQ(isPseudoLegal(start, mv("b1", "c3")), 1);
  EXPECT_EQ(isPseudoLegal(start, mv("e2", "e3")), 1);
  EXPECT_EQ(isPseudoLegal(start, mv("e2", "e4", KindDoubleStep)), 1);
  EXPECT_EQ(isPseudoLegal(start, mv("e2", "e4")), 0);
  EXPECT_EQ(isPseudoLegal(start, mv("e7", "e5", KindDoubleStep)), 0);
  EXPECT_EQ(isPseudoLegal(start, mv("a1", "a3")), 0);  // through its own pawn
  EXPECT_EQ(isPseudoLegal(start, mv("d1", "d2")), 0);  // onto its own pawn
  EXPECT_EQ(isPseudoLegal(start, mv("b1", "c3", KindPromoteQueen)), 0);
  EXPECT_EQ(isPseudoLegal(start, castleWhiteShort), 0);
  EXPECT_EQ(isPseudoLegal(start, 0), 0);
  // Only the low 16 bits count: a sort key above them changes nothing.
  EXPECT_EQ(isPseudoLegal(start, mv("g1", "f3") | 0x12340000u), 1);

  // A knight's jump with a bishop on b1 now.
  Position bishop = fromFen("4k3/8/8/8/8/8/8/1B2K3 w - -");
  EXPECT_EQ(isPseudoLegal(bishop, mv("b1", "c3")), 0);
  EXPECT_EQ(isPseudoLegal(bishop, mv("b1", "h7")), 1);

  // Pawn captures, en passant, promotions and castling.
  Position pawns = fromFen("r3k2r/1P6/8/3pP3/8/8/8/R3K2R w KQkq d6");
  ASSERT_NE(pawns.epBit, 0u);
  EXPECT_EQ(isPseudoLegal(pawns, mv("e5", "d6", KindEnPassant)), 0);
  EXPECT_EQ(isPseudoLegal(pawns, mv("e5", "d6")), 0);
  EXPECT_EQ(isPseudoLegal(pawns, mv("b7", "a8", KindPromoteRook)), 1);
  EXPECT_EQ(isPseudoLegal(pawns, mv("b7", "a8")), 0);
  EXPECT_EQ(isPseudoLegal(pawns, mv("b7", "b8", KindPromoteBishop)), 1);
  EXPECT_EQ(isPseudoLegal(pawns, mv("b7", "c8", KindPromoteQueen)), 0);
  EXPECT_EQ(isPseudoLegal(pawns, castleWhiteShort), 1);
  EXPECT_EQ(isPseudoLegal(pawns, castleWhiteLong), 1);
  EXPECT_EQ(isPseudoLegal(pawns, castleBlackShort), 0);
}

// Walks the legal tree and, at every node, holds the generators against
// each other and against the words of the two nodes above it.
struct Consistency {
  int nodes = 0;
  int checks = 0;
  int quietChecks = 0;

  static std::vector<Move> sorted(std::vector<Move> moves) {
    std::sort(moves.begin(), moves.end());
    return moves;
  }

  static bool legal(const Position& p, Move move, Position& child) {
    makeMove(p, child, move);
    if (kingAttacked(child, p.ctm)) return false;
    child.inCheck = kingAttacked(child, child.ctm);
    return true;
  }

  void check(const Position& p, const std::vector<Move>& parentMoves,
             const std::vector<Move>& grandparentMoves, int depth, const char* fen) {
    ++nodes;
    std::vector<Move> all = generatedList(generateAllMoves, p);
    std::vector<Move> sortedAll = sorted(all);

    std::vector<Move> expected;
    for (Move m : all)
      if (!isUnderPromotion(m) || moveKind(m) == KindPromoteKnight) expected.push_back(m);
    std::vector<Move> staged = generatedList(generateCaptures, p);
    std::vector<Move> quiets = generatedList(generateQuiets, p);
    staged.insert(staged.end(), quiets.begin(), quiets.end());
    ASSERT_EQ(sorted(staged), sorted(expected)) << fen;

    Position child;
    if (p.inCheck) {
      ++checks;
      std::vector<Move> evasions = sorted(generatedList(generateEvasions, p));
      for (Move m : all) {
        if (legal(p, m, child)) {
          ASSERT_TRUE(std::binary_search(evasions.begin(), evasions.end(), m)) << fen << " move " << m;
        }
      }
    } else {
      std::vector<Move> sortedQuiets = sorted(quiets);
      for (Move m : generatedList(generateQuietChecks, p)) {
        ASSERT_TRUE(std::binary_search(sortedQuiets.begin(), sortedQuiets.end(), m)) << fen << " move " << m;
        if (legal(p, m, child)) {
          ++quietChecks;
          ASSERT_EQ(child.inCheck, 1) << fen << " move " << m;
        }
      }
    }

    for (Move m : all) {
      if (moveKind(m) != KindEnPassant) {
        ASSERT_EQ(isPseudoLegal(p, m), 1) << fen << " move " << m;
      }
    }
    for (const std::vector<Move>* other : {&parentMoves, &grandparentMoves}) {
      for (Move m : *other) {
        if (moveKind(m) != KindEnPassant) {
          ASSERT_EQ(isPseudoLegal(p, m), std::binary_search(sortedAll.begin(), sortedAll.end(), m) ? 1 : 0)
              << fen << " stored move " << m;
        }
      }
    }

    if (depth == 0) return;
    for (Move m : all)
      if (legal(p, m, child)) {
        check(child, all, parentMoves, depth - 1, fen);
        if (::testing::Test::HasFatalFailure()) return;
      }
  }
};

}  // namespace
