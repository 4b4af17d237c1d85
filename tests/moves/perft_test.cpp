#include <gtest/gtest.h>

#include <string>

#include "../shell/engine_process.h"
#include "board/fen.h"
#include "eval/piece_square.h"
#include "moves/perft.h"

namespace {

uint64_t perftOf(const char* fen, int depth) {
  initPieceSquare();
  Position p;
  parseFen(p, fen);
  return perft(p, depth);
}

TEST(Perft, StartPosition) {
  EXPECT_EQ(perftOf("", 1), 20u);
  EXPECT_EQ(perftOf("", 2), 400u);
  EXPECT_EQ(perftOf("", 3), 8902u);
  EXPECT_EQ(perftOf("", 4), 197281u);
  EXPECT_EQ(perftOf("", 5), 4865609u);
}

TEST(Perft, CastlingPinsAndPromotionsInTheMiddleGame) {
  const char* fen = "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -";
  EXPECT_EQ(perftOf(fen, 1), 48u);
  EXPECT_EQ(perftOf(fen, 2), 2039u);
  EXPECT_EQ(perftOf(fen, 3), 97862u);
  EXPECT_EQ(perftOf(fen, 4), 4085603u);
}

TEST(Perft, EnPassantAndRankPinsInAnEnding) {
  EXPECT_EQ(perftOf("8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - -", 5), 674624u);
}

TEST(Perft, PromotionsAndChecksWithBlackCastlingOnly) {
  EXPECT_EQ(perftOf("r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1", 4), 422333u);
}

TEST(Perft, PromotionWithCaptureAndKnightChecks) {
  EXPECT_EQ(perftOf("rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8", 3), 62379u);
}

TEST(Perft, SymmetricalMiddleGame) {
  EXPECT_EQ(perftOf("r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10", 3),
            89890u);
}

TEST(PerftTool, OneLinePerLegalRootMoveThenTheTotal) {
  // The rook on g1 guards g7 and g8, so only Kh7 is listed; white then has
  // three king moves and thirteen rook moves. The FEN comes in pieces, as a
  // shell splits it.
  ProcessResult run = runProgram(TARVOK_TOOL_PATH, {"perft", "2", "7k/8/8/8/8/8/8/K5R1", "b", "-", "-"}, "");
  ASSERT_EQ(run.exitCode, 0) << run.standardError;
  EXPECT_EQ(run.standardOutput, "h8h7: 16\n16\n");
}

}  // namespace
