// The open-raw dialog's fields as typed or pasted, then what the program does
// with an accepted answer: parse the expression and load the file's bytes
// at the typed size, which must be refused, not allocated, when absurd.
#include <fuzzer/FuzzedDataProvider.h>

#include <string>
#include <vector>

#include "image/format_parser.h"
#include "image/image_factory.h"
#include "ui/model/open_raw_image_manager.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace korvanel;
  FuzzedDataProvider input(data, size);
  COpenRawImageManager manager{ConfigDialogOpen{}};
  manager.choices.planar = input.ConsumeBool();
  manager.choices.color = input.PickValueInArray(
      {ColorChoice::Yuv444, ColorChoice::Yuv422, ColorChoice::Yuv420, ColorChoice::Gray, ColorChoice::Rgb});
  manager.choices.depth = input.PickValueInArray({DepthChoice::Bits8, DepthChoice::Bits16, DepthChoice::Bits32});
  manager.choices.little_endian = input.ConsumeBool();
  manager.ascii = input.ConsumeBool();
  manager.width_text = input.ConsumeRandomLengthString(32);
  manager.height_text = input.ConsumeRandomLengthString(32);
  manager.offset_text = input.ConsumeRandomLengthString(32);
  manager.direct_expression = input.ConsumeRandomLengthString(64);
  std::vector<uint8_t> bytes = input.ConsumeRemainingBytes<uint8_t>();

  (void)manager.GeneratedLabel();
  OpenRawAnswer answer;
  if (manager.Accept(answer)) return 0;
  CNullLineSink log;
  const std::optional<FormatExpression> format = ParseFormatExpression(answer.expression, 0, log);
  if (!format) return 0;
  // The program always hands the loader the file's bytes; no data at all
  // would ask for a blank image of the typed size instead.
  uint8_t none = 0;
  auto image = LoadWithFormat(*format, bytes.empty() ? &none : bytes.data(), bytes.size(), answer.width,
                              answer.height, log);
  (void)image;
  return 0;
}
