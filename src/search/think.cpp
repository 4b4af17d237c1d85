#include "search/think.h"

#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "board/fen.h"
#include "board/make_move.h"
#include "board/queries.h"
#include "eval/evaluate.h"
#include "board/piece_square.h"
#include "moves/generate.h"
#include "moves/picker.h"
#include "search/hash_table.h"
#include "search/playable_line.h"
#include "search/reductions.h"
#include "search/search.h"
#include "search/search_trace.h"
#include "base/log.h"
#include "base/options.h"
#include "base/platform.h"
#include "search/limits.h"

SearchState mainSearch;

namespace {


double elapsedSince(double start) {
  double elapsed = clock(wholeSecondClock) - start;
  return elapsed > 0.0 ? elapsed : 0.0;
}

// Takes move out of the list; false if nothing is left.
bool removeFromList(RootMoveList& list, Move move) {
  int kept = 0;
  for (int i = 0; i < list.count; ++i)
    if (list.moves[i] != move) list.moves[kept++] = list.moves[i];
  list.count = kept;
  return kept != 0;
}

// Re-searches a failed aspiration window until the value lies inside it, or
// falls back to the full window when it fails on the side that was reopened.
int resolveWindow(SearchState& state, Position& root, int depth, AspirationWindow window, int value, Move* line, const RootMoveList& list,
                  uint64_t* firstMoveNodes, uint64_t* otherMoveNodes) {
  const bool failedHigh = value >= window.beta;
  if (searchLimits.stop || (!failedHigh && value > window.alpha)) return value;
  for (;;) {
    window = widenWindow(window, value);
    value = searchRoot(state, root, depth, window.alpha, window.beta, line, list, firstMoveNodes, otherMoveNodes);
    if (searchLimits.stop || (value > window.alpha && value < window.beta)) return value;
    bool reopenedSideFailed = failedHigh ? value <= window.alpha : value >= window.beta;
    if (reopenedSideFailed) return searchRoot(state, root, depth, -fullWindow, fullWindow, line, list, firstMoveNodes, otherMoveNodes);
  }
}

void copyLine(Move* destination, const Move* source) {
  for (int i = 0; i < lineLength; ++i) destination[i] = source[i];
  destination[lineLength - 1] = 0;
}

}  // namespace

AspirationWindow widenWindow(AspirationWindow window, int value) {
  int width = window.beta - window.alpha;
  if (value >= window.beta) {
    int widened = static_cast<int>(width * 1.5 + (value - 1));
    return {value - 1 > -fullWindow ? value - 1 : -fullWindow, widened < fullWindow ? widened : fullWindow};
  }
  int widened = static_cast<int>((value + 1) - width * 1.5);
  return {widened > -fullWindow ? widened : -fullWindow, value + 1 < fullWindow ? value + 1 : fullWindow};
}

void pvToText(const Move* line, char* text) {
  text[0] = 0;
  size_t used = 0;
  for (int i = 0; i < lineLength && line[i] != 0; ++i) {
    moveToText(line[i], text + used);
    used += std::strlen(text + used);
    text[used++] = ' ';
    text[used] = 0;
  }
}

void scoreToText(int score, char* text) {
  if (std::abs(score) > mateThreshold) {
    int mateIn = score > 0 ? (mateScore - score) / 2 + 1 : -((mateScore - 1 - std::abs(score)) / 2) - 1;
    std::snprintf(text, scoreTextSize, "mate %d", mateIn);
  } else {
    std::snprintf(text, scoreTextSize, "cp %d", score);
  }
}

void printIterationLine(SearchState& state, const Position& root, int depth, int score, const Move* line) {
  double elapsed = elapsedSince(searchLimits.startTime);
  // Guards the rate against a zero time on a fast first report.
  double rateTime = elapsed > 0.0001 ? elapsed : 0.0001;
  char scoreText[scoreTextSize];
  char lineText[lineLength * 6 + 1];
  Move shown[lineLength];
  playableLine(root, line, shown);
  scoreToText(score, scoreText);
  pvToText(shown, lineText);
  std::printf("info depth %d time %d nodes %" PRIu64 " score %s nps %" PRIu64 " pv %s\n", depth,
              static_cast<int>(1000 * elapsed), nodeCounter.nodes, scoreText, static_cast<uint64_t>(nodeCounter.nodes / rateTime),
              lineText);
  std::fflush(stdout);
  state.lastShownMove = shown[0];
}

