// The search's reports as UCI lines: info lines while it runs, bestmove when
// it ends, and the record of each search in the log.
#pragma once

#include "search/report.h"

class UciReporter final : public SearchReporter {
 public:
  void searchStarted(const Position& root) override;
  void iterationStarted(int depth) override;
  void lineFound(const LineReport& report) override;
  void iterationFinished(const LineReport& report) override;
  void currentMove(Move move, int number) override;
  void searchEnded(const SearchAnswer& answer) override;

 private:
  // The searched position, whose game the move texts follow (Chess960
  // castling is written as the king taking its own rook).
  const Position* root_ = nullptr;
};

extern UciReporter uciReporter;

constexpr int scoreTextSize = 24;

// "cp N", or "mate N" for scores beyond the mate threshold; text holds
// scoreTextSize bytes.
void scoreToText(int score, char* text);

// Writes the moves of line (ended by a 0), played from root, as text, each
// followed by a blank.
void lineToText(const Position& root, const Move* line, char* text);

// The answer to go from root: bestmove, with the ponder move when there is one.
void printBestMove(const Position& root, Move best, Move ponder, uint64_t nodes);
