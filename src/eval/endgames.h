// Material balances that are scored by a rule of their own instead of the
// general terms: king and pawn, king, bishop and knight, king, bishop and pawn,
// king, knight and pawn, each against a bare king. Every handler returns
// centipawns from white's view; the ending table routes positions to them.
#pragma once

#include <cstdint>

#include "base/types.h"

// Reads kpkBitbase, which buildKpkBitbase() must have filled.
int32_t endKpk(const Position& position);
// Reads squareColour and squareDistance, which initGeometry() must have filled.
int32_t endKbnk(const Position& position);
int32_t endKbpk(const Position& position);
int32_t endKnpk(const Position& position);
