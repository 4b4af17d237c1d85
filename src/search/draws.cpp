#include "search/draws.h"

#include "base/options.h"
#include "board/keys.h"

uint64_t drawnMaterialKeys[drawnMaterialCount];

void fillDrawnMaterialKeys() {
  const uint64_t whiteKnight = materialWeights[White * 8 + Knight];
  const uint64_t blackKnight = materialWeights[Black * 8 + Knight];
  const uint64_t whiteBishop = materialWeights[White * 8 + Bishop];
  const uint64_t blackBishop = materialWeights[Black * 8 + Bishop];
  const uint64_t keys[drawnMaterialCount] = {
      0,
      whiteKnight,
      blackKnight,
      whiteBishop,
      blackBishop,
      whiteKnight + blackKnight,
      whiteBishop + blackBishop,
      whiteKnight + blackBishop,
      whiteBishop + blackKnight,
      whiteKnight + whiteKnight,
      blackKnight + blackKnight,
  };
  for (int i = 0; i < drawnMaterialCount; ++i) drawnMaterialKeys[i] = keys[i];
}

int drawValue(int ply) { return (ply & 1) ? -options.drawScore : options.drawScore; }

bool isDrawnMaterial(const Position& position, int ply) {
  if (position.phase > 8 || ply <= 2 || position.inCheck) return false;
  if (position.previous != nullptr && position.previous->inCheck) return false;
  for (uint64_t key : drawnMaterialKeys)
    if (position.materialKey == key) return true;
  return false;
}

bool repetitionDraw(const Position& child) {
  // No counter of reversible moves exists: the walk itself is the fifty-move
  // rule. It ends at a null move, a capture or a pawn move, and runs on from
  // the search's records into those of the game.
  const Position* record = &child;
  for (int i = 0; i <= 100; ++i, record = record->previous) {
    if (record == nullptr || record->lastMove == 0 || record->capturedPiece != 0 ||
        record->movedPiece == Pawn)
      return false;
    if (i >= 2 && (i & 1) == 0 && record->hashKey == child.hashKey) return true;
  }
  return true;
}
