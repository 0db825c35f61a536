#include "ops/convert_parsers.h"

#include <cstdio>
#include <cstdlib>
#include <vector>

#include "expr/expression_evaluator.h"
#include "image/text_util.h"

namespace korvanel {

namespace {

constexpr uint64_t kMaxPixels = 0x40000000;  // 2^30

// Integer results as they are; doubles rounded half up; anything not
// positive is 0.
uint32_t ToDimension(const ExprValue& v) {
  if (v.IsInteger()) return v.i <= 0 ? 0 : v.i > 0xFFFFFFFFll ? 0xFFFFFFFFu : static_cast<uint32_t>(v.i);
  const double rounded = v.d + 0.5;
  if (!(rounded >= 1.0)) return 0;  // also NaN
  return rounded >= 4294967295.0 ? 0xFFFFFFFFu : static_cast<uint32_t>(rounded);
}

bool ContainsAll(std::string_view text, std::string_view letters) {
  for (char c : letters) {
    if (text.find(c) == std::string_view::npos) return false;
  }
  return true;
}


}  // namespace

bool ParseNewSize(std::string_view text, uint32_t source_width, uint32_t source_height, NewSize& size,
                  std::string& message) {
  message.clear();
  if (text.find(';') == std::string_view::npos) {
    message = "No new size is entered or semi-colon(;) separator not found";
    return false;
  }
  const std::vector<std::string> parts = SplitKeepingEmpty(text, ";");
  if (parts.size() != 2) {
    message = "Must specify width and height";
    return false;
  }
  CExpressionEvaluator evaluator;
  evaluator.AddVariable("w", ExprValue::Integer(source_width));
  evaluator.AddVariable("h", ExprValue::Integer(source_height));
  ExprValue width, height;
  if (!evaluator.Evaluate(parts[0], width) || !width.IsValid()) {
    message = StrFormat("Can't evaluate the new image width: %s", evaluator.GetErrorText().c_str());
    return false;
  }
  if (!evaluator.Evaluate(parts[1], height) || !height.IsValid()) {
    message = StrFormat("Can't evaluate the new image height: %s", evaluator.GetErrorText().c_str());
    return false;
  }
  size = {ToDimension(width), ToDimension(height)};
  const uint64_t pixels = uint64_t{size.width} * size.height;
  if (pixels == 0) {
    message = StrFormat("%ux%u isn't legal new size", size.width, size.height);
    return false;
  }
  if (pixels > kMaxPixels) {
    message = StrFormat("Have we gone mad? %u MP isn't enough anymore... :)", 1073u);
    return false;
  }
  return true;
}

bool ParseBaseOffset(std::string_view text, uint32_t source_width, uint32_t source_height,
                     const NewSize& size, BaseOffset& offset, std::string& message) {
  message.clear();
  offset = {};
  if (TrimAscii(text).empty()) return true;
  const std::string copy(text);
  int x = 0, y = 0, consumed = 0;
  if (std::sscanf(copy.c_str(), " %d , %d %n", &x, &y, &consumed) != 2 ||
      static_cast<size_t>(consumed) != copy.size()) {
    message = "Base offset for resize isn't a valid integer coordinate";
    return false;
  }
  const bool output_larger = size.width >= source_width && size.height >= source_height;
  const int64_t span_x = output_larger ? size.width : source_width;
  const int64_t span_y = output_larger ? size.height : source_height;
  const int64_t px = x < 0 ? x + span_x : x;
  const int64_t py = y < 0 ? y + span_y : y;
  if (px < 0 || py < 0 || px >= span_x || py >= span_y) {
    const auto ux = static_cast<uint32_t>(px), uy = static_cast<uint32_t>(py);
    message = output_larger
                  ? StrFormat("The new size %ux%u is larger than the source size (%ux%u) so the offset <%u,%u> "
                              "must start inside the output image.",
                              size.width, size.height, source_width, source_height, ux, uy)
                  : StrFormat("The new size %u%u is smaller (or partially smaller) than the source size (%ux%u) "
                              "so the offset <%u,%u> must lie inside the source image.",
                              size.width, size.height, source_width, source_height, ux, uy);
    return false;
  }
  offset = {static_cast<int32_t>(px), static_cast<int32_t>(py)};
  return true;
}

bool ParseColorTransform(const std::array<std::string, 3>& rows, std::string_view target_format,
                         ColorTransform& transform, std::string& message) {
  message.clear();
  const bool rgb = ContainsAll(target_format, "RGB");
  const char* letters = rgb ? "RGB" : "YUV";
  const int checked = rgb || ContainsAll(target_format, "YUV") ? 3 : 1;
  ColorTransform parsed = transform;
  for (int r = 0; r < checked; ++r) {
    const std::vector<std::string> fields = SplitKeepingEmpty(rows[r], ",");
    if (fields.size() != 4) {
      message = StrFormat("Please fix row '%c' (must have exactly %u comma separated coefficients)", letters[r], 3u);
      return false;
    }
    for (int c = 0; c < 4; ++c) parsed.m[r][c] = std::strtod(fields[c].c_str(), nullptr);
    for (int c = 0; c < 3; ++c) {
      if (!IsUsableCoefficient(parsed.m[r][c])) {
        message = StrFormat("Please fix row '%c' (coefficients must range between -1000..1000)", letters[r]);
        return false;
      }
    }
    const double offset = parsed.m[r][3];
    if (!(offset >= ColorTransform::kMinOffset && offset <= ColorTransform::kMaxOffset)) {
      message = StrFormat("Please fix last coefficient of row '%c' (must range between -255..255)", letters[r]);
      return false;
    }
  }
  transform = parsed;
  return true;
}

}  // namespace korvanel
