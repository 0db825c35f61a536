#pragma once

// The samples a writer emits, described as sections written one after the
// other: a component plane, the components of each pixel together, groups of
// an interleaved layout ("YUYV"), the reduced chroma plane of a planar
// layout, or the chroma pairs of 2x2 cells. Each section is produced row by
// row into a typed buffer; the raw, hex and C-array writers only consume
// rows, so every layout is written by the same three loops.

#include <cstdint>
#include <string>
#include <vector>

#include "image/plane.h"
#include "image/region.h"

namespace korvanel {

enum class SectionKind : uint32_t {
  PlaneRows,        // one plane, area row by area row
  PixelInterleave,  // every pick of each pixel in turn
  RasterGroups,     // groups of `group_pixels` consecutive pixels in area raster order
  CellPairs,        // one value per pick for each 2x2 cell, row pair by row pair
};

// One value of a unit (pixel, group or cell): which plane, and which pixel of
// the unit (raster offset inside a group; always 0 for the other kinds).
struct SectionPick {
  uint32_t plane = 0;
  uint32_t pixel = 0;
};

// The most values one unit may hold: a layout group of four samples of each
// component.
inline constexpr size_t kMaxSectionPicks = 12;

struct SampleSection {
  SectionKind kind = SectionKind::PlaneRows;
  std::string name;  // "Y", "RGB", "UV", "YUYV": names arrays and hex sections
  std::vector<SectionPick> picks;
  uint32_t group_pixels = 1;
  // Groups that would run past the area: a started group is written whole
  // (its missing pixels repeat the last one) when set, dropped otherwise.
  bool keep_partial_group = false;
};

// One plane per component letter, in `order` (plane indices).
std::vector<SampleSection> PlanarSections(const std::string& letters,
                                          const std::vector<uint32_t>& order);
// All components of each pixel together, in `order`.
SampleSection InterleavedSection(const std::string& letters, const std::vector<uint32_t>& order);

// Where the rows of one section lie in an area.
class SectionRows {
 public:
  SectionRows(const SampleSection& section, const Rect& area, uint32_t image_width);

  uint64_t RowCount() const { return rows_; }
  uint64_t ValueCount(uint64_t row) const;
  uint64_t TotalValues() const;
  // Offset of the row's first value counted the way a hex dump shows it:
  // sample offset in the image (y * width + x, times the picks per pixel)
  // for plane and pixel rows, the value index inside the section otherwise.
  uint64_t RowOffset(uint64_t row) const;
  // Pixels of the area the row covers (progress), and its first and last
  // area rows (messages).
  uint64_t PixelCount(uint64_t row) const;
  uint32_t FirstAreaRow(uint64_t row) const;
  uint32_t LastAreaRow(uint64_t row) const;

  // Fills `out` (ValueCount(row) values) from the planes.
  template <typename T>
  void Gather(const std::vector<const Plane*>& planes, uint64_t row, T* out) const;

 private:
  uint64_t FirstGroup(uint64_t row) const;
  uint64_t GroupEnd(uint64_t row) const;

  const SampleSection& section_;
  Rect area_;
  uint32_t image_width_;
  uint64_t width_;
  uint64_t height_;
  uint64_t rows_ = 0;
  uint64_t groups_ = 0;  // RasterGroups only
};

extern template void SectionRows::Gather<uint8_t>(const std::vector<const Plane*>&, uint64_t,
                                                  uint8_t*) const;
extern template void SectionRows::Gather<uint16_t>(const std::vector<const Plane*>&, uint64_t,
                                                   uint16_t*) const;
extern template void SectionRows::Gather<uint32_t>(const std::vector<const Plane*>&, uint64_t,
                                                   uint32_t*) const;

}  // namespace korvanel
