// tarvok-tool: developer commands on the engine's library.
#include <cstdio>
#include <cstring>

#include "commands.h"

namespace {

struct Subcommand {
  const char* name;
  const char* arguments;
  int (*run)(int argc, char** argv);
};

constexpr Subcommand subcommands[] = {
    {"perft", "DEPTH [FEN...]", perftCommand},
    {"eval", "FEN...", evalCommand},
    {"bookkey", "FEN...", bookKeyCommand},
    {"fingerprints", "[--seed N] [ROWS...]", fingerprintsCommand},
    {"trace", "[--seed N] [--iterations] ROW | DEPTH FEN...", traceCommand},
    {"bench", "[DEPTH] [--engine PATH] [--threads N]", benchCommand},
};

void printUsage() {
  std::fprintf(stderr, "usage: tarvok-tool COMMAND [ARGS...]\n");
  for (const Subcommand& command : subcommands)
    std::fprintf(stderr, "  %s %s\n", command.name, command.arguments);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc >= 2) {
    for (const Subcommand& command : subcommands)
      if (std::strcmp(argv[1], command.name) == 0) return command.run(argc - 2, argv + 2);
  }
  printUsage();
  return 2;
}
