// Every incremental field of a record, as parseFen and makeMove keep it,
// against a recount from the board alone.
#include "board/make_move.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <set>
#include <string>

#include "../support/board.h"
#include "../support/legal_moves.h"
#include "board/keys.h"
#include "board/queries.h"
#include "moves/generate.h"
#include "search/limits.h"

namespace {

using testboard::mv;
using testboard::parsed;
using testboard::sq;

// The recount sees castling rights only through the squares kings and rooks
// left: every pattern of `moved` that leaves the same rights shares one key.
// The walks below are standard chess.
uint64_t castlingKeyOf(Bitboard moved) {
  Bitboard canonical = 0;
  for (Bitboard mask : {whiteShortMask, whiteLongMask, blackShortMask, blackLongMask})
    if (moved & mask) canonical |= mask & ~(squareBit(sq("e1")) | squareBit(sq("e8")));
  return castleKeys[castlingRights(standardCastling, canonical)];
}

// Names the first field that differs from a recount, or "" if none does.
std::string firstWrongField(const Position& p) {
  uint64_t hashKey = pieceKeys[p.ctm & 1] ^ castlingKeyOf(p.moved), pawnKey = 0, materialKey = 0;
  ScorePair pstScore = 0;
  int phase = 0;
  Bitboard all[2] = {0, 0};
  for (int colour = 0; colour < 2; ++colour) {
    for (int piece = Pawn; piece <= King; ++piece) {
      if (all[colour] & p.pieces[colour][piece]) return "overlapping slots";
      all[colour] |= p.pieces[colour][piece];
      for (Bitboard b = p.pieces[colour][piece]; b;) {
        int index = pieceIndex(colour, piece, popLowest(b));
        hashKey ^= pieceKeys[index];
        pawnKey ^= pawnKeys[index];
        materialKey += materialWeights[colour * 8 + piece];
        pstScore = scorePairAdd(pstScore, pieceSquare[index]);
        phase += phaseWeights[piece];
      }
    }
    if (all[colour] != p.pieces[colour][0]) return "all pieces";
  }
  if (p.epBit) hashKey ^= enPassantKey(std::countr_zero(p.epBit));
  if (all[0] & all[1]) return "colours overlap";
  if (hashKey != p.hashKey) return "hashKey";
  if (pawnKey != p.pawnKey) return "pawnKey";
  if (materialKey != p.materialKey) return "materialKey";
  if (pstScore != p.pstScore) return "pstScore";
  if (phase != p.phase) return "phase";
  return "";
}

// Walks every legal path of a small perft and counts the nodes, and those
// whose record differs from its recount.
struct PathWalk {
  uint64_t nodes = 0;
  uint64_t wrong = 0;
  void walk(const Position& position, int depth) {
    ++nodes;
    wrong += !firstWrongField(position).empty();
    Position child;
    for (Move move : depth > 0 ? legalMoves(position) : std::vector<Move>{}) {
      makeMove(position, child, move);
      walk(child, depth - 1);
    }
  }
};

TEST(MakeMove, EveryPathOfASmallPerftKeepsKeysAndScoresEqualToARecount) {
  initPieceSquare();
  struct Case { const char* fen; int depth; uint64_t nodes; };  // nodes: the whole tree, root included
  // Castling both ways with pins, kings walking out and back; promotions,
  // under-promotions and captures on the eighth rank; en passant with a
  // pinned pawn on the rank.
  const Case cases[] = {
      {"r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -", 3, 1 + 48 + 2039 + 97862},
      {"r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1", 3, 1 + 6 + 264 + 9467},
      {"8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - -", 4, 1 + 14 + 191 + 2812 + 43238},
  };
  for (const Case& c : cases) {
    PathWalk walk;
    walk.walk(testboard::rootPosition(c.fen), c.depth);
    EXPECT_EQ(walk.nodes, c.nodes) << c.fen;
    EXPECT_EQ(walk.wrong, 0u) << c.fen;
  }
}

// An en-passant target is kept only where a pawn can take, whether a FEN
// names it or a double step makes it; the double step goes into lastMove.
TEST(MakeMove, EnPassantOnlyWhereAPawnCanTake) {
  // A move of 0 asks about the FEN alone, a target of "" for none; named is
  // the double step the FEN's field names.
  struct Case { const char* fen; Move move; const char* target; Move named = 0; };
  const Move e2e4 = mv("e2", "e4", KindDoubleStep);
  const Case cases[] = {
      {"4k3/8/8/8/8/8/4P3/4K3 w - -", e2e4, ""},
      {"4k3/8/8/8/3p4/8/4P3/4K3 w - -", e2e4, "e3"},
      {"4k3/4p3/8/5P2/8/8/8/4K3 b - -", mv("e7", "e5", KindDoubleStep), "e6"},
      {"4k3/8/8/8/3P4/8/4P3/4K3 w - -", e2e4, ""},                            // the mover's own pawn
      {"4k3/8/8/p7/8/8/7P/4K3 w - -", mv("h2", "h4", KindDoubleStep), ""},  // beside only round the edge
      {"4k3/8/8/8/8/7p/P7/4K3 w - -", mv("a2", "a4", KindDoubleStep), ""},
      {"rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3", 0, "", mv("e2", "e4")},
      {"rnbqkbnr/ppp1pppp/8/8/3pP3/8/PPPP1PPP/RNBQKBNR b KQkq e3", 0, "e3", mv("e2", "e4")},
      {"4k3/8/8/3pP3/8/8/8/4K3 w - d6", 0, "d6", mv("d7", "d5")},
      {"4k3/8/8/3pP3/8/8/8/4K3 w -    d6 0 1", 0, "d6", mv("d7", "d5")},
      {"4k3/8/8/3pP3/8/8/8/4K3 w - z6", 0, "", 0},  // no such square: "-"
      {"4k3/8/8/3pP3/8/8/8/4K3 w - d", 0, "", 0},
      {"4k3/8/8/3pP3/8/8/8/4K3 w -", 0, "", 0},
  };
  for (const Case& c : cases) {
    Position root, child;
    std::memset(&root, 0x5a, sizeof root);  // parseFen must clear everything itself
    parseFen(root, c.fen);
    fillRootScores(root);
    if (c.move) makeMove(root, child, c.move);
    const Position& p = c.move ? child : root;
    EXPECT_EQ(p.epBit, c.target[0] ? squareBit(sq(c.target)) : 0) << c.fen;
    EXPECT_EQ(p.lastMove, c.move ? c.move : c.named) << c.fen;
    EXPECT_EQ(firstWrongField(p), "") << c.fen;
  }
  // A FEN without its later fields: white to move unless it says b, no
  // castling rights.
  EXPECT_EQ(parsed("4k3/8/8/8/3p4/8/4P3/4K3").ctm & 1, White);
  Position blackToMove = parsed("4k3/8/8/8/8/8/8/4K3 b ");
  EXPECT_EQ(sideToMove(blackToMove), Black);
  EXPECT_EQ(blackToMove.moved, 0xFF000000000000FFULL);
  EXPECT_EXIT(parsed("4k3/8/8/8/8/8/8/4K3 x - -"), ::testing::ExitedWithCode(1),
              "^Error in ctm for fen \"4k3/8/8/8/8/8/8/4K3 x - -\"$");
  // A move that doesn't fit the board passes: the record stays consistent
  // with the other side to move.
  Position root = testboard::rootPosition("4k3/8/8/8/8/8/8/4K2R w K -"), child;
  makeMove(root, child, mv("e4", "e5"));
  EXPECT_EQ(firstWrongField(child), "");
  EXPECT_EQ(sideToMove(child), Black);
}

// Two Chess960 games with their rooks on other files, set up one after the
// other and then played in turns: each castles with its own rooks, writes
// its castling as its king taking its own rook, and reaches the board and
// the key of the castled position's FEN.
TEST(MakeMove, Chess960GamesWithOtherRooksCastleSideBySide) {
  const int32_t saved = options.chess960;
  options.chess960 = 1;
  struct Castling { const char* text; const char* after; };
  struct Case { const char* fen; Castling castling[2]; };  // short, long
  const Case cases[] = {
      // King b1, rooks a1 and f1: castling short leaves the rook where it stands.
      {"rk3r2/pppppppp/8/8/8/8/PPPPPPPP/RK3R2 w FAfa - 0 1",
       {{"b1f1", "rk3r2/pppppppp/8/8/8/8/PPPPPPPP/R4RK1 b fa - 0 1"},
        {"b1a1", "rk3r2/pppppppp/8/8/8/8/PPPPPPPP/2KR1R2 b fa - 0 1"}}},
      // King f1, rooks c1 and g1: castling short trades the king's and the rook's squares.
      {"2r2kr1/pppppppp/8/8/8/8/PPPPPPPP/2R2KR1 w GCgc - 0 1",
       {{"f1g1", "2r2kr1/pppppppp/8/8/8/8/PPPPPPPP/2R2RK1 b gc - 0 1"},
        {"f1c1", "2r2kr1/pppppppp/8/8/8/8/PPPPPPPP/2KR2R1 b gc - 0 1"}}},
  };
  const Position games[] = {testboard::rootPosition(cases[0].fen), testboard::rootPosition(cases[1].fen)};
  for (int side = 0; side < 2; ++side) {
    for (int game = 0; game < 2; ++game) {
      const Castling& castling = cases[game].castling[side];
      const Move move = findLegalMove(games[game], castling.text);
      EXPECT_NE(move, 0u) << cases[game].fen << " " << castling.text;
      if (!move) continue;
      Position child;
      makeMove(games[game], child, move);
      const Position expected = testboard::rootPosition(castling.after);
      EXPECT_EQ(std::memcmp(child.pieces, expected.pieces, sizeof child.pieces), 0) << castling.after;
      EXPECT_EQ(child.hashKey, expected.hashKey) << castling.after;
      EXPECT_EQ(child.pstScore, expected.pstScore) << castling.after;
    }
  }
  options.chess960 = saved;
}

// Rights lost in different ways share a key (the recount above sees only the
// rights), and each set of rights has a key of its own.
TEST(MakeMove, EachSetOfCastlingRightsHasItsOwnKey) {
  std::set<uint64_t> keys;
  for (const char* rights : {"-", "K", "Q", "k", "q", "KQ", "Kk", "Kq", "Qk", "Qq", "kq", "KQk", "KQq", "Kkq", "Qkq",
                             "KQkq"})
    keys.insert(parsed((std::string("r3k2r/8/8/8/8/8/8/R3K2R w ") + rights + " -").c_str()).hashKey);
  EXPECT_EQ(keys.size(), 16u);
}

}  // namespace
