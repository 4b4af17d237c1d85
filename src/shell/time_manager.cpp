#include "shell/time_manager.h"

#include <algorithm>

#include "base/log.h"

namespace {

constexpr double yearSeconds = 31622400.0;  // 366 days: no time limit in practice
constexpr uint64_t noNodeLimit = ~uint64_t{0};
constexpr double minimalGoal = 0.001;  // a fixed time below the overhead still searches one iteration
constexpr double smallestGoal = 0.002;

// The part of the clock no move may touch. On a busy machine a move can take
// a good deal longer than the search asked for, since the engine doesn't
// always get the processor; the reserve absorbs that. It is five increments
// and ten move overheads (0.45 s at 5 s + 0.05 s with the default overhead),
// but the overheads never weigh more than a tenth of the clock: at bullet
// controls a fixed reserve held back a quarter of the time, which the engine
// never spent.
double clockReserve(double timeLeft, double increment, double overhead) {
  return 5.0 * increment + std::min(10.0 * overhead, 0.1 * timeLeft);
}

ClockBudget movesToGoBudget(double timeLeft, int movesToGo, double overhead) {
  double goal = timeLeft / (movesToGo + 2.0);
  double hard = std::min(5.0 * goal, 0.5 * timeLeft);
  if (movesToGo == 1) hard *= 0.9;
  goal -= overhead;
  hard -= overhead;
  constexpr double floor = 0.005;
  logPrintf("We have %8.1f seconds to make %d moves = %8.1f goal\n", timeLeft, movesToGo, goal);
  // In deep time trouble the goal falls to its floor, and the hard limit
  // with it.
  return {std::max(goal, floor), std::max(hard, floor)};
}

// A clock with increment. The goal spends a twenty-fifth of the spare time
// (the clock beyond its reserve) and most of the increment, less the move
// overhead. Below the reserve it takes less than the increment, so the clock
// grows back. The hard limit is up to five goals while the clock holds more
// than three increments, fewer below, and never more than half of the spare
// time.
ClockBudget incrementBudget(double timeLeft, double increment, double overhead) {
  const double reserve = clockReserve(timeLeft, increment, overhead);
  const double spare = std::max(timeLeft - reserve, 0.0);
  const double share = std::min(timeLeft / reserve, 1.0);
  const double goal = std::max(spare / 25 + 0.95 * increment * share - overhead, smallestGoal);
  const double multiple = std::min(timeLeft / increment + 2.0, 5.0);
  const double hard = std::max(std::min(multiple * goal, 0.5 * spare), goal);
  logPrintf("We have %8.1f seconds for the game.  %8.1f goal set\n", timeLeft, goal);
  return {goal, hard};
}

// Sudden death: a fiftieth of the clock each move, and at most five goals or
// half of the clock beyond its reserve.
ClockBudget suddenDeathBudget(double timeLeft, double overhead) {
  const double spare = std::max(timeLeft - clockReserve(timeLeft, 0.0, overhead), 0.0);
  const double goal = std::max(timeLeft * 0.02 - overhead, smallestGoal);
  const double hard = std::max(std::min(5.0 * goal, 0.5 * spare), goal);
  logPrintf("We have %8.1f seconds for the game.  %8.1f goal set\n", timeLeft, goal);
  return {goal, hard};
}

}  // namespace

ClockBudget timeBudget(double timeLeft, double increment, int movesToGo, double overhead) {
  if (movesToGo != 0) return movesToGoBudget(timeLeft, movesToGo, overhead);
  if (increment > 0.00001) return incrementBudget(timeLeft, increment, overhead);
  return suddenDeathBudget(timeLeft, overhead);
}

SearchPlan planSearch(const GoRequest& request, int side, double overhead) {
  const ClockBudget untimed{yearSeconds, yearSeconds};
  if (request.depth > 0 || request.infiniteSearch)
    return {untimed, request.infiniteSearch ? deepestSearch : request.depth, false};
  // Mate search: as long as it takes, until the mate or a stop.
  if (request.mateMoves > 0) return {untimed, deepestSearch, false};
  if (request.moveTime != 0.0) {
    // A fixed time per move, as UCI means it: the whole time less what the
    // answer needs to reach the client, and never more.
    logPrintf("Time Left: %8.1f\n", request.moveTime);
    const double goal = std::max(request.moveTime - overhead, minimalGoal);
    return {{goal, goal}, deepestSearch, true};
  }
  if (request.nodeLimit != noNodeLimit) return {untimed, deepestSearch, false};
  return {timeBudget(request.remaining[side], request.increment[side], request.movesToGo, overhead), deepestSearch,
          false};
}
