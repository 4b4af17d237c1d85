// The setoption command: finds an option by name in the option table and
// sets it.
#pragma once

#include "shell/option_table.h"

constexpr int optionTextSize = 1024;

// A setoption line read into texts. optionName and optionValue hold their
// words each behind a blank, in lower case, and are read from byte 1; empty,
// they read as two blanks there. Each second word of a value is cut to 8
// characters. bookFileValue holds every word behind "value" as the client
// sent it, joined by single blanks, for the Book File option, whose value is
// a file name.
struct OptionText {
  char optionName[optionTextSize];
  char optionValue[optionTextSize];
  char bookFileValue[bookFileNameSize];
};

// tokens[0] is "setoption"; count includes it. Texts longer than their
// buffers are cut.
void readOptionText(char** tokens, int count, OptionText& text);

// The whole command: reads the line, then sets the option it names and
// carries out what the change does, or reports the name as not recognized.
// A spin value is held to the option's range; a check value other than true
// or false is refused and the option keeps its value.
void setoptionCommand(char** tokens, int count);

// True when the line names the option `name` (in lower case), read as the
// command reads it.
bool namesOption(char** tokens, int count, const char* name);
