#pragma once

// The interface through which the whole program talks to an open image. The
// virtual operations are declared in a fixed order, which the concrete
// classes keep:
//
//   0 destructor            10 Save                 20 GetSize
//   1 Load                  11 WriteStatistics      21 GetRegionOfInterest
//   2 Duplicate             12 Histogram            22 GetViewPosition
//   3 ExtractComponent      13 Refresh              23 GetBitsPerComponent
//   4 ImportRgb32           14 GetSampleValues      24 GetRawByteSize
//   5 BuildDisplay          15 GetDisplayedValue    25 TypeName
//   6 RunPlaneJob           16 SetRegionOfInterest  26 FormatLabel
//   7 Resize                17 SetViewPosition      27 ComponentCount
//   8 CopyPixelsOut         18 SetOwnerData1        28 IsSelected
//   9 BuildAlternate        19 SetOwnerData2        29 AlignToChromaGrid
//
// After the fixed table come the program's own additions:
//
//  30 ShownPlanes

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "image/color_kind.h"
#include "image/region.h"

namespace korvanel {

struct DisplayRendition;
class Plane;
class IParallelRunner;
class IPlaneProcessor;
// Defined with the writers, the statistics file and the histogram.
struct SaveRequest;
struct StatisticsRequest;
struct HistogramResult;

enum class DuplicateArea { WholeImage, RegionOfInterest };
enum class ResizeMode : uint32_t { NearestNeighbour = 0, Tiled = 1 };

class IImageContainer {
 public:
  virtual ~IImageContainer() = default;

  // Unpacks raw bytes. Big-endian depths swap `data` in place once the size
  // has been checked, so only a load that goes on to unpack changes them.
  virtual bool Load(uint8_t* data, uint64_t byte_count, uint32_t width, uint32_t height,
                    std::string_view layout, int32_t bpp) = 0;
  // A new image of the same class: the region of interest (clamped to the
  // image) or the whole image. Null when the copy cannot be made.
  virtual std::unique_ptr<IImageContainer> Duplicate(DuplicateArea area) const = 0;
  // A grey copy of one plane; index 3 reads the third plane. Null when refused.
  virtual std::unique_ptr<IImageContainer> ExtractComponent(uint32_t index) const = 0;
  virtual bool ImportRgb32(uint32_t reserved, const uint32_t* pixels) = 0;
  // Builds the rendition only when none exists, in bands on `runner` when
  // one is given.
  virtual const DisplayRendition* BuildDisplay(IParallelRunner* runner = nullptr) = 0;
  virtual bool RunPlaneJob(IPlaneProcessor& processor) = 0;
  virtual bool Resize(uint32_t new_width, uint32_t new_height, const Rect& source,
                      ResizeMode mode) = 0;
  virtual bool CopyPixelsOut(void* destination, uint32_t flags, const Rect* area) const = 0;
  virtual bool BuildAlternate(uint32_t kind, uint32_t parameter) = 0;
  virtual bool Save(const SaveRequest& request) = 0;
  virtual bool WriteStatistics(const StatisticsRequest& request) = 0;
  // Selector 0 or 1; recomputed when the region changed since the last call.
  virtual bool Histogram(uint32_t selector, HistogramResult& result) = 0;
  virtual void Refresh() = 0;
  // Three values (grey repeats its one); false outside the image.
  virtual bool GetSampleValues(int64_t x, int64_t y, std::array<uint32_t, 3>& values) const = 0;
  virtual bool GetDisplayedValue(int64_t x, int64_t y, uint32_t& color) const = 0;
  // Non-zero when the region differs from the old one.
  virtual bool SetRegionOfInterest(const Rect& region) = 0;
  virtual void SetViewPosition(uint32_t x, uint32_t y) = 0;
  virtual void SetOwnerData1(void* data) = 0;
  virtual void SetOwnerData2(void* data) = 0;
  virtual void GetSize(uint32_t& width, uint32_t& height) const = 0;
  virtual Rect GetRegionOfInterest() const = 0;
  virtual void GetViewPosition(uint32_t& x, uint32_t& y) const = 0;
  virtual uint32_t GetBitsPerComponent() const = 0;
  virtual uint64_t GetRawByteSize() const = 0;
  virtual const char* TypeName() const = 0;
  virtual std::string FormatLabel() const = 0;
  virtual uint32_t ComponentCount() const = 0;
  virtual bool IsSelected(int64_t x, int64_t y) const = 0;
  // Widens `region` to whole chroma cells; false for images without chroma.
  virtual bool AlignToChromaGrid(Rect& region) const = 0;

  // The planes the screen shows (the filtered copy while there is one), for
  // scans such as finding a pixel value.
  virtual const std::vector<Plane>& ShownPlanes() const = 0;
};

// The colour family of an image, told by the type name its kind reports.
inline ColorKind ColorKindOf(const IImageContainer& image) {
  const std::string_view name = image.TypeName();
  for (ColorKind kind : {ColorKind::Rgb, ColorKind::Yuv, ColorKind::Gray}) {
    if (name == KindTypeName(kind)) return kind;
  }
  return ColorKind::Gray;
}

}  // namespace korvanel
