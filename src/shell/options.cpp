#include "shell/options.h"

int32_t useLmr = 1;
int32_t nullMovePruning = 1;
int32_t deterministic = 0;
int32_t bestLineOnly = 1;
int32_t redDepthThreshold = 10;
int32_t kingSafetyAggressiveness = 6;
int32_t moveOverheadMs = 20;
int32_t drawScore = -5;
int32_t hashSizeMb = 64;
int32_t ownBook = 1;
int32_t multiPv = 1;
char bookFileName[512] = "tarvok.bin";
int32_t ponderOption = 1;

EngineOption checkOptions[] = {
    {"use lmr", &useLmr, 0, 0},
    {"null move pruning", &nullMovePruning, 0, 0},
    {"deterministic", &deterministic, 0, 0},
    {"Best Line", &bestLineOnly, 0, 0},
    {"", nullptr, 0, 0},
};

EngineOption spinOptions[] = {
    {"Red depth threshold", &redDepthThreshold, 0, 100},
    {"King Safety Aggressiveness", &kingSafetyAggressiveness, 0, 10},
    {"move overhead milliseconds", &moveOverheadMs, 0, 30000},
    {"Drawscore", &drawScore, -50, 50},
    {"", nullptr, 0, 0},
};
