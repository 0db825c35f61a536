#pragma once

// The YUV family. Chroma planes are always held at full resolution; the
// sample counts of one layout group remember how the file was subsampled so
// the image can be written back in its own layout.
//
// The 4:4:4, 4:2:2 and 4:2:0 classes differ from the general class only in
// data: which counts they take, the ratio their regions align to and their
// labels. Each is one row of a sampling table; CImageYuv444, CImageYuv422 and
// CImageYuv420 name the general class bound to its row.

#include <array>
#include <string>
#include <vector>

#include "image/component_layout.h"
#include "image/format_expression.h"
#include "image/image_concrete_base.h"

namespace korvanel {

struct YuvCounts {
  uint32_t y = 0;
  uint32_t u = 0;
  uint32_t v = 0;
  friend bool operator==(const YuvCounts&, const YuvCounts&) = default;
};

// The Y, U and V counts of a layout read with the YUV letters.
inline YuvCounts CountsOf(const ComponentLayout& layout) {
  return {layout.counts[0], layout.counts[1], layout.counts[2]};
}

// One YUV class as data.
struct YuvSampling {
  // Whether the class takes a layout with these counts.
  bool (*accepts)(const YuvCounts& counts);
  // Ratio for region alignment; all zero: the image's own counts.
  YuvCounts grid_ratio;
  // Labels for 8, 16 and 32 bits.
  std::array<const char*, 3> labels;
  // The general class tells its packing in the label: " (I)", " (P)", " (PI)".
  bool packing_in_label;
  // Format-load log line when a load with this class succeeds.
  const char* matched;
};

extern const YuvSampling kYuvGeneral;
extern const YuvSampling kYuv444;
extern const YuvSampling kYuv422;
extern const YuvSampling kYuv420;

// The classes in the order a YUV format tries them: 4:4:4, 4:2:2, 4:2:0, then
// the general class.
extern const std::array<const YuvSampling*, 4> kYuvLoadOrder;

class CImageYuv : public CImageConcreteBase {
 public:
  CImageYuv() : CImageYuv(kYuvGeneral) {}
  explicit CImageYuv(const YuvSampling& sampling)
      : CImageConcreteBase(ColorKind::Yuv), sampling_(&sampling) {}

  bool Load(uint8_t* data, uint64_t byte_count, uint32_t width, uint32_t height,
            std::string_view layout, int32_t bpp) override;
  std::string FormatLabel() const override;
  bool AlignToChromaGrid(Rect& region) const override;
  void DescribeLayout(const FormatExpression& format) override;

  const YuvSampling& Sampling() const { return *sampling_; }
  // Whether the class takes a layout with these counts; checked before any
  // byte is read so that the next class can be tried.
  bool AcceptsCounts(const YuvCounts& counts) const { return sampling_->accepts(counts); }
  // Layout check of the load: counts the letters, stores them when accepted.
  bool CheckLayout(std::string_view layout);

  const YuvCounts& Counts() const { return counts_; }
  Packing GetPacking() const { return packing_; }
  const std::string& Layout() const { return layout_; }
  // Counts may differ from the letters of `layout` (tests of labels and grids).
  void SetLayoutDescription(const YuvCounts& counts, Packing packing, std::string layout);
  // The loader needs the packing: "YYYYUV" is a valid layout for I and PI.
  void SetPacking(Packing packing) { packing_ = packing; }

 protected:
  std::unique_ptr<CImageConcreteBase> NewEmptyLike() const override;
  bool RenderDisplay(DisplayRendition& out, IParallelRunner* runner) const override;
  WriterLayout DescribeForWriter() const override;
  uint64_t ComputeRawByteSize() const override;

 private:
  // Fills the three full-size planes from a size-checked input.
  void Unpack(const uint8_t* data, uint64_t byte_count, std::vector<Plane>& planes) const;
  // The own layout as writer sections, chroma reduced to its sampling again;
  // empty when the image has no usable layout description.
  std::vector<SampleSection> OwnLayoutSections() const;

  const YuvSampling* sampling_;
  YuvCounts counts_;
  Packing packing_ = Packing::Interleave;
  std::string layout_;
  ComponentLayout components_;
};

// A class bound to one row of the sampling table.
template <const YuvSampling& Row>
class CImageYuvSampled final : public CImageYuv {
 public:
  CImageYuvSampled() : CImageYuv(Row) {}
};

using CImageYuv444 = CImageYuvSampled<kYuv444>;
using CImageYuv422 = CImageYuvSampled<kYuv422>;
using CImageYuv420 = CImageYuvSampled<kYuv420>;

// Bytes of one frame in the layout's own sampling: each component holds
// count * n * bytes / max(counts) bytes, each term an integer division.
uint64_t YuvFrameBytes(const YuvCounts& counts, uint32_t width, uint32_t height,
                       uint32_t bytes_per_component);

}  // namespace korvanel
