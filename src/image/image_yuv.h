#pragma once

// The YUV family. Chroma planes are always held at full resolution; the
// sample counts of one layout group remember how the file was subsampled so
// the image can be written back in its own layout.

#include <string>
#include <vector>

#include "image/format_expression.h"
#include "image/image_concrete_base.h"

namespace korvanel {

struct YuvCounts {
  uint32_t y = 0;
  uint32_t u = 0;
  uint32_t v = 0;
  friend bool operator==(const YuvCounts&, const YuvCounts&) = default;
};

// Letters Y, U and V in `layout` (blanks and other letters are not counted).
YuvCounts CountYuvLetters(std::string_view layout);

// The general class: any counts of 1, 2 or 4 ("user-defined" layouts).
class CImageYuv : public CImageConcreteBase {
 public:
  CImageYuv() = default;
  bool Load(uint8_t* data, uint64_t byte_count, uint32_t width, uint32_t height,
            std::string_view layout, int32_t bpp) override;
  const char* TypeName() const override { return "YUV"; }
  std::string FormatLabel() const override;
  uint32_t ComponentCount() const override { return 3; }
  bool AlignToChromaGrid(Rect& region) const override;

  // Whether the class takes a layout with these counts; checked before any
  // byte is read so that the next class can be tried.
  virtual bool AcceptsCounts(const YuvCounts& counts) const;
  // Layout check of the load: counts the letters, stores them when accepted.
  bool CheckLayout(std::string_view layout);

  const YuvCounts& Counts() const { return counts_; }
  Packing GetPacking() const { return packing_; }
  const std::string& Layout() const { return layout_; }
  void SetLayoutDescription(const YuvCounts& counts, Packing packing, std::string layout);
  // The loader needs the packing: "YYYYUV" is a valid layout for I and PI.
  void SetPacking(Packing packing) { packing_ = packing; }

 protected:
  std::unique_ptr<CImageConcreteBase> NewEmptyLike() const override;
  bool RenderDisplay(DisplayRendition& out, IParallelRunner* runner) const override;
  WriterLayout DescribeForWriter() const override;
  uint64_t ComputeRawByteSize() const override;
  // Sampling ratio for region alignment; the general class uses its counts.
  virtual YuvCounts GridRatio() const { return counts_; }
  // Labels for 8, 16 and 32 bits.
  virtual const char* const* LabelTable() const;
  // A fresh object of the concrete class.
  virtual std::unique_ptr<CImageYuv> NewOfSameClass() const;
  // Fills the three full-size planes from a size-checked input.
  void Unpack(const uint8_t* data, uint64_t byte_count, const std::vector<std::string>& tokens,
              const std::string& compact, std::vector<Plane>& planes) const;
  // The own layout as writer sections, chroma reduced to its sampling again;
  // empty when the image has no usable layout description.
  std::vector<SampleSection> OwnLayoutSections() const;

  YuvCounts counts_;
  Packing packing_ = Packing::Interleave;
  std::string layout_;
};

class CImageYuv444 : public CImageYuv {
 public:
  bool AcceptsCounts(const YuvCounts& counts) const override;
  std::string FormatLabel() const override;

 protected:
  YuvCounts GridRatio() const override { return {4, 4, 4}; }
  const char* const* LabelTable() const override;
  std::unique_ptr<CImageYuv> NewOfSameClass() const override;
};

class CImageYuv422 : public CImageYuv {
 public:
  bool AcceptsCounts(const YuvCounts& counts) const override;
  std::string FormatLabel() const override;

 protected:
  YuvCounts GridRatio() const override { return {4, 2, 2}; }
  const char* const* LabelTable() const override;
  std::unique_ptr<CImageYuv> NewOfSameClass() const override;
};

class CImageYuv420 : public CImageYuv {
 public:
  bool AcceptsCounts(const YuvCounts& counts) const override;
  std::string FormatLabel() const override;

 protected:
  YuvCounts GridRatio() const override { return {4, 1, 1}; }
  const char* const* LabelTable() const override;
  std::unique_ptr<CImageYuv> NewOfSameClass() const override;
};

// Bytes of one frame in the layout's own sampling: each component holds
// count * n * bytes / max(counts) bytes, each term an integer division.
uint64_t YuvFrameBytes(const YuvCounts& counts, uint32_t width, uint32_t height,
                       uint32_t bytes_per_component);

}  // namespace korvanel
