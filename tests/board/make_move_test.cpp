#include "board/make_move.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "../support/board_builder.h"
#include "../support/position_recount.h"
#include "board/fen.h"
#include "board/keys.h"
#include "board/queries.h"
#include "eval/piece_square.h"
#include "eval/score_pair.h"
#include "moves/generate.h"
#include "shell/log.h"
#include "shell/search_flags.h"

namespace {

using testboard::mv;
using testboard::sq;

class MakeMove : public ::testing::Test {
 protected:
  void SetUp() override {
    initPieceSquare();
    stopSearch = 0;
  }
  void TearDown() override { stopSearch = 0; }

  // Parses a root, fills its scores as a search would, and plays the moves
  // into consecutive records, checking every record against a recount.
  const Position& play(const char* fen, std::vector<Move> moves) {
    line.assign(moves.size() + 1, Position{});
    parseFen(line[0], fen);
    fillRootScores(line[0]);
    for (size_t i = 0; i < moves.size(); ++i) {
      EXPECT_TRUE(makeMove(line[i], line[i + 1], moves[i]));
      SCOPED_TRACE("after move " + std::to_string(i + 1));
      recount::expectConsistent(line[i + 1]);
    }
    return line.back();
  }

  static uint64_t keyOf(const char* fen) {
    Position p;
    parseFen(p, fen);
    return p.hashKey;
  }

  std::vector<Position> line;
};

// Walks every legal path of a small perft and counts, at every node, the
// records whose incremental keys or scores differ from a recount.
struct PathWalk {
  uint64_t nodes = 0;
  uint64_t wrong = 0;
  void walk(const Position& position, int depth) {
    ++nodes;
    recount::Counts counts = recount::countFromScratch(position);
    if (position.hashKey != counts.hashKey || position.pawnKey != counts.pawnKey ||
        position.materialKey != counts.materialKey || position.pstScore != counts.pstScore ||
        position.phase != counts.phase)
      ++wrong;
    if (depth == 0) return;
    Move list[maxGeneratedMoves];
    int count = generateAllMoves(position, list);
    Position child;
    for (int i = 0; i < count; ++i) {
      makeMove(position, child, list[i]);
      if (kingAttacked(child, position.ctm)) continue;
      walk(child, depth - 1);
    }
  }
};

TEST_F(MakeMove, EveryPathOfASmallPerftKeepsKeysAndScoresEqualToARecount) {
  struct Case {
    const char* fen;
    int depth;
    uint64_t nodes;  // all nodes of the tree, the root included
  };
  // Castling both ways with pins; promotions, under-promotions and captures
  // on the eighth rank; en passant with a pinned pawn on the rank.
  const Case cases[] = {
      {"r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -", 3, 1 + 48 + 2039 + 97862},
      {"r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1", 3, 1 + 6 + 264 + 9467},
      {"8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - -", 4, 1 + 14 + 191 + 2812 + 43238},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.fen);
    Position root;
    parseFen(root, c.fen);
    fillRootScores(root);
    PathWalk walk;
    walk.walk(root, c.depth);
    EXPECT_EQ(walk.nodes, c.nodes);
    EXPECT_EQ(walk.wrong, 0u);
  }
}

TEST_F(MakeMove, DoubleStepSetsEnPassantOnlyWhenAPawnCanTake) {
  // No black pawn beside e4: the key is that of the same board reached by
  // single steps.
  const Position& lone = play("4k3/8/8/8/8/8/4P3/4K3 w - -", {mv("e2", "e4", KindDoubleStep)});
  EXPECT_EQ(lone.epBit, 0u);
  uint64_t loneKey = lone.hashKey;
  const Position& stepped = play("4k3/8/8/8/8/8/4P3/4K3 w - -",
                                 {mv("e2", "e3"), mv("e8", "d8"), mv("e3", "e4"), mv("d8", "e8")});
  EXPECT_EQ(stepped.hashKey ^ sideKey(0) ^ sideKey(1), loneKey);

  // A black pawn on d4 can take: the target enters the key.
  const Position& answered = play("4k3/8/8/8/3p4/8/4P3/4K3 w - -", {mv("e2", "e4", KindDoubleStep)});
  EXPECT_EQ(answered.epBit, squareBit(sq("e3")));
  EXPECT_EQ(answered.hashKey, keyOf("4k3/8/8/8/3pP3/8/8/4K3 b - e3"));
  EXPECT_NE(answered.hashKey, keyOf("4k3/8/8/8/3pP3/8/8/4K3 b - -"));
  // A pawn of the mover's own colour beside it doesn't count.
  const Position& own = play("4k3/8/8/8/3P4/8/4P3/4K3 w - -", {mv("e2", "e4", KindDoubleStep)});
  EXPECT_EQ(own.epBit, 0u);
  // Nor does an enemy pawn that is beside it only by wrapping round the edge.
  const Position& wrapRight = play("4k3/8/8/p7/8/8/7P/4K3 w - -", {mv("h2", "h4", KindDoubleStep)});
  EXPECT_EQ(wrapRight.epBit, 0u);
  const Position& wrapLeft = play("4k3/8/8/8/8/7p/P7/4K3 w - -", {mv("a2", "a4", KindDoubleStep)});
  EXPECT_EQ(wrapLeft.epBit, 0u);
}

