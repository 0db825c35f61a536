#include "ui/model/jump_entry.h"

#include <charconv>

#include "image/text_util.h"
#include "ui/model/readout.h"

namespace korvanel {

namespace {

using Kind = JumpOutcome::Kind;

// Longer input is no coordinate anyway; the prompt stays readable.
constexpr size_t kMaxInput = 48;

// A typed coordinate: negatives count back from `extent`. Nothing when the
// text is no number or the result lies outside 0 .. extent - 1 (numbers too
// large for 64 bits included).
std::optional<int64_t> Coordinate(std::string_view text, uint32_t extent) {
  int64_t value = 0;
  const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || ec != std::errc() || end != text.data() + text.size()) return std::nullopt;
  if (value < 0) value += extent;
  if (value < 0 || value >= extent) return std::nullopt;
  return value;
}

JumpOutcome Fail(std::string message) { return {Kind::Fail, {}, std::move(message)}; }

std::string PairText(PixelPoint p) {
  return StrFormat("%lld %lld", static_cast<long long>(p.x), static_cast<long long>(p.y));
}

bool Inside(PixelPoint p, ImageSize size) {
  return p.x >= 0 && p.y >= 0 && p.x < size.width && p.y < size.height;
}

JumpOutcome Target(Kind kind, PixelPoint p, const JumpContext& context) {
  if (!Inside(p, context.size)) {
    return Fail(StrFormat("<%lld,%lld> is not a valid image coordinate, aborting...",
                          static_cast<long long>(p.x), static_cast<long long>(p.y)));
  }
  return {kind, p, {}};
}

}  // namespace

JumpOutcome CJumpEntry::OnChar(char32_t ch, const JumpContext& context,
                               CCoordinateHistory& history) {
  const bool number_start = input_.empty() || input_.back() == ' ';
  const bool room = input_.size() < kMaxInput;
  if (ch >= U'0' && ch <= U'9') {
    if (room) input_ += static_cast<char>(ch);
  } else if (ch == U'-') {
    if (number_start && room) input_ += '-';
  } else if (ch == U' ') {
    return Space(context);
  } else if (ch == U'\b') {
    if (!input_.empty()) input_.pop_back();
  } else if (ch == U'c') {
    const size_t cleared = history.Clear();
    if (cleared > 0) {
      return {Kind::Notice, {}, StrFormat("Cleared %d entries from coordinates history",
                                          static_cast<int>(cleared))};
    }
  } else if (ch == U'\t' || ch == U'~' || ch == U'`') {
    const std::optional<PixelPoint> entry = history.Next();
    if (!entry) return {};
    input_ = PairText(*entry);
    if (ch != U'\t') return Target(Kind::Visit, *entry, context);
  } else if (ch == U'r') {
    return NextCorner(context);
  }
  return {};
}

// The first space ends X (checked at once), the second reads both. Spaces
// with no number before them are ignored.
JumpOutcome CJumpEntry::Space(const JumpContext& context) {
  if (input_.empty() || input_.back() == ' ' || input_.back() == '-') return {};
  const size_t gap = input_.find(' ');
  if (gap == std::string::npos) {
    if (!Coordinate(input_, context.size.width)) {
      return Fail(StrFormat("%s is not a valid X coordinate, aborting...", input_.c_str()));
    }
    input_ += ' ';
    return {};
  }
  const std::string x_text = input_.substr(0, gap);
  const std::string y_text = input_.substr(gap + 1);
  const std::optional<int64_t> x = Coordinate(x_text, context.size.width);
  const std::optional<int64_t> y = Coordinate(y_text, context.size.height);
  if (!x || !y) {
    return Fail(StrFormat("<%s,%s> is not a valid image coordinate, aborting...", x_text.c_str(),
                          y_text.c_str()));
  }
  return {Kind::Jump, {*x, *y}, {}};
}

// Clockwise from the top-left: top-left, top-right, bottom-right, bottom-left.
JumpOutcome CJumpEntry::NextCorner(const JumpContext& context) {
  if (!context.roi) return {};
  const Rect& r = *context.roi;
  const PixelPoint corners[] = {{r.min_x, r.min_y}, {r.max_x, r.min_y}, {r.max_x, r.max_y},
                                {r.min_x, r.max_y}};
  const PixelPoint corner = corners[corner_ % std::size(corners)];
  corner_ = (corner_ + 1) % std::size(corners);
  input_ = PairText(corner);
  return Target(Kind::Visit, corner, context);
}

JumpOutcome CJumpEntry::Paste(std::string_view clipboard) {
  const std::optional<CopiedPixel> copied = ParseCopiedPixel(clipboard);
  if (!copied) return {Kind::Notice, {}, "The clipboard holds no pixel copied with P"};
  input_ = PairText(copied->pixel);
  return {};
}

}  // namespace korvanel
