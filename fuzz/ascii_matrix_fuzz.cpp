// Text matrices at every depth, with and without automatic size.
#include <fuzzer/FuzzedDataProvider.h>

#include <sstream>

#include "image/ascii_matrix.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider input(data, size);
  const uint32_t bits = input.PickValueInArray({8u, 16u, 32u});
  uint32_t width = input.ConsumeIntegralInRange<uint32_t>(0, 64);
  uint32_t height = input.ConsumeIntegralInRange<uint32_t>(0, 64);
  const uint64_t skip = input.ConsumeIntegralInRange<uint64_t>(0, 8);
  std::istringstream text(input.ConsumeRemainingBytesAsString());
  korvanel::CNullLineSink log;
  korvanel::ParseAsciiSamples(text, skip, bits, width, height, log);
  return 0;
}
