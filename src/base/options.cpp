#include "base/options.h"

EngineOptions options;

const EngineOption checkOptions[] = {
    {"use lmr", &EngineOptions::useLmr, 0, 0},
    {"null move pruning", &EngineOptions::nullMovePruning, 0, 0},
    {"deterministic", &EngineOptions::deterministic, 0, 0},
    {"Best Line", &EngineOptions::bestLineOnly, 0, 0},
    {"UCI_Chess960", &EngineOptions::chess960, 0, 0},
    {"", nullptr, 0, 0},
};

const EngineOption spinOptions[] = {
    {"Red depth threshold", &EngineOptions::redDepthThreshold, 0, 100},
    {"King Safety Aggressiveness", &EngineOptions::kingSafetyAggressiveness, 0, 10},
    {"move overhead milliseconds", &EngineOptions::moveOverheadMs, 0, 30000},
    {"Drawscore", &EngineOptions::drawScore, -50, 50},
    {"Threads", &EngineOptions::threads, 1, 256},
    {"", nullptr, 0, 0},
};
