// bench [DEPTH] [--engine PATH] [--threads N]: the engine itself, as a GUI
// runs it, searches the 50 self-test positions once each to DEPTH (13 by
// default) from cleared tables; one line per position, then the totals. The
// node total is the signature of the search: a change that should leave the
// search alone must leave it as it was. The speed is the engine's own, not
// this tool's (whose search carries the trace counters). With --threads the
// engine searches with N threads, each position after a ucinewgame in place
// of the deterministic option (which would hold it to one thread): the
// seconds then measure the time to depth, and the nodes vary from run to run.
#include <cinttypes>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <unistd.h>

#include "batch_search.h"
#include "commands.h"
#include "engine_process.h"
#include "shell/self_test.h"

namespace {

// The engine beside this tool's own binary, where the build puts both.
std::string engineBesideTool() {
  char path[PATH_MAX];
  ssize_t length = readlink("/proc/self/exe", path, sizeof path - 1);
  if (length <= 0) return "tarvok";
  path[length] = 0;
  std::string text(path);
  size_t slash = text.rfind('/');
  return text.substr(0, slash + 1) + "tarvok";
}

// The number after word in line (" nodes 123 "), or -1 where it isn't.
long long numberAfter(const std::string& line, const char* word) {
  size_t at = line.find(word);
  if (at == std::string::npos) return -1;
  return std::atoll(line.c_str() + at + std::strlen(word));
}

}  // namespace

int benchCommand(int argc, char** argv) {
  EngineSetup setup;
  setup.command = engineBesideTool();
  if (const char* command = takeFlagValue(argc, argv, "--engine")) setup.command = command;
  const char* threadsText = takeFlagValue(argc, argv, "--threads");
  const int threads = threadsText != nullptr ? std::atoi(threadsText) : 0;
  int depth = testSearchDepth;
  if (argc > 1 || (argc == 1 && (depth = std::atoi(argv[0])) < 1) || threads < 0) {
    std::fprintf(stderr, "usage: tarvok-tool bench [DEPTH] [--engine PATH] [--threads N]\n");
    return 2;
  }
  // Every search from cleared hash and history, as the self-test searches.
  if (threads == 0)
    setup.options.emplace_back("deterministic", "true");
  else
    setup.options.emplace_back("Threads", std::to_string(threads));

  EngineProcess engine;
  std::string line;
  const auto later = [] { return secondsAfter(EngineClock::now(), 3600.0); };
  bool ready = engine.start(setup) && engine.send("uci");
  while (ready && engine.readLine(line, later()) == EngineRead::Line && line != "uciok") {}
  for (const auto& [name, value] : setup.options) ready = ready && engine.send("setoption name " + name + " value " + value);
  if (!ready || line != "uciok") {
    std::fprintf(stderr, "bench: %s doesn't answer uci\n", setup.command.c_str());
    return 1;
  }

  uint64_t totalNodes = 0;
  double totalSeconds = 0.0;
  for (int row = 0; row < 50; ++row) {
    char fen[160];
    testRowFen(row, fen);
    if (threads != 0) {
      engine.send("ucinewgame");
      engine.send("isready");
      while (engine.readLine(line, later()) == EngineRead::Line && line != "readyok") {}
    }
    const auto start = EngineClock::now();
    engine.send(std::string("position fen ") + fen);
    engine.send("go depth " + std::to_string(depth));
    long long nodes = -1;
    // The last count before bestmove is the whole search's.
    while (engine.readLine(line, later()) == EngineRead::Line && line.rfind("bestmove", 0) != 0)
      if (long long seen = numberAfter(line, " nodes "); seen >= 0) nodes = seen;
    const double seconds = std::chrono::duration<double>(EngineClock::now() - start).count();
    if (line.rfind("bestmove", 0) != 0 || nodes < 0) {
      std::fprintf(stderr, "bench: the engine gave no answer to row %d\n", row);
      return 1;
    }
    std::printf("%2d %-72s %10lld nodes %7.3f s\n", row, fen, nodes, seconds);
    std::fflush(stdout);
    totalNodes += static_cast<uint64_t>(nodes);
    totalSeconds += seconds;
  }
  std::printf("total nodes %" PRIu64 " seconds %.3f nps %.0f\n", totalNodes, totalSeconds,
              totalSeconds > 0 ? static_cast<double>(totalNodes) / totalSeconds : 0.0);
  return 0;
}
