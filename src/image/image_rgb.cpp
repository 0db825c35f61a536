#include "image/image_rgb.h"

#include <cstdlib>
#include <cstring>

#include "image/display_conversion.h"
#include "image/format_expression.h"
#include "image/interleave_plan.h"
#include "image/raw_unpack.h"

namespace korvanel {

namespace {

// Plane index (R=0, G=1, B=2) of each letter of "RGB"-like text, each letter
// exactly once; false otherwise.
bool ParseLetterOrder(std::string_view letters, uint32_t order[3]) {
  if (letters.size() != 3) return false;
  bool seen[3] = {false, false, false};
  for (size_t i = 0; i < 3; ++i) {
    const size_t c = std::string_view("RGB").find(letters[i]);
    if (c == std::string_view::npos || seen[c]) return false;
    seen[c] = true;
    order[i] = static_cast<uint32_t>(c);
  }
  return true;
}

}  // namespace

bool CImageRgb::Load(uint8_t* data, uint64_t byte_count, uint32_t width, uint32_t height,
                     std::string_view layout, int32_t bpp) {
  const ComponentLayout components = ReadComponentLayout(layout, ColorKind::Rgb);
  const bool planar = components.tokens.size() == 3;
  if (!planar && components.tokens.size() != 1) return false;
  uint32_t order[3];
  if (!ParseLetterOrder(components.letters, order)) return false;

  const uint32_t bytes = BppBytes(bpp);
  const uint64_t expected = PlanarFrameBytes(width, height, bytes, 3);
  std::vector<Plane> planes = PrepareLoad(data, byte_count, expected, bpp, width, height, 3);
  if (planes.empty()) return false;
  if (data != nullptr) {
    const uint64_t pixels = uint64_t{width} * height;
    if (planar) {
      for (uint32_t i = 0; i < 3; ++i) {
        std::memcpy(planes[order[i]].bytes(), data + i * pixels * bytes,
                    static_cast<size_t>(pixels * bytes));
      }
    } else {
      // A pixel is a group of three positions, one per component.
      Plane* targets[3] = {&planes[0], &planes[1], &planes[2]};
      const InterleavePlan plan(components.letters, "RGB", {1, 1, 1}, bytes * 8);
      plan.RunOn(runner_, data, byte_count, targets);
    }
  }
  FinishLoad(std::move(planes), byte_count, bpp);
  letters_ = components.letters;
  planar_ = planar;
  return true;
}

void CImageRgb::DescribeLayout(const FormatExpression& format) {
  uint32_t order[3];
  if (!ParseLetterOrder(format.components.letters, order)) return;
  letters_ = format.components.letters;
  planar_ = format.packing == Packing::Planar;
}

std::unique_ptr<CImageConcreteBase> CImageRgb::NewEmptyLike() const {
  auto out = std::make_unique<CImageRgb>();
  out->from_picture_ = from_picture_;
  out->letters_ = letters_;
  out->planar_ = planar_;
  return out;
}

bool CImageRgb::RenderDisplay(DisplayRendition& out, IParallelRunner* runner) const {
  return BuildRgbRendition(ShownPlanes(), out, runner, RawLayout().bits);
}

WriterLayout CImageRgb::DescribeForWriter() const {
  WriterLayout layout;
  layout.planes = {&planes_[0], &planes_[1], &planes_[2]};
  layout.letters = letters_;
  for (char letter : letters_) {
    layout.order.push_back(static_cast<uint32_t>(std::string_view("RGB").find(letter)));
  }
  layout.text_kind = "RGB";
  layout.original_planar = planar_;
  layout.original = planar_ ? PlanarSections(layout.letters, layout.order)
                            : std::vector<SampleSection>{InterleavedSection(layout.letters,
                                                                            layout.order)};
  return layout;
}

}  // namespace korvanel
