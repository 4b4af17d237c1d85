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

TEST(GenerationOrder, CapturesRunByKindOfPieceAndQueensComeTwice) {
  // Black pawns take towards the a-file first (d4c3), then towards the
  // h-file; the queen's diagonal capture comes before its file capture.
  Position p = fromFen("4k3/8/8/2q5/1P1p4/2P1N3/3R4/2K5 b - -");
  EXPECT_EQ(generated(generateCaptures, p), "d4c3 d4e3 c5b4 c5c3");
  // The queen on c3 takes on its diagonals in the bishops' pass and on its
  // rank in the rooks' pass, after the rook on a1.
  Position q = fromFen("4k3/8/8/8/3p4/r1Q1N3/1n6/R3K3 w - -");
  EXPECT_EQ(generated(generateCaptures, q), "c3b2 c3d4 a1a3 c3a3");
}

TEST(GenerationOrder, PawnsOnTheSeventhNeverPushQuietly) {
  Position p = fromFen("4k3/P7/8/8/8/8/6p1/4K3 w - -");
  EXPECT_EQ(generated(generateQuiets, p).find("a7"), std::string::npos);
  Move list[4];
  EXPECT_EQ(generatePawnPushes(sq("a7"), White, occupiedSquares(p), list, 3), 0);
  EXPECT_EQ(generatePawnPushes(sq("g2"), Black, occupiedSquares(p), list, 3), 0);
  // A pawn on its home rank gets the single step first, then the double step.
  ASSERT_EQ(generatePawnPushes(sq("g7"), Black, 0, list, 3), 2);
  EXPECT_EQ(list[0], mv("g7", "g6"));
  EXPECT_EQ(list[1], mv("g7", "g5", KindDoubleStep));
  EXPECT_EQ(generatePawnPushes(sq("g7"), Black, squareBit(sq("g5")), list, 2), 0);
  EXPECT_EQ(generatePawnPushes(sq("g6"), Black, 0, list, 2), 0);
}

TEST(Castling, AttackedKingPathForbidsButRookOnlySquaresDoNot) {
  Move list[2];
  auto castles = [&](const char* fen, int colour) {
    return listText(list, generateCastling(fromFen(fen), colour, list));
  };
  EXPECT_EQ(castles("r3k2r/8/8/8/8/8/8/R3K2R w KQkq -", White), "e1g1 e1c1");
  EXPECT_EQ(castles("r3k2r/8/8/8/8/8/8/R3K2R w KQkq -", Black), "e8g8 e8c8");
  // A rook on f8 sees f1: no short castling.
  EXPECT_EQ(castles("4kr2/8/8/8/8/8/8/R3K2R w KQ -", White), "e1c1");
  // A rook on d8 sees d1: no long castling.
  EXPECT_EQ(castles("3rk3/8/8/8/8/8/8/R3K2R w KQ -", White), "e1g1");
  // b1 and h1 may be attacked.
  EXPECT_EQ(castles("1r2k3/8/8/8/8/8/8/R3K2R w KQ -", White), "e1g1 e1c1");
  EXPECT_EQ(castles("4k3/8/8/8/4b3/8/8/R3K2R w KQ -", White), "e1g1 e1c1");
  // The king may not leave check by castling.
  EXPECT_EQ(castles("4r1k1/8/8/8/8/8/8/R3K2R w KQ -", White), "");
  // b1 must be empty all the same; lost rights and blockers forbid.
  EXPECT_EQ(castles("4k3/8/8/8/8/8/8/RN2K2R w KQ -", White), "e1g1");
  EXPECT_EQ(castles("4k3/8/8/8/8/8/8/R3K2R w Q -", White), "e1c1");
  EXPECT_EQ(castles("4k3/8/8/8/8/8/8/R3KB1R w KQ -", White), "e1c1");
}

TEST(Evasions, KingMovesThenCapturesOfTheCheckerThenBlocks) {
  // The bishop on b4 checks along c3 and d2; the pawn and the queen can take
  // it, the queen can also interpose on both squares.
  Position p = fromFen("4k3/8/8/8/1b6/P7/1Q6/4K3 w - -");
  ASSERT_EQ(p.inCheck, 1);
  EXPECT_EQ(generated(generateEvasions, p), "e1d1 e1f1 e1d2 e1e2 e1f2 a3b4 b2b4 b2c3 b2d2");
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

TEST(Evasions, PawnCheckAddsTheEnPassantCapture) {
  // The pawn that has just double-stepped to d5 checks the king on e4.
  Position p = fromFen("4k3/8/8/3pP3/4K3/8/8/8 w - d6");
  ASSERT_EQ(p.inCheck, 1);
  Move list[maxGeneratedMoves];
  int count = generateEvasions(p, list);
  EXPECT_EQ(listText(list, count), "e4d3 e4e3 e4f3 e4d4 e4f4 e4d5 e4f5 e4d5 e5d6");
  EXPECT_EQ(list[count - 1], mv("e5", "d6", KindEnPassant));
}

TEST(QuietChecks, DiscoveriesByPawnsOffTheKingsLine) {
  // The pawn on e5 shields the black king on g7 from the bishop on c3.
  EXPECT_EQ(generated(generateQuietChecks, fromFen("8/6k1/8/4P3/8/2B5/8/K7 w - -")), "e5e6");
  // A pawn on the king's file stays on the rook's line when it pushes.
  EXPECT_EQ(generated(generateQuietChecks, fromFen("8/6k1/8/8/6P1/8/8/K5R1 w - -")), "");
  // On the king's rank the push leaves the line.
  EXPECT_EQ(generated(generateQuietChecks, fromFen("8/8/8/R1P3k1/8/8/8/K7 w - -")), "c5c6");
}

TEST(QuietChecks, DiscoveringPiecesThenDirectChecksByKind) {
  // A pawn on its home rank uncovers the bishop with both of its pushes.
  EXPECT_EQ(generated(generateQuietChecks, fromFen("8/8/8/7k/8/8/4P3/3B3K w - -")), "e2e3 e2e4");
  // The knight on e4 uncovers the rook with every jump, and having been used
  // for that it is not tried again for direct checks from d6 and f6.
  EXPECT_EQ(generated(generateQuietChecks, fromFen("4k3/8/8/8/4N3/8/8/K3R3 w - -")),
            "e4d2 e4f2 e4c3 e4g3 e4c5 e4g5 e4d6 e4f6");
  // A king that shields a bishop steps off the diagonal only.
  EXPECT_EQ(generated(generateQuietChecks, fromFen("8/8/5k2/8/8/2K5/8/B7 w - -")),
            "c3c2 c3d2 c3b3 c3d3 c3b4 c3c4");
  // Direct checks: pawns by ascending square (d2 needs the double step, f3
  // one step), then the knight, then the rook by ascending target.
  EXPECT_EQ(generated(generateQuietChecks, fromFen("8/8/8/4k3/8/5P2/3P4/K1N4R w - -")),
            "d2d4 f3f4 c1d3 h1e1 h1h5");
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

TEST(GeneratorConsistency, StagesEvasionsQuietChecksAndStoredMovesAgreeAlongTheTree) {
  const char* fens[] = {
      "",
      "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -",
      "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - -",
      "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1",
      "rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8",
      "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10",
  };
  Consistency walk;
  for (const char* fen : fens) {
    Position root = fromFen(fen);
    walk.check(root, {}, {}, 3, fen);
    if (HasFatalFailure()) return;
  }
  // The walk must have met the situations it is meant to test.
  EXPECT_GT(walk.checks, 1000);
  EXPECT_GT(walk.quietChecks, 1000);
}

}  // namespace
