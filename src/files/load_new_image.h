#pragma once

// Opening one file: a common picture by its extension, or a raw file by the
// typed expression (group 0) and the formats-file rules, walked in order with
// every step written to the format-load log.

#include <memory>
#include <string>

#include "files/formats_file.h"
#include "image/image_concrete_base.h"
#include "image/line_sink.h"

namespace korvanel {

struct LoadedImage {
  std::unique_ptr<CImageConcreteBase> image;
  std::string format_text;  // the expression that unpacked it ("RGB" for pictures)
  std::string warning;      // the layout census's complaint, "" for none
};

// Null image when nothing loads it.
// With a `runner`, interleaved unpacking is spread over its threads.
LoadedImage LoadNewImage(const std::string& path, const FormatRules& rules, ILineSink& log,
                         IParallelRunner* runner = nullptr);

}  // namespace korvanel
