#include "shell/go_command.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "search/think.h"
#include "shell/game.h"
#include "shell/log.h"
#include "shell/options.h"
#include "shell/search_flags.h"

int32_t searchRunning = 0;
int32_t searchNeedsCommand = 0;

namespace {

constexpr double yearSeconds = 31622400.0;  // 366 days: no time limit in practice
constexpr int maxDepth = 99;                // the driver keeps 100 iterations

// Decimal value of a token; out-of-range numbers saturate.
long long readNumber(const char* text) {
  errno = 0;
  long long value = std::strtoll(text, nullptr, 10);
  return value;  // strtoll already saturates at the 64-bit limits
}

int32_t saturate32(long long value) {
  if (value > INT32_MAX) return INT32_MAX;
  if (value < INT32_MIN) return INT32_MIN;
  return static_cast<int32_t>(value);
}

enum GoWord { WordInfinite, WordPonder, WordNodes, WordWtime, WordBtime, WordWinc, WordBinc, WordMovesToGo,
              WordMoveTime, WordDepth, WordSearchMoves, WordNone };

GoWord goWord(const char* token) {
  static const char* const words[] = {"infinite", "ponder", "nodes", "wtime", "btime", "winc",
                                      "binc", "movestogo", "movetime", "depth", "searchmoves"};
  for (int i = 0; i < WordNone; ++i)
    if (std::strcmp(token, words[i]) == 0) return static_cast<GoWord>(i);
  return WordNone;
}

double movesToGoBudget(double timeLeft, int movesToGo, double overhead, bool halfTime) {
  double goal = halfTime ? timeLeft / 2.0 : timeLeft / (movesToGo + 2.0);
  double hard = halfTime ? goal : (5.0 * goal < 0.5 * timeLeft ? 5.0 * goal : 0.5 * timeLeft);
  if (!halfTime && movesToGo == 1) hard *= 0.9;
  goal -= overhead;
  hard -= overhead;
  hardTimePercent = static_cast<int32_t>(hard / goal * 100);
  logPrintf("We have %8.1f seconds to make %d moves = %8.1f goal\n", timeLeft, halfTime ? 0 : movesToGo, goal);
  return goal > 0.005 ? goal : 0.005;
}

double gameBudget(double timeLeft, double increment, double overhead) {
  double base;
  double reserve;
  if (increment > 0.00001) {
    base = (timeLeft - increment) / 30 + 0.95 * increment;
    reserve = timeLeft / increment + 2.0 < 5.0 ? timeLeft / increment + 2.0 : 5.0;
    hardTimePercent = static_cast<int32_t>(100 * reserve);
  } else {
    base = (timeLeft - increment) * 0.02 + 0.95 * increment;
    reserve = 5.0;
  }
  double goal = timeLeft / (reserve * 1.1) < base ? timeLeft / (reserve * 1.1) : base;
  goal -= overhead;
  if (goal < 0.002) goal = 0.002;
  logPrintf("We have %8.1f seconds for the game.  %8.1f goal set\n", timeLeft, goal);
  return goal;
}

}  // namespace

double timeBudget(double timeLeft, double increment, int movesToGo, int depth, double overhead) {
  if (movesToGo != 0) return movesToGoBudget(timeLeft, movesToGo, overhead, false);
  if (depth != 0) return movesToGoBudget(timeLeft, 0, overhead, true);
  return gameBudget(timeLeft, increment, overhead);
}

void goCommand(char** tokens, int count) {
  nodeLimit = ~uint64_t{0};
  pondering = 0;
  double remaining[2] = {0.0, 0.0};
  double increment[2] = {0.0, 0.0};
  double moveTime = 0.0;
  int32_t movesToGo = 0;
  int32_t depth = 0;
  bool infiniteSearch = false;
  static char searchMoves[2048];
  searchMoves[0] = 0;
  size_t searchMovesUsed = 0;
  bool collecting = false;

  for (int i = 1; i < count; ++i) {
    GoWord word = goWord(tokens[i]);
    if (word == WordNone) {
      // Move texts while collecting; any other unknown word is skipped.
      if (collecting && searchMovesUsed + std::strlen(tokens[i]) + 2 < sizeof searchMoves)
        searchMovesUsed += std::snprintf(searchMoves + searchMovesUsed, sizeof searchMoves - searchMovesUsed, "%s ",
                                         tokens[i]);
      continue;
    }
    collecting = false;
    if (word == WordInfinite) { infiniteSearch = true; continue; }
    if (word == WordPonder) { pondering = 1; continue; }
    if (word == WordSearchMoves) { collecting = true; continue; }
    if (i + 1 >= count) break;  // a word whose value is missing is ignored
    long long value = readNumber(tokens[++i]);
    switch (word) {
      // A negative node count or move time counts as absent; a negative clock as 0.
      case WordNodes: if (value >= 0) nodeLimit = static_cast<uint64_t>(value); break;
      case WordWtime: remaining[White] = value > 0 ? value * 0.001 : 0.0; break;
      case WordBtime: remaining[Black] = value > 0 ? value * 0.001 : 0.0; break;
      case WordWinc: increment[White] = value > 0 ? value * 0.001 : 0.0; break;
      case WordBinc: increment[Black] = value > 0 ? value * 0.001 : 0.0; break;
      case WordMovesToGo: movesToGo = value > 0 ? saturate32(value) : 0; break;
      case WordMoveTime: moveTime = value > 0 ? saturate32(value) * 0.001 : 0.0; break;
      case WordDepth: depth = value > maxDepth ? maxDepth : saturate32(value); break;
      default: break;
    }
  }

  Position& root = gameStack[gameLength];
  const int side = sideToMove(root);
  double goal;
  int searchDepth = maxDepth;
  if (depth > 0 || infiniteSearch) {
    goal = yearSeconds;
    searchDepth = infiniteSearch ? maxDepth : depth;
  } else if (moveTime != 0.0) {
    logPrintf("Time Left: %8.1f\n", moveTime);
    goal = moveTime;
  } else if (nodeLimit != ~uint64_t{0}) {
    goal = yearSeconds;
  } else {
    goal = timeBudget(remaining[side], increment[side], movesToGo, depth, moveOverheadMs * 0.001);
  }

  searchRunning = 1;
  searchNeedsCommand = infiniteSearch || pondering;
  think(root, goal, searchDepth, searchMoves);
  searchRunning = 0;
  searchNeedsCommand = 0;
}