TEST_F(MakeMove, NullMoveClearsEnPassantAndFlipsTheSide) {
  Position root;
  parseFen(root, "4k3/8/8/8/3pP3/8/8/4K3 b - e3");
  root.ctm = 6 + 1;  // odd: still black to move
  root.inCheck = 1;
  ASSERT_NE(root.epBit, 0u);
  Position child;
  makeMove(root, child, 0);
  EXPECT_EQ(child.epBit, 0u);
  EXPECT_EQ(child.hashKey, root.hashKey ^ enPassantKey(sq("e3")) ^ sideKey(0) ^ sideKey(1));
  EXPECT_EQ(child.hashKey, keyOf("4k3/8/8/8/3pP3/8/8/4K3 w - -"));
  EXPECT_EQ(child.lastMove, 0u);
  EXPECT_EQ(child.movedPiece, 0);
  EXPECT_EQ(child.inCheck, 0);
  EXPECT_EQ(child.ctm, 8);
  EXPECT_EQ(child.previous, &root);
  EXPECT_EQ(child.moved, root.moved);
  EXPECT_EQ(child.pawnKey, root.pawnKey);
  EXPECT_EQ(std::memcmp(child.pieces, root.pieces, sizeof root.pieces), 0);

  Position even;
  parseFen(even, "4k3/8/8/8/8/8/8/4K3 w - -");
  even.ctm = 6;
  makeMove(even, child, 0);
  EXPECT_EQ(child.ctm, 7);
  EXPECT_EQ(sideToMove(child), Black);
}

TEST_F(MakeMove, RightsLostInDifferentWaysShareTheKey) {
  // Kings out and back: only e1 and e8 are marked, yet no right is left, as
  // in the FEN with "-" that marks all six squares.
  const Position& walked = play("r3k2r/8/8/8/8/8/8/R3K2R w KQkq -",
                                {mv("e1", "e2"), mv("e8", "e7"), mv("e2", "e1"), mv("e7", "e8")});
  Position none;
  parseFen(none, "r3k2r/8/8/8/8/8/8/R3K2R w - -");
  EXPECT_NE(castlingIndex(walked.moved), castlingIndex(none.moved));
  EXPECT_EQ(walked.hashKey, none.hashKey);
}

std::string readLogOf(FILE* file) {
  std::rewind(file);
  std::string text;
  char chunk[256];
  size_t n;
  while ((n = std::fread(chunk, 1, sizeof chunk, file)) > 0) text.append(chunk, n);
  return text;
}

TEST_F(MakeMove, IllegalMoveAndKingCaptureAreLogged) {
  FILE* saved = logFile;
  logFile = std::tmpfile();
  ASSERT_NE(logFile, nullptr);
  Position root, child;
  parseFen(root, "4k3/8/8/8/8/8/8/4K2R w K -");
  makeMove(root, child, mv("e4", "e5"));
  std::string text = readLogOf(logFile);
  EXPECT_EQ(text.rfind("\n ILLEGAL MOVE IN SEARCH\n  move in question: e4e5\n-----[ CTM = 0", 0), 0u) << text;
  // The record is still a consistent position, black to move.
  recount::expectConsistent(child, false);
  EXPECT_EQ(sideToMove(child), Black);

  parseFen(root, "4k3/8/8/8/8/8/8/4K2R w - -");
  root.pieces[Black][King] = squareBit(sq("h8"));
  root.pieces[Black][0] = squareBit(sq("h8"));
  makeMove(root, child, mv("h1", "h8"));
  EXPECT_NE(readLogOf(logFile).find("ERROR: king capture here\n"), std::string::npos);
  EXPECT_EQ(child.capturedPiece, King);
  EXPECT_EQ(child.pieces[Black][0], 0u);
  std::fclose(logFile);
  logFile = saved;
}

}  // namespace
