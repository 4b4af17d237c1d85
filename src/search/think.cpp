#include "search/think.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

#include "base/options.h"
#include "base/platform.h"
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
#include "search/report.h"
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

int movesToMate(int score) { return (mateScore - score) / 2 + 1; }

void reportLine(SearchState& state, const Position& root, int depth, int selDepth, int score, const Move* line) {
  Move shown[lineLength];
  playableLine(root, line, shown);
  state.lastShownMove = shown[0];
  // In a MultiPV search the line repeated with the answer is the first.
  const int rank = options.multiPv > 1 ? 1 : 0;
  const LineReport report{depth, selDepth, rank, score, nodesOfAllThreads(), elapsedSince(searchLimits.startTime),
                          hashFullPerMille(), shown};
  state.reporter->lineFound(report);
}

namespace {
// The clock of one search: what moves the soft limit after which no new
// iteration starts (searchLimits.softTimeLimit, which the polls read too).
struct TimeControl {
  double goal;
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

// Everything a search starts from: no nodes, cleared killers, and the history,
// reduction tables and hash table cleared for the first search and for every
// deterministic one. Returns the moves the search may choose among.
RootMoveList prepareSearch(SearchState& state, Position& root, const ThinkRequest& request) {
  if (searchLimits.batchMode) options.deterministic = 1;
  searchLimits.pollingHeld = 1;
  state.nodes = 0;
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

// The clock starts: no iteration starts after three quarters of the goal. A
// fixed time per move is spent whole: the goal itself is both limits.
TimeControl startClock(const ThinkRequest& request) {
  searchLimits.startTime = clock(clockSettings.wholeSeconds);
  searchLimits.hardTimeLimit = searchLimits.startTime + request.hardSeconds;
  searchLimits.softTimeLimit = searchLimits.startTime + 0.75 * request.goalSeconds;
  if (request.exactTime) {
    searchLimits.hardTimeLimit = searchLimits.startTime + request.goalSeconds;
    searchLimits.softTimeLimit = searchLimits.hardTimeLimit;
  }
  searchLimits.nodeLimit = request.nodeLimit;
  searchLimits.startedPondering = searchSignals.pondering;
  return TimeControl{request.goalSeconds, request.exactTime};
}

// A stable best move that took nearly all the nodes lets the search stop
// early; a change of mind gives it more time. A fixed time per move is
// never cut short.
void adjustSoftLimit(TimeControl& time, const SearchState& state, int depth, Move best, uint64_t firstMoveNodes,
                     uint64_t otherMoveNodes) {
  double ratio = static_cast<double>(firstMoveNodes) / static_cast<double>(firstMoveNodes + otherMoveNodes);
  time.bestMoveShare = 0.75 * time.bestMoveShare + 0.25 * ratio;
  if (depth <= 4 || searchSignals.stop || time.exactTime) return;
  if (best == state.moveByDepth[depth - 1]) {
    double percent = (102 - 100 * time.bestMoveShare) * 2.5;
    searchLimits.softTimeLimit = searchLimits.startTime + time.goal * 0.01 * (percent < 80 ? percent : 80);
  } else {
    searchLimits.softTimeLimit = searchLimits.startTime + 1.2 * time.goal;
    time.bestMoveShare *= 0.9;
  }
}

// One iteration: each MultiPV line searched with its aspiration window, the
// best move of a line left out of the next one. Returns the number of lines
// searched.
int searchIteration(SearchState& state, Position& root, int depth, const RootMoveList& allowed, TimeControl& time,
                    Deepening& deepening) {
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
    if (!searchSignals.stop) {
      state.rows[lines].score = value;
      copyLine(state.rows[lines].line, bestLine);
      if (lines + 1 > deepening.filledRows) deepening.filledRows = lines + 1;
    }
    ++lines;
    if (searchSignals.stop) break;
    if (!removeFromList(working, bestLine[0])) break;
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

// The lines of a MultiPV iteration, best first, all with the iteration's
// nodes and time.
void reportRows(SearchState& state, const Position& root, int depth, int shown) {
  const uint64_t nodes = nodesOfAllThreads();
  const double elapsed = elapsedSince(searchLimits.startTime);
  const int hashFull = hashFullPerMille();
  Move playable[lineLength];
  for (int i = 0; i < shown; ++i) {
    playableLine(root, state.rows[i].line, playable);
    if (i == 0) state.lastShownMove = playable[0];
    state.reporter->lineFound(
        LineReport{depth, state.selDepth, i + 1, state.rows[i].score, nodes, elapsed, hashFull, playable});
  }
}

// A finished iteration: its line to the client (in a single-line search;
// the rows of a MultiPV search are already out) and to the record, or, in
// batch mode, into the results of each depth.
void reportIteration(SearchState& state, const Position& root, int depth, const Deepening& deepening) {
  double elapsed = elapsedSince(searchLimits.startTime);
  if (elapsed < 0.0001) elapsed = 0.0001;
  const uint64_t nodes = nodesOfAllThreads();
  if (state.reporter) {
    Move playable[lineLength];
    playableLine(root, deepening.bestLine, playable);
    const LineReport report{depth, state.selDepth, 0, deepening.score, nodes, elapsed, hashFullPerMille(), playable};
    if (options.multiPv == 1) {
      state.lastShownMove = playable[0];
      state.reporter->lineFound(report);
    }
    state.reporter->iterationFinished(report);
  }
  if (!searchLimits.batchMode || depth >= 32) return;
  state.depthTime[depth] = elapsed;
  state.depthNodes[depth] = nodes;
  state.depthScore[depth] = deepening.score;
  state.depthMove[depth] = deepening.bestLine[0];
  if constexpr (searchTraced) depthTrace[depth] = searchTrace;
}

// bestmove names the first move of the last finished iteration and ponder
// the second, from the line as it can be replayed. A client checks both
// against the line it was shown last: when a better move of an iteration
// that was then cut short was shown, the line of the answer goes out again.
// A root without a legal move answers with the null move.
void answer(SearchState& state, const Position& root, const Deepening& deepening, bool aborted) {
  Move playable[lineLength];
  playableLine(root, deepening.bestLine, playable);
  if (state.lastShownMove != 0 && state.lastShownMove != playable[0])
    reportLine(state, root, deepening.finishedDepth, deepening.selDepth, deepening.score, deepening.bestLine);
  const SearchAnswer result{playable[0], playable[0] ? playable[1] : Move{0}, nodesOfAllThreads(),
                            elapsedSince(searchLimits.startTime), aborted, state.caches};
  state.reporter->searchEnded(result);
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
  const bool withHelpers = !searchLimits.batchMode && !options.deterministic;
  if (withHelpers) startHelpers(root, allowed, request.maxDepth);
  if (state.reporter) state.reporter->searchStarted(root);

  Deepening deepening;
  bool mateProven = false;
  bool aborted = false;
  for (int depth = 1;; ++depth) {
    if (depth > 1) searchLimits.pollingHeld = 0;
    if (state.reporter) state.reporter->iterationStarted(depth);

    state.selDepth = 0;
    const int lines = searchIteration(state, root, depth, allowed, time, deepening);
    const int shown = orderRows(state, lines, deepening.filledRows);
    if (options.multiPv > 1 && state.reporter) reportRows(state, root, depth, shown);
    copyLine(deepening.bestLine, state.rows[0].line);
    deepening.score = state.rows[0].score;
    if (searchSignals.stop) {
      aborted = true;
      break;
    }
    deepening.finishedDepth = depth;
    deepening.selDepth = state.selDepth;
    reportIteration(state, root, depth, deepening);

    if (!time.goalReached && clock(clockSettings.wholeSeconds) > searchLimits.softTimeLimit) time.goalReached = true;
    if (!searchSignals.pondering && time.goalReached) break;
    if (request.mateMoves > 0 && deepening.score > mateThreshold &&
        movesToMate(deepening.score) <= request.mateMoves) {
      mateProven = true;
      break;
    }
    // A mate found is not searched deeper, unless other lines are shown
    // beside it: those go on to the depth asked for.
    if (std::abs(deepening.score) > mateShiftLimit && options.multiPv == 1) break;
    if (depth >= request.maxDepth) break;
  }

  if (withHelpers) stopHelpers();
  // What only the client can end waits for it: an infinite search and a mate
  // search without its mate until stop, a ponder search until stop or
  // ponderhit. The mate a mate search asked for is its answer at once.
  if (request.infinite || (request.mateMoves > 0 && !mateProven))
    waitForTheClient(false);
  else if (searchSignals.pondering)
    waitForTheClient(true);
  if (state.reporter) answer(state, root, deepening, aborted);
  return deepening.score;
}
