// The staged move picker: hands a node its moves one at a time, best guess
// first, generating as little as it can.
#pragma once

#include <cstdint>

#include "base/types.h"
#include "moves/generate.h"

enum PickerStage : int32_t {
  StageHash = 1,
  StageCaptures = 2,
  StageKillerA = 3,
  StageKillerB = 4,
  StageQuiets = 5,
  StageEvasions = 6,
  StageQuietChecks = 7,
  StageDeferred = 8,
  StageEnd = 9,
};

// Rows of stages, each ended by 0, chosen by MovePicker::stageSet.
extern const int32_t stageTable[5][10];

struct MoveHistory;

struct MovePicker {
  const Position* position;
  const MoveHistory* history;
  int32_t stageSet;
  int32_t stageIndex;
  int32_t stage;
  int32_t moveCount;
  int32_t cursor;
  Move hashMove;
  Move killerA;
  Move killerB;
  uint32_t* list;                        // moves or deferred
  uint32_t moves[maxGeneratedMoves];     // move in bits 0-15, sort key above
  uint32_t deferred[maxGeneratedMoves];  // losing exchanges, in order of failing
  int32_t deferredCount;
  Move served[4];                        // stored moves already returned
  int32_t servedCount;
};

// Fills a picker for a node: every counter cleared, list pointing at moves.
void initPicker(MovePicker& picker, const Position& position, const MoveHistory& history, int32_t stageSet,
                Move hashMove, Move killerA, Move killerB);

// The next move with its key cleared, or 0 once the stages are used up.
Move nextMove(MovePicker& picker);

struct HistoryEntry {
  uint64_t good;
  uint64_t tried;
};

// How often a quiet move of a piece to a square succeeded, of the times it
// was tried: [mover colour][piece][to-square]. The search keeps one and the
// picker orders quiet moves by it.
struct MoveHistory {
  HistoryEntry entries[2][8][64];
};
