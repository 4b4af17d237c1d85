#include <array>
#include <cmath>
#include <cstdlib>

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

namespace {

// How far below beta a shallow node (depth in half plies) may stand and
// still be lifted by a quiet move: below that only captures and checks are
// tried.
constexpr std::array<int, 24> futilityMargin = [] {
  std::array<int, 24> margin{};
  for (int i = 0; i < 24; ++i) margin[i] = 2 * i * i + 60;
  return margin;
}();
// What the worst hanging piece (by its scaled value) adds to the static
// null-move margin: growing fast for the first pieces, slowly after.
const std::array<int, 20> hangingMargin = [] {
  std::array<int, 20> margin{};
  for (int i = 0; i < 20; ++i) margin[i] = static_cast<int>(std::pow(i, 0.3) * 50.0 + 0.5);
  return margin;
}();

// Margins by remaining depth in half plies (index 2..7 and 2..5).
constexpr int staticMargin[8] = {0, 0, 110, 115, 125, 130, 140, 160};
constexpr int threatMargin[6] = {0, 0, 10, 15, 30, 35};
// Moves after which quiet moves are pruned at shallow depth, by node parity.
constexpr int lateMoveLimit[2][10] = {
    {0, 0, 3, 4, 5, 6, 7, 8, 14, 17},
    {0, 0, 4, 5, 6, 7, 8, 9, 10, 11},
};
constexpr Bitboard sixthRank[2] = {0x0000ff0000000000ULL, 0x0000000000ff0000ULL};

// Beta above this limit lets the two futility tests of a quiet late move run
// (a losing exchange or no threat prunes it). The margin 2^s doubles with
// each ply of depth left. Where s falls below zero (new depth 4 or 5 at an
// odd distance from the PV), the term is what a 32-bit sum makes of it:
// s = -1 adds 2^31, which wraps a rest of zero or more below every beta, so
// the tests always run at new depth 5 unless the rest is negative, when the
// sum lands above every beta instead; s = -2 adds 2^30, which no beta
// reaches, so they never run at new depth 4. The search was tuned with
// those readings, and its results depend on them.
int64_t futilityLimit(int eval, int s, int newDepth, int moveCount) {
  const int64_t rest = int64_t{eval} + 20 + 2 * newDepth - 3 * moveCount;
  if (s >= 0) return rest + (int64_t{1} << s);
  const int64_t aboveEveryBeta = INT64_MAX / 2;
  const int64_t belowEveryBeta = INT64_MIN / 2;
  if (s == -1 && rest >= 0) return belowEveryBeta;
  return aboveEveryBeta;
}

bool opponentPawnOnSeventh(const Position& position, int them) {
  return (position.pieces[them][Pawn] & seventhRank[them]) != 0;
}

}  // namespace

