#include "shell/uci.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "shell/go_command.h"
#include "shell/input_ring.h"
#include "shell/log.h"
#include "shell/options.h"
#include "shell/position_command.h"
#include "shell/search_flags.h"
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

const char* checkText(int32_t value) { return value ? "true" : "false"; }

}  // namespace

void printUciAnswer() {
  std::printf("id name %s %s\n", engineName, engineVersion);
  std::printf("id author Orin Tessaly, Quill Marrow\n");
  std::printf("option name Ponder type check default true\n");
  std::printf("option name Hash type spin default %d min 0 max 4096\n", hashSizeMb);
  std::printf("option name OwnBook type check default %s\n", checkText(ownBook));
  std::printf("option name MultiPV type spin default %d min 1 max 99\n", multiPv);
  std::printf("option name Book File type string default %s\n", bookFileName);
  for (const EngineOption* row = checkOptions; row->name[0]; ++row)
    std::printf("option name %s type check default %s\n", row->name, checkText(*row->value));
  for (const EngineOption* row = spinOptions; row->name[0]; ++row)
    std::printf("option name %s type spin default %d min %d max %d\n", row->name, *row->value,
                row->minimum, row->maximum);
  std::printf("uciok\n");
  std::fflush(stdout);
}

void uciPoll() {
  // Before any line, so that a go without position searches the start position.
  if (startPositionPending) setUpStartPosition();

  char* line = takeInputLine(inputRing);
  if (!line) return;
  line[std::strcspn(line, "\f\n\r")] = '\0';
  if (!line[0]) return;
  logPrintf("uci -> %s\n", line);

  // Local, not static: a go runs its search inside this pass, and the
  // search's own polls come back here.
  char* tokens[slotBytes / 2 + 1];
  int count = tokenise(line, tokens);
  if (count == 0) return;
  logPrintf("cmd = %s\n", tokens[0]);

  switch (commandHash(tokens[0])) {
    case hashUci:
      printUciAnswer();
      break;
    case hashIsReady:
      std::printf("readyok\n");
      std::fflush(stdout);
      break;
    case hashSetOption:
      setoptionCommand(tokens, count);
      break;
    case hashPosition:
      positionCommand(tokens, count);
      break;
    case hashGo:
      goCommand(tokens, count);
      break;
    case hashStop:
      stopSearch = 1;
      break;
    case hashPonderHit:
      pondering = 0;
      break;
    case hashQuit:
      std::exit(0);
    default:
      break;
  }
}
