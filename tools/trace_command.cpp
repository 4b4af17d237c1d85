// trace [--seed N] [--iterations] ROW | DEPTH FEN...: one batch search with
// its node counts per iteration and per search, and how often each rule of
// the search fired. With --iterations every counter is shown per iteration.
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "batch_search.h"
#include "board/fen.h"
#include "board/keys.h"
#include "commands.h"
#include "eval/evaluate.h"
#include "reference_fingerprints.h"
#include "search/search_trace.h"
#include "search/think.h"
#include "shell/self_test.h"

namespace {

constexpr int deepestTrace = 31;  // the per-iteration records hold 32 entries

bool parseNumber(const char* text, int low, int high, int& value) {
  char* end = nullptr;
  long number = std::strtol(text, &end, 10);
  if (end == text || *end != 0 || number < low || number > high) return false;
  value = static_cast<int>(number);
  return true;
}

uint64_t counterAt(int depth, uint64_t SearchTrace::*counter) {
  return depth < 1 ? 0 : depthTrace[depth].*counter;
}

void printIterations(const Position& root, int depth) {
  std::printf("iter  move    score        nodes   searchNode     searchPv  searchQuiet  passes\n");
  for (int d = 1; d <= depth; ++d) {
    char text[8];
    moveToText(root, mainSearch.depthMove[d], text);
    const SearchTrace& trace = depthTrace[d];
    std::printf("%4d  %-5s  %6d %12" PRIu64 " %12" PRIu64 " %12" PRIu64 " %12" PRIu64 " %7" PRIu64 "\n", d, text,
                mainSearch.depthScore[d], mainSearch.depthNodes[d], trace.nodeEntries, trace.pvEntries, trace.quietEntries,
                trace.rootPasses);
  }
}

void printCounters(int depth, bool byIteration) {
  if (byIteration) {
    std::printf("\n%-24s", "counter, per iteration");
    for (int d = 1; d <= depth; ++d) std::printf(" %10d", d);
    std::printf("\n");
  } else {
    std::printf("\n%-24s %12s %12s\n", "counter", "total", "last iter");
  }
  for (const SearchTraceField* field = searchTraceFields; field->name; ++field) {
    std::printf("%-24s", field->name);
    if (byIteration) {
      for (int d = 1; d <= depth; ++d)
        std::printf(" %10" PRIu64, counterAt(d, field->counter) - counterAt(d - 1, field->counter));
    } else {
      uint64_t total = counterAt(depth, field->counter);
      std::printf(" %12" PRIu64 " %12" PRIu64, total, total - counterAt(depth - 1, field->counter));
    }
    std::printf("\n");
  }
}

}  // namespace

int traceCommand(int argc, char** argv) {
  uint64_t seed = keySeed;
  if (!takeSeedOption(argc, argv, seed)) return 2;
  bool byIteration = takeFlag(argc, argv, "--iterations");
  int row = -1;
  int depth = 0;
  bool rowGiven = argc == 1 && parseNumber(argv[0], 0, referenceRowCount - 1, row);
  bool fenGiven = argc >= 2 && parseNumber(argv[0], 1, deepestTrace, depth);
  if (!rowGiven && !fenGiven) {
    std::fprintf(stderr, "usage: tarvok-tool trace [--seed N] [--iterations] ROW | DEPTH FEN...\n");
    return 2;
  }
  prepareBatchSearch(seed);

  char fen[512] = "";
  uint64_t cacheHitsBefore = evalCaches.evalCacheHits, probesBefore = evalCaches.etableProbes, etableHitsBefore = evalCaches.etableHits;
  if (rowGiven) {
    searchTestRow(row, fen);
    depth = testSearchDepth;
  } else {
    for (int i = 1; i < argc; ++i) {
      if (i > 1) std::strncat(fen, " ", sizeof fen - std::strlen(fen) - 1);
      std::strncat(fen, argv[i], sizeof fen - std::strlen(fen) - 1);
    }
    searchBatchPosition(fen, depth);
  }

  // A mate found early ends the search before depth; later records are stale.
  while (depth > 1 && depthTrace[depth].rootPasses == 0) --depth;
  std::printf("# seed 0x%016" PRIx64 ", depth %d\n", seed, depth);
  std::printf("position %s\n", fen);
  if (rowGiven) {
    const ReferenceFingerprint& reference = referenceFingerprints[row];
    std::printf("reference %s %d %" PRIu64 "\n", reference.moveText, reference.score, reference.nodes);
  }
  Position root;
  parseFen(root, fen);
  printIterations(root, depth);
  printCounters(depth, byIteration);
  std::printf("\nevaluation, whole search: cache hits %" PRIu64 ", etable probes %" PRIu64 ", etable hits %" PRIu64
              "\n",
              evalCaches.evalCacheHits - cacheHitsBefore, evalCaches.etableProbes - probesBefore, evalCaches.etableHits - etableHitsBefore);
  return 0;
}
