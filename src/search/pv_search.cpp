#include "base/options.h"
#include "board/attacks.h"
#include "board/exchange.h"
#include "board/make_move.h"
#include "board/queries.h"
#include "eval/evaluate.h"
#include "moves/picker.h"
#include "moves/threats.h"
#include "search/conventions.h"
#include "search/draws.h"
#include "search/hash_table.h"
#include "search/limits.h"
#include "search/reductions.h"
#include "search/search.h"
#include "search/search_common.h"
#include "search/search_trace.h"

int searchPv(SearchState& state, Position& position, int alpha, int beta, int depth, int ply, Move* line) {
  if (searchSignals.stop) return 0;
  if (searchPollSaysStop(state)) return 0;
  traceCount(&SearchTrace::pvEntries);
  reachPly(state, ply);
  // Node parity below counts from the nearest PV node.
  position.pvPly = static_cast<uint8_t>(ply & 0xff);
  const Move entryKiller1 = state.killer1[ply < 256 ? ply : 255];
  const Move entryKiller2 = state.killer2[ply < 256 ? ply : 255];
  if (isDrawnMaterial(position, ply)) return drawValue(ply);
  const bool inCheck = position.inCheck != 0;
  if (ply >= maxSearchPly) return inCheck ? drawValue(ply) : evaluate(position, *state.caches);

  const int us = sideToMove(position);
  const int them = us ^ 1;
  Move scratch[lineLength] = {};

  // Horizon: extend where the score sits just below beta, or where something
  // hangs or a pawn is about to promote and the score is near the window.
  if (depth < 2) {
    if (depth < 0 || position.horizonExtensions) return searchQuiet(state, position, alpha, beta, 0, ply, line);
    int value = evaluate(position, *state.caches) + (position.capturedPiece ? 5 : 0);
    bool extend;
    if (beta - 99 <= value && value < beta)
      extend = true;
    else if (value < alpha || value > beta + 99)
      extend = false;
    else
      extend = (position.pieces[them][Pawn] & seventhRank[them]) || worstHanging(position) != 0;
    if (!extend) return searchQuiet(state, position, alpha, beta, 0, ply, line);
    position.horizonExtensions += 1;
    traceCount(&SearchTrace::pvHorizonExtensions);
    return searchPv(state, position, alpha, beta, depth + 2, ply, line);
  }

  // Hash probe: never a cut-off here, and only a recent enough move counts.
  line[0] = 0;
  Move hashMove = 0;
  int hashScore = 0;
  if (const HashHit hit = hashProbe(position.hashKey); hit && hit->depth >= depth - 6) {
    hashMove = hit->move;
    hashScore = hit->score;
  }

  // Internal iterative deepening with the same window.
  if (hashMove == 0 && depth > 9) {
    traceCount(&SearchTrace::pvIidSearches);
    hashScore = searchPv(state, position, alpha, beta, depth - 4, ply, scratch);
    if (searchSignals.stop) return 0;
    hashMove = scratch[0];
  }

  const int halfDepth = depth >> 1;
  const int singularReference = hashScore - depth / 2;
  bool singleReply = false;
  if (inCheck && halfDepth > 2) {
    int made;
    singleReply = countEvasions(position, state.history, made) == 1;
    countNodes(state, made);
  }
  traceCount(&SearchTrace::pvSingleReplyNodes, singleReply);
  const Bitboard passers = passerSquares(position);
  const int alphaOnEntry = alpha;

  MovePicker picker;
  if (inCheck)
    initPicker(picker, position, state.history, 4, hashMove, 0, 0);
  else
    initPicker(picker, position, state.history, 0, hashMove, state.killer1[ply], state.killer2[ply]);
  int bestScore = -fullWindow;
  int moveCount = 0;
  int bestIndex = -1;
  TriedQuiet triedQuiets[maxGeneratedMoves];
  int triedCount = 0;
  int moveClassBits = 0;  // stands from the move before when a draw arrives first
  const Bitboard enemyKing = position.pieces[them][King];
  Position child;
  Move move;
  while ((move = nextMove(picker)) != 0) {
    const int kind = moveKindIndex(move);
    const Square from = moveFrom(move);
    const Square to = moveTo(move);
    const bool isKiller = move == entryKiller1 || move == entryKiller2;

    if (kind >= 5 && !(knightAttacks[to] & enemyKing)) { traceCount(&SearchTrace::underPromotionSkips); continue; }
    if (moveCount > 0 && !inCheck && halfDepth <= 2 && kind == 0 && exchangeLoses(position, move)) { traceCount(&SearchTrace::nodeExchangePrunes); continue; }

    if (!makeLegalChild(state, position, child, move, us)) continue;
    ++moveCount;

    int value;
    if (repetitionDraw(child)) {
      value = drawValue(ply);
      if (searchSignals.stop) return 0;
    } else {
      moveClassBits = moveClass(position, child, move);
      if (isQuietNonEvasion(moveClassBits)) triedQuiets[triedCount++] = {static_cast<uint8_t>(child.movedPiece), static_cast<uint8_t>(to)};

      // Extensions, in quarter plies.
      int extension = 0;
      bool noReduce = false;
      bool soundCheck = false;
      if (inCheck) {
        noReduce = true;
        if (singleReply) extension = 2;
      }
      if (child.inCheck) {
        traceCount(&SearchTrace::pvCheckExtensions);
        noReduce = true;
        if (!exchangeLoses(position, move)) {
          extension += 4;
          soundCheck = true;
        } else {
          extension += 2;
        }
      }
      if (!soundCheck) {
        if (child.movedPiece == Pawn && (passers & squareBit(to))) {
          traceCount(&SearchTrace::pvPasserExtensions);
          extension += 2;
          noReduce = true;
        }
        if (isCaptureNonEvasion(moveClassBits) && kind <= 1 && !exchangeLoses(position, move)) {
          traceCount(&SearchTrace::pvCaptureExtensions);
          extension += 2;
          noReduce = true;
        }
        if (extension <= 3 && move == hashMove && depth > 15) {
          traceCount(&SearchTrace::pvSingularTests);
          int singular = searchNode(state, position, singularReference, depth - 10, ply, scratch, move, 1);
          if (searchSignals.stop) return 0;
          if (singular < singularReference) extension += 2, traceCount(&SearchTrace::pvSingularExtensions);
        }
      }
      if (extension >= 5) extension = 4;
      if (child.phase == 0 && child.capturedPiece >= 2) extension = 8, traceCount(&SearchTrace::pawnEndingExtensions);  // into a pawn ending
      int carried = extension + child.extensionRemainder;
      int newDepth = depth + (carried >> 1);
      child.extensionRemainder = static_cast<uint8_t>(carried & 1);
      if (newDepth <= 9 && isQuietNonEvasion(moveClassBits) && exchangeLoses(position, makeMoveWord(from, from)))
        noReduce = true;

      // Search of the move.
      int reduction = pvReduction(newDepth, moveCount);
      if (moveCount == 1) {
        value = -searchPv(state, child, -beta, -alpha, newDepth - 2, ply + 1, scratch);
        if (searchSignals.stop) return 0;
      } else {
        // A piece that steps out of a losing exchange is never reduced.
        bool rescue = depth >= 6 && depth <= 15 && isPlainQuiet(moveClassBits) && child.movedPiece != King &&
                      exchangeLoses(position, makeMoveWord(from, from)) &&
                      !exchangeLoses(position, move);
        traceCount(&SearchTrace::pvRescues, rescue);
        if (!rescue && !noReduce && options.useLmr && !isKiller && newDepth >= 8 && reduction >= 2 && isPlainQuiet(moveClassBits) &&
            bestScore >= prunableScoreFloor && (newDepth >= 10 || moveThreat(child) == 0)) {
          int reduced = newDepth - 2 - reduction;
          if (reduced == 2 || reduced == 3) reduced = 0;
          traceCount(&SearchTrace::pvReductions);
          value = -searchNode(state, child, -alpha, reduced, ply + 1, scratch, 0, 0);
          if (searchSignals.stop) return 0;
          if (value <= alpha) { traceCount(&SearchTrace::pvReductionFailLows); continue; }
        }
        traceCount(&SearchTrace::pvZeroWindowSearches);
        value = -searchNode(state, child, -alpha, newDepth - 2, ply + 1, scratch, 0, 0);
        if (searchSignals.stop) return 0;
        if (value > alpha) {
          traceCount(&SearchTrace::pvResearches);
          value = -searchPv(state, child, -beta, -alpha, newDepth - 2, ply + 1, scratch);
          if (searchSignals.stop) return 0;
        }
      }
    }

    if (value <= bestScore) continue;
    if (isQuietNonEvasion(moveClassBits)) bestIndex = triedCount - 1;
    if (value > alpha) {
      line[0] = move;
      for (int i = 0; i < 62; ++i) line[i + 1] = scratch[i];
      line[lineLength - 1] = 0;
      alpha = value;
    }
    bestScore = value;
    if (value >= beta) {
      if (isQuietNonEvasion(moveClassBits)) recordKiller(state, move, ply);
      break;
    }
  }

  if (searchSignals.stop) return 0;
  if (moveCount == 0) bestScore = inCheck ? ply - mateScore : 0;
  // A PV node teaches the history without a cut-off.
  if (bestIndex != -1) creditHistory(state.history, triedQuiets, triedCount, bestIndex, us, halfDepth);
  int16_t storedDepth = static_cast<int16_t>(depth);
  if (bestScore <= alphaOnEntry)
    hashStore(position.hashKey, storedDepth, scoreToStore(bestScore, ply), boundUpper, 0);
  else if (bestScore < beta)
    hashStore(position.hashKey, storedDepth, scoreToStore(bestScore, ply), boundExact, static_cast<uint16_t>(line[0]));
  else
    hashStore(position.hashKey, storedDepth, scoreToStore(bestScore, ply), boundLower, static_cast<uint16_t>(line[0]));
  return bestScore;
}
