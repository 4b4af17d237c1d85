// The engine's options: one record of the values in force, read by every
// layer and written only by the shell's setoption. The shell's option table
// (src/shell/option_table.h) declares each option once, with its name, type,
// range and what a change does; the start value of its field here is the
// option's default. The record holds the defaults, not the table, because
// the layers below the shell (and the tools and tests built on them) read
// the record before any shell code has run.
#pragma once

#include <cstdint>

constexpr int bookFileNameSize = 512;

struct EngineOptions {
  // Check options: 1 on, 0 off.
  int32_t useLmr = 1;
  int32_t nullMovePruning = 1;
  int32_t deterministic = 0;     // every search from cleared tables
  int32_t bestLineOnly = 1;      // the book plays its best-weighted move
  int32_t chess960 = 0;          // castling from any rook files, written as the king taking its rook
  int32_t ownBook = 1;
  int32_t ponder = 1;            // recorded and logged; nothing reads it
  // Spin options.
  int32_t redDepthThreshold = 10;
  int32_t kingSafetyAggressiveness = 6;
  int32_t moveOverheadMs = 20;
  int32_t drawScore = -5;
  int32_t threads = 1;           // the main search and threads - 1 helpers
  // The size of the table in force, in MB; 0: none. The default must be a
  // size the table takes as it stands (see hashBucketCount), so that the
  // first uci answer names the table in use.
  int32_t hashSizeMb = 64;
  int32_t multiPv = 1;
  // String option.
  char bookFileName[bookFileNameSize] = "tarvok.bin";

  bool operator==(const EngineOptions&) const = default;
};

extern EngineOptions options;
