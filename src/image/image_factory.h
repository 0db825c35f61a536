#pragma once

#include <cstdint>
#include <memory>

#include "image/format_expression.h"
#include "image/image_concrete_base.h"
#include "image/line_sink.h"
#include "image/parallel_runner.h"

namespace korvanel {

// An empty image of the class a colour kind selects (YUV: the general class).
std::unique_ptr<CImageConcreteBase> CreateImageOfKind(ColorKind kind);

// An empty image of the class the expression selects, carrying the layout the
// expression names (the results of operations get their own packing from
// their format text this way). Null when no class takes the layout.
std::unique_ptr<CImageConcreteBase> CreateImageForFormat(const FormatExpression& format);

// Unpacks `data` with the class the expression selects. YUV tries 4:4:4,
// 4:2:2, 4:2:0 and the general class in that order and logs the one that
// matched. `data` may be byte-swapped in place (big-endian depths). Null when
// no class takes the bytes.
// With a `runner`, interleaved unpacking is spread over its threads.
std::unique_ptr<CImageConcreteBase> LoadWithFormat(const FormatExpression& format, uint8_t* data,
                                                   uint64_t byte_count, uint32_t width,
                                                   uint32_t height, ILineSink& log,
                                                   IParallelRunner* runner = nullptr);

}  // namespace korvanel
