#include "shell/setoption.h"

#include <algorithm>
#include <cctype>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/log.h"
#include "base/options.h"

namespace {

// Appends a blank and at most wordLimit bytes of the word, within the buffer.
void appendWord(char* text, int size, const char* word, size_t wordLimit) {
  size_t length = std::strlen(text);
  if (length + 1 >= static_cast<size_t>(size)) return;
  text[length++] = ' ';
  size_t room = static_cast<size_t>(size) - 1 - length;
  size_t take = std::min({std::strlen(word), wordLimit, room});
  std::memcpy(text + length, word, take);
  text[length + take] = '\0';
}

void lowerCase(char* text) {
  for (char* c = text; *c; ++c) *c = static_cast<char>(std::tolower(static_cast<unsigned char>(*c)));
}

// A number beyond 32 bits saturates.
int32_t toInteger(const char* text) {
  long long value = std::strtoll(text, nullptr, 10);
  return static_cast<int32_t>(std::clamp<long long>(value, INT32_MIN, INT32_MAX));
}

}  // namespace

void readOptionText(char** tokens, int count, OptionText& text) {
  for (char* t : {text.optionName, text.optionValue}) {
    t[0] = '\0';
    t[1] = ' ';
    t[2] = ' ';
    t[3] = '\0';
  }
  text.bookFileValue[0] = '\0';

  enum { NoMode, NameMode, ValueMode } mode = NoMode;
  int firstValueWord = count;
  for (int i = 1; i < count; ++i) {
    const char* word = tokens[i];
    if (std::strcmp(word, "name") == 0) {
      mode = NameMode;
    } else if (std::strcmp(word, "value") == 0) {
      mode = ValueMode;
      if (firstValueWord == count) firstValueWord = i + 1;
    } else if (mode == NameMode) {
      appendWord(text.optionName, optionTextSize, word, optionTextSize);
    } else if (mode == ValueMode) {
      appendWord(text.optionValue, optionTextSize, word, optionTextSize);
      // Words of a value go in pairs: the second of each pair is cut and
      // can't switch the mode.
      if (i + 1 < count) appendWord(text.optionValue, optionTextSize, tokens[++i], 8);
    }
  }
  lowerCase(text.optionName);
  lowerCase(text.optionValue);

  for (int i = firstValueWord; i < count; ++i) {
    if (i == firstValueWord) {
      std::snprintf(text.bookFileValue, sizeof text.bookFileValue, "%s", tokens[i]);
    } else {
      appendWord(text.bookFileValue, sizeof text.bookFileValue, tokens[i], sizeof text.bookFileValue);
    }
  }
}

bool namesOption(char** tokens, int count, const char* name) {
  OptionText text;
  readOptionText(tokens, count, text);
  return std::strcmp(text.optionName + 1, name) == 0;
}

void setoptionCommand(char** tokens, int count) {
  OptionText text;
  readOptionText(tokens, count, text);
  const char* name = text.optionName + 1;
  const char* value = text.optionValue + 1;

  const OptionDeclaration* option = findOption(name);
  if (!option) {
    std::printf("info string %s not recognized\n", name);
    std::fflush(stdout);
    logPrintf("option %s (value %s) not understood.\n", name, value);
    return;
  }
  switch (option->type) {
    case OptionType::Check:
      // Anything else, a blank or a typo included, leaves the option as it
      // was and sets nothing off.
      if (std::strcmp(value, "true") != 0 && std::strcmp(value, "false") != 0) {
        std::printf("info string %s not recognized as checkbox argument\n", value);
        std::fflush(stdout);
        return;
      }
      options.*option->number = std::strcmp(value, "true") == 0 ? 1 : 0;
      break;
    case OptionType::Spin:
      // A value outside the announced range is held to the nearer end; the
      // uci answer shows the value in force.
      options.*option->number = std::clamp(toInteger(value), option->minimum, option->maximum);
      break;
    case OptionType::String:
      // A file name keeps its case and its long words; a longer name is cut
      // to the bytes that fit.
      std::snprintf(options.*option->text, sizeof(options.*option->text), "%s", text.bookFileValue);
      break;
    case OptionType::Button:
      break;
  }
  if (option->change) option->change();
}
