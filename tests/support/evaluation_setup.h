// Test-only helpers for the evaluation: tables at the default option, and
// root records ready to evaluate.
#pragma once

#include "board/fen.h"
#include "board/types.h"
#include "eval/piece_square.h"
#include "eval/tables.h"
#include "shell/options.h"

namespace evaltest {

inline void useEvaluationTables(int32_t aggressiveness = 6) {
  kingSafetyAggressiveness = aggressiveness;
  initEvaluation();
}

// A record as a search root has it: parsed, with pstScore and phase filled in.
inline Position rootPosition(const char* fen) {
  Position p;
  parseFen(p, fen);
  fillRootScores(p);
  return p;
}

}  // namespace evaltest
