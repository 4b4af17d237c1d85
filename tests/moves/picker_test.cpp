// The picker's stages against the generator that perft proves: at every node
// of small perft trees, each stage set hands out every move it should, once.
#include "moves/picker.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
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

Moves sorted(Moves moves) {
  std::sort(moves.begin(), moves.end());
  return moves;
}

Moves distinct(Moves moves) {
  moves = sorted(moves);
  moves.erase(std::unique(moves.begin(), moves.end()), moves.end());
  return moves;
}

bool isLegal(const Position& p, Move move) {
  Position child;
  makeMove(p, child, move);
  return !kingAttacked(child, sideToMove(p));
}

bool givesCheckAfter(const Position& p, Move move) {
  Position child;
  makeMove(p, child, move);
  return kingAttacked(child, sideToMove(p) ^ 1);
}

// A capture that loses material waits for the deferred stage, or is dropped
// by the sets that have none.
bool losesMaterial(const Position& p, Move move) { return moveKindIndex(move) <= 1 && exchangeValue(p, move, 0) < 0; }

Moves drain(const Position& p, int stageSet, Move hashMove, Move killerA, Move killerB) {
  MovePicker picker;
  initPicker(picker, p, stageSet, hashMove, killerA, killerB);
  Moves out;
  while (Move m = nextMove(picker)) {
    out.push_back(m);
    if (out.size() > 2 * maxGeneratedMoves) break;
  }
  EXPECT_EQ(nextMove(picker), 0u) << "a spent picker keeps answering 0";
  return out;
}

Moves only(const Position& p, const Moves& moves, bool (*keep)(const Position&, Move)) {
  Moves kept;
  for (Move m : moves)
    if (keep(p, m)) kept.push_back(m);
  return kept;
}

struct NodeCheck {
  int nodes = 0;
  int quietChecks = 0;
  void check(const Position& p) {
    ++nodes;
    const Moves all = generated(generateAllMoves, p);
    const Moves legal = sorted(only(p, all, isLegal));
    const Moves captures = generated(generateCaptures, p);
    const Moves quiets = generated(generateQuiets, p);
    // The move that led here is a killer that doesn't fit: its square is empty.
    const Move unfit = p.lastMove;
    if (p.inCheck) {
      const Moves evasions = generated(generateEvasions, p);
      EXPECT_EQ(distinct(only(p, evasions, isLegal)), legal) << "evasions";
      // A king capture can come twice, as a king move and as a capture of
      // the checker: the picker serves it once or twice, never zero times.
      EXPECT_EQ(distinct(drain(p, 4, evasions.empty() ? 0 : evasions.back(), 0, 0)), distinct(evasions))
          << "stage set 4";
      return;
    }
    Moves both = captures;
    both.insert(both.end(), quiets.begin(), quiets.end());
    // The searches leave out promotions to rook and bishop, which a queen
    // outdoes.
    Moves searched;
    for (Move m : all)
      if (moveKindIndex(m) < 6) searched.push_back(m);
    EXPECT_EQ(sorted(both), sorted(searched)) << "captures and quiet moves";
    // The search keeps quiet killers and never one equal to the hash move.
    Move hashMove = searched.empty() ? 0 : searched[searched.size() / 3];
    Move killer = 0;
    for (Move m : quiets)
      if (m != hashMove) killer = m;
    EXPECT_EQ(sorted(drain(p, 0, hashMove, killer, unfit)), sorted(searched)) << "stage set 0";

    const Moves checks = generated(generateQuietChecks, p);
    quietChecks += static_cast<int>(checks.size());
    for (Move m : checks) EXPECT_TRUE(!isLegal(p, m) || givesCheckAfter(p, m)) << "a quiet check that isn't";
    Moves capturesAndChecks = captures;
    capturesAndChecks.insert(capturesAndChecks.end(), checks.begin(), checks.end());
    Move captureHash = captures.empty() ? 0 : captures.back();
    EXPECT_EQ(sorted(drain(p, 1, captureHash, 0, 0)), sorted(capturesAndChecks)) << "stage set 1";
    Moves winning = capturesAndChecks;
    winning.erase(std::remove_if(winning.begin(), winning.end(), [&](Move m) { return losesMaterial(p, m) && m != captureHash; }),
                  winning.end());
    EXPECT_EQ(sorted(drain(p, 2, captureHash, 0, 0)), sorted(winning)) << "stage set 2";
    winning.erase(std::remove_if(winning.begin(), winning.end(),
                                 [&](Move m) { return std::find(captures.begin(), captures.end(), m) == captures.end(); }),
                  winning.end());
    EXPECT_EQ(sorted(drain(p, 3, captureHash, 0, 0)), sorted(winning)) << "stage set 3";
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
  std::memset(history, 0, sizeof history);
  // Castling, pins, promotions with and without capture, en passant, checks
  // of every kind and evasions by king, block and capture.
  const char* fens[] = {
      "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -",
      "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1",
      "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - -",
      "rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8",
  };
  NodeCheck nodes;
  for (const char* fen : fens) nodes.walk(testboard::parsed(fen), 2);
  EXPECT_GT(nodes.nodes, 4000);
  EXPECT_GT(nodes.quietChecks, 500);
}

}  // namespace
