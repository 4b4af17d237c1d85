#include "shell/search_flags.h"

int32_t stopSearch = 0;
int32_t pondering = 0;
int32_t pollingHeld = 0;
int32_t pollCounter = 0;
double searchStartTime = 0.0;
double hardTimeLimit = 0.0;
uint64_t nodeCount = 0;
uint64_t nodeLimit = ~uint64_t{0};
int32_t batchMode = 0;
