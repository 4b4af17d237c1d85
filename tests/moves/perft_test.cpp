#include "moves/perft.h"

#include <gtest/gtest.h>

#include <vector>

#include "../support/board.h"
#include "base/options.h"

namespace {

TEST(Perft, PublishedTotals) {
  struct Case { const char* fen; int depth; uint64_t leaves; };
  const Case cases[] = {
      {"", 5, 4865609},  // the start position
      // Castling through and out of check, pins and promotions in the middle game.
      {"r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -", 4, 4085603},
      // En passant with the king on the pawns' rank.
      {"8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - -", 5, 674624},
      // Promotions and checks with black castling only.
      {"r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1", 4, 422333},
      // Promotion with capture, and knight checks.
      {"rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8", 3, 62379},
      {"r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10", 3, 89890},
  };
  for (const Case& c : cases) EXPECT_EQ(perft(testboard::parsed(c.fen), c.depth), c.leaves) << c.fen;
}

// Chess960: 30 positions, start positions and positions some moves in with
// castling rights partly gone, rights in Shredder-FEN, and their published
// counts to depth 4. Castling ends on g1/c1 with the rook on f1/d1 whatever
// the files it starts from.
TEST(Perft, Chess960PositionsToDepthFour) {
  struct Case { const char* fen; uint64_t leaves[4]; };
  const Case cases[] = {
      {"qrkbnrbn/pppppppp/8/8/8/8/PPPPPPPP/QRKBNRBN w FBfb - 0 1", {19, 361, 7748, 165595}},
      {"rk1qbrnb/np1pp1pp/2p2p2/8/PpPP4/7N/2K1PPPP/R1NQBR1B b fa - 0 6", {26, 713, 19452, 583391}},
      {"rqbbnkrn/pppppppp/8/8/8/8/PPPPPPPP/RQBBNKRN w GAga - 0 1", {20, 400, 8976, 200582}},
      {"rkbnnr1b/1pppp1pp/p4p2/3q4/3P4/4N3/PPP1PPPP/RKB1NRQB w FAfa - 1 4", {20, 773, 17855, 633968}},
      {"rkqrbnnb/pppppppp/8/8/8/8/PPPPPPPP/RKQRBNNB w DAda - 0 1", {20, 400, 8838, 194525}},
      {"rnb1k1rn/ppppqpp1/7p/2b1p3/8/N2PPP1P/PPP3P1/R1BQKBRN w GAga - 1 6", {23, 759, 17814, 604418}},
      {"rkbnrbqn/pppppppp/8/8/8/8/PPPPPPPP/RKBNRBQN w EAea - 0 1", {19, 361, 7801, 166960}},
      {"br1bkqr1/pppp1ppp/3n2n1/P3p3/8/8/NPPPPPPP/BR1BKQRN w GBgb - 1 4", {20, 541, 11669, 340634}},
      {"nrbbnqkr/pppppppp/8/8/8/8/PPPPPPPP/NRBBNQKR w HBhb - 0 1", {19, 361, 7811, 168424}},
      {"bb1rnkqr/pp2pppp/1np5/3p4/1P2PP2/7P/P1PP2P1/BBNRNKQR b HDhd - 0 4", {27, 881, 24072, 810835}},
      {"qnnrbbkr/pppppppp/8/8/8/8/PPPPPPPP/QNNRBBKR w HDhd - 0 1", {20, 400, 8918, 197226}},
      {"rkbbr1qn/1ppppppp/4n3/p7/2P5/6P1/PPKPPP1P/R1BBRNQN w ea - 2 4", {21, 501, 11180, 274256}},
      {"nbqrbkrn/pppppppp/8/8/8/8/PPPPPPPP/NBQRBKRN w GDgd - 0 1", {19, 361, 7710, 163836}},
      {"nr1nb1kr/p1pp1ppp/q7/1pb1p3/2P3PP/5P2/PP1PP3/NRQNBBKR w HBhb - 1 6", {7, 300, 8131, 325972}},
      {"rknbbqnr/pppppppp/8/8/8/8/PPPPPPPP/RKNBBQNR w HAha - 0 1", {20, 400, 9004, 202212}},
      {"rqnkb1nr/1p2pp1p/p1p4b/3P2p1/3P4/1P6/P3PPPP/RQNKBBNR w HAha - 1 6", {29, 753, 23630, 660096}},
      {"brnkrbnq/pppppppp/8/8/8/8/PPPPPPPP/BRNKRBNQ w EBeb - 0 1", {20, 400, 8958, 199779}},
      {"qnr1nkbr/pppp1pp1/5b2/4p2p/2P1P1P1/5P2/PP1P3P/QNRBNKBR b HChc - 0 4", {24, 760, 19126, 613201}},
      {"nnrbbqkr/pppppppp/8/8/8/8/PPPPPPPP/NNRBBQKR w HChc - 0 1", {19, 361, 7718, 164522}},
      {"brn1krn1/ppqppp2/6pp/2p5/P1P4P/1Q2P3/1b1P1PP1/BRN1KRNB w FBfb - 0 6", {30, 978, 30872, 978114}},
      {"rkrbbqnn/pppppppp/8/8/8/8/PPPPPPPP/RKRBBQNN w CAca - 0 1", {19, 361, 7718, 164609}},
      {"nr1qkb1n/ppp1pp2/5r2/3p2pN/PP4P1/5P2/2PPP1P1/NRBQKBR1 b GBb - 0 7", {28, 588, 15442, 360080}},
      {"nbrkbrqn/pppppppp/8/8/8/8/PPPPPPPP/NBRKBRQN w FCfc - 0 1", {19, 361, 7704, 163438}},
      {"r1nkbrqb/p1p1pppp/np6/3p4/3Q4/N4P2/PPPPP1PP/R1NKBR1B w FAfa - 0 4", {41, 850, 32733, 753039}},
      {"bbrkqrnn/pppppppp/8/8/8/8/PPPPPPPP/BBRKQRNN w FCfc - 0 1", {20, 400, 8834, 194083}},
      {"rbnnkq1r/1ppp2pp/p4p2/3bp3/4P3/1NNQ3P/PPPP1PP1/RB2K1BR b HAha - 3 5", {37, 1188, 42898, 1425103}},
      {"qbnrkrbn/pppppppp/8/8/8/8/PPPPPPPP/QBNRKRBN w FDfd - 0 1", {19, 361, 7759, 165888}},
      {"1rb1kqrb/ppp1pppp/1nnp4/8/8/P3P2P/1PPP1PP1/NRBNKQRB w GBgb - 1 4", {21, 602, 14605, 430374}},
      {"rqnbbkrn/pppppppp/8/8/8/8/PPPPPPPP/RQNBBKRN w GAga - 0 1", {20, 400, 8958, 199871}},
      {"rkbrqb1n/pp2p1pp/2p2p1n/3p4/3PP2P/1PP5/P4PP1/RKBRQBNN b DAda - 0 5", {29, 983, 28658, 975621}},
  };
  const int32_t saved = options.chess960;
  options.chess960 = 1;
  for (const Case& c : cases)
    for (int depth = 1; depth <= 4; ++depth)
      EXPECT_EQ(perft(testboard::parsed(c.fen), depth), c.leaves[depth - 1]) << c.fen << " depth " << depth;
  options.chess960 = saved;
}

// Before depth 5 no castling is possible from a start position, so the counts
// above would hold without it. These five castle on the fifth ply in the ways
// only Chess960 has: the king staying home (c1 long), king and rook trading
// squares (f1/g1 short, d1/c1 long), and rights spelled X-FEN (KQkq: the
// outermost rooks) giving the same count as their Shredder-FEN letters.
TEST(Perft, Chess960CastlingAtDepthFive) {
  struct Case { const char* fen; uint64_t leaves; };
  const Case cases[] = {
      {"qrkbnrbn/pppppppp/8/8/8/8/PPPPPPPP/QRKBNRBN w FBfb - 0 1", 3967579},
      {"rqbbnkrn/pppppppp/8/8/8/8/PPPPPPPP/RQBBNKRN w GAga - 0 1", 4963850},
      {"rqbbnkrn/pppppppp/8/8/8/8/PPPPPPPP/RQBBNKRN w KQkq - 0 1", 4963850},
      {"nbrkbrqn/pppppppp/8/8/8/8/PPPPPPPP/NBRKBRQN w FCfc - 0 1", 3912399},
      {"bbrkqrnn/pppppppp/8/8/8/8/PPPPPPPP/BBRKQRNN w KQkq - 0 1", 4717536},
  };
  const int32_t saved = options.chess960;
  options.chess960 = 1;
  // All five set up before any is counted: each position keeps its own
  // rooks' homes while the others stand beside it.
  std::vector<Position> games;
  for (const Case& c : cases) games.push_back(testboard::parsed(c.fen));
  for (size_t i = 0; i < games.size(); ++i) EXPECT_EQ(perft(games[i], 5), cases[i].leaves) << cases[i].fen;
  options.chess960 = saved;
}

}  // namespace
