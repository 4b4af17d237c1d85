#include <cstdio>

int main() {
  std::fprintf(stderr, "Tarvok version 4.18 RQ\n");
  return 0;
}
