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
#include "shell/game.h"
#include "shell/go_command.h"
#include "shell/input_ring.h"
#include "shell/option_table.h"
#include "shell/position_command.h"
#include "shell/setoption.h"
#include "shell/tokenise.h"
#include "shell/version.h"

uint32_t commandHash(const char* word) {
  uint32_t hash = 5381;
  for (const char* c = word; *c; ++c)
    hash = hash * 33 + static_cast<uint32_t>(static_cast<int32_t>(static_cast<signed char>(*c)));
  return hash;
}

namespace {

// A running search keeps its game, its table and its root: the client is
// told, and the search goes on undisturbed.
bool refusedDuringSearch(const char* command) {
  if (!searchSession.running) return false;
  std::printf("info string %s refused while a search runs\n", command);
  std::fflush(stdout);
  return true;
}

}  // namespace

void printUciAnswer() {
  std::printf("id name %s %s\n", engineName, engineVersion);
  std::printf("id author Orin Tessaly, Quill Marrow\n");
  for (const OptionDeclaration& option : declaredOptions) announceOption(option);
  std::printf("uciok\n");
  std::fflush(stdout);
}

bool uciPoll() {
  // Before any line, so that a go without position searches the start position.
  if (game.startPositionPending) setUpStartPosition();

  // Once a stop has been read, the unwinding search takes no further line:
  // what the client sent after it waits for the main loop.
  if (searchSession.running && searchLimits.stop) return false;
  InputSlot* slot = takeInputLine(inputRing);
  if (!slot) {
    // At the end of input a search that only a command can end is stopped,
    // so that it prints its bestmove and the engine can finish.
    if (searchSession.running && (searchSession.needsCommand || searchLimits.pondering) && inputFinished(inputRing)) stopTheSearch();
    return false;
  }
  if (slot->dropped) {
    std::printf("info string line of more than %d bytes dropped\n", longestLine);
    std::fflush(stdout);
    logPrintf("uci -> a line of more than %d bytes, dropped\n", longestLine);
    return true;
  }
  char* line = slot->text;
  line[std::strcspn(line, "\f\n\r")] = '\0';
  if (!line[0]) return true;
  logPrintf("uci -> %s\n", line);

  // Local, not static: a go runs its search inside this pass, and the
  // search's own polls come back here.
  char* tokens[slotBytes / 2 + 1];
  int count = tokenise(line, tokens);
  if (count == 0) return true;
  logPrintf("cmd = %s\n", tokens[0]);

  switch (commandHash(tokens[0])) {
    case hashUci:
      printUciAnswer();
      break;
    case hashUciNewGame:
      // The client's word that the next position belongs to another game.
      if (refusedDuringSearch("ucinewgame")) break;
      forgetEarlierGames(mainSearch);
      break;
    case hashIsReady:
      std::printf("readyok\n");
      std::fflush(stdout);
      break;
    case hashSetOption:
      // A new table would pull the entries from under a running search.
      if (namesOption(tokens, count, "hash") && refusedDuringSearch("setoption name Hash")) break;
      if (namesOption(tokens, count, "clear hash") && refusedDuringSearch("setoption name Clear Hash")) break;
      if (namesOption(tokens, count, "threads") && refusedDuringSearch("setoption name Threads")) break;
      // Helper threads read the options and the tables they build while they
      // search: with helpers, no setting changes under a running search.
      if (options.threads > 1 && refusedDuringSearch("setoption")) break;
      setoptionCommand(tokens, count);
      break;
    case hashPosition:
      if (refusedDuringSearch("position")) break;
      positionCommand(tokens, count);
      break;
    case hashGo:
      if (refusedDuringSearch("go")) break;
      // The search comes back here through its polls, for stop and ponderhit.
      searchLimits.serveInput = uciPoll;
      goCommand(tokens, count);
      break;
    case hashStop:
      stopTheSearch();
      break;
    case hashPonderHit:
      searchLimits.pondering = 0;
      break;
    case hashQuit:
      quitEngine();
    default:
      break;
  }
  return true;
}
