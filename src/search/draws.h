// How the searches recognise a draw and what it is worth.
#pragma once

#include <cstdint>

#include "base/types.h"

// materialKey of the material that can't win, kings aside, white first: none
// v none, N v none, none v N, B v none, none v B, N v N, B v B, N v B, B v N,
// NN v none, none v NN. Written by buildReductionTables.
constexpr int drawnMaterialCount = 11;
extern uint64_t drawnMaterialKeys[drawnMaterialCount];
void fillDrawnMaterialKeys();

// A draw counts from the root side's view: "Drawscore" to the side that was
// to move at the root, its negation to the opponent, at any depth.
int drawValue(int ply);

// True when the search at this node may return the draw value at once for
// lack of winning material. Not within two plies of the root, and not in or
// right after a check, where the rare mates this material allows (a king
// hemmed in by its own minor piece) could stand.
bool isDrawnMaterial(const Position& position, int ply);

// For a record just made and not yet searched: has this position, with the
// same side to move, stood before on the line or in the game since the last
// irreversible move, or have 100 reversible moves gone by? A single earlier
// occurrence is enough.
bool repetitionDraw(const Position& child);
