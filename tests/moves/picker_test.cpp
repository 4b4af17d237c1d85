// The picker's stages against the generator that perft proves: at every node
// of small perft trees, each stage set hands out every move it should, once.
#include "moves/picker.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <vector>

#include "../support/board.h"
#include "board/exchange.h"
#include "board/make_move.h"
#include "board/queries.h"
#include "moves/generate.h"

namespace {

using Moves = std::vector<Move>;

Moves generated(int (*generate)(const Position&, Move*), const Position& p) {
  Move list[maxGeneratedMoves];
  return Moves(list, list + generate(p, list));
}

// The moves sorted, each once if distinct is set.
Moves sorted(Moves moves, bool distinct = false) {
  std::sort(moves.begin(), moves.end());
  if (distinct) moves.erase(std::unique(moves.begin(), moves.end()), moves.end());
  return moves;
}

template <typename Keep>
Moves only(const Moves& moves, Keep keep) {
  Moves kept;
  std::copy_if(moves.begin(), moves.end(), std::back_inserter(kept), keep);
  return kept;
}

const MoveHistory noHistory{};

Moves drain(const Position& p, int stageSet, Move hashMove, Move killerA = 0, Move killerB = 0) {
  MovePicker picker;
  initPicker(picker, p, noHistory, stageSet, hashMove, killerA, killerB);
  Moves out;
  while (Move m = nextMove(picker))
    if (out.push_back(m); out.size() > 2 * maxGeneratedMoves) break;
  EXPECT_EQ(nextMove(picker), 0u) << "a spent picker keeps answering 0";
  return out;
}

struct NodeCheck {
  int nodes = 0;
  int quietChecks = 0;
  void check(const Position& p) {
    ++nodes;
    // Whether the side to move (or the other side, flip 1) is in check after the move.
    auto checkedAfter = [&](Move move, int flip) {
      Position child;
      makeMove(p, child, move);
      return kingAttacked(child, sideToMove(p) ^ flip) != 0;
    };
    auto isLegal = [&](Move m) { return !checkedAfter(m, 0); };
    const Moves all = generated(generateAllMoves, p), legal = sorted(only(all, isLegal));
    const Moves captures = generated(generateCaptures, p), quiets = generated(generateQuiets, p);
    if (p.inCheck) {
      // A king capture can come twice, as a king move and as a capture of
      // the checker: the picker serves it once or twice, never zero times.
      const Moves evasions = generated(generateEvasions, p);
      EXPECT_EQ(sorted(only(evasions, isLegal), true), legal) << "evasions";
      EXPECT_EQ(sorted(drain(p, 4, evasions.empty() ? 0 : evasions.back()), true), sorted(evasions, true));
      return;
    }
    // The searches leave out promotions to rook and bishop, which a queen outdoes.
    const Moves searched = only(all, [](Move m) { return moveKindIndex(m) < 6; });
    Moves both = captures;
    both.insert(both.end(), quiets.begin(), quiets.end());
    EXPECT_EQ(sorted(both), sorted(searched)) << "captures and quiet moves";
    // The search keeps quiet killers and never one equal to the hash move;
    // the move that led here is a killer that doesn't fit, its square empty.
    const Move hashMove = searched.empty() ? 0 : searched[searched.size() / 3];
    const Moves killers = only(quiets, [&](Move m) { return m != hashMove; });
    EXPECT_EQ(sorted(drain(p, 0, hashMove, killers.empty() ? 0 : killers.back(), p.lastMove)), sorted(searched));

    // The quiescence sets: captures and quiet checks, then without losing
    // captures (but a hash move always comes), then captures alone.
    const Moves checks = generated(generateQuietChecks, p);
    quietChecks += static_cast<int>(checks.size());
    for (Move m : checks) EXPECT_TRUE(!isLegal(m) || checkedAfter(m, 1)) << "a quiet check that isn't";
    Moves tactical = captures;
    tactical.insert(tactical.end(), checks.begin(), checks.end());
    const Move captureHash = captures.empty() ? 0 : captures.back();
    EXPECT_EQ(sorted(drain(p, 1, captureHash)), sorted(tactical)) << "stage set 1";
    tactical = only(tactical, [&](Move m) {
      return m == captureHash || moveKindIndex(m) > 1 || exchangeValue(p, m, 0) >= 0;
    });
    EXPECT_EQ(sorted(drain(p, 2, captureHash)), sorted(tactical)) << "stage set 2";
    tactical = only(tactical, [&](Move m) { return std::count(captures.begin(), captures.end(), m) > 0; });
    EXPECT_EQ(sorted(drain(p, 3, captureHash)), sorted(tactical)) << "stage set 3";
  }
  void walk(const Position& p, int depth) {
    check(p);
    if (depth == 0 || testing::Test::HasFailure()) return;
    Position child;
    for (Move m : generated(generateAllMoves, p)) {
      makeMove(p, child, m);
      // As the search does: the flag is the child's to set.
      child.inCheck = kingAttacked(child, sideToMove(child));
      if (!kingAttacked(child, sideToMove(p))) walk(child, depth - 1);
    }
  }
};

TEST(Picker, EveryStageSetServesEachOfItsMovesOnceAtEveryNodeOfSmallTrees) {
  // Castling, pins, promotions with and without capture, en passant, checks
  // of every kind and evasions by king, block and capture.
  NodeCheck nodes;
  for (const char* fen : {"r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -",
                          "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1",
                          "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - -",
                          "rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8"})
    nodes.walk(testboard::parsed(fen), 2);
  EXPECT_GT(nodes.nodes, 4000);
  EXPECT_GT(nodes.quietChecks, 500);
}

}  // namespace
