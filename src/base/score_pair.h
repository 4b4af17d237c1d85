// ScorePair: an opening and an ending value side by side in one 64-bit word,
// each a signed 31-bit number kept modulo 2^31, so that one addition and one
// mask accumulate both halves of a term.
#pragma once

#include <cstdint>

#include "base/types.h"

constexpr uint64_t scorePairMask = 0x7fffffff7fffffffULL;

constexpr ScorePair makeScorePair(int32_t open, int32_t end) {
  return ((static_cast<uint64_t>(static_cast<uint32_t>(open)) << 32) | static_cast<uint32_t>(end)) & scorePairMask;
}

constexpr ScorePair scorePairAdd(ScorePair a, ScorePair b) { return (a + b) & scorePairMask; }

constexpr ScorePair scorePairNeg(ScorePair a) { return (0x8000000080000000ULL - a) & scorePairMask; }

constexpr ScorePair scorePairSub(ScorePair a, ScorePair b) { return scorePairAdd(a, scorePairNeg(b)); }

// Half by half; only the low 31 bits of each product are kept, so signs take
// care of themselves.
constexpr ScorePair scorePairMul(ScorePair a, ScorePair b) {
  uint64_t high = ((a >> 32) * (b >> 32)) & 0x7fffffff;
  uint64_t low = (a * b) & 0x7fffffff;
  return (high << 32) | low;
}

constexpr int32_t signExtend31(uint64_t h) {
  return static_cast<int32_t>(static_cast<uint32_t>(((h & 0x40000000) << 1) | h));
}

constexpr int32_t scorePairOpen(ScorePair a) { return signExtend31((a >> 32) & 0x7fffffff); }
constexpr int32_t scorePairEnd(ScorePair a) { return signExtend31(a & 0x7fffffff); }
