#include "image/save_sections.h"

#include <algorithm>
#include <cstring>

namespace korvanel {

namespace {

uint64_t CeilDiv(uint64_t a, uint64_t b) { return (a + b - 1) / b; }

}  // namespace

std::vector<SampleSection> PlanarSections(const std::string& letters,
                                          const std::vector<uint32_t>& order) {
  std::vector<SampleSection> sections;
  for (size_t i = 0; i < order.size(); ++i) {
    sections.push_back({SectionKind::PlaneRows, std::string(1, letters[i]), {{order[i], 0}}, 1,
                        false});
  }
  return sections;
}

SampleSection InterleavedSection(const std::string& letters, const std::vector<uint32_t>& order) {
  SampleSection section{SectionKind::PixelInterleave, letters, {}, 1, false};
  for (uint32_t plane : order) section.picks.push_back({plane, 0});
  return section;
}

SectionRows::SectionRows(const SampleSection& section, const Rect& area, uint32_t image_width)
    : section_(section),
      area_(area),
      image_width_(image_width),
      width_(area.Width()),
      height_(area.Height()) {
  switch (section_.kind) {
    case SectionKind::PlaneRows:
    case SectionKind::PixelInterleave:
      rows_ = height_;
      break;
    case SectionKind::RasterGroups: {
      const uint64_t pixels = width_ * height_;
      const uint64_t g = std::max<uint32_t>(section_.group_pixels, 1);
      groups_ = section_.keep_partial_group ? CeilDiv(pixels, g) : pixels / g;
      rows_ = height_;
      break;
    }
    case SectionKind::CellPairs:
      rows_ = height_ / 2;
      break;
  }
}

uint64_t SectionRows::FirstGroup(uint64_t row) const {
  return std::min(groups_, CeilDiv(row * width_, std::max<uint32_t>(section_.group_pixels, 1)));
}

uint64_t SectionRows::GroupEnd(uint64_t row) const {
  return row + 1 == rows_ ? groups_ : FirstGroup(row + 1);
}

uint64_t SectionRows::ValueCount(uint64_t row) const {
  const uint64_t picks = section_.picks.size();
  switch (section_.kind) {
    case SectionKind::PlaneRows: return width_;
    case SectionKind::PixelInterleave: return width_ * picks;
    case SectionKind::RasterGroups: return (GroupEnd(row) - FirstGroup(row)) * picks;
    case SectionKind::CellPairs: return width_ / 2 * picks;
  }
  return 0;
}

uint64_t SectionRows::TotalValues() const {
  const uint64_t picks = section_.picks.size();
  switch (section_.kind) {
    case SectionKind::PlaneRows: return width_ * height_;
    case SectionKind::PixelInterleave: return width_ * height_ * picks;
    case SectionKind::RasterGroups: return groups_ * picks;
    case SectionKind::CellPairs: return width_ / 2 * (height_ / 2) * picks;
  }
  return 0;
}

uint64_t SectionRows::RowOffset(uint64_t row) const {
  const uint64_t picks = section_.picks.size();
  const uint64_t first_sample = (area_.min_y + row) * image_width_ + area_.min_x;
  switch (section_.kind) {
    case SectionKind::PlaneRows: return first_sample;
    case SectionKind::PixelInterleave: return first_sample * picks;
    case SectionKind::RasterGroups: return FirstGroup(row) * picks;
    case SectionKind::CellPairs: return row * (width_ / 2) * picks;
  }
  return 0;
}

uint64_t SectionRows::PixelCount(uint64_t row) const {
  switch (section_.kind) {
    case SectionKind::PlaneRows:
    case SectionKind::PixelInterleave:
      return width_;
    case SectionKind::RasterGroups: {
      const uint64_t pixels = width_ * height_;
      const uint64_t g = section_.group_pixels;
      return std::min(pixels, GroupEnd(row) * g) - std::min(pixels, FirstGroup(row) * g);
    }
    case SectionKind::CellPairs:
      return 2 * width_;
  }
  return 0;
}

uint32_t SectionRows::FirstAreaRow(uint64_t row) const {
  const uint64_t step = section_.kind == SectionKind::CellPairs ? 2 : 1;
  return static_cast<uint32_t>(area_.min_y + row * step);
}

uint32_t SectionRows::LastAreaRow(uint64_t row) const {
  return section_.kind == SectionKind::CellPairs ? FirstAreaRow(row) + 1 : FirstAreaRow(row);
}

template <typename T>
void SectionRows::Gather(const std::vector<const Plane*>& planes, uint64_t row, T* out) const {
  const std::vector<SectionPick>& picks = section_.picks;
  const size_t k_count = picks.size();
  const uint32_t y = FirstAreaRow(row);
  const uint32_t x0 = area_.min_x;
  // The area row of each pick's plane, from the area's first column.
  const T* src[kMaxSectionPicks];
  const size_t loaded = std::min(k_count, kMaxSectionPicks);
  for (size_t k = 0; k < loaded; ++k) src[k] = planes[picks[k].plane]->Row<T>(y) + x0;
  switch (section_.kind) {
    case SectionKind::PlaneRows:
      std::memcpy(out, planes[picks[0].plane]->Row<T>(y) + x0, width_ * sizeof(T));
      return;
    case SectionKind::PixelInterleave: {
      if (k_count == 3) {
        const T* a = src[0];
        const T* b = src[1];
        const T* c = src[2];
        for (uint64_t x = 0; x < width_; ++x) {
          out[3 * x] = a[x];
          out[3 * x + 1] = b[x];
          out[3 * x + 2] = c[x];
        }
        return;
      }
      for (uint64_t x = 0; x < width_; ++x) {
        for (size_t k = 0; k < k_count; ++k) out[x * k_count + k] = src[k][x];
      }
      return;
    }
    case SectionKind::CellPairs: {
      for (uint64_t c = 0; c < width_ / 2; ++c) {
        for (size_t k = 0; k < k_count; ++k) out[c * k_count + k] = src[k][2 * c];
      }
      return;
    }
    case SectionKind::RasterGroups: {
      const uint64_t g = section_.group_pixels;
      const uint64_t first = FirstGroup(row);
      const uint64_t end = GroupEnd(row);
      if (width_ % g == 0) {
        // Every group of the row lies inside it.
          for (uint64_t j = 0; j < end - first; ++j) {
          for (size_t k = 0; k < k_count; ++k) out[j * k_count + k] = src[k][j * g + picks[k].pixel];
        }
        return;
      }
      // Groups run over row ends: place each pixel by its raster index.
      const uint64_t last_pixel = width_ * height_ - 1;
      for (uint64_t j = first; j < end; ++j) {
        for (size_t k = 0; k < k_count; ++k) {
          const uint64_t i = std::min(last_pixel, j * g + picks[k].pixel);
          const auto py = static_cast<uint32_t>(area_.min_y + i / width_);
          out[(j - first) * k_count + k] = planes[picks[k].plane]->Row<T>(py)[x0 + i % width_];
        }
      }
      return;
    }
  }
}

template void SectionRows::Gather<uint8_t>(const std::vector<const Plane*>&, uint64_t,
                                           uint8_t*) const;
template void SectionRows::Gather<uint16_t>(const std::vector<const Plane*>&, uint64_t,
                                            uint16_t*) const;
template void SectionRows::Gather<uint32_t>(const std::vector<const Plane*>&, uint64_t,
                                            uint32_t*) const;

}  // namespace korvanel
