// The raw loader: a format expression, small dimensions and random bytes.
// Every class the expression selects must refuse or load without touching
// memory outside its buffers.
#include <fuzzer/FuzzedDataProvider.h>

#include <array>
#include <string>
#include <vector>

#include "image/format_parser.h"
#include "image/image_factory.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider input(data, size);
  static const char* const kLayouts[] = {
      "P,Y,", "I,RGB,", "I,BGR,", "P,R,G,B,", "I,YUV,", "I,YUYV,", "I,UYVY,", "I,YYYYUV,", "P,YY,U,V,",
      "P,YYYY,U,V,", "PI,YYYYUV,", "PI,YYYYVU,", "I,YYUUVV,", "I,YYYYUUV,", "P,YYYY,UU,V,", "I,YUVA,"};
  std::string expression = input.PickValueInArray(kLayouts);
  expression += std::to_string(input.PickValueInArray({8, 16, 32, -16, -32}));
  if (input.ConsumeBool()) expression = input.ConsumeRandomLengthString(24);
  const uint32_t width = input.ConsumeIntegralInRange<uint32_t>(0, 33);
  const uint32_t height = input.ConsumeIntegralInRange<uint32_t>(0, 17);
  std::vector<uint8_t> bytes = input.ConsumeRemainingBytes<uint8_t>();

  korvanel::CNullLineSink log;
  const std::optional<korvanel::FormatExpression> format =
      korvanel::ParseFormatExpression(expression, 0, log);
  if (!format) return 0;
  auto image = korvanel::LoadWithFormat(*format, bytes.empty() ? nullptr : bytes.data(),
                                        bytes.size(), width, height, log);
  if (image) {
    std::array<uint32_t, 3> v{};
    image->GetSampleValues(width - 1, height - 1, v);
    auto copy = image->Duplicate(korvanel::DuplicateArea::WholeImage);
    (void)copy;
  }
  return 0;
}
