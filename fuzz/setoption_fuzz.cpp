// setoption: each line of the input becomes the words of one setoption; the
// options are then listed and used by a short search.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "harness.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  prepareEngine();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  resetEngine();
  std::vector<std::string> lines;
  for (const std::string& words : readerLines(data, size)) lines.push_back("setoption " + words);
  for (const char* line : {"\n", "uci\n", "position fen r3k2r/pp1n1ppp/2p1b3/8/2BP4/2N5/PP3PPP/R3K2R w KQkq -\n",
                           "go depth 3\n"})
    lines.push_back(line);
  serveLines(lines);
  return 0;
}
