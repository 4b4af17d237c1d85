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
#include "search/threads.h"
#include "shell/game.h"
#include "shell/input_lines.h"
#include "shell/tokenise.h"
#include "shell/uci_report.h"

SearchSession searchSession;

namespace {

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
              WordMoveTime, WordDepth, WordSearchMoves, WordMate, WordNone };

GoWord goWord(const char* token) {
  static const char* const words[] = {"infinite", "ponder", "nodes", "wtime", "btime", "winc",
                                      "binc", "movestogo", "movetime", "depth", "searchmoves", "mate"};
  for (int i = 0; i < WordNone; ++i)
    if (std::strcmp(token, words[i]) == 0) return static_cast<GoWord>(i);
  return WordNone;
}

}  // namespace

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

namespace {

// The job of the main search's thread: the search, or the book's move, which
// like a search answers a ponder or infinite go only when the client says.
void answerGo(SearchWorker& worker) {
  Position& root = game.stack[game.length];
  if (searchSession.bookMove) {
    if (searchSession.request.infinite)
      waitForTheClient(false);
    else if (searchSignals.pondering)
      waitForTheClient(true);
    printBestMove(root, searchSession.bookMove, 0, 0);
  } else {
    worker.state->reporter = &uciReporter;
    think(*worker.state, root, searchSession.request);
  }
}

// Once the search's thread is idle, the input thread runs the commands that
// waited for it.
void wakeTheInputThread() { wakeLineReader(clientInput); }

}  // namespace

void goCommand(char** tokens, int count) {
  GoRequest request;
  readGoWords(tokens, count, request);

  Position& root = game.stack[game.length];
  SearchPlan plan = planSearch(request, sideToMove(root), options.moveOverheadMs * 0.001);

  ThinkRequest& search = searchSession.request;
  search = ThinkRequest{};
  search.goalSeconds = plan.time.goal;
  search.hardSeconds = plan.time.hard;
  search.maxDepth = plan.maxDepth;
  search.exactTime = plan.exactTime;
  search.infinite = request.infiniteSearch;
  search.nodeLimit = request.nodeLimit;
  search.mateMoves = request.mateMoves;
  if (request.searchMoves[0]) {
    search.restricted = true;
    readSearchMoves(root, request.searchMoves, search.allowed);
  }
  searchSession.bookMove = probeBook(root);
  searchSession.needsCommand = request.infiniteSearch || request.mateMoves > 0;
  clearTheStop();
  searchSignals.pondering = request.ponder ? 1 : 0;
  startMainSearch(answerGo, wakeTheInputThread);
}
