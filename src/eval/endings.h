// The ending table: material balances, whatever the squares, that are either
// handed to a scoring rule of their own or evaluated in full and then pulled
// towards a draw by a factor and a correction. Looked up by materialKey.
#pragma once

#include <cstdint>

#include "base/types.h"

// Centipawns from white's view.
using EndingHandler = int32_t (*)(const Position&);

struct EndingDefinition {
  const char* name;       // material without kings: capitals white, small letters black
  double factor;          // multiplies the evaluation; 1.0 changes nothing
  int32_t correction;     // thousandths of a pawn, from the capitals' view, added before the factor
  EndingHandler handler;  // replaces the evaluation when set
};

// 29 balances in a fixed order, then a row named "-" that ends the list.
extern const EndingDefinition endingList[30];

struct EndingRow {
  uint64_t key;  // the whole material key; 1 in a free row, which no board can have
  int32_t tag;   // -1 free, 1 used
  double factor;
  int32_t correction;
  EndingHandler handler;
};

constexpr int endingTableSize = 4096;
extern EndingRow endingTable[endingTableSize];

// Sum of the material weights of the name's letters. With exchangeColours the
// capitals count as black and the small letters as white.
uint64_t endingKey(const char* name, bool exchangeColours);

// Enters every balance of the list and its colour-exchanged twin. Two balances
// that share a row end the program with exit code 1.
void buildEndingTable(const EndingDefinition* list = endingList);

// The row of this material, or null when the material has none.
inline const EndingRow* findEnding(uint64_t materialKey) {
  const EndingRow& row = endingTable[materialKey & (endingTableSize - 1)];
  return row.key == materialKey ? &row : nullptr;
}
