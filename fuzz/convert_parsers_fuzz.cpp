// The new size, base offset and colour transform texts of convert.
#include <fuzzer/FuzzedDataProvider.h>

#include "ops/convert_parsers.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider input(data, size);
  const uint32_t width = input.ConsumeIntegral<uint32_t>();
  const uint32_t height = input.ConsumeIntegral<uint32_t>();
  const std::string size_text = input.ConsumeRandomLengthString(96);
  const std::string offset_text = input.ConsumeRandomLengthString(32);
  std::array<std::string, 3> rows = {input.ConsumeRandomLengthString(48), input.ConsumeRandomLengthString(48),
                                     input.ConsumeRandomLengthString(48)};
  const std::string target = input.ConsumeRemainingBytesAsString();
  std::string message;
  korvanel::NewSize new_size;
  if (korvanel::ParseNewSize(size_text, width, height, new_size, message)) {
    korvanel::BaseOffset offset;
    korvanel::ParseBaseOffset(offset_text, width, height, new_size, offset, message);
  }
  korvanel::ColorTransform transform;
  korvanel::ParseColorTransform(rows, target, transform, message);
  return 0;
}
