#include "image/image_yuv.h"

#include <algorithm>
#include <cstdlib>

#include "image/color_transform.h"
#include "image/display_conversion.h"
#include "image/format_label.h"
#include "image/interleave_plan.h"
#include "image/raw_unpack.h"
#include "image/text_util.h"

namespace korvanel {

namespace {

bool IsCountAllowed(uint32_t count) { return count == 1 || count == 2 || count == 4; }

bool IsPowerOfTwo(uint32_t value) { return value != 0 && (value & (value - 1)) == 0; }

uint32_t MaxCount(const YuvCounts& c) { return std::max({c.y, c.u, c.v}); }

bool AnyAllowedCounts(const YuvCounts& c) {
  return IsCountAllowed(c.y) && IsCountAllowed(c.u) && IsCountAllowed(c.v);
}
bool EqualCounts(const YuvCounts& c) { return c.y == c.u && c.y == c.v && IsCountAllowed(c.y); }
bool HalfChroma(const YuvCounts& c) {
  return c.u != 0 && c.v != 0 && c.y / c.u == 2 && c.y / c.v == 2 && IsPowerOfTwo(c.y);
}
bool QuarterChroma(const YuvCounts& c) {
  return c.u != 0 && c.v != 0 && c.y / c.u == 4 && c.y / c.v == 4 && c.y == 4;
}

// Rounds [lo, hi] out to whole steps: lo down to a multiple, hi up to one less
// than the next multiple (saturating at the top of the range).
void AlignSpan(uint32_t step, uint32_t& lo, uint32_t& hi) {
  lo -= lo % step;
  const uint64_t next = (uint64_t{hi} / step + 1) * step;
  hi = static_cast<uint32_t>(std::min<uint64_t>(next - 1, 0xFFFFFFFFu));
}

}  // namespace

// The numbers in the fixed labels are bits per pixel averaged over the chroma
// cell. The fixed ratios align 4:2:2 to 4 columns and 4:2:0 to 4x2 pixels,
// wider than their chroma cells.
const YuvSampling kYuvGeneral{&AnyAllowedCounts, {0, 0, 0}, {"YUVx8", "YUVx16", "YUVx32"}, true,
                              "Matched YUV (user-defined)"};
const YuvSampling kYuv444{&EqualCounts, {4, 4, 4}, {"YUV444 24bpp", "YUV444 48bpp", "YUV444 96bpp"},
                          false, "Matched YUV-444"};
const YuvSampling kYuv422{&HalfChroma, {4, 2, 2}, {"YUV422 16bpp", "YUV422 32bpp", "YUV422 64bpp"},
                          false, "Matched YUV-422"};
const YuvSampling kYuv420{&QuarterChroma, {4, 1, 1}, {"YUV420 12bpp", "YUV420 24bpp", "YUV420 48bpp"},
                          false, "Matched YUV-420 (SP)"};
const std::array<const YuvSampling*, 4> kYuvLoadOrder = {&kYuv444, &kYuv422, &kYuv420, &kYuvGeneral};

uint64_t YuvFrameBytes(const YuvCounts& counts, uint32_t width, uint32_t height,
                       uint32_t bytes_per_component) {
  const uint32_t m = MaxCount(counts);
  if (m == 0) return 0;
  const uint64_t pixels = uint64_t{width} * height;
  if (pixels > (uint64_t{1} << 58)) return kImpossibleSize;
  const uint64_t nb = pixels * bytes_per_component;
  return counts.y * nb / m + counts.u * nb / m + counts.v * nb / m;
}

namespace {

uint32_t CountOf(const YuvCounts& counts, char letter) {
  return letter == 'Y' ? counts.y : letter == 'U' ? counts.u : counts.v;
}

// Planar tokens: each one letter repeated exactly as often as its count, and
// every component once. A count strictly between 1 and the largest holds
// count * n / max samples, each covering max / count pixels of a row.
bool PlanarTokensFit(const std::vector<std::string>& tokens, const YuvCounts& counts) {
  if (tokens.size() != 3) return false;
  bool seen[3] = {false, false, false};
  for (const std::string& token : tokens) {
    const size_t c = std::string_view("YUV").find(token[0]);
    if (c == std::string_view::npos || seen[c]) return false;
    seen[c] = true;
    if (token.find_first_not_of(token[0]) != std::string::npos) return false;
    if (token.size() != CountOf(counts, token[0])) return false;
  }
  return true;
}

}  // namespace

bool CImageYuv::Load(uint8_t* data, uint64_t byte_count, uint32_t width, uint32_t height,
                     std::string_view layout, int32_t bpp) {
  if (MaxCount(counts_) == 0 && !CheckLayout(layout)) return false;
  if (!AcceptsCounts(counts_)) return false;
  ComponentLayout components = ReadComponentLayout(layout, ColorKind::Yuv);
  if (components.letters.size() != counts_.y + counts_.u + counts_.v ||
      !components.OnlyFamilyLetters()) {
    return false;
  }
  switch (packing_) {
    case Packing::Interleave:
      if (components.tokens.size() != 1) return false;
      break;
    case Packing::Planar:
      if (!PlanarTokensFit(components.tokens, counts_)) return false;
      break;
    case Packing::PlanarInterleave:
      // Y plane then one chroma pair per 2x2 cell: odd sizes have no whole
      // cells at their edge and are refused rather than guessed at.
      if (!components.IsCellPairLayout()) return false;
      if (width % 2 != 0 || height % 2 != 0) return false;
      break;
  }

  const uint32_t bytes = BppBytes(bpp);
  const uint64_t expected = YuvFrameBytes(counts_, width, height, bytes);
  std::vector<Plane> planes = PrepareLoad(data, byte_count, expected, bpp, width, height, 3);
  if (planes.empty()) return false;
  layout_ = std::string(layout);
  components_ = std::move(components);
  if (data != nullptr) Unpack(data, byte_count, planes);
  FinishLoad(std::move(planes), byte_count, bpp);
  return true;
}

void CImageYuv::Unpack(const uint8_t* data, uint64_t byte_count, std::vector<Plane>& planes) const {
  Plane* targets[3] = {&planes[0], &planes[1], &planes[2]};
  const uint32_t bytes = planes[0].bits() / 8;
  const uint64_t pixels = uint64_t{planes[0].width()} * planes[0].height();
  const uint32_t m = MaxCount(counts_);
  switch (packing_) {
    case Packing::Interleave: {
      const InterleavePlan plan(components_.letters, "YUV", {counts_.y, counts_.u, counts_.v},
                                planes[0].bits());
      plan.RunOn(runner_, data, byte_count, targets);
      break;
    }
    case Packing::Planar: {
      const uint8_t* src = data;
      for (const std::string& token : components_.tokens) {
        const uint32_t count = CountOf(counts_, token[0]);
        const uint64_t samples = count * pixels / m;
        const size_t plane = std::string_view("YUV").find(token[0]);
        ExpandPlane(src, samples, m / count, planes[plane]);
        src += samples * bytes;
      }
      break;
    }
    case Packing::PlanarInterleave: {
      CopySamplesOfPlane(data, planes[0]);
      const bool u_first = components_.letters[4] == 'U';
      ExpandCellPairs(data + pixels * bytes, u_first ? planes[1] : planes[2],
                      u_first ? planes[2] : planes[1]);
      break;
    }
  }
}

bool CImageYuv::CheckLayout(std::string_view layout) {
  const YuvCounts counts = CountsOf(ReadComponentLayout(layout, ColorKind::Yuv));
  if (!AcceptsCounts(counts)) return false;
  counts_ = counts;
  return true;
}

void CImageYuv::SetLayoutDescription(const YuvCounts& counts, Packing packing, std::string layout) {
  counts_ = counts;
  packing_ = packing;
  components_ = ReadComponentLayout(layout, ColorKind::Yuv);
  layout_ = std::move(layout);
  raw_byte_size_ = ComputeRawByteSize();
}

void CImageYuv::DescribeLayout(const FormatExpression& format) {
  counts_ = CountsOf(format.components);
  packing_ = format.packing;
  layout_ = format.layout;
  components_ = format.components;
  raw_byte_size_ = ComputeRawByteSize();
}

std::string CImageYuv::FormatLabel() const {
  std::string label = LabelForBits(sampling_->labels.data(), bits_);
  if (!sampling_->packing_in_label) return WithLayoutLabel(std::move(label));
  static constexpr const char* kPackingSuffix[] = {" (I)", " (P)", " (PI)"};
  const auto packing = static_cast<uint32_t>(packing_);
  if (packing < 3) label += kPackingSuffix[packing];
  return WithLayoutLabel(std::move(label));
}

bool CImageYuv::AlignToChromaGrid(Rect& region) const {
  const YuvCounts ratio = MaxCount(sampling_->grid_ratio) == 0 ? counts_ : sampling_->grid_ratio;
  if (!IsCountAllowed(ratio.y) || !IsCountAllowed(ratio.u) || !IsCountAllowed(ratio.v)) {
    // The fixed ratios of the table hold only allowed counts; only a general
    // image without valid counts ends here.
    return false;
  }
  const uint32_t big = std::max({ratio.y, ratio.u, ratio.v});
  const uint32_t small = std::min({ratio.y, ratio.u, ratio.v});
  const uint32_t r = big / small;
  const uint32_t step_x = r == 4 ? 4 : (r > 1 ? big : 1);
  const uint32_t step_y = r == 4 ? 2 : 1;
  AlignSpan(step_x, region.min_x, region.max_x);
  AlignSpan(step_y, region.min_y, region.max_y);
  return true;
}

std::unique_ptr<CImageConcreteBase> CImageYuv::NewEmptyLike() const {
  auto out = std::make_unique<CImageYuv>(*sampling_);
  out->counts_ = counts_;
  out->packing_ = packing_;
  out->layout_ = layout_;
  out->components_ = components_;
  return out;
}

uint64_t CImageYuv::ComputeRawByteSize() const {
  if (MaxCount(counts_) == 0) return CImageConcreteBase::ComputeRawByteSize();
  return YuvFrameBytes(counts_, width_, height_, bits_ / 8);
}

bool CImageYuv::RenderDisplay(DisplayRendition& out, IParallelRunner* runner) const {
  return BuildYuvRendition(ShownPlanes(), g_yuv_to_rgb, out, runner, RawLayout().bits);
}

namespace {

uint32_t PlaneOfLetter(char letter) {
  return static_cast<uint32_t>(std::string_view("YUV").find(letter));
}

}  // namespace

// The reverse of Unpack: of the pixels that share a chroma sample, the first
// one gives it back (they all hold the same value after a load).
std::vector<SampleSection> CImageYuv::OwnLayoutSections() const {
  const std::string& compact = components_.letters;
  const uint32_t m = MaxCount(counts_);
  if (m == 0 || !AcceptsCounts(counts_)) return {};
  switch (packing_) {
    case Packing::Interleave: {
      if (compact.empty() || compact.size() > kMaxSectionPicks) return {};
      SampleSection section{SectionKind::RasterGroups, compact, {}, m, true};
      uint32_t seen[3] = {0, 0, 0};
      for (char letter : compact) {
        const uint32_t plane = PlaneOfLetter(letter);
        if (plane > 2) return {};
        section.picks.push_back({plane, seen[plane]++ * (m / CountOf(counts_, letter))});
      }
      return {section};
    }
    case Packing::Planar: {
      std::vector<SampleSection> sections;
      for (const std::string& token : components_.tokens) {
        const uint32_t plane = PlaneOfLetter(token[0]);
        if (plane > 2) return {};
        const uint32_t count = CountOf(counts_, token[0]);
        if (count == m) {
          sections.push_back({SectionKind::PlaneRows, token.substr(0, 1), {{plane, 0}}, 1, false});
        } else {
          sections.push_back(
              {SectionKind::RasterGroups, token.substr(0, 1), {{plane, 0}}, m / count, false});
        }
      }
      return sections.size() == 3 ? sections : std::vector<SampleSection>{};
    }
    case Packing::PlanarInterleave: {
      if (!components_.IsCellPairLayout()) return {};
      const bool u_first = compact[4] == 'U';
      return {{SectionKind::PlaneRows, "Y", {{0, 0}}, 1, false},
              {SectionKind::CellPairs, u_first ? "UV" : "VU", {{u_first ? 1u : 2u, 0}, {u_first ? 2u : 1u, 0}}, 1, false}};
    }
  }
  return {};
}

WriterLayout CImageYuv::DescribeForWriter() const {
  WriterLayout layout;
  layout.planes = {&planes_[0], &planes_[1], &planes_[2]};
  // Y, U and V in the order the layout first names them ("UYVY" gives "UYV").
  layout.letters = components_.order.empty() ? "YUV" : components_.order;
  for (char letter : layout.letters) layout.order.push_back(PlaneOfLetter(letter));
  layout.text_kind = "YUV";
  layout.original = OwnLayoutSections();
  // Images without a layout of their own (results of operations) write
  // full-size planes.
  if (layout.original.empty()) layout.original = PlanarSections(layout.letters, layout.order);
  layout.original_planar = packing_ == Packing::Planar;
  return layout;
}

}  // namespace korvanel
