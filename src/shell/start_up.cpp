#include "shell/start_up.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "base/engine_exit.h"
#include "base/log.h"
#include "base/options.h"
#include "base/platform.h"
#include "base/three_file_mask.h"
#include "book/book.h"
#include "eval/tables.h"
#include "search/hash_table.h"
#include "search/limits.h"
#include "shell/command_line.h"
#include "shell/input_lines.h"
#include "shell/self_test.h"
#include "shell/setoption.h"
#include "shell/uci.h"
#include "shell/version.h"

namespace {

// A default size the memory can't give leaves the engine without a table,
// and the uci answer says Hash 0.
void allocateStartTable() {
  if (options.hashSizeMb != 0 && !hashAllocate(options.hashSizeMb)) options.hashSizeMb = 0;
}

[[noreturn]] void runUciMode(BookOpening opening) {
  rebuildEvaluation();
  std::fprintf(stderr, "Tarvok version %s\n", engineVersion);
  // A missing default book goes unsaid; one that is there but unreadable is told.
  if (opening == BookOpening::Unreadable) sayBookUnreadable();
  allocateStartTable();
  if (!openLineReader(clientInput, 0)) fatalExit("no pipe for the input thread's wake-up\n");
  runUciLoop();
}

int runSelfTestMode() {
  searchLimits.batchMode = 1;
  rebuildEvaluation();
  allocateStartTable();
  std::fprintf(stderr, "Tarvok version %s\n\n", engineVersion);
  return runSelfTest();
}

int runMakeTestDataMode() {
  searchLimits.batchMode = 1;
  rebuildEvaluation();
  std::printf("\nchar testFens[50][160] = {\n");
  allocateStartTable();
  return makeTestData();
}

}  // namespace

int engineMain(int argc, char** argv) {
  // The opening book is the only consumer of random numbers.
  std::srand(static_cast<uint32_t>(std::time(nullptr)));
  const BookOpening opening = openBook();
  fillThreeFileMask();
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  std::setvbuf(stdin, nullptr, _IONBF, 0);
  std::fflush(nullptr);

  if (readSwitches(argc, argv) != 0) return -1;
  if (commandLine.help) {
    usage(stdout, argv[0]);
    return 0;
  }
  // A log file that can't be opened means no log; the engine runs on.
  if (commandLine.logFileName[0]) openLog(commandLine.logFileName);

  if (commandLine.makeTestData) return runMakeTestDataMode();
  if (commandLine.selfTest) return runSelfTestMode();
  runUciMode(opening);
}