int searchNode(SearchState& state, Position& position, int beta, int depth, int ply, Move* line, Move excludedMove, int noNull) {
  // Entry: the stop, the input poll and the killers this node starts with.
  if (searchSignals.stop) return 0;
  if (searchPollSaysStop(state)) return 0;
  traceCount(&SearchTrace::nodeEntries);
  reachPly(state, ply);
  const Move entryKiller1 = state.killer1[ply < 256 ? ply : 255];
  const Move entryKiller2 = state.killer2[ply < 256 ? ply : 255];
  // Drawn material and the deepest ply.
  if (isDrawnMaterial(position, ply)) return drawValue(ply);
  const bool inCheck = position.inCheck != 0;
  if (ply >= maxSearchPly) return inCheck ? drawValue(ply) : evaluate(position, *state.caches);

  // The children's lines. Below a zero window a line is a move and its end,
  // no longer: these lines are never printed, only their first move is kept
  // (the hash move), so two words are all a child writes.
  Move scratch[2] = {};
  // Horizon: a quiet node gets one more ply only if the move that led here
  // threatens something and the score stands just above beta.
  if (depth < 2) {
    if (depth < 0 || position.horizonExtensions || excludedMove || inCheck || moveThreat(position) == 0)
      return searchQuiet(state, position, beta - 1, beta, 0, ply, line);
    traceCount(&SearchTrace::nodeHorizonTests);
    int value = evaluate(position, *state.caches) + (position.capturedPiece ? 5 : 0);
    if (beta <= value && value < beta + 75) {
      traceCount(&SearchTrace::nodeHorizonExtensions);
      position.horizonExtensions = 1;
      return searchNode(state, position, beta, depth + 2, ply, scratch, 0, noNull);
    }
    return searchQuiet(state, position, beta - 1, beta, 0, ply, line);
  }

  // Hash probe.
  line[0] = 0;
  int hashScore = 0;
  Move hashMove = 0;
  HashHit hit;
  if (!excludedMove) {
    hit = hashProbe(position.hashKey);
    if (hit) {
      hashScore = hit->score;
      hashMove = hit->move;
      if (depth <= hit->depth) {
        int stored = scoreFromStore(hit->score, ply);
        if (((hit->bound & boundLower) && stored >= beta) || ((hit->bound & boundUpper) && stored < beta))
          return traceCount(&SearchTrace::nodeHashCutoffs), stored;
      }
    }
  }

  // Static evaluation.
  const int us = sideToMove(position);
  const int them = us ^ 1;
  int eval = 0;
  if (!inCheck) {
    eval = evaluate(position, *state.caches) + (position.capturedPiece ? 5 : 0);
    if (hit) eval = sharpenWithEntry(eval, *hit);
  }

  // Hopeless node: far below beta near the horizon.
  if (depth <= 7 && !inCheck && eval < beta - 1250) return traceCount(&SearchTrace::hopelessReturns), eval;

  // Winning without counterplay: search it less deeply.
  if (depth >= 4 && !inCheck && eval > 400 && !position.pieces[them][Queen] && !opponentPawnOnSeventh(position, them))
    depth -= 2, traceCount(&SearchTrace::winningDepthCuts);

  const int parity = nodeParity(ply, position);

  // Internal iterative deepening: a node without a hash move finds one.
  bool nullMoveAllowed = true;
  if (eval >= beta - 99 && hashMove == 0 && depth > 9) {
    traceCount(&SearchTrace::nodeIidSearches);
    hashScore = searchNode(state, position, beta + 5, depth - 8, ply, scratch, 0, 1);
    hashMove = scratch[0];
    if (hashScore < beta + 5) nullMoveAllowed = false, traceCount(&SearchTrace::nodeIidNullBlocks);
  }

  Position child;
  // Null-move rules: static margins near the horizon, a null-move search deeper.
  if (nullMoveAllowed && !noNull && options.nullMovePruning && !inCheck && std::abs(beta) <= mateThreshold) {
    // The slot may hold something new since the hash probe; read it once more.
    int nullEval = hit ? sharpenWithEntry(eval, readSlot(*hit.slot)) : eval;
    if (nullEval >= beta + 5) {
      if (depth <= 5) {
        if (nullEval + (1 - parity) * 70 - staticMargin[depth] >= beta) return traceCount(&SearchTrace::staticNullMargins), beta;
        int hanging = opponentPawnOnSeventh(position, them) ? 15 : -worstHanging(position);
        if (nullEval - threatMargin[depth] - hangingMargin[hanging] >= beta) return traceCount(&SearchTrace::staticNullHanging), beta;
      } else {
        if (depth <= 7 && eval + (1 - parity) * 70 - staticMargin[depth] >= beta) return traceCount(&SearchTrace::staticNullDeep), beta;
        int reduction;
        if (position.phase < 24)
          reduction = (depth - 8) / 12 + 2 + (nullEval > beta + 220 ? 1 : 0);
        else
          reduction = (depth - 8) / 8 + 3 + (nullEval > beta + 110 ? 1 : 0);
        // Pawns and king alone risk zugzwang: no null move there.
        Bitboard pieces = position.pieces[us][0] & ~position.pieces[us][Pawn] & ~position.pieces[us][King];
        traceCount(&SearchTrace::nullMoveZugzwangSkips, pieces == 0);
        if (pieces) {
          traceCount(&SearchTrace::nullMoveSearches);
          makeMove(position, child, 0);
          countNodes(state);
          int value = -searchNode(state, child, 1 - beta, depth - 2 * reduction - 2, ply + 1, scratch, 0, 1);
          if (searchSignals.stop) return 0;
          if (std::abs(value) <= mateThreshold && value >= beta) return traceCount(&SearchTrace::nullMoveCutoffs), beta;
        }
      }
    }
  }

  // Razoring: far below beta, a quiescence search decides.
  const int halfDepth = depth >> 1;
  if (!inCheck) {
    bool razorAllowed = hashMove == 0 && position.lastMove != 0 && !(position.pieces[us][Pawn] & seventhRank[us]);
    if (halfDepth == 1) {
      if (eval < beta - 120 && razorAllowed) return traceCount(&SearchTrace::razorShallowReturns), searchQuiet(state, position, beta - 1, beta, 0, ply, scratch);
    } else if (depth >= 4 && depth <= 9 && std::abs(beta) <= mateThreshold) {
      int target = beta - (120 + 20 * (depth - 2));
      if (eval < target && razorAllowed) {
        traceCount(&SearchTrace::razorDeepSearches);
        int value = searchQuiet(state, position, target - 1, target, 0, ply, scratch);
        if (searchSignals.stop) return 0;
        if (value < target) return traceCount(&SearchTrace::razorDeepCutoffs), value;
      }
    }
  }

  // Choosing the moves.
  MovePicker picker;
  int bestScore = -fullWindow;
  int moveCount = 0;
  bool singleReply = false;
  if (inCheck) {
    initPicker(picker, position, state.history, 4, hashMove, 0, 0);
    if (halfDepth > 6) {
      int made;
      singleReply = countEvasions(position, state.history, made) == 1;
      countNodes(state, made);
    }
    traceCount(&SearchTrace::singleReplyNodes, singleReply);
  } else if (halfDepth <= 5 && beta > eval + futilityMargin[depth]) {
    // Only captures and checks can lift this node; eval stands as the score to beat.
    traceCount(&SearchTrace::capturesOnlyNodes);
    initPicker(picker, position, state.history, 2, hashMove, 0, 0);
    bestScore = eval;
    moveCount = 1;
  } else {
    initPicker(picker, position, state.history, 0, hashMove, state.killer1[ply], state.killer2[ply]);
  }

  // The move loop.
  TriedQuiet triedQuiets[maxGeneratedMoves];
  int triedCount = 0;
  // A draw that cuts off reaches the update before its own class is worked
  // out, so the class of the move tried before it stands (0 at first).
  int moveClassBits = 0;
  const Bitboard enemyKing = position.pieces[them][King];
  Move move;
  bool cutOff = false;
  while ((move = nextMove(picker)) != 0) {
    if (move == excludedMove) continue;
    const int kind = moveKindIndex(move);
    const Square from = moveFrom(move);
    const Square to = moveTo(move);
    const bool isKiller = move == entryKiller1 || move == entryKiller2;

    // Late move pruning.
    if (depth <= 7 && !inCheck && !isKiller && moveCount > lateMoveLimit[parity][depth] && kind <= 1 &&
        !(position.pieces[them][0] & squareBit(to)) &&
        !(position.pieces[us][Pawn] & sixthRank[us] & squareBit(from)) && !givesCheck(position, move))
      { traceCount(&SearchTrace::lateMovePrunes); continue; }
    // Under-promotions only where the knight would check.
    if (kind >= 5 && !(knightAttacks[to] & enemyKing)) { traceCount(&SearchTrace::underPromotionSkips); continue; }
    // Exchange pruning.
    if (moveCount > 0 && !inCheck && halfDepth <= 2 && kind == 0 && exchangeLoses(position, move)) { traceCount(&SearchTrace::nodeExchangePrunes); continue; }

    // Making the move.
    if (!makeLegalChild(state, position, child, move, us)) continue;
    ++moveCount;

    int value;
    // Draw by repetition: not searched.
    if (repetitionDraw(child)) {
      value = drawValue(ply);
      traceCount(&SearchTrace::nodeRepetitions);
      if (searchSignals.stop) return 0;
    } else {
      // The move's class, and the quiet moves tried for the history.
      moveClassBits = moveClass(position, child, move);
      if (isQuietNonEvasion(moveClassBits)) triedQuiets[triedCount++] = {static_cast<uint8_t>(child.movedPiece), static_cast<uint8_t>(to)};

      // Extension, in quarter plies.
      int extension = singleReply ? 2 : 0;
      if (child.inCheck) {
        extension += 2;
        traceCount(&SearchTrace::nodeCheckExtensions);
        if (child.movedPiece == Queen && !exchangeLoses(position, move)) extension += 1, traceCount(&SearchTrace::queenCheckExtensions);
      } else if (extension == 0 && moveCount == 1 && depth >= 6 && depth <= 13) {
        extension = 2;
        traceCount(&SearchTrace::firstMoveExtensions);
      }
      // Singular test: the hash move alone holds the score.
      if (!excludedMove && extension == 0 && move == hashMove && depth > 13) {
        int target = hashScore - 20;
        traceCount(&SearchTrace::nodeSingularTests);
        int singular = searchNode(state, position, target, halfDepth, ply, scratch, move, 0);
        if (searchSignals.stop) return 0;
        if (singular < target) extension = 2, traceCount(&SearchTrace::nodeSingularExtensions);
      }
      // New depth.
      if (extension > 4) extension = 4;
      if (child.phase == 0 && child.capturedPiece >= 2) extension = 8, traceCount(&SearchTrace::pawnEndingExtensions);  // into a pawn ending
      int carried = extension + child.extensionRemainder;
      int newDepth = depth + (carried >> 1);
      child.extensionRemainder = static_cast<uint8_t>(carried & 1);

      // Escape: the piece moved out of a losing exchange into a safe square.
      bool escapes = newDepth >= 6 && newDepth <= 15 && isPlainQuiet(moveClassBits) && child.movedPiece != King &&
                     exchangeLoses(position, makeMoveWord(from, from)) && !exchangeLoses(position, move);
      traceCount(&SearchTrace::escapes, escapes);

      // Futility by move number.
      if (newDepth >= 4 && newDepth <= 17 && isQuietNonEvasion(moveClassBits) && !isKiller && bestScore >= prunableScoreFloor &&
          moveCount >= 7) {
        int s = parity == 0 ? newDepth - 4 : newDepth - 6;
        if (beta > futilityLimit(eval, s, newDepth, moveCount)) {
          traceCount(&SearchTrace::futilityTests);
          traceCount(&SearchTrace::futilityNegativePower, s < 0);
          if (exchangeLoses(position, move)) { traceCount(&SearchTrace::futilityPrunes); continue; }
          if (moveThreat(child) == 0) { traceCount(&SearchTrace::futilityPrunes); continue; }
        }
      }

      // Late fail-low without a search.
      if (halfDepth == 4 && !inCheck && !child.inCheck && moveCount > lateMoveLimit[parity][depth] && !isKiller &&
          move != hashMove && bestScore >= prunableScoreFloor && isPlainQuiet(moveClassBits) && moveThreat(child) == 0) {
        value = beta - 1;
        traceCount(&SearchTrace::lateFailLows);
      } else {
        bool searched = false;
        // Reduction.
        int reduction = nodeReduction(newDepth, moveCount, parity);
        if (newDepth >= 8 && options.useLmr && isPlainQuiet(moveClassBits) && bestScore >= prunableScoreFloor && reduction >= 2 &&
            move != hashMove && !isKiller && (newDepth >= 10 || moveThreat(child) == 0)) {
          int reduced = newDepth - 2 - (escapes ? 2 : reduction);
          if (reduced == 2 || reduced == 3) reduced = 0;
          traceCount(&SearchTrace::nodeReductions);
          value = -searchNode(state, child, 1 - beta, reduced, ply + 1, scratch, 0, 0);
          if (searchSignals.stop) return 0;
          searched = value < beta;
          traceCount(&SearchTrace::nodeReductionResearches, !searched);
        }
        // Full search.
        if (!searched) {
          traceCount(&SearchTrace::nodeFullSearches);
          value = -searchNode(state, child, 1 - beta, newDepth - 2, ply + 1, scratch, 0, 0);
          if (searchSignals.stop) return 0;
        }
      }
    }

    // The best score so far, and a cut-off.
    if (value <= bestScore) continue;
    bestScore = value;
    if (value < beta) continue;
    cutOff = true;
    traceCount(&SearchTrace::nodeCutoffs);
    line[0] = move;
    line[1] = 0;
    if (isQuietNonEvasion(moveClassBits)) {
      recordKiller(state, move, ply);
      creditHistory(state.history, triedQuiets, triedCount, triedCount - 1, us, halfDepth);
    }
    break;
  }

  // The end of the node: mate or stalemate, and the hash store.
  if (!cutOff) {
    if (searchSignals.stop) return 0;
    if (moveCount == 0) bestScore = inCheck ? ply - mateScore : 0;
    traceCount(&SearchTrace::nodeFailLows);
  }
  if (excludedMove) return bestScore;
  if (bestScore >= beta)
    hashStore(position.hashKey, static_cast<int16_t>(depth), scoreToStore(bestScore, ply), boundLower,
              static_cast<uint16_t>(line[0]));
  else
    hashStore(position.hashKey, static_cast<int16_t>(depth), scoreToStore(bestScore, ply), boundUpper, 0);
  return bestScore;
}
