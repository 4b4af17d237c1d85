#include "board/exchange.h"

#include <gtest/gtest.h>

#include "../support/board.h"
#include "../support/legal_moves.h"

namespace {

using testboard::MoveCase;
using testboard::mv;
using testboard::parsed;
using testboard::sq;

TEST(ExchangeValue, WorkedSequencesInPawnUnits) {
  const MoveCase cases[] = {
      // Qxd5 (rook), Qxd5, Rxd5, Bxd5: 5 - 9 + 10 - 5. The bishop on f7 stands
      // behind its queen and joins once she has gone; a queen counts 9 as the
      // first capturer and 10 later.
      {"7k/5b2/4q3/3r4/8/8/Q7/3R3K w", mv("a2", "d5"), 1},
      // Nxd5, Rd6xd5, Nxd5, Rd8xd5: 1 - 3 + 5 - 3. Without the rear rook
      // black stops after Nxd5.
      {"3r2k1/8/3r4/3p4/5N2/2N5/8/6K1 w", mv("c3", "d5"), 0},
      {"6k1/8/3r4/3p4/5N2/2N5/8/6K1 w", mv("c3", "d5"), 1},
      // A pawn takes an undefended rook and promotes: queen and knight
      // promotions are judged, rook and bishop ones count 0.
      {"3r3k/4P3/8/8/8/8/8/6K1 w", mv("e7", "d8", KindPromoteQueen), 5},
      {"3r3k/4P3/8/8/8/8/8/6K1 w", mv("e7", "d8", KindPromoteKnight), 5},
      {"3r3k/4P3/8/8/8/8/8/6K1 w", mv("e7", "d8", KindPromoteRook), 0},
      // En passant onto a square a rook guards would lose the pawn, yet counts 0.
      {"3r2k1/8/8/3pP3/8/8/8/6K1 w", mv("e5", "d6"), -1},
      {"3r2k1/8/8/3pP3/8/8/8/6K1 w", mv("e5", "d6", KindEnPassant), 0},
      {"5rk1/8/8/8/8/8/8/4K2R w", castleWhiteShort, 0},
      // A move onto its own square asks what the piece there would lose.
      {"6k1/8/8/8/3Q4/8/4n3/7K w", mv("d4", "d4"), -9},
  };
  for (const MoveCase& c : cases) EXPECT_EQ(exchangeValue(parsed(c.fen), c.move, 0), c.value) << c.fen;
}

// The quick answer to "does this exchange lose?" must be the full value's
// sign for every move the search can ask about: every generated move and
// every piece standing still, at every node of small perft trees full of
// captures, promotions and pins.
struct ExchangeSignWalk {
  uint64_t asked = 0;
  uint64_t wrong = 0;
  void ask(const Position& position, Move move) {
    ++asked;
    wrong += exchangeLoses(position, move) != (exchangeValue(position, move, 0) < 0);
  }
  void walk(const Position& position, int depth) {
    Move list[maxGeneratedMoves];
    for (int i = 0, count = generateAllMoves(position, list); i < count; ++i) ask(position, list[i]);
    for (Bitboard b = position.pieces[sideToMove(position)][0]; b;) {
      Square s = popLowest(b);
      ask(position, makeMoveWord(s, s));
    }
    if (depth == 0) return;
    Position child;
    for (Move move : legalMoves(position)) {
      makeMove(position, child, move);
      walk(child, depth - 1);
    }
  }
};

TEST(ExchangeLoses, AgreesWithTheSignOfTheFullValueThroughoutSmallPerftTrees) {
  const char* fens[] = {
      "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -",
      "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1",
      "rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8",
  };
  for (const char* fen : fens) {
    ExchangeSignWalk walk;
    walk.walk(testboard::rootPosition(fen), 2);
    EXPECT_GT(walk.asked, 10000u) << fen;
    EXPECT_EQ(walk.wrong, 0u) << fen;
  }
}

TEST(HangingValue, TheWorstLossStopsTheScanAfterItsKindOnceLargeEnough) {
  // The loss of the piece on the square in the finer scale (queen 19), and
  // the worst loss of the whole side.
  struct Case { const char* fen; const char* square; int hanging, worst; };
  const Case cases[] = {
      {"6k1/8/8/8/3Q4/8/4n3/7K w", "d4", -19, -19},
      {"6k1/8/8/3r4/8/8/3P4/7K w", "d2", -2, -2},
      {"6k1/8/8/3r4/8/8/3R4/7K b", "d5", -10, -10},
      // Queen -9 (queen for queen) stops the scan before the rook's -10.
      {"3q3k/8/8/8/3Q4/R1P5/8/1n5K w", "d4", -9, -9},
      {"3q3k/8/8/8/3Q4/R1P5/8/1n5K w", "a3", -10, -9},
      // Rook -5 (rook for rook) stops it before the bishop's -7.
      {"3r3k/8/8/8/3R4/B1P5/8/1n5K w", "a3", -7, -5},
      // Bishop -4 (to a knight, retaken) stops it before the knight's -6.
      {"r6k/8/4n3/8/N2B4/2P5/8/7K w", "a4", -6, -4},
      // A safe queen does not stop it.
      {"7k/8/8/8/8/R7/8/1n1Q3K w", "a3", -10, -10},
  };
  for (const Case& c : cases) {
    Position p = parsed(c.fen);
    EXPECT_EQ(hangingValue(p, sq(c.square)), c.hanging) << c.fen << " " << c.square;
    EXPECT_EQ(worstHanging(p), c.worst) << c.fen;
  }
}

}  // namespace
