#include "moves/picker.h"

#include "board/exchange.h"
#include "board/queries.h"

const int32_t stageTable[5][10] = {
    {StageHash, StageCaptures, StageKillerA, StageKillerB, StageQuiets, StageDeferred, StageEnd, 0, 0, 0},
    {StageHash, StageCaptures, StageQuietChecks, StageDeferred, StageEnd, 0, 0, 0, 0, 0},
    {StageHash, StageCaptures, StageQuietChecks, StageEnd, 0, 0, 0, 0, 0, 0},
    {StageHash, StageCaptures, StageEnd, 0, 0, 0, 0, 0, 0, 0},
    {StageHash, StageEvasions, StageDeferred, StageEnd, 0, 0, 0, 0, 0, 0},
};


namespace {

// Fixed keys in the upper half of a list word.
constexpr uint32_t hashMoveKey = 0x75300000;          // 30000
constexpr uint32_t enPassantCaptureKey = 0x000E0000;  // 14
constexpr uint32_t evasionPromotionKey = 0x79180000;  // 31000
constexpr uint32_t evasionEnPassantKey = 0x75300000;  // 30000
constexpr uint32_t knightCheckKey = 0x00630000;       // 99


// The key is a signed 16-bit number, so the shift keeps the sign.
int32_t sortKey(uint32_t word) { return static_cast<int32_t>(word) >> 16; }

// How often a move of this piece to this square has been good when it was
// tried, scaled to 0..16383. A counter that outgrows the scale wraps in the
// word: only the low bits of the quotient are kept.
uint32_t historyRate(const MoveHistory& history, const Position& position, Move move) {
  int colour = sideToMove(position);
  const HistoryEntry& entry = history.entries[colour][pieceOn(position, colour, moveFrom(move))][moveTo(move)];
  return static_cast<uint32_t>((entry.good << 14) / (entry.tried + 1));
}

// Captures by what they win first and what they risk: the most valuable
// victim, and among equal victims the cheapest attacker.
void scoreCaptures(MovePicker& picker) {
  const Position& position = *picker.position;
  int us = sideToMove(position);
  for (int i = 0; i < picker.moveCount; ++i) {
    uint32_t word = picker.moves[i];
    if (word == picker.hashMove) {
      word |= hashMoveKey;
    } else if (moveKind(word) == KindEnPassant) {
      word |= enPassantCaptureKey;
    } else {
      uint32_t victim = static_cast<uint32_t>(pieceOn(position, us ^ 1, moveTo(word)));
      if (isPromotion(word)) {
        // A promotion that takes nothing gets -2 and sorts behind every capture.
        word |= (victim << 22) - 0x20000;
      } else {
        uint32_t attacker = static_cast<uint32_t>(pieceOn(position, us, moveFrom(word)));
        word |= (victim * 16 - attacker) << 17;
      }
    }
    picker.moves[i] = word;
  }
}

void scoreQuiets(MovePicker& picker) {
  for (int i = 0; i < picker.moveCount; ++i)
    picker.moves[i] |= historyRate(*picker.history, *picker.position, picker.moves[i]) << 16;
}

// Replies to check: promotions, then captures of whatever can be taken, then
// en passant, and the quiet replies last by their history rate halved so they
// stay below every capture.
void scoreEvasions(MovePicker& picker) {
  const Position& position = *picker.position;
  int us = sideToMove(position);
  for (int i = 0; i < picker.moveCount; ++i) {
    uint32_t word = picker.moves[i];
    int victim = pieceOn(position, us ^ 1, moveTo(word));
    if (isPromotion(word)) {
      word |= evasionPromotionKey;
    } else if (moveKind(word) == KindEnPassant) {
      word |= evasionEnPassantKey;
    } else if (victim != NoPiece) {
      int attacker = pieceOn(position, us, moveFrom(word));
      word |= static_cast<uint32_t>(15000 + 8 * victim - attacker) << 17;
    } else {
      word |= (historyRate(*picker.history, position, word) >> 1) << 16;
    }
    picker.moves[i] = word;
  }
}

// Knight checks cannot be blocked, so they come before the rest, which keep
// generation order.
void scoreQuietChecks(MovePicker& picker) {
  Bitboard knights = picker.position->pieces[sideToMove(*picker.position)][Knight];
  for (int i = 0; i < picker.moveCount; ++i)
    if (knights & squareBit(moveFrom(picker.moves[i]))) picker.moves[i] |= knightCheckKey;
}

// Insertion sort, descending and stable: the lists are short, mostly in good
// order already, and ties must keep generation order.
void sortByKey(uint32_t* list, int count) {
  for (int i = 1; i < count; ++i) {
    uint32_t word = list[i];
    int32_t key = sortKey(word);
    int j = i;
    for (; j > 0 && sortKey(list[j - 1]) < key; --j) list[j] = list[j - 1];
    list[j] = word;
  }
}

// A move from the hash table or a killer slot, returned if it can be played
// here, else 0. En passant is never taken from store: it comes in with the
// generated captures.
Move serveStored(MovePicker& picker, Move& stored) {
  if (stored == 0) return 0;
  if (moveKind(stored) == KindEnPassant) {
    stored = 0;
    return 0;
  }
  if (!isPseudoLegal(*picker.position, stored)) return 0;
  picker.served[picker.servedCount++] = stored;
  return stored;
}

bool alreadyServed(const MovePicker& picker, Move move) {
  for (int i = 0; i < picker.servedCount; ++i)
    if (picker.served[i] == move) return true;
  return false;
}

void fillList(MovePicker& picker, int (*generate)(const Position&, Move*), void (*score)(MovePicker&)) {
  picker.list = picker.moves;
  picker.moveCount = generate(*picker.position, picker.moves);
  score(picker);
  if (picker.moveCount > 1) sortByKey(picker.moves, picker.moveCount);
}

}  // namespace

