#include "search/think.h"

#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/log.h"
#include "base/options.h"
#include "base/platform.h"
#include "board/fen.h"
#include "board/make_move.h"
#include "board/piece_square.h"
#include "board/queries.h"
#include "eval/evaluate.h"
#include "moves/generate.h"
#include "moves/picker.h"
#include "search/aspiration.h"
#include "search/hash_table.h"
#include "search/limits.h"
#include "search/playable_line.h"
#include "search/reductions.h"
#include "search/search.h"
#include "search/search_trace.h"
#include "search/threads.h"

SearchState mainSearch;

namespace {

double elapsedSince(double start) {
  double elapsed = clock(clockSettings.wholeSeconds) - start;
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

void copyLine(Move* destination, const Move* source) {
  for (int i = 0; i < lineLength; ++i) destination[i] = source[i];
  destination[lineLength - 1] = 0;
}

}  // namespace

void pvToText(const Position& root, const Move* line, char* text) {
  text[0] = 0;
  size_t used = 0;
  for (int i = 0; i < lineLength && line[i] != 0; ++i) {
    moveToText(root, line[i], text + used);
    used += std::strlen(text + used);
    text[used++] = ' ';
    text[used] = 0;
  }
}

int movesToMate(int score) { return (mateScore - score) / 2 + 1; }

void scoreToText(int score, char* text) {
  if (std::abs(score) > mateThreshold) {
    int mateIn = score > 0 ? movesToMate(score) : -((mateScore - 1 - std::abs(score)) / 2) - 1;
    std::snprintf(text, scoreTextSize, "mate %d", mateIn);
  } else {
    std::snprintf(text, scoreTextSize, "cp %d", score);
  }
}

void printIterationLine(SearchState& state, const Position& root, int depth, int selDepth, int score,
                        const Move* line) {
  double elapsed = elapsedSince(searchLimits.startTime);
  // Guards the rate against a zero time on a fast first report.
  double rateTime = elapsed > 0.0001 ? elapsed : 0.0001;
  char scoreText[scoreTextSize];
  char lineText[lineLength * 6 + 1];
  Move shown[lineLength];
  playableLine(root, line, shown);
  scoreToText(score, scoreText);
  pvToText(root, shown, lineText);
  const uint64_t nodes = nodesOfAllThreads();
  std::printf("info depth %d seldepth %d score %s nodes %" PRIu64 " nps %" PRIu64 " hashfull %d time %d pv %s\n",
              depth, selDepth, scoreText, nodes, static_cast<uint64_t>(nodes / rateTime),
              hashFullPerMille(), static_cast<int>(1000 * elapsed), lineText);
  std::fflush(stdout);
  state.lastShownMove = shown[0];
}

namespace {

// The clock of one search: the soft limit after which no new iteration
// starts (the hard limit is the polls' business), and what moves it.
struct TimeControl {
  double goal;
  double softLimit;
  bool exactTime;
  double bestMoveShare = 0.5;  // the running share of the nodes the best move took
  bool goalReached = false;
};

// What each iteration hands on to the next, and in the end to the answer.
struct Deepening {
  Move bestLine[lineLength] = {};
  int score = 0;
  int filledRows = 0;  // rows of state.rows that some iteration has filled
  int finishedDepth = 0;
  int selDepth = 0;  // of the finished iteration
};

// Everything a search starts from: no stop, cleared killers, and the history,
// reduction tables and hash table cleared for the first search and for every
// deterministic one. Returns the moves the search may choose among.
RootMoveList prepareSearch(SearchState& state, Position& root, const ThinkRequest& request) {
  if (searchLimits.batchMode) options.deterministic = 1;
  searchLimits.pollingHeld = 1;
  clearTheStop();
  if constexpr (searchTraced) searchTrace = SearchTrace{};
  std::memset(state.killer1, 0, sizeof state.killer1);
  std::memset(state.killer2, 0, sizeof state.killer2);

  RootMoveList allowed;
  if (request.restricted) {
    allowed = request.allowed;
  } else {
    allowed.count = generateLegalMoves(root, allowed.moves);
  }

  const bool freshTables = state.firstSearchPending || options.deterministic;
  if (freshTables) {
    state.history = MoveHistory{};
    buildReductionTables();
  }
  fillRootScores(root);
  if (options.hashSizeMb != 0) {
    if (freshTables) {
      hashClear();
      state.firstSearchPending = 0;
    }
    hashAdvanceAge();
  }
  return allowed;
}

// The clock starts: the hard limit is the budget's percentage of the goal,
// and no iteration starts after three quarters of it. A fixed time per move
// is spent whole: the goal itself is both limits.
TimeControl startClock(const ThinkRequest& request) {
  searchLimits.startTime = clock(clockSettings.wholeSeconds);
  searchLimits.hardTimeLimit = searchLimits.startTime + searchLimits.hardTimePercent * 0.01 * request.goalSeconds;
  TimeControl time{request.goalSeconds, searchLimits.startTime + 0.75 * request.goalSeconds, request.exactTime};
  if (request.exactTime) {
    searchLimits.hardTimeLimit = searchLimits.startTime + request.goalSeconds;
    time.softLimit = searchLimits.hardTimeLimit;
  }
  return time;
}

// A stable best move that took nearly all the nodes lets the search stop
// early; a change of mind gives it more time. A fixed time per move is
// never cut short.
void adjustSoftLimit(TimeControl& time, const SearchState& state, int depth, Move best, uint64_t firstMoveNodes,
                     uint64_t otherMoveNodes) {
  double ratio = static_cast<double>(firstMoveNodes) / static_cast<double>(firstMoveNodes + otherMoveNodes);
  time.bestMoveShare = 0.75 * time.bestMoveShare + 0.25 * ratio;
  if (depth <= 4 || searchLimits.stop || time.exactTime) return;
  if (best == state.moveByDepth[depth - 1]) {
    double percent = (102 - 100 * time.bestMoveShare) * 2.5;
    time.softLimit = searchLimits.startTime + time.goal * 0.01 * (percent < 80 ? percent : 80);
  } else {
    time.softLimit = searchLimits.startTime + 1.2 * time.goal;
    time.bestMoveShare *= 0.9;
  }
}

// One iteration: each MultiPV line searched with its aspiration window, the
// best move of a line left out of the next one. Returns the number of lines
// searched; iterationNodes is the node count after the last of them.
int searchIteration(SearchState& state, Position& root, int depth, const RootMoveList& allowed, TimeControl& time,
                    Deepening& deepening, uint64_t& iterationNodes) {
  uint64_t firstMoveNodes = 0;
  uint64_t otherMoveNodes = 0;
  RootMoveList working = allowed;
  Move* bestLine = deepening.bestLine;
  int lines = 0;
  while (lines < options.multiPv) {
    AspirationWindow window = firstWindow(state, depth);
    int value = searchRoot(state, root, 2 * depth, window.alpha, window.beta, bestLine, working, &firstMoveNodes,
                           &otherMoveNodes);
    value = resolveWindow(state, root, 2 * depth, window, value, bestLine, working, &firstMoveNodes, &otherMoveNodes);
    state.scoreByDepth[depth] = value;
    state.moveByDepth[depth] = bestLine[0];

    ++otherMoveNodes;  // never zero: the best move's share divides by the sum
    adjustSoftLimit(time, state, depth, bestLine[0], firstMoveNodes, otherMoveNodes);
    if (!searchLimits.stop) {
      state.rows[lines].score = value;
      copyLine(state.rows[lines].line, bestLine);
      if (lines + 1 > deepening.filledRows) deepening.filledRows = lines + 1;
    }
    iterationNodes = nodesOfAllThreads();
    state.rows[lines].timeMs = static_cast<int32_t>(elapsedSince(searchLimits.startTime) * 1000);
    ++lines;
    if (searchLimits.stop) break;
    if (!removeFromList(working, bestLine[0])) break;
    if (depth == 1) break;  // the first iteration has one line
  }
  return lines;
}

// MultiPV ordering: the lines of the iteration, best score first. A row no
// iteration has filled takes no part. Returns the number of rows in play.
int orderRows(SearchState& state, int lines, int filledRows) {
  int shown = lines < filledRows ? lines : filledRows;
  for (int i = 0; i < shown; ++i)
    for (int j = i + 1; j < shown; ++j)
      if (state.rows[j].score > state.rows[i].score) {
        PvRow swap = state.rows[i];
        state.rows[i] = state.rows[j];
        state.rows[j] = swap;
      }
  return shown;
}

// The info lines of a MultiPV iteration, one per row, best first.
void reportRows(SearchState& state, const Position& root, int depth, int shown, uint64_t iterationNodes) {
  char lineText[lineLength * 6 + 1];
  Move playable[lineLength];
  const int hashFull = hashFullPerMille();
  for (int i = 0; i < shown; ++i) {
    playableLine(root, state.rows[i].line, playable);
    pvToText(root, playable, lineText);
    if (i == 0) state.lastShownMove = playable[0];
    std::printf("info depth %d seldepth %d multipv %d score cp %d nodes %" PRIu64 " nps %" PRIu64
                " hashfull %d time %d pv %s\n",
                depth, state.selDepth, i + 1, state.rows[i].score, iterationNodes,
                static_cast<uint64_t>(iterationNodes / (state.rows[i].timeMs * 0.001 + 0.0001)), hashFull,
                state.rows[i].timeMs, lineText);
    std::fflush(stdout);
  }
}

// A finished iteration goes to the log, and to the client as an info line or,
// in batch mode, into the results of each depth.
void reportIteration(SearchState& state, const Position& root, int depth, const Deepening& deepening) {
  double elapsed = elapsedSince(searchLimits.startTime);
  if (elapsed < 0.0001) elapsed = 0.0001;
  const uint64_t nodes = nodesOfAllThreads();
  char lineText[lineLength * 6 + 1];
  Move playable[lineLength];
  playableLine(root, deepening.bestLine, playable);
  pvToText(root, playable, lineText);
  logPrintf("%5d  %8.1f  %12" PRIu64 "  %8.1f  %7.2f   %s\n", depth, elapsed, nodes, 0.001 * nodes / elapsed,
            deepening.score * 0.01, lineText);
  if (!searchLimits.batchMode) {
    printIterationLine(state, root, depth, state.selDepth, deepening.score, deepening.bestLine);
    return;
  }
  if (depth >= 32) return;
  state.depthTime[depth] = elapsed;
  state.depthNodes[depth] = nodes;
  state.depthScore[depth] = deepening.score;
  state.depthMove[depth] = deepening.bestLine[0];
  if constexpr (searchTraced) depthTrace[depth] = searchTrace;
}

// The ponder wait: an infinite or pondering search that has finished waits
// for stop or ponderhit before it answers.
void waitWhilePondering(int maxDepth) {
  if (maxDepth <= 98 && !searchLimits.pondering) return;
  for (;;) {
    if (searchLimits.serveInput) searchLimits.serveInput();
    if (searchLimits.stop || !searchLimits.pondering) break;
    sleepOneMillisecond();
  }
}

// The wait of a mate search that found no mate short enough: it answers
// only at stop, as a go infinite would.
void waitForStop() {
  while (!searchLimits.stop) {
    if (searchLimits.serveInput) searchLimits.serveInput();
    if (searchLimits.stop) break;
    sleepOneMillisecond();
  }
}

// bestmove names the first move of the last finished iteration and ponder
// the second, from the line as it can be replayed. A client checks both
// against the line it was shown last: when a better move of an iteration
// that was then cut short was printed, the line of the answer goes out
// again. A root without a legal move answers with the null move.
void answer(SearchState& state, const Position& root, const Deepening& deepening) {
  Move playable[lineLength];
  playableLine(root, deepening.bestLine, playable);
  char bestText[8] = "0000";
  char ponderText[8] = "";
  if (playable[0]) moveToText(root, playable[0], bestText);
  if (playable[0] && playable[1]) moveToText(root, playable[1], ponderText);
  if (state.lastShownMove != 0 && state.lastShownMove != playable[0])
    printIterationLine(state, root, deepening.finishedDepth, deepening.selDepth, deepening.score, deepening.bestLine);
  const uint64_t nodes = nodesOfAllThreads();
  std::printf("info nodes %" PRIu64 "\n", nodes);
  logPrintf("info nodes %" PRIu64 "\n", nodes);
  if (ponderText[0]) {
    std::printf("bestmove %s ponder %s\n", bestText, ponderText);
    logPrintf("bestmove %s ponder %s\n", bestText, ponderText);
  } else {
    std::printf("bestmove %s\n", bestText);
    logPrintf("bestmove %s\n", bestText);
  }
  std::fflush(stdout);
}

}  // namespace

void forgetEarlierGames(SearchState& state) {
  forgetGameMemory(state);
  forgetHelpersGames();
  hashClear();
}

int think(SearchState& state, Position& root, const ThinkRequest& request) {
  const RootMoveList allowed = prepareSearch(state, root, request);
  TimeControl time = startClock(request);
  state.lastShownMove = 0;
  // The self-test, the test data and the deterministic option search with
  // one thread, whatever Threads says: only then is a search repeatable.
  const bool withHelpers = !searchLimits.batchMode && !options.deterministic && request.bookMove == 0;
  if (withHelpers) startHelpers(root, allowed, request.maxDepth);

  logBoard(root);
  logPrintf("DEPTH      TIME         NODES      KNPS    SCORE   PRINCIPAL VARIATION\n");
  logPrintf("-----  --------  ------------  --------  -------   -------------------------------------------------\n");

  Deepening deepening;
  bool mateProven = false;
  for (int depth = 1;; ++depth) {
    if (depth == 1 && request.bookMove) {
      deepening.bestLine[0] = request.bookMove;
      break;
    }
    if (depth > 1) searchLimits.pollingHeld = 0;
    if (!searchLimits.batchMode) std::printf("info depth %d\n", depth);

    uint64_t iterationNodes = 0;
    state.selDepth = 0;
    const int lines = searchIteration(state, root, depth, allowed, time, deepening, iterationNodes);
    const int shown = orderRows(state, lines, deepening.filledRows);
    if (options.multiPv > 1) reportRows(state, root, depth, shown, iterationNodes);
    copyLine(deepening.bestLine, state.rows[0].line);
    deepening.score = state.rows[0].score;
    if (searchLimits.stop) {
      logPrintf("search aborted\n");
      break;
    }
    deepening.finishedDepth = depth;
    deepening.selDepth = state.selDepth;
    reportIteration(state, root, depth, deepening);

    if (!time.goalReached && clock(clockSettings.wholeSeconds) > time.softLimit) time.goalReached = true;
    if (!searchLimits.pondering && time.goalReached) break;
    if (request.mateMoves > 0 && deepening.score > mateThreshold &&
        movesToMate(deepening.score) <= request.mateMoves) {
      mateProven = true;
      break;
    }
    if (std::abs(deepening.score) > mateShiftLimit) break;  // a mate found is not searched deeper
    if (depth >= request.maxDepth) break;
  }

  if (withHelpers) stopHelpers();
  logPrintf("Total move time %8.1f\n", elapsedSince(searchLimits.startTime));
  // The mate a mate search asked for is its answer at once; without it, a
  // mate search answers only when the client stops it.
  if (request.mateMoves > 0 && !mateProven)
    waitForStop();
  else
    waitWhilePondering(request.maxDepth);
  if (searchLimits.batchMode) return deepening.score;
  if (engineLog.file) {
    const EvalCaches& caches = *state.caches;
    double rate = caches.etableProbes
                      ? 100.0 * static_cast<double>(caches.etableHits) / static_cast<double>(caches.etableProbes)
                      : 0.0;
    logPrintf("\nEtable statistics: %12" PRIu64 " hits  %12" PRIu64 " probes   Rate = %8.3f percent\n",
              caches.etableHits, caches.etableProbes, rate);
  }
  answer(state, root, deepening);
  return deepening.score;
}
