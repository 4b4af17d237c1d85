// bookkey FEN...: the opening-book key of a position, as 16 hexadecimal
// digits, to compare with a book file or with published keys.
#include <cinttypes>
#include <cstdio>
#include <string>

#include "board/fen.h"
#include "book/book.h"
#include "commands.h"

int bookKeyCommand(int argc, char** argv) {
  if (argc < 1) {
    std::fprintf(stderr, "usage: tarvok-tool bookkey FEN...\n");
    return 2;
  }
  // The shell splits the FEN at its blanks; put them back.
  std::string fen;
  for (int i = 0; i < argc; ++i) {
    if (i > 0) fen += ' ';
    fen += argv[i];
  }
  Position position;
  parseFen(position, fen.c_str());
  std::printf("%016" PRIx64 "\n", polyglotKey(position));
  return 0;
}
