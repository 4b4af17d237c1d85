// fingerprints [--seed N] [ROWS...]: the self-test searches, row by row,
// beside the reference fingerprints, and how many rows agree.
#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "batch_search.h"
#include "board/fen.h"
#include "board/keys.h"
#include "commands.h"
#include "reference_fingerprints.h"
#include "search/think.h"
#include "shell/self_test.h"

namespace {

bool parseRows(int argc, char** argv, bool (&chosen)[referenceRowCount]) {
  for (int row = 0; row < referenceRowCount; ++row) chosen[row] = argc == 0;
  for (int i = 0; i < argc; ++i) {
    char* end = nullptr;
    long row = std::strtol(argv[i], &end, 10);
    if (end == argv[i] || *end != 0 || row < 0 || row >= referenceRowCount) {
      std::fprintf(stderr, "fingerprints: row %s is not 0..%d\n", argv[i], referenceRowCount - 1);
      return false;
    }
    chosen[row] = true;
  }
  return true;
}

// The reference table is a copy; a row that no longer names the self-test's
// position, or a move word that doesn't spell its text, would compare nonsense.
bool referenceMatches(int row, const char* fen) {
  const ReferenceFingerprint& reference = referenceFingerprints[row];
  Position root;
  parseFen(root, fen);
  char text[8];
  moveToText(root, reference.move, text);
  if (std::strcmp(fen, reference.fen) == 0 && std::strcmp(text, reference.moveText) == 0) return true;
  std::fprintf(stderr, "fingerprints: reference row %d doesn't match the self-test row \"%s\"\n", row, fen);
  return false;
}

}  // namespace

int fingerprintsCommand(int argc, char** argv) {
  uint64_t seed = keySeed;
  if (!takeSeedOption(argc, argv, seed)) return 2;
  bool chosen[referenceRowCount];
  if (!parseRows(argc, argv, chosen)) {
    std::fprintf(stderr, "usage: tarvok-tool fingerprints [--seed N] [ROWS...]\n");
    return 2;
  }
  prepareBatchSearch(seed);

  std::printf("# seed 0x%016" PRIx64 ", depth %d\n", seed, testSearchDepth);
  std::printf("row  move  ref    score   ref      nodes        ref    nodes%%  agree\n");
  int rows = 0, sameMove = 0, sameScore = 0, sameNodes = 0, nearNodes = 0;
  auto start = std::chrono::steady_clock::now();
  for (int row = 0; row < referenceRowCount; ++row) {
    if (!chosen[row]) continue;
    char fen[160];
    searchTestRow(row, fen);
    if (!referenceMatches(row, fen)) return 1;
    const ReferenceFingerprint& reference = referenceFingerprints[row];
    Move move = mainSearch.depthMove[testSearchDepth];
    int score = mainSearch.depthScore[testSearchDepth];
    uint64_t nodes = mainSearch.depthNodes[testSearchDepth];
    Position root;
    parseFen(root, fen);
    char text[8];
    moveToText(root, move, text);
    bool moveAgrees = move == reference.move;
    bool scoreAgrees = score == reference.score;
    bool nodesAgree = nodes == reference.nodes;
    double percent = 100.0 * (static_cast<double>(nodes) - static_cast<double>(reference.nodes)) /
                     static_cast<double>(reference.nodes);
    std::printf("%3d  %-5s %-5s %6d %6d %10" PRIu64 " %10" PRIu64 " %+8.1f%%  %c%c%c\n", row, text,
                reference.moveText, score, reference.score, nodes, reference.nodes, percent,
                moveAgrees ? 'M' : '.', scoreAgrees ? 'S' : '.', nodesAgree ? 'N' : '.');
    std::fflush(stdout);
    ++rows;
    sameMove += moveAgrees;
    sameScore += scoreAgrees;
    sameNodes += nodesAgree;
    nearNodes += percent >= -1.0 && percent <= 1.0;
  }
  // The keys alone move most rows' counts by a few nodes at most, so a row
  // within 1% is close to agreement; exact agreement stays the goal.
  std::printf("agree: move %d score %d nodes %d of %d; nodes within 1%%: %d\n", sameMove, sameScore, sameNodes, rows,
              nearNodes);
  double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  std::fprintf(stderr, "%.1f s\n", seconds);
  return 0;
}
