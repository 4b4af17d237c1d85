#include "shell/command_line.h"

#include <cstdio>
#include <cstdlib>
#include <strings.h>

#include "base/platform.h"

CommandLine commandLine;

const SwitchRow switchTable[] = {
    {"test", &commandLine.selfTest, SwitchFlag},
    {"makeTestData", &commandLine.makeTestData, SwitchFlag},
    {"log", commandLine.logFileName, SwitchString},
    {"cpu", &clockSettings.wholeSeconds, SwitchInteger},
    {"pgn", &commandLine.pgn, SwitchFlag},
    {"quiet", nullptr, SwitchNone},
    {"help", &commandLine.help, SwitchFlag},
    {"h", &commandLine.help, SwitchFlag},
    // --help, as most programs spell it: the name after the first dash.
    {"-help", &commandLine.help, SwitchFlag},
    {"", nullptr, SwitchNone},
};

void usage(std::FILE* out, const char* programName) {
  std::fprintf(out,
               "usage: %s [-log FILE] [-test] [-makeTestData] [-cpu N] [-pgn] [-quiet] [-help]\n"
               "  -log FILE      append a trace of every command and search to FILE\n"
               "  -test          run the self-test: a determinism check and a benchmark\n"
               "  -makeTestData  search the self-test positions and print a new table of results\n"
               "  -cpu N         any N but 0 measures time in whole seconds\n"
               "  -pgn, -quiet   accepted, no effect\n"
               "  -help, -h      print this text and exit\n"
               "Without a switch the engine reads UCI commands on standard input.\n",
               programName);
}

namespace {

const SwitchRow* findSwitch(const char* name) {
  for (const SwitchRow* row = switchTable; row->name[0]; ++row)
    if (strcasecmp(row->name, name) == 0) return row;
  return nullptr;
}

}  // namespace

int readSwitches(int argc, char** argv) {
  commandLine.logFileName[0] = '\0';
  for (int i = 1; i < argc; ++i) {
    const char* argument = argv[i];
    if (argument[0] != '-') {
      std::fprintf(stderr, "Error in command line processing.  option expected at argument %d\n", i);
      usage(stderr, argv[0]);
      return -1;
    }
    const SwitchRow* row = findSwitch(argument + 1);
    if (!row) {
      std::fprintf(stderr, "Error. option %s not found.\n", argument);
      usage(stderr, argv[0]);
      return -1;
    }
    if (row->type == SwitchString || row->type == SwitchInteger) {
      if (i + 1 >= argc) {
        std::fprintf(stderr, "Error.  No argument.\n");
        usage(stderr, argv[0]);
        return -1;
      }
      const char* value = argv[++i];
      // A longer log file name is cut to the 511 bytes that fit.
      if (row->type == SwitchString)
        std::snprintf(static_cast<char*>(row->destination), logFileNameSize, "%s", value);
      else
        *static_cast<int32_t*>(row->destination) = static_cast<int32_t>(std::strtol(value, nullptr, 10));
    } else if (row->type == SwitchFlag) {
      *static_cast<int32_t*>(row->destination) = 1;
    }
  }
  return 0;
}
