#include <cstring>

#include "base/options.h"
#include "base/platform.h"
#include "base/score_pair.h"
#include "board/exchange.h"
#include "board/make_move.h"
#include "board/queries.h"
#include "moves/generate.h"
#include "search/conventions.h"
#include "search/hash_table.h"
#include "search/limits.h"
#include "search/report.h"
#include "search/search.h"
#include "search/search_common.h"
#include "search/search_trace.h"
#include "search/think.h"

namespace {

// Iteration 1: the legal moves, ordered by the piece-square gain of the move
// (blended by the phase after it) and with losing exchanges put last.
void buildRootMoves(SearchState& state, const Position& position) {
  Move list[maxGeneratedMoves];
  const int count = generateLegalMoves(position, list);
  state.rootMoveCount = 0;
  for (int i = 0; i < count && state.rootMoveCount < 256; ++i) {
    makeMove(position, state.rootChild, list[i]);
    int phase = state.rootChild.phase < 96 ? state.rootChild.phase : 96;
    int blended = ((96 - phase) * scorePairEnd(state.rootChild.pstScore) + phase * scorePairOpen(state.rootChild.pstScore)) / 960;
    int score = sideToMove(state.rootChild) == Black ? blended : -blended;
    if (exchangeLoses(position, list[i])) score -= 500;
    state.rootMoves[state.rootMoveCount++] = {list[i], score, 0};
  }
  for (int i = 0; i < state.rootMoveCount; ++i)
    for (int j = i + 1; j < state.rootMoveCount; ++j)
      if (state.rootMoves[j].score > state.rootMoves[i].score) {
        RootMove swap = state.rootMoves[i];
        state.rootMoves[i] = state.rootMoves[j];
        state.rootMoves[j] = swap;
      }
}

bool isAllowed(Move move, const RootMoveList& allowed) {
  for (int i = 0; i < allowed.count; ++i)
    if (allowed.moves[i] == move) return true;
  return false;
}

}  // namespace

int searchRoot(SearchState& state, Position& position, int depth, int alpha, int beta, Move* line, const RootMoveList& allowed,
               uint64_t* firstMoveNodes, uint64_t* otherMoveNodes) {
  if (searchSignals.stop) return 0;
  position.pvPly = 0;
  position.horizonExtensions = 0;
  position.extensionRemainder = 0;

  const int halfDepth = depth >> 1;
  const bool reportMoves = halfDepth > 5 && clock(clockSettings.wholeSeconds) - searchLimits.startTime > 0.25;
  if (searchPollSaysStop(state)) return 0;
  traceCount(&SearchTrace::rootPasses);
  line[0] = 0;
  if (halfDepth == 1) buildRootMoves(state, position);

  const int us = sideToMove(position);
  const int them = us ^ 1;
  const Bitboard passers = passerSquares(position);
  int bestScore = -fullWindow;
  int moveNumber = 0;
  // Counted over the whole pass: once a check, a passer push or a sound
  // capture has come up, no later move of the pass is reduced.
  int noReduce = 0;
  Move scratch[lineLength] = {};
  for (int i = 0; i < state.rootMoveCount; ++i) {
    if (searchSignals.stop) return 0;
    const Move move = state.rootMoves[i].move;
    makeMove(position, state.rootChild, move);
    countNodes(state);
    const uint64_t nodesBefore = state.nodes;
    if (!isAllowed(move, allowed)) continue;
    if (kingAttacked(state.rootChild, us)) continue;
    state.rootChild.inCheck = kingAttacked(state.rootChild, them);
    ++moveNumber;
    if (reportMoves && options.multiPv == 1 && state.reporter) state.reporter->currentMove(move, moveNumber);
    const int moveClassBits = moveClass(position, state.rootChild, move);

    if (position.inCheck) ++noReduce;
    int extension = 0;
    if (state.rootChild.inCheck) {
      ++noReduce;
      extension = 4;
    }
    if (state.rootChild.movedPiece == Pawn) {
      if (passers & squareBit(moveTo(move))) {
        ++noReduce;
        extension += 4;
      }
    } else if ((moveClassBits & moveClassCapture) && !position.inCheck && moveKindIndex(move) <= 1 &&
               !exchangeLoses(position, move)) {
      noReduce = 1;
      extension += 2;
    }
    int carried = extension + state.rootChild.extensionRemainder;
    state.rootChild.extensionRemainder = static_cast<uint8_t>(carried & 1);
    const int childDepth = depth + (carried >> 1) - 2;

    int value;
    if (moveNumber == 1) {
      value = -searchPv(state, state.rootChild, -beta, -alpha, childDepth, 1, scratch);
      if (searchSignals.stop) return 0;
    } else {
      if (noReduce == 0 && options.useLmr && moveNumber >= 3 && depth >= 8 && isPlainQuiet(moveClassBits) &&
          state.rootChild.capturedPiece == 0 && bestScore >= prunableScoreFloor) {
        traceCount(&SearchTrace::rootReductions);
        int reduced = -searchNode(state, state.rootChild, -alpha, depth - 4, 1, scratch, 0, 0);
        if (searchSignals.stop) return 0;
        if (reduced <= alpha) { traceCount(&SearchTrace::rootReductionFailLows); continue; }
      }
      value = -searchNode(state, state.rootChild, -alpha, childDepth, 1, scratch, 0, 0);
      if (searchSignals.stop) return 0;
      if (value > alpha) {
        traceCount(&SearchTrace::rootResearches);
        value = -searchPv(state, state.rootChild, -beta, -alpha, childDepth, 1, scratch);
        if (searchSignals.stop) return 0;
      }
    }
    state.rootMoves[i].nodes = state.nodes - nodesBefore;
    if (searchSignals.stop) return 0;

    if (value > bestScore) {
      line[0] = move;
      for (int k = 0; k < 62; ++k) line[k + 1] = scratch[k];
      line[lineLength - 1] = 0;
      if (options.multiPv < 2 && halfDepth > 4 && state.reporter) reportLine(state, position, halfDepth, state.selDepth, value, line);
      bestScore = value;
      if (value >= beta) break;
      if (value > alpha) alpha = value;
    }
  }
  if (searchSignals.stop) return 0;

  // The best move of each pass goes first, the others keep their order.
  for (int i = 0; i < state.rootMoveCount; ++i) {
    if (state.rootMoves[i].move != line[0]) continue;
    RootMove best = state.rootMoves[i];
    for (int j = i; j > 0; --j) state.rootMoves[j] = state.rootMoves[j - 1];
    state.rootMoves[0] = best;
    break;
  }
  if (moveNumber == 0) bestScore = position.inCheck ? -mateScore : 0;
  if (state.rootMoveCount > 0) *firstMoveNodes += state.rootMoves[0].nodes;
  for (int i = 1; i < state.rootMoveCount; ++i) *otherMoveNodes += state.rootMoves[i].nodes;
  return bestScore;
}
