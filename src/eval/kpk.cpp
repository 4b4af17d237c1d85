#include "eval/kpk.h"

#include "board/attacks.h"

uint8_t kpkBitbase[kpkBitbaseBytes];

namespace {

constexpr int kpkPositions = kpkBitbaseBytes * 8;

enum KpkState : uint8_t { Impossible = 0, Unknown = 1, Won = 2, Drawn = 3 };

// Working space of the analysis, one state per bit of the table.
KpkState kpkStates[kpkPositions];

bool adjacent(Square a, Square b) { return (kingAttacks[a] & squareBit(b)) != 0; }

// The pawn runs towards rank 1, so it takes like a black pawn.
Bitboard pawnTakes(Square pawn) { return blackPawnAttacks(squareBit(pawn)); }

bool weakKingStuck(Square strongKing, Square piece, Square weakKing, bool rook) {
  const Bitboard occupied = squareBit(strongKing) | squareBit(piece);
  const Bitboard attacked = rook ? rookAttacks(piece, occupied) : queenAttacks(piece, occupied);
  if (attacked & squareBit(weakKing)) return false;  // in check: mate or escape, never stalemate
  for (Bitboard targets = kingAttacks[weakKing]; targets;) {
    const Square to = popLowest(targets);
    if (!adjacent(to, strongKing) && !(attacked & squareBit(to))) return false;
  }
  return true;
}

// A pawn has just reached rank 1 on `square` with the weak side to move.
// Where a queen would stalemate, the stronger side promotes to a rook instead.
bool promotionWins(Square strongKing, Square square, Square weakKing) {
  if (adjacent(square, weakKing) && !adjacent(square, strongKing)) return false;
  if (!weakKingStuck(strongKing, square, weakKing, false)) return true;
  return !weakKingStuck(strongKing, square, weakKing, true);
}

KpkState stateAt(Square strongKing, Square pawn, Square weakKing, int turn) {
  return kpkStates[kpkBitNumber(strongKing, pawn, weakKing, turn)];
}

KpkState pawnSideMoves(Square strongKing, Square pawn, Square weakKing) {
  bool allDrawn = true;
  auto consider = [&](KpkState next) {
    if (next == Unknown) allDrawn = false;
    return next == Won;
  };
  for (Bitboard targets = kingAttacks[strongKing]; targets;) {
    const Square to = popLowest(targets);
    if (to == pawn || adjacent(to, weakKing)) continue;
    if (consider(stateAt(to, pawn, weakKing, 0))) return Won;
  }
  const Square step = pawn - 8;
  if (step != strongKing && step != weakKing) {
    if (rankOfSquare(step) == 0) {
      if (promotionWins(strongKing, step, weakKing)) return Won;
    } else if (consider(stateAt(strongKing, step, weakKing, 0))) {
      return Won;
    }
    const Square doubleStep = pawn - 16;
    if (rankOfSquare(pawn) == 6 && doubleStep != strongKing && doubleStep != weakKing &&
        consider(stateAt(strongKing, doubleStep, weakKing, 0)))
      return Won;
  }
  return allDrawn ? Drawn : Unknown;
}

KpkState weakSideMoves(Square strongKing, Square pawn, Square weakKing) {
  if (adjacent(weakKing, pawn) && !adjacent(strongKing, pawn)) return Drawn;
  bool anyMove = false;
  bool allWon = true;
  for (Bitboard targets = kingAttacks[weakKing] & ~pawnTakes(pawn); targets;) {
    const Square to = popLowest(targets);
    if (to == pawn || adjacent(to, strongKing)) continue;
    anyMove = true;
    const KpkState next = stateAt(strongKing, pawn, to, 1);
    if (next == Drawn) return Drawn;
    if (next == Unknown) allWon = false;
  }
  if (!anyMove) return Drawn;
  return allWon ? Won : Unknown;
}

}  // namespace

KpkCounts buildKpkBitbase() {
  KpkCounts counts{};
  for (int cell = 0; cell < 24; ++cell) {
    const Square pawn = (cell / 4 + 1) * 8 + cell % 4;
    for (Square strongKing = 0; strongKing < 64; ++strongKing) {
      for (Square weakKing = 0; weakKing < 64; ++weakKing) {
        const bool apart = strongKing != pawn && weakKing != pawn && strongKing != weakKing &&
                           !adjacent(strongKing, weakKing);
        const bool weakInCheck = (pawnTakes(pawn) & squareBit(weakKing)) != 0;
        const int base = kpkBitNumber(strongKing, pawn, weakKing, 0);
        kpkStates[base] = apart ? Unknown : Impossible;
        kpkStates[base + 1] = apart && !weakInCheck ? Unknown : Impossible;
        counts.defined += (kpkStates[base] == Unknown) + (kpkStates[base + 1] == Unknown);
      }
    }
  }

  for (bool changed = true; changed;) {
    changed = false;
    for (int number = 0; number < kpkPositions; ++number) {
      if (kpkStates[number] != Unknown) continue;
      const int turn = number & 1;
      const Square weakKing = (number >> 1) & 63;
      const Square strongKing = (number >> 7) & 63;
      const int cell = number >> 13;
      const Square pawn = (cell / 4 + 1) * 8 + cell % 4;
      const KpkState state = turn ? pawnSideMoves(strongKing, pawn, weakKing)
                                  : weakSideMoves(strongKing, pawn, weakKing);
      if (state != Unknown) {
        kpkStates[number] = state;
        changed = true;
      }
    }
  }

  for (auto& byte : kpkBitbase) byte = 0;
  for (int number = 0; number < kpkPositions; ++number) {
    if (kpkStates[number] != Won) continue;
    kpkBitbase[number >> 3] |= static_cast<uint8_t>(1 << (number & 7));
    if (number & 1)
      ++counts.winsPawnToMove;
    else
      ++counts.winsOtherToMove;
  }
  return counts;
}
