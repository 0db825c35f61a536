#include "image/image_rgb.h"

#include <cstdlib>
#include <cstring>

#include "image/display_conversion.h"
#include "image/format_expression.h"
#include "image/format_label.h"
#include "image/interleave_plan.h"
#include "image/raw_unpack.h"
#include "image/text_util.h"

namespace korvanel {

namespace {
constexpr const char* kRgbLabels[] = {"RGBx8", "RGBx16", "RGBx32"};
}  // namespace

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

// Interleaved files name the sample order of a pixel in one token ("BGR");
// planar files name the planes in file order, one letter per token ("B G R").
bool CImageRgb::Load(uint8_t* data, uint64_t byte_count, uint32_t width, uint32_t height,
                     std::string_view layout, int32_t bpp) {
  const std::vector<std::string> tokens = SplitTokens(layout, " \t");
  const bool planar = tokens.size() == 3;
  if (!planar && tokens.size() != 1) return false;
  uint32_t order[3];
  if (!ParseLetterOrder(CompactLayout(layout), order)) return false;

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
      const InterleavePlan plan(CompactLayout(layout), "RGB", {1, 1, 1}, bytes * 8);
      plan.RunOn(runner_, data, byte_count, targets);
    }
  }
  FinishLoad(std::move(planes), byte_count, bpp);
  letters_ = CompactLayout(layout);
  planar_ = planar;
  return true;
}

std::string CImageRgb::FormatLabel() const { return LabelForBits(kRgbLabels, bits_); }

std::unique_ptr<CImageConcreteBase> CImageRgb::NewEmptyLike() const {
  auto out = std::make_unique<CImageRgb>();
  out->from_picture_ = from_picture_;
  out->letters_ = letters_;
  out->planar_ = planar_;
  return out;
}

bool CImageRgb::RenderDisplay(DisplayRendition& out, IParallelRunner* runner) const {
  return BuildRgbRendition(ShownPlanes(), out, runner);
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
