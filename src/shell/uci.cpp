#include "shell/uci.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/engine_exit.h"
#include "base/log.h"
#include "base/options.h"
#include "search/limits.h"
#include "search/search_state.h"
#include "search/think.h"
#include "search/threads.h"
#include "shell/game.h"
#include "shell/go_command.h"
#include "shell/option_table.h"
#include "shell/position_command.h"
#include "shell/setoption.h"
#include "shell/tokenise.h"
#include "shell/version.h"

UciSession uciSession;

uint32_t commandHash(const char* word) {
  uint32_t hash = 5381;
  for (const char* c = word; *c; ++c)
    hash = hash * 33 + static_cast<uint32_t>(static_cast<int32_t>(static_cast<signed char>(*c)));
  return hash;
}

namespace {

// The hash of the line's first word; 0 for a line of blanks.
uint32_t firstWordHash(const char* line) {
  char word[16];
  size_t start = std::strspn(line, " \t");
  size_t length = std::strcspn(line + start, " \t");
  if (length == 0) return 0;
  // No command is this long: the word is unknown whatever follows.
  if (length >= sizeof word) return 1;
  std::memcpy(word, line + start, length);
  word[length] = '\0';
  return commandHash(word);
}

// The engine ends once a search it was told to stop has answered.
[[noreturn]] void quitAfterTheSearch() {
  stopTheSearch();
  waitForMainSearch();
  quitEngine();
}

// Carries out a command that may have to wait for a search: only while none runs.
void runCommand(const char* text) {
  // Before any command, so that a go without position searches the start position.
  if (game.startPositionPending) setUpStartPosition();
  UciSession& session = uciSession;
  std::snprintf(session.line, sizeof session.line, "%s", text);
  int count = tokenise(session.line, session.tokens);
  if (count == 0) return;
  logPrintf("cmd = %s\n", session.tokens[0]);
  switch (commandHash(session.tokens[0])) {
    case hashUci:
      printUciAnswer();
      break;
    case hashUciNewGame:
      // The client's word that the next position belongs to another game.
      forgetEarlierGames(mainSearch);
      break;
    case hashSetOption:
      setoptionCommand(session.tokens, count);
      break;
    case hashPosition:
      positionCommand(session.tokens, count);
      break;
    case hashGo:
      goCommand(session.tokens, count);
      break;
    default:
      break;
  }
}

// The commands a client may send while a search runs: they act on it at once.
bool answeredAtOnce(uint32_t hash) {
  switch (hash) {
    case hashIsReady:
      std::printf("readyok\n");
      std::fflush(stdout);
      return true;
    case hashStop:
      stopTheSearch();
      return true;
    case hashPonderHit:
      ponderHit();
      return true;
    case hashQuit:
      quitAfterTheSearch();
    case hashDebug:
      // Accepted; the engine has nothing more to say in debug mode.
      return true;
    default:
      return false;
  }
}

}  // namespace

void printUciAnswer() {
  std::printf("id name %s %s\n", engineName, engineVersion);
  std::printf("id author Orin Tessaly, Quill Marrow\n");
  for (const OptionDeclaration& option : declaredOptions) announceOption(option);
  std::printf("uciok\n");
  std::fflush(stdout);
}

void takeClientLine(const char* text) {
  char line[lineBytes];
  std::snprintf(line, sizeof line, "%s", text);
  line[std::strcspn(line, "\f\n\r")] = '\0';
  if (!line[0]) return;
  logPrintf("uci -> %s\n", line);
  const uint32_t hash = firstWordHash(line);
  if (hash == 0 || answeredAtOnce(hash)) return;
  UciSession& session = uciSession;
  if (mainSearchBusy() || !session.waiting.empty()) {
    session.waiting.emplace_back(line);
    return;
  }
  runCommand(line);
}

void runWaitingCommands() {
  UciSession& session = uciSession;
  while (!session.waiting.empty()) {
    waitForMainSearch();
    const std::string line = std::move(session.waiting.front());
    session.waiting.pop_front();
    runCommand(line.c_str());
  }
  waitForMainSearch();
}

void runUciLoop() {
  UciSession& session = uciSession;
  if (game.startPositionPending) setUpStartPosition();
  for (;;) {
    // What waited for a search runs as soon as the search has answered.
    while (!session.waiting.empty() && !mainSearchBusy()) {
      const std::string line = std::move(session.waiting.front());
      session.waiting.pop_front();
      runCommand(line.c_str());
    }
    if (session.inputEnded) {
      // At the end of input the engine finishes every line it was given
      // and then leaves as if told quit. A search that only a command can
      // end is stopped, so that it answers and the engine can finish.
      if (!mainSearchBusy() && session.waiting.empty()) quitEngine();
      if (searchSession.needsCommand || searchSignals.pondering) stopTheSearch();
      waitForMainSearch();
      continue;
    }
    switch (nextLine(clientInput)) {
      case LineStatus::Line:
        takeClientLine(clientInput.line);
        break;
      case LineStatus::Dropped:
        std::printf("info string line of more than %d bytes dropped\n", longestLine);
        std::fflush(stdout);
        logPrintf("uci -> a line of more than %d bytes, dropped\n", longestLine);
        break;
      case LineStatus::Woken:
        break;
      case LineStatus::Ended:
        session.inputEnded = true;
        break;
    }
  }
}
