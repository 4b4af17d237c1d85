#include "shell/go_command.h"

#include <cctype>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/log.h"
#include "base/options.h"
#include "board/fen.h"
#include "board/make_move.h"
#include "board/queries.h"
#include "book/book.h"
#include "search/limits.h"
#include "search/think.h"
#include "shell/game.h"
#include "shell/tokenise.h"

SearchSession searchSession;

namespace {

constexpr double yearSeconds = 31622400.0;  // 366 days: no time limit in practice
constexpr uint64_t noNodeLimit = ~uint64_t{0};
constexpr double minimalGoal = 0.001;  // a fixed time below the overhead still searches one iteration

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
              WordMoveTime, WordDepth, WordSearchMoves, WordMate, WordNone };

GoWord goWord(const char* token) {
  static const char* const words[] = {"infinite", "ponder", "nodes", "wtime", "btime", "winc",
                                      "binc", "movestogo", "movetime", "depth", "searchmoves", "mate"};
  for (int i = 0; i < WordNone; ++i)
    if (std::strcmp(token, words[i]) == 0) return static_cast<GoWord>(i);
  return WordNone;
}

double movesToGoBudget(double timeLeft, int movesToGo, double overhead) {
  double goal = timeLeft / (movesToGo + 2.0);
  double hard = 5.0 * goal < 0.5 * timeLeft ? 5.0 * goal : 0.5 * timeLeft;
  if (movesToGo == 1) hard *= 0.9;
  goal -= overhead;
  hard -= overhead;
  constexpr double floor = 0.005;
  // In deep time trouble the goal falls to its floor: the hard limit is then
  // the budget's own hard time, never less than that floor.
  double percent = goal > floor ? hard / goal * 100 : (hard > floor ? hard : floor) / floor * 100;
  searchLimits.hardTimePercent = static_cast<int32_t>(percent);
  logPrintf("We have %8.1f seconds to make %d moves = %8.1f goal\n", timeLeft, movesToGo, goal);
  return goal > floor ? goal : floor;
}

// A clock with increment. The goal spends a thirtieth of the spare time and
// most of the increment, where the spare time is what the clock holds beyond
// a reserve that no move may touch: five increments and ten move
// overheads (0.45 s at 5 s + 0.05 s with the default overhead). On a busy
// machine a move can take a good deal longer than the search asked for, since
// the engine doesn't always get the processor; the reserve is there to absorb
// that, and a clock spent down to a couple of increments, where the goal
// alone would settle, has nothing left to absorb it with. Below the reserve
// the goal takes less than the increment, so the clock grows back, and the
// hard limit never reaches into more than half of the spare time.
double incrementBudget(double timeLeft, double increment, double overhead) {
  const double reserve = 5.0 * increment + 10.0 * overhead;
  const double spare = timeLeft > reserve ? timeLeft - reserve : 0.0;
  const double share = timeLeft < reserve ? timeLeft / reserve : 1.0;
  double goal = spare / 30 + 0.95 * increment * share - overhead;
  if (goal < 0.002) goal = 0.002;
  // The hard limit: up to five goals while the clock holds more than three
  // increments, fewer below, but never more than half of the spare time.
  const double multiple = timeLeft / increment + 2.0 < 5.0 ? timeLeft / increment + 2.0 : 5.0;
  double hard = multiple * goal < 0.5 * spare ? multiple * goal : 0.5 * spare;
  if (hard < goal) hard = goal;
  searchLimits.hardTimePercent = static_cast<int32_t>(100 * hard / goal + 0.5);
  logPrintf("We have %8.1f seconds for the game.  %8.1f goal set\n", timeLeft, goal);
  return goal;
}

// Sudden death: a fiftieth of the clock each move. The hard limit stays what
// the last budget made it.
double suddenDeathBudget(double timeLeft, double overhead) {
  double goal = timeLeft * 0.02 - overhead;
  if (goal < 0.002) goal = 0.002;
  logPrintf("We have %8.1f seconds for the game.  %8.1f goal set\n", timeLeft, goal);
  return goal;
}

}  // namespace

double timeBudget(double timeLeft, double increment, int movesToGo, double overhead) {
  if (movesToGo != 0) return movesToGoBudget(timeLeft, movesToGo, overhead);
  if (increment > 0.00001) return incrementBudget(timeLeft, increment, overhead);
  return suddenDeathBudget(timeLeft, overhead);
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
      case WordMate: request.mateMoves = value > 0 ? saturate32(value) : 0; break;
      case WordDepth: request.depth = value > 0 ? (value > deepestSearch ? deepestSearch : saturate32(value)) : 0; break;
      default: break;
    }
  }
}

// The legal moves of root whose texts the list names, in the order the
// generator gives them; a text that names no legal move is left out.
void readSearchMoves(const Position& root, const char* texts, RootMoveList& allowed) {
  char copy[searchMovesCapacity];
  std::snprintf(copy, sizeof copy, "%s", texts);
  char* words[searchMovesCapacity / 2 + 1];
  const int wordCount = tokenise(copy, words);
  Move list[maxGeneratedMoves];
  const int count = generateLegalMoves(root, list);
  char text[8];
  allowed.count = 0;
  for (int i = 0; i < count; ++i) {
    moveToText(root, list[i], text);
    for (int w = 0; w < wordCount; ++w)
      if (std::strcmp(words[w], text) == 0) {
        allowed.moves[allowed.count++] = list[i];
        break;
      }
  }
}

SearchPlan planSearch(const GoRequest& request, int side, double overhead) {
  if (request.depth > 0 || request.infiniteSearch)
    return {yearSeconds, request.infiniteSearch ? deepestSearch : request.depth, false};
  // Mate search: as long as it takes, until the mate or a stop.
  if (request.mateMoves > 0) return {yearSeconds, deepestSearch, false};
  if (request.moveTime != 0.0) {
    // A fixed time per move, as UCI means it: the whole time less what the
    // answer needs to reach the client, and never more.
    logPrintf("Time Left: %8.1f\n", request.moveTime);
    const double goal = request.moveTime - overhead;
    return {goal > minimalGoal ? goal : minimalGoal, deepestSearch, true};
  }
  if (request.nodeLimit != noNodeLimit) return {yearSeconds, deepestSearch, false};
  return {timeBudget(request.remaining[side], request.increment[side], request.movesToGo, overhead),
          deepestSearch, false};
}

void goCommand(char** tokens, int count) {
  GoRequest request;
  readGoWords(tokens, count, request);
  searchLimits.nodeLimit = request.nodeLimit;
  searchLimits.pondering = request.ponder ? 1 : 0;

  Position& root = game.stack[game.length];
  SearchPlan plan = planSearch(request, sideToMove(root), options.moveOverheadMs * 0.001);

  ThinkRequest search;
  search.goalSeconds = plan.goal;
  search.maxDepth = plan.maxDepth;
  search.exactTime = plan.exactTime;
  search.mateMoves = request.mateMoves;
  if (request.searchMoves[0]) {
    search.restricted = true;
    readSearchMoves(root, request.searchMoves, search.allowed);
  }
  // The stop of the last search is cleared first, so that the moves the book
  // probe makes are counted as they always were.
  clearTheStop();
  search.bookMove = probeBook(root);

  searchSession.running = 1;
  searchSession.needsCommand = request.infiniteSearch || request.mateMoves > 0;
  think(mainSearch, root, search);
  searchSession.running = 0;
  searchSession.needsCommand = 0;
}
