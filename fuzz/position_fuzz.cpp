// FEN text and the position command. The input is read once by parseFen as
// it stands, then sent as a position command whose accepted game is searched
// for a moment.
#include <cstddef>
#include <cstdint>
#include <string>

#include "board/fen.h"
#include "harness.h"
#include "shell/game.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  prepareEngine();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  resetEngine();
  std::string text(reinterpret_cast<const char*>(data), size);
  try {
    Position position;
    parseFen(position, text.c_str());
    positionDefect(position);
  } catch (const EngineExit&) {
  }
  std::string line = "position " + text.substr(0, text.find_first_of("\n\r\f")) + "\n";
  serveLines({line, "go depth 3\n", "isready\n"});
  return 0;
}
