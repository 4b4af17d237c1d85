#include "eval/endings.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/engine_exit.h"
#include "board/keys.h"
#include "eval/endgames.h"

const EndingDefinition endingList[30] = {
    {"", 0.0, 0, nullptr},
    {"B", 0.0, 0, nullptr},
    {"BBb", 0.2, -3000, nullptr},
    {"BBn", 0.5, -3000, nullptr},
    {"BN", 1.0, 0, endKbnk},
    {"BNb", 0.15, -3000, nullptr},
    {"BNn", 0.2, -3000, nullptr},
    {"BP", 1.0, 0, endKbpk},
    {"NP", 1.0, 0, endKnpk},
    {"Bb", 0.01, 0, nullptr},
    {"Bn", 0.01, 0, nullptr},
    {"Bp", 0.2, -3200, nullptr},
    {"N", 0.0, 0, nullptr},
    {"NN", 0.2, -7000, nullptr},
    {"NNb", 0.05, -3000, nullptr},
    {"NNn", 0.05, -3000, nullptr},
    {"Nn", 0.01, 0, nullptr},
    {"Np", 0.3, -3200, nullptr},
    {"P", 1.0, 0, endKpk},
    {"Q", 0.7, 0, nullptr},
    {"Qb", 0.8, 0, nullptr},
    {"Qn", 0.7, 0, nullptr},
    {"Qq", 0.05, 0, nullptr},
    {"Qr", 0.5, -1000, nullptr},
    {"R", 0.8, 0, nullptr},
    {"RNr", 0.2, -2000, nullptr},
    {"Rb", 0.3, -1500, nullptr},
    {"Rn", 0.2, -1500, nullptr},
    {"Rr", 0.05, 0, nullptr},
    {"-", 0.0, 0, nullptr},
};

EndingRow endingTable[endingTableSize];

uint64_t endingKey(const char* name, bool exchangeColours) {
  uint64_t key = 0;
  for (const char* letter = name; *letter; ++letter) {
    const bool capital = *letter >= 'A' && *letter <= 'Z';
    const int colour = capital != exchangeColours ? White : Black;
    const char lower = capital ? static_cast<char>(*letter - 'A' + 'a') : *letter;
    const int piece = static_cast<int>(std::strchr(" pnbrq", lower) - " pnbrq");
    key += materialWeights[colour * 8 + piece];
  }
  return key;
}

namespace {

void enterEnding(uint64_t key, const EndingDefinition& definition, int32_t correction) {
  EndingRow& row = endingTable[key & (endingTableSize - 1)];
  if (row.tag != -1) fatalExit("Hash conflict in ending tables\n");
  row = {key, 1, definition.factor, correction, definition.handler};
}

}  // namespace

void buildEndingTable(const EndingDefinition* list) {
  for (EndingRow& row : endingTable) row = {1, -1, 1.0, 0, nullptr};
  for (const EndingDefinition* definition = list; definition->name[0] != '-'; ++definition) {
    const uint64_t key = endingKey(definition->name, false);
    enterEnding(key, *definition, definition->correction);
    // Balances that are their own mirror ("", "Bb", ...) take one row.
    const uint64_t mirror = endingKey(definition->name, true);
    if ((mirror & (endingTableSize - 1)) == (key & (endingTableSize - 1))) continue;
    enterEnding(mirror, *definition, -definition->correction);
  }
}
