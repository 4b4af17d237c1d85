// Engine options: plain globals with fixed start values. Two tables make the
// check and spin options reachable by name; the rest are handled one by one.
#pragma once

#include <cstdint>

struct EngineOption {
  char name[64];
  int32_t* value;
  int32_t minimum;  // spin options only: announced, and a value is held to them
  int32_t maximum;
};

// Check options.
extern int32_t useLmr;            // "use lmr"
extern int32_t nullMovePruning;   // "null move pruning"
extern int32_t deterministic;     // "deterministic"
extern int32_t bestLineOnly;      // "Best Line"
// Spin options.
extern int32_t redDepthThreshold;          // "Red depth threshold"
extern int32_t kingSafetyAggressiveness;   // "King Safety Aggressiveness"
extern int32_t moveOverheadMs;             // "move overhead milliseconds"
extern int32_t drawScore;                  // "Drawscore"
// Handled one by one.
constexpr int32_t maxHashMb = 4096;
extern int32_t hashSizeMb;  // the size of the table in force; 0: none
extern int32_t ownBook;
extern int32_t multiPv;
extern char bookFileName[512];
extern int32_t ponderOption;  // accepted and logged; nothing reads it

// Rows end with an empty name.
extern EngineOption checkOptions[];
extern EngineOption spinOptions[];
