#include "eval/evaluate.h"

#include "base/options.h"
#include "base/platform.h"
#include "base/score_pair.h"
#include "base/three_file_mask.h"
#include "board/piece_square.h"
#include "eval/endings.h"
#include "eval/eval_frame.h"
#include "eval/geometry.h"
#include "eval/king_safety.h"
#include "eval/kpk.h"
#include "eval/passers.h"
#include "eval/pawns.h"
#include "eval/pieces.h"
#include "eval/tables.h"

// On huge pages (see adviseHugePages): the etable alone is four megabytes.
alignas(hugePageBytes) EvalCaches evalCaches;

namespace {

constexpr double oneNinetySixth = 0.010416666666666666;

// Square roots of 0..21 to three places: how much of the lead survives with
// a lone bishop each on opposite colours, by the leader's pawns and passers.
constexpr double squareRoots[22] = {0.0,   1.0,   1.414, 1.732, 2.0,   2.236, 2.449, 2.646, 2.828, 3.0,   3.162,
                                    3.317, 3.464, 3.606, 3.742, 3.873, 4.0,   4.123, 4.243, 4.359, 4.472, 4.583};

// By the pawn count of the side that leads: few pawns left, few winning chances.
constexpr double fewPawnsScale[5] = {0.4, 0.55, 0.7, 0.8, 0.9};

int32_t truncateTimes(int32_t value, double factor) { return static_cast<int32_t>(value * factor); }

int passedCount(const uint8_t passed[8]) {
  int count = 0;
  while (count < 8 && passed[count] != 0) ++count;
  return count;
}

const EtableEntry& probeEtable(const Position& position, EvalCaches& caches) {
  EtableEntry& entry = caches.etable[position.pawnKey & (etableSize - 1)];
  if (entry.key == position.pawnKey)
    ++caches.etableHits;
  else
    computeEtableEntry(position, entry);
  return entry;
}

// Bishops running on squares of different colours make a lead hard to turn
// into a win, most of all with a lone bishop each.
double oppositeBishopScale(const Position& position, const EvalFrame& frame, const EtableEntry& entry, int32_t v) {
  if ((frame.materialTally[White] & 7) != 4 || (frame.materialTally[Black] & 7) != 4) return 1.0;
  Bitboard bishops = position.pieces[White][Bishop] | position.pieces[Black][Bishop];
  if ((bishops & colourSquares[0]) == 0 || (bishops & colourSquares[1]) == 0) return 1.0;
  if (frame.materialTally[White] == 28 && frame.materialTally[Black] == 28) {
    int leader = v >= 0 ? White : Black;
    int n = frame.pawnCount[leader] - 2 + passedCount(entry.passed[leader]);
    return 0.2 * squareRoots[n < 0 ? 0 : n];
  }
  return position.phase <= 55 ? 0.9 : 1.0;
}

int32_t drawishEndingScale(const Position& position, const EvalFrame& frame, int32_t s) {
  int w = frame.materialTally[White] >> 3;
  int b = frame.materialTally[Black] >> 3;
  bool pawns = (position.pieces[White][Pawn] | position.pieces[Black][Pawn]) != 0;
  // With only pawns left the race decides, and a lead is worth more.
  if (w + b == 0 && pawns) return truncateTimes(s, 1.3);
  if (!pawns) {
    int d = w > b ? w - b : b - w;
    return truncateTimes(s, d <= 2 ? 0.1 : d == 3 ? 0.2 : 0.4);
  }
  int leader = s < 0 ? Black : White;
  if (frame.pawnCount[leader] <= 4) return truncateTimes(s, fewPawnsScale[frame.pawnCount[leader]]);
  return s;
}

}  // namespace

void initEvaluation() {
  // The geometry, the KPK bitbase and the king zones never change, so they
  // are built on the first call only.
  static bool fixedTablesBuilt = false;
  if (!fixedTablesBuilt) {
    // Before the caches are first written.
    adviseHugePages(&evalCaches, sizeof(evalCaches));
    initGeometry();
    buildKpkBitbase();
    fillThreeFileMask();
    fixedTablesBuilt = true;
  }
  buildEndingTable();
  buildWeightTables(options.kingSafetyAggressiveness);
  initPieceSquare();
}

void clearEvaluationCaches(EvalCaches& caches) {
  for (EtableEntry& entry : caches.etable) entry.key = 0;
  for (EvalCacheEntry& entry : caches.evalCache) entry.key = 0;
}

int evaluate(const Position& position, EvalCaches& caches) {
  EvalCacheEntry& cached = caches.evalCache[position.hashKey & 0xfff];
  if (cached.key == position.hashKey) return ++caches.evalCacheHits, cached.score;

  const EndingRow& ending = endingTable[position.materialKey & 0xfff];
  double factor = 1.0;
  int32_t correction = 0;
  if (ending.key == position.materialKey) {
    if (ending.handler) {
      int32_t whiteView = ending.handler(position);
      return sideToMove(position) == White ? whiteView : -whiteView;
    }
    factor = ending.factor;
    correction = ending.correction * 96;
  }

  ++caches.etableProbes;
  const EtableEntry& entry = probeEtable(position, caches);

  EvalFrame frame;
  prepareFrame(position, frame);
  for (int colour = 0; colour < 2; ++colour)
    frame.score[colour] = scorePairAdd(frame.score[colour], castlingTerms(position, colour));

  for (int colour = 0; colour < 2; ++colour) {
    int attackCount = pieceLoops(position, frame, colour);
    frame.score[colour] = scorePairAdd(frame.score[colour], kingAttackScore(attackCount));
  }

  for (int colour = 0; colour < 2; ++colour) {
    frame.allAttacks[colour] = frame.pawnAttacks[colour] | frame.knightAttackMap[colour] |
                               frame.bishopAttackMap[colour] | frame.rookAttackMap[colour] |
                               frame.queenAttackMap[colour];
  }
  threatTerms(position, frame, White);
  threatTerms(position, frame, Black);

  allPassedPawnTerms(position, frame, entry.passed);

  lateTerms(position, frame, White);
  lateTerms(position, frame, Black);
  pieceCountTerm(frame);

  ScorePair total = scorePairSub(frame.score[White], frame.score[Black]);
  total = scorePairAdd(total, position.pstScore);
  total = scorePairAdd(total, entry.score);

  int32_t p = position.phase < 96 ? position.phase : 96;
  int32_t v = (96 - p) * scorePairEnd(total) + p * scorePairOpen(total) + correction;

  double bishopScale = oppositeBishopScale(position, frame, entry, v);
  int32_t s = static_cast<int32_t>(v * bishopScale);
  if (factor != 1.0)
    s = truncateTimes(s, factor);
  else if (bishopScale == 1.0)
    s = drawishEndingScale(position, frame, s);

  int32_t x =
      s >= 0 ? static_cast<int32_t>(s * oneNinetySixth + 0.5) : -static_cast<int32_t>(-s * oneNinetySixth + 0.5);
  int32_t z = sideToMove(position) == White ? x + tempoBonus[p] : tempoBonus[p] - x;
  int32_t result = z >= 0 ? (z + 5) / 10 : -((5 - z) / 10);

  cached.key = position.hashKey;
  cached.score = result;
  return result;
}