int think(SearchState& state, Position& root, const ThinkRequest& request) {
  const double goalSeconds = request.goalSeconds;
  const int maxDepth = request.maxDepth;
  const bool exactTime = request.exactTime;
  // Preparation.
  if (searchLimits.batchMode) options.deterministic = 1;
  searchLimits.pollingHeld = 1;
  bool goalReached = false;
  for (int i = 0; i < 24; ++i) futilityMargin[i] = static_cast<int>(2.0 * i * i) + 60;
  clearTheStop();
  if constexpr (searchTraced) searchTrace = SearchTrace{};
  std::memset(state.killer1, 0, sizeof state.killer1);
  std::memset(state.killer2, 0, sizeof state.killer2);

  RootMoveList allowed;
  if (request.restricted) {
    allowed = request.allowed;
  } else {
    Move list[maxGeneratedMoves];
    int count = generateAllMoves(root, list);
    Position scratch;
    for (int i = 0; i < count; ++i) {
      makeMove(root, scratch, list[i]);
      if (kingAttacked(scratch, sideToMove(root))) continue;
      allowed.moves[allowed.count++] = list[i];
    }
  }

  const bool freshTables = state.firstSearchPending || options.deterministic;
  if (freshTables) {
    state.history = MoveHistory{};
    buildReductionTables();
  }
  for (int i = 0; i < 20; ++i) hangingMargin[i] = static_cast<int>(std::pow(i, 0.3) * 50.0 + 0.5);
  fillRootScores(root);
  if (options.hashSizeMb != 0) {
    if (freshTables) {
      hashClear();
      state.firstSearchPending = 0;
    }
    hashAdvanceAge();
  }

  searchLimits.startTime = clock(wholeSecondClock);
  searchLimits.hardTimeLimit = searchLimits.startTime + searchLimits.hardTimePercent * 0.01 * goalSeconds;
  double softLimit = searchLimits.startTime + 0.75 * goalSeconds;
  // A fixed time per move is spent whole: the deepening never stops early on
  // a stable best move, and the goal itself is the hard limit.
  if (exactTime) {
    searchLimits.hardTimeLimit = searchLimits.startTime + goalSeconds;
    softLimit = searchLimits.hardTimeLimit;
  }
  state.lastShownMove = 0;

  logBoard(root);
  logPrintf("DEPTH      TIME         NODES      KNPS    SCORE   PRINCIPAL VARIATION\n");
  logPrintf("-----  --------  ------------  --------  -------   -------------------------------------------------\n");

  static char lineText[lineLength * 6 + 1];
  double bestMoveShare = 0.5;
  Move bestLine[lineLength] = {};
  Move playable[lineLength];
  int score = 0;
  int filledRows = 0;
  int finishedDepth = 0;

  for (int depth = 1;; ++depth) {
    uint64_t firstMoveNodes = 0;
    uint64_t otherMoveNodes = 0;
    if (depth == 1) {
      if (request.bookMove) {
        bestLine[0] = request.bookMove;
        bestLine[1] = 0;
        score = 0;
        break;
      }
    } else {
      searchLimits.pollingHeld = 0;
    }
    if (!searchLimits.batchMode) std::printf("info depth %d\n", depth);

    RootMoveList working = allowed;
    int lines = 0;
    uint64_t iterationNodes = 0;
    while (lines < options.multiPv) {
      int alpha = -fullWindow;
      int beta = fullWindow;
      if (depth > 4 && options.multiPv == 1) {
        int s1 = state.scoreByDepth[depth - 1], s2 = state.scoreByDepth[depth - 2], s3 = state.scoreByDepth[depth - 3];
        int delta = (std::abs(s1 - s2) + std::abs(s2 - s3)) / 2;
        if (delta < 16) delta = 16;
        alpha = s1 - delta > -fullWindow ? s1 - delta : -fullWindow;
        beta = s1 + delta < fullWindow ? s1 + delta : fullWindow;
      }
      int value = searchRoot(state, root, 2 * depth, alpha, beta, bestLine, working, &firstMoveNodes, &otherMoveNodes);
      value = resolveWindow(state, root, 2 * depth, {alpha, beta}, value, bestLine, working, &firstMoveNodes,
                            &otherMoveNodes);
      state.scoreByDepth[depth] = value;
      state.moveByDepth[depth] = bestLine[0];

      ++otherMoveNodes;
      double ratio = static_cast<double>(firstMoveNodes) / static_cast<double>(firstMoveNodes + otherMoveNodes);
      bestMoveShare = 0.75 * bestMoveShare + 0.25 * ratio;

      // A stable best move that took nearly all the nodes lets the search
      // stop early; a change of mind gives it more time.
      if (depth > 4 && !searchLimits.stop && !exactTime) {
        if (bestLine[0] == state.moveByDepth[depth - 1]) {
          double percent = (102 - 100 * bestMoveShare) * 2.5;
          softLimit = searchLimits.startTime + goalSeconds * 0.01 * (percent < 80 ? percent : 80);
        } else {
          softLimit = searchLimits.startTime + 1.2 * goalSeconds;
          bestMoveShare *= 0.9;
        }
      }
      if (!searchLimits.stop) {
        state.rows[lines].score = value;
        copyLine(state.rows[lines].line, bestLine);
        if (lines + 1 > filledRows) filledRows = lines + 1;
      }
      iterationNodes = nodeCounter.nodes;
      state.rows[lines].timeMs = static_cast<int32_t>(elapsedSince(searchLimits.startTime) * 1000);
      ++lines;
      if (searchLimits.stop) break;
      if (!removeFromList(working, bestLine[0])) break;
      if (depth == 1) break;  // the first iteration has one line
    }

    // A row no iteration has filled takes no part.
    int shown = lines < filledRows ? lines : filledRows;
    for (int i = 0; i < shown; ++i)
      for (int j = i + 1; j < shown; ++j)
        if (state.rows[j].score > state.rows[i].score) {
          PvRow swap = state.rows[i];
          state.rows[i] = state.rows[j];
          state.rows[j] = swap;
        }
    for (int i = 0; i < shown; ++i) {
      if (options.multiPv > 1) {
        playableLine(root, state.rows[i].line, playable);
        pvToText(playable, lineText);
        if (i == 0) state.lastShownMove = playable[0];
        std::printf("info multipv %d score cp %d depth %d time %d nodes %" PRIu64 " nps %" PRIu64 " pv %s\n", i + 1,
                    state.rows[i].score, depth, state.rows[i].timeMs, iterationNodes,
                    static_cast<uint64_t>(iterationNodes / (state.rows[i].timeMs * 0.001 + 0.0001)), lineText);
        std::fflush(stdout);
      }
    }

    copyLine(bestLine, state.rows[0].line);
    score = state.rows[0].score;
    if (searchLimits.stop) {
      logPrintf("search aborted\n");
      break;
    }

    double elapsed = elapsedSince(searchLimits.startTime);
    if (elapsed < 0.0001) elapsed = 0.0001;
    uint64_t nodes = nodeCounter.nodes;
    finishedDepth = depth;
    playableLine(root, bestLine, playable);
    pvToText(playable, lineText);
    logPrintf("%5d  %8.1f  %12" PRIu64 "  %8.1f  %7.2f   %s\n", depth, elapsed, nodes, 0.001 * nodes / elapsed,
              score * 0.01, lineText);
    if (searchLimits.batchMode) {
      if (depth < 32) {
        state.depthTime[depth] = elapsed;
        state.depthNodes[depth] = nodes;
        state.depthScore[depth] = score;
        state.depthMove[depth] = bestLine[0];
        if constexpr (searchTraced) depthTrace[depth] = searchTrace;
      }
    } else {
      printIterationLine(state, root, depth, score, bestLine);
    }

    if (!goalReached && clock(wholeSecondClock) > softLimit) goalReached = true;
    if (!searchLimits.pondering && goalReached) break;
    if (std::abs(score) > mateShiftLimit) break;
    if (depth >= maxDepth) break;
  }

  // Finish.
  logPrintf("Total move time %8.1f\n", elapsedSince(searchLimits.startTime));
  if (maxDepth > 98 || searchLimits.pondering) {
    for (;;) {
      if (searchLimits.serveInput) searchLimits.serveInput();
      if (searchLimits.stop || !searchLimits.pondering) break;
      sleepOneMillisecond();
    }
  }
  if (searchLimits.batchMode) return score;
  if (logFile) {
    double rate = evalCaches.etableProbes ? 100.0 * static_cast<double>(evalCaches.etableHits) / static_cast<double>(evalCaches.etableProbes) : 0.0;
    logPrintf("\nEtable statistics: %12" PRIu64 " hits  %12" PRIu64 " probes   Rate = %8.3f percent\n", evalCaches.etableHits,
              evalCaches.etableProbes, rate);
  }
  // bestmove names the first move of the last finished iteration and ponder
  // the second, from the line as it can be replayed. A client checks both
  // against the line it was shown last: when a better move of an iteration
  // that was then cut short was printed, the line of the answer goes out
  // again. A root without a legal move answers with the null move.
  playableLine(root, bestLine, playable);
  char bestText[8] = "0000";
  char ponderText[8] = "";
  if (playable[0]) moveToText(playable[0], bestText);
  if (playable[0] && playable[1]) moveToText(playable[1], ponderText);
  if (state.lastShownMove != 0 && state.lastShownMove != playable[0])
    printIterationLine(state, root, finishedDepth, score, bestLine);
  std::printf("info nodes %" PRIu64 "\n", nodeCounter.nodes);
  logPrintf("info nodes %" PRIu64 "\n", nodeCounter.nodes);
  if (ponderText[0]) {
    std::printf("bestmove %s ponder %s\n", bestText, ponderText);
    logPrintf("bestmove %s ponder %s\n", bestText, ponderText);
  } else {
    std::printf("bestmove %s\n", bestText);
    logPrintf("bestmove %s\n", bestText);
  }
  std::fflush(stdout);
  return score;
}
