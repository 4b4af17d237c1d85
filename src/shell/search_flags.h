// Flags and limits shared by the dispatcher and the searches. Only the main
// thread touches them: commands reach a search through its own polls.
#pragma once

#include <cstdint>

extern int32_t stopSearch;    // the search must unwind
extern int32_t pondering;     // no limit ends the search while set
extern int32_t pollingHeld;   // set during the first iteration: no polls
extern int32_t pollCounter;   // entries of all searches; low 8 bits pace the polls
extern double searchStartTime;
extern double hardTimeLimit;
extern uint64_t nodeCount;    // counted by makeMove
extern uint64_t nodeLimit;    // all bits set for no limit
extern int32_t batchMode;     // self-test and test data: silent, deterministic