void initPicker(MovePicker& picker, const Position& position, const MoveHistory& history, int32_t stageSet,
                Move hashMove, Move killerA, Move killerB) {
  picker.history = &history;
  picker.position = &position;
  picker.stageSet = stageSet;
  picker.stageIndex = 0;
  picker.stage = 0;
  picker.moveCount = 0;
  picker.cursor = 0;
  picker.hashMove = hashMove;
  picker.killerA = killerA;
  picker.killerB = killerB;
  picker.list = picker.moves;
  picker.deferredCount = 0;
  picker.servedCount = 0;
}

Move nextMove(MovePicker& picker) {
  for (;;) {
    while (picker.cursor < picker.moveCount) {
      Move move = picker.list[picker.cursor++] & 0xffff;
      if (alreadyServed(picker, move)) continue;
      // Losing exchanges wait until everything else has been tried. The
      // value is only worked out for moves that get this far, so a node that
      // cuts off early pays for few of them.
      bool judged = picker.stage == StageCaptures || picker.stage == StageEvasions ||
                    picker.stage == StageQuietChecks;
      if (judged && moveKindIndex(move) <= 1 && exchangeLoses(*picker.position, move)) {
        // A losing move beyond the room of the list is dropped; no position
        // of legal play has that many.
        if (picker.deferredCount < maxGeneratedMoves) picker.deferred[picker.deferredCount++] = move;
        continue;
      }
      return move;
    }

    picker.moveCount = 0;
    picker.cursor = 0;
    int32_t code = stageTable[picker.stageSet][picker.stageIndex];
    // A spent picker stays on its end stage and keeps answering 0.
    if (code == 0) code = StageEnd;
    else ++picker.stageIndex;
    picker.stage = code;

    switch (code) {
      case StageHash:
        if (Move move = serveStored(picker, picker.hashMove)) return move;
        break;
      case StageCaptures:
        fillList(picker, generateCaptures, scoreCaptures);
        break;
      case StageKillerA:
        if (Move move = serveStored(picker, picker.killerA)) return move;
        break;
      case StageKillerB:
        if (Move move = serveStored(picker, picker.killerB)) return move;
        break;
      case StageQuiets:
        fillList(picker, generateQuiets, scoreQuiets);
        break;
      case StageEvasions:
        fillList(picker, generateEvasions, scoreEvasions);
        break;
      case StageQuietChecks:
        fillList(picker, generateQuietChecks, scoreQuietChecks);
        break;
      case StageDeferred:
        picker.list = picker.deferred;
        picker.moveCount = picker.deferredCount;
        break;
      default:
        return 0;
    }
  }
}
