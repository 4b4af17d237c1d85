#include "shell/tokenise.h"

namespace {

bool isSeparator(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

}  // namespace

int tokenise(char* text, char** tokens) {
  int count = 0;
  bool afterSeparator = true;
  for (char* c = text; *c; ++c) {
    if (isSeparator(*c)) {
      *c = '\0';
      afterSeparator = true;
    } else if (afterSeparator) {
      tokens[count++] = c;
      afterSeparator = false;
    }
  }
  return count;
}
