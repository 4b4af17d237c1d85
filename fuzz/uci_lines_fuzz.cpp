// The line handler: any bytes, cut into lines as the reader cuts standard
// input, served by the dispatcher.
#include <cstddef>
#include <cstdint>

#include "harness.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  prepareEngine();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  resetEngine();
  serveLines(readerLines(data, size));
  return 0;
}
