#include "board/exchange.h"
#include "board/make_move.h"
#include "board/queries.h"
#include "eval/evaluate.h"
#include "eval/tables.h"
#include "moves/picker.h"
#include "search/conventions.h"
#include "search/draws.h"
#include "search/hash_table.h"
#include "search/limits.h"
#include "search/search.h"
#include "search/search_common.h"
#include "search/search_trace.h"

int searchQuiet(SearchState& state, Position& position, int alpha, int beta, int depth, int ply, Move* line) {
  if (searchSignals.stop) return 0;
  if (searchPollSaysStop(state)) return 0;
  traceCount(&SearchTrace::quietEntries);
  reachPly(state, ply);
  if (isDrawnMaterial(position, ply)) return drawValue(ply);
  line[0] = 0;
  const bool inCheck = position.inCheck != 0;
  if (ply >= maxSearchPly) return inCheck ? drawValue(ply) : evaluate(position, *state.caches);

  const bool zeroWindow = beta == alpha + 1;
  Move hashMove = 0;
  const HashHit hit = depth >= -10 ? hashProbe(position.hashKey) : HashHit{};
  if (hit) {
    hashMove = hit->move;
    if (zeroWindow && depth <= hit->depth) {
      int stored = scoreFromStore(hit->score, ply);
      if (((hit->bound & boundLower) && stored >= beta) || ((hit->bound & boundUpper) && stored < beta)) return traceCount(&SearchTrace::quietHashCutoffs), stored;
    }
  }

  const int us = sideToMove(position);
  const int them = us ^ 1;
  int eval = 0;
  if (!inCheck) {
    eval = evaluate(position, *state.caches) + (position.capturedPiece ? 5 : 0);
    if (hit) eval = sharpenWithEntry(eval, *hit);
    if (depth < -59) return traceCount(&SearchTrace::quietDepthLimitReturns), eval;
  }

  MovePicker picker;
  int bestScore;
  int moveCount;
  bool dropQuietMoves = false;
  if (inCheck) {
    // No stand-pat in check: every evasion is tried, however deep.
    initPicker(picker, position, state.history, 4, hashMove, 0, 0);
    bestScore = -fullWindow;
    moveCount = 0;
  } else {
    if (eval >= beta) return traceCount(&SearchTrace::quietStandPats), eval;
    if (eval > alpha) alpha = eval;
    bestScore = eval;
    moveCount = 1;
    if (depth == 0 || (!zeroWindow && depth >= -2)) {
      initPicker(picker, position, state.history, 2, hashMove, 0, 0);
      dropQuietMoves = true;
    } else {
      initPicker(picker, position, state.history, 3, 0, 0, 0);
    }
  }

  const int phaseRow = position.phase < 96 ? position.phase : 96;
  Position child;
  // A child writes its best move and the line's end, nothing more.
  Move scratch[2] = {};
  Move move;
  while ((move = nextMove(picker)) != 0) {
    const int kind = moveKindIndex(move);
    const Square to = moveTo(move);
    if (kind >= 5) continue;  // under-promotions never pay off this deep
    if (inCheck) {
      if (bestScore >= prunableScoreFloor && kind <= 1 && !(position.pieces[them][0] & squareBit(to)) &&
          exchangeLoses(position, move))
        { traceCount(&SearchTrace::quietEvasionPrunes); continue; }
    } else {
      // Delta pruning: even winning the victim can't lift the score to alpha.
      if (kind <= 2) {
        int victim = pieceOn(position, them, to);
        int margin = victim == Pawn ? 80 : 140;
        if (alpha > eval + phasePieceValues[phaseRow][victim] + margin && !givesCheck(position, move)) { traceCount(&SearchTrace::quietDeltaPrunes); continue; }
      }
      if (depth < -16 && to != moveTo(position.lastMove)) { traceCount(&SearchTrace::quietRecaptureSkips); continue; }
    }

    if (!makeLegalChild(state, position, child, move, us)) continue;
    ++moveCount;

    int value;
    if (repetitionDraw(child)) {
      value = drawValue(ply);
      if (value <= bestScore) continue;
    } else {
      int moveClassBits = ((child.capturedPiece || kind == 2 || kind == 4) ? moveClassCapture : 0) |
                          (child.inCheck ? moveClassChecking : 0) | (inCheck ? moveClassEvasion : 0);
      if (dropQuietMoves && isPlainQuiet(moveClassBits)) { traceCount(&SearchTrace::quietDroppedQuiets); continue; }
      value = -searchQuiet(state, child, -beta, -alpha, depth - 2, ply + 1, scratch);
      if (searchSignals.stop) return 0;
      if (value <= bestScore) continue;
    }
    bestScore = value;
    if (value > alpha) {
      line[0] = move;
      line[1] = 0;
      alpha = value;
    }
    if (value >= beta) break;
  }

  if (searchSignals.stop) return 0;
  if (moveCount == 0) bestScore = ply - mateScore;
  if (zeroWindow) {
    // Depth -2 serves every level below the first: a probe needs depth <= stored.
    int16_t storedDepth = depth >= 0 ? 0 : -2;
    if (bestScore >= beta)
      hashStore(position.hashKey, storedDepth, scoreToStore(bestScore, ply), boundLower, static_cast<uint16_t>(line[0]));
    else
      hashStore(position.hashKey, storedDepth, scoreToStore(bestScore, ply), boundUpper, 0);
  }
  return bestScore;
}
