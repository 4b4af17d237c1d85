// The engine's options, each declared once: the name the uci answer
// announces, its type and range, the field of the options record that holds
// its value, and what a change does. The uci answer, setoption and the
// README's table of options all come from these rows; an option's default
// is the start value of its field in EngineOptions.
#pragma once

#include <cstdint>
#include <span>

#include "base/options.h"

enum class OptionType { Check, Spin, Button, String };

struct OptionDeclaration {
  const char* name;  // as announced; setoption takes it in any case
  OptionType type;
  int32_t EngineOptions::*number;               // check (0 or 1) and spin
  char (EngineOptions::*text)[bookFileNameSize];  // string
  int32_t minimum;  // spin: announced, and a value is held to them
  int32_t maximum;
  // What a change sets off once the record holds the new value (a button:
  // what pressing it does); null when the value is only recorded.
  void (*change)();
  // A name setoption still takes from clients of earlier versions; null: none.
  const char* formerName = nullptr;
};

// In the order of the uci answer.
extern const std::span<const OptionDeclaration> declaredOptions;

// The option setoption means by name (in any case, the former names
// included), or null.
const OptionDeclaration* findOption(const char* name);

// "check", "spin", "button" or "string", as the uci answer writes it.
const char* optionTypeWord(OptionType type);

// The option's line of the uci answer, with the value in force as default.
void announceOption(const OptionDeclaration& option);

// The table size a request for askedMb megabytes gets, in whole MB: the
// table takes a power of two of buckets, at least about half the memory
// asked for; 0 for no table.
int32_t hashMegabytesFor(int32_t askedMb);

// Builds the evaluation's tables for the options in force and empties
// everything that holds values of the former setting: the hash table and the
// evaluation caches.
void rebuildEvaluation();
