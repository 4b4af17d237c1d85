// The engine's options: one record with the start values, read by every
// layer and written only by the shell's setoption. Two tables make the check
// and spin options reachable by name; the rest are handled one by one.
#pragma once

#include <cstdint>

constexpr int32_t maxHashMb = 4096;

struct EngineOptions {
  // Check options.
  int32_t useLmr = 1;            // "use lmr"
  int32_t nullMovePruning = 1;   // "null move pruning"
  int32_t deterministic = 0;     // "deterministic": every search from cleared tables
  int32_t bestLineOnly = 1;      // "Best Line": the book plays its best-weighted move
  int32_t chess960 = 0;          // "UCI_Chess960": castling from any rook files, written as the king taking its rook
  // Spin options.
  int32_t redDepthThreshold = 10;         // "Red depth threshold"
  int32_t kingSafetyAggressiveness = 6;   // "King Safety Aggressiveness"
  int32_t moveOverheadMs = 20;            // "move overhead milliseconds"
  int32_t drawScore = -5;                 // "Drawscore"
  int32_t threads = 1;                    // "Threads": the main search and threads - 1 helpers
  // Handled one by one.
  int32_t hashSizeMb = 64;  // the size of the table in force; 0: none
  int32_t ownBook = 1;
  int32_t multiPv = 1;
  char bookFileName[512] = "tarvok.bin";
  int32_t ponder = 1;  // accepted and logged; nothing reads it

  bool operator==(const EngineOptions&) const = default;
};

extern EngineOptions options;

struct EngineOption {
  char name[64];
  int32_t EngineOptions::*value;
  int32_t minimum;  // spin options only: announced, and a value is held to them
  int32_t maximum;
};

// Rows end with an empty name.
extern const EngineOption checkOptions[];
extern const EngineOption spinOptions[];
