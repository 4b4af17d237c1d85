#include "shell/go_command.h"

#include <cctype>
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
constexpr uint64_t noNodeLimit = ~uint64_t{0};

// A number too large either way saturates; a token that isn't a number reads as 0.
long long readNumber(const char* text) { return std::strtoll(text, nullptr, 10); }

int32_t saturate32(long long value) {
  if (value > INT32_MAX) return INT32_MAX;
  if (value < INT32_MIN) return INT32_MIN;
  return static_cast<int32_t>(value);
}

// Some clients send a negative clock once the flag has fallen: that is no time left.
double clockSeconds(long long milliseconds) { return milliseconds > 0 ? milliseconds * 0.001 : 0.0; }

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
  constexpr double floor = 0.005;
  // In deep time trouble the goal falls to its floor: the hard limit is then
  // the budget's own hard time, never less than that floor.
  double percent = goal > floor ? hard / goal * 100 : (hard > floor ? hard : floor) / floor * 100;
  hardTimePercent = static_cast<int32_t>(percent);
  logPrintf("We have %8.1f seconds to make %d moves = %8.1f goal\n", timeLeft, halfTime ? 0 : movesToGo, goal);
  return goal > floor ? goal : floor;
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

void readGoWords(char** tokens, int count, GoRequest& request) {
  request = GoRequest{};
  request.nodeLimit = noNodeLimit;
  size_t searchMovesUsed = 0;
  bool collecting = false;

  for (int i = 1; i < count; ++i) {
    GoWord word = goWord(tokens[i]);
    if (word == WordNone) {
      // Move texts while collecting; any other word the table lacks is skipped.
      // A move text is read without regard to case, as position reads it:
      // the root search compares it with its own lower-case texts.
      size_t length = std::strlen(tokens[i]);
      if (collecting && searchMovesUsed + length + 2 <= sizeof request.searchMoves) {
        for (size_t c = 0; c < length; ++c)
          request.searchMoves[searchMovesUsed + c] =
              static_cast<char>(std::tolower(static_cast<unsigned char>(tokens[i][c])));
        searchMovesUsed += length;
        request.searchMoves[searchMovesUsed++] = ' ';
        request.searchMoves[searchMovesUsed] = '\0';
      }
      continue;
    }
    collecting = false;
    if (word == WordInfinite) { request.infiniteSearch = true; continue; }
    if (word == WordPonder) { request.ponder = true; continue; }
    if (word == WordSearchMoves) { collecting = true; continue; }
    // A word whose value is missing at the end of the line is ignored.
    if (i + 1 >= count) break;
    long long value = readNumber(tokens[++i]);
    switch (word) {
      // A negative node count, move time or depth, or a move count below 1,
      // means the word is absent; a depth beyond 99 searches to 99.
      case WordNodes: if (value >= 0) request.nodeLimit = static_cast<uint64_t>(value); break;
      case WordWtime: request.remaining[White] = clockSeconds(value); break;
      case WordBtime: request.remaining[Black] = clockSeconds(value); break;
      case WordWinc: request.increment[White] = clockSeconds(value); break;
      case WordBinc: request.increment[Black] = clockSeconds(value); break;
      case WordMovesToGo: request.movesToGo = value > 0 ? saturate32(value) : 0; break;
      case WordMoveTime: request.moveTime = value > 0 ? saturate32(value) * 0.001 : 0.0; break;
      case WordDepth: request.depth = value > 0 ? (value > deepestSearch ? deepestSearch : saturate32(value)) : 0; break;
      default: break;
    }
  }
}

SearchPlan planSearch(const GoRequest& request, int side, double overhead) {
  if (request.depth > 0 || request.infiniteSearch)
    return {yearSeconds, request.infiniteSearch ? deepestSearch : request.depth};
  if (request.moveTime != 0.0) {
    logPrintf("Time Left: %8.1f\n", request.moveTime);
    return {request.moveTime, deepestSearch};
  }
  if (request.nodeLimit != noNodeLimit) return {yearSeconds, deepestSearch};
  return {timeBudget(request.remaining[side], request.increment[side], request.movesToGo, request.depth, overhead),
          deepestSearch};
}

void goCommand(char** tokens, int count) {
  GoRequest request;
  readGoWords(tokens, count, request);
  nodeLimit = request.nodeLimit;
  pondering = request.ponder ? 1 : 0;

  Position& root = gameStack[gameLength];
  SearchPlan plan = planSearch(request, sideToMove(root), moveOverheadMs * 0.001);

  searchRunning = 1;
  searchNeedsCommand = request.infiniteSearch;
  think(root, plan.goal, plan.maxDepth, request.searchMoves);
  searchRunning = 0;
  searchNeedsCommand = 0;
}
