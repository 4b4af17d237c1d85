#include "shell/uci_report.h"

#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/log.h"
#include "board/fen.h"
#include "eval/evaluate.h"
#include "search/conventions.h"
#include "search/think.h"

UciReporter uciReporter;

void scoreToText(int score, char* text) {
  if (std::abs(score) > mateThreshold) {
    int mateIn = score > 0 ? movesToMate(score) : -((mateScore - 1 - std::abs(score)) / 2) - 1;
    std::snprintf(text, scoreTextSize, "mate %d", mateIn);
  } else {
    std::snprintf(text, scoreTextSize, "cp %d", score);
  }
}

void lineToText(const Position& root, const Move* line, char* text) {
  text[0] = 0;
  size_t used = 0;
  for (int i = 0; i < lineLength && line[i] != 0; ++i) {
    moveToText(root, line[i], text + used);
    used += std::strlen(text + used);
    text[used++] = ' ';
    text[used] = 0;
  }
}

void printBestMove(const Position& root, Move best, Move ponder, uint64_t nodes) {
  char bestText[8] = "0000";
  char ponderText[8] = "";
  if (best) moveToText(root, best, bestText);
  if (best && ponder) moveToText(root, ponder, ponderText);
  std::printf("info nodes %" PRIu64 "\n", nodes);
  logPrintf("info nodes %" PRIu64 "\n", nodes);
  if (ponderText[0]) {
    std::printf("bestmove %s ponder %s\n", bestText, ponderText);
    logPrintf("bestmove %s ponder %s\n", bestText, ponderText);
  } else {
    std::printf("bestmove %s\n", bestText);
    logPrintf("bestmove %s\n", bestText);
  }
  std::fflush(stdout);
}

void UciReporter::searchStarted(const Position& root) {
  root_ = &root;
  logBoard(root);
  logPrintf("DEPTH      TIME         NODES      KNPS    SCORE   PRINCIPAL VARIATION\n");
  logPrintf("-----  --------  ------------  --------  -------   -------------------------------------------------\n");
}

void UciReporter::iterationStarted(int depth) {
  std::printf("info depth %d\n", depth);
  std::fflush(stdout);
}

// Fields in the order of the UCI convention: depth, seldepth, multipv,
// score, nodes, nps, hashfull, time, pv.
void UciReporter::lineFound(const LineReport& report) {
  // Guards the rate against a zero time on a fast first report.
  const double rateTime = report.seconds > 0.0001 ? report.seconds : 0.0001;
  char scoreText[scoreTextSize];
  char lineText[lineLength * 6 + 1];
  char rank[24] = "";
  scoreToText(report.score, scoreText);
  lineToText(*root_, report.line, lineText);
  if (report.multiPv > 0) std::snprintf(rank, sizeof rank, " multipv %d", report.multiPv);
  std::printf("info depth %d seldepth %d%s score %s nodes %" PRIu64 " nps %" PRIu64 " hashfull %d time %d pv %s\n",
              report.depth, report.selDepth, rank, scoreText, report.nodes,
              static_cast<uint64_t>(report.nodes / rateTime), report.hashFull,
              static_cast<int>(1000 * report.seconds), lineText);
  std::fflush(stdout);
}

void UciReporter::iterationFinished(const LineReport& report) {
  char lineText[lineLength * 6 + 1];
  lineToText(*root_, report.line, lineText);
  logPrintf("%5d  %8.1f  %12" PRIu64 "  %8.1f  %7.2f   %s\n", report.depth, report.seconds, report.nodes,
            0.001 * report.nodes / report.seconds, report.score * 0.01, lineText);
}

void UciReporter::currentMove(Move move, int number) {
  char text[8];
  moveToText(*root_, move, text);
  std::printf("info currmove %s currmovenumber %d\n", text, number);
  std::fflush(stdout);
}

void UciReporter::searchEnded(const SearchAnswer& answer) {
  if (answer.aborted) logPrintf("search aborted\n");
  logPrintf("Total move time %8.1f\n", answer.seconds);
  if (engineLog.file) {
    const EvalCaches& caches = *answer.caches;
    double rate = caches.etableProbes
                      ? 100.0 * static_cast<double>(caches.etableHits) / static_cast<double>(caches.etableProbes)
                      : 0.0;
    logPrintf("\nEtable statistics: %12" PRIu64 " hits  %12" PRIu64 " probes   Rate = %8.3f percent\n",
              caches.etableHits, caches.etableProbes, rate);
  }
  printBestMove(*root_, answer.best, answer.ponder, answer.nodes);
}
