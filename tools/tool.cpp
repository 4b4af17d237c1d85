// tarvok-tool: developer commands on the engine's library.
#include <cstdio>
#include <cstring>

namespace {

void printUsage() {
  std::fprintf(stderr, "usage: tarvok-tool COMMAND [ARGS...]\n");
}

}  // namespace

int main(int argc, char** argv) {
  (void)argv;
  if (argc < 2) {
    printUsage();
    return 2;
  }
  printUsage();
  return 2;
}
