#pragma once

#include <memory>
#include <vector>

#include "image/display_rendition.h"
#include "image/filter_tables.h"
#include "image/format_expression.h"
#include "image/histogram_result.h"
#include "image/image_container.h"
#include "image/parallel_runner.h"
#include "image/image_writer.h"
#include "image/plane.h"

namespace korvanel {

// Fields and operations shared by every image kind. Operations that work the
// same on one or three planes live here once; the kinds differ in their
// loader, their labels and their chroma grid.
class CImageConcreteBase : public IImageContainer {
 public:
  ~CImageConcreteBase() override;

  // Load stays with the kinds. Operations whose work is not available yet refuse.
  std::unique_ptr<IImageContainer> Duplicate(DuplicateArea area) const override;
  std::unique_ptr<IImageContainer> ExtractComponent(uint32_t index) const override;
  bool ImportRgb32(uint32_t reserved, const uint32_t* pixels) override;
  const DisplayRendition* BuildDisplay(IParallelRunner* runner = nullptr) override;
  bool RunPlaneJob(IPlaneProcessor& processor) override;
  bool Resize(uint32_t new_width, uint32_t new_height, const Rect& source, ResizeMode mode) override;
  bool CopyPixelsOut(void* destination, uint32_t flags, const Rect* area) const override;
  bool BuildAlternate(uint32_t kind, uint32_t parameter) override;
  bool Save(const SaveRequest& request) override;
  bool WriteStatistics(const StatisticsRequest& request) override;
  bool Histogram(uint32_t selector, HistogramResult& result) override;
  void Refresh() override;
  bool GetSampleValues(int64_t x, int64_t y, std::array<uint32_t, 3>& values) const override;
  bool GetDisplayedValue(int64_t x, int64_t y, uint32_t& color) const override;
  bool SetRegionOfInterest(const Rect& region) override;
  void SetViewPosition(uint32_t x, uint32_t y) override;
  void SetOwnerData1(void* data) override { owner_data_[0] = data; }
  void SetOwnerData2(void* data) override { owner_data_[1] = data; }
  void GetSize(uint32_t& width, uint32_t& height) const override;
  Rect GetRegionOfInterest() const override { return roi_; }
  void GetViewPosition(uint32_t& x, uint32_t& y) const override;
  uint32_t GetBitsPerComponent() const override { return bits_; }
  uint64_t GetRawByteSize() const override { return raw_byte_size_; }
  // The kinds differ here only by their colour family.
  const char* TypeName() const override { return KindTypeName(kind_); }
  // The grey and RGB labels; the YUV classes label their sampling instead.
  std::string FormatLabel() const override;
  uint32_t ComponentCount() const override { return kind_ == ColorKind::Gray ? 1 : 3; }
  bool IsSelected(int64_t x, int64_t y) const override;
  bool AlignToChromaGrid(Rect& region) const override;

  ColorKind Kind() const { return kind_; }
  // Frees the kept rendition (an image no longer shown); the next
  // BuildDisplay renders it again.
  void ReleaseDisplay() { display_.reset(); }
  bool HasDisplay() const { return display_ != nullptr; }

  void* OwnerData1() const { return owner_data_[0]; }
  void* OwnerData2() const { return owner_data_[1]; }
  bool RegionChanged() const { return region_changed_; }
  bool BigEndian() const { return big_endian_; }
  const Plane& GetPlane(uint32_t index) const { return planes_[index]; }
  // For operations that fill a new image's planes in place.
  Plane& MutablePlane(uint32_t index) { return planes_[index]; }
  uint32_t PlaneCount() const { return static_cast<uint32_t>(planes_.size()); }
  // One bit per pixel, pixel i at bit (i mod 32) of word i / 32; empty selects all.
  void SetSelectionMask(std::vector<uint32_t> mask) {
    mask_ = std::move(mask);
    histogram_cache_.reset();
  }
  const std::vector<uint32_t>& SelectionMask() const { return mask_; }
  bool HasSelectionMask() const { return !mask_.empty(); }

  // A colour filter's result: the mask above and the shown copy of the planes.
  // The readout reads the copy while it exists.
  void SetFilter(std::vector<uint32_t> mask, std::vector<Plane> shown, std::string label);
  void ClearFilter();
  bool HasFilter() const { return !filtered_planes_.empty() || kept_filter_ != nullptr; }
  // Trades the shown copy for the filter's tables (favor_low_mem_over_speed):
  // the readout then looks values up, and the display rebuilds the copy only
  // while it renders.
  void KeepFilterTablesOnly(std::shared_ptr<const FilterTables> tables, bool all_components);
  std::shared_ptr<const FilterTables> KeptFilterTables() const { return kept_filter_; }
  bool KeptFilterAllComponents() const { return kept_filter_all_; }
  const std::string& FilterLabel() const { return filter_label_; }
  std::vector<Plane>& FilteredPlanes() { return filtered_planes_; }
  std::vector<uint32_t>& MutableSelectionMask() { return mask_; }
  // What the rendition shows: the filtered copy while there is one.
  const std::vector<Plane>& ShownPlanes() const override {
    return filtered_planes_.empty() ? planes_ : filtered_planes_;
  }

  // Gives the image ready-made planes of equal size and depth (new images,
  // results of operations). False, with the image unchanged, when they differ
  // or their count does not suit the kind.
  bool AdoptPlanes(std::vector<Plane> planes);

  // Takes the layout that a created image's format text names, so that the
  // image is saved "in its original packing" as that text says. Grey images
  // have only one layout.
  virtual void DescribeLayout(const FormatExpression& format) { (void)format; }

  // Threads the next Load may spread its unpacking over; null: none.
  void SetParallelRunner(IParallelRunner* runner) { runner_ = runner; }

 protected:
  explicit CImageConcreteBase(ColorKind kind) : kind_(kind) {}
  CImageConcreteBase(const CImageConcreteBase&) = delete;
  CImageConcreteBase& operator=(const CImageConcreteBase&) = delete;

  // An empty image of the same class carrying the same layout description.
  virtual std::unique_ptr<CImageConcreteBase> NewEmptyLike() const = 0;
  // The rendition of the planes (BuildDisplay keeps it until the next refresh).
  virtual bool RenderDisplay(DisplayRendition& out, IParallelRunner* runner) const = 0;
  // Planes, letters and own layout for the writer behind Save.
  virtual WriterLayout DescribeForWriter() const = 0;
  // Size of one frame as the file holds it.
  virtual uint64_t ComputeRawByteSize() const;
  // Sets the planes, depth and size and marks the region changed.
  void SetPlanes(std::vector<Plane> planes);

  // The common part of every load. Checks the depth and the exact size, then
  // allocates `count` planes (zeroed for an empty request: no bytes and a
  // count of 0) and only then swaps big-endian input, so a refused load
  // leaves the caller's bytes untouched. Null data with a non-zero count is
  // refused. Returns the planes, or an empty vector on refusal.
  // With InputSwap::ByCaller the caller swaps the input itself after a
  // successful PrepareLoad (while copying it).
  enum class InputSwap { Here, ByCaller };
  static std::vector<Plane> PrepareLoad(uint8_t* data, uint64_t byte_count, uint64_t expected,
                                        int32_t bpp, uint32_t width, uint32_t height,
                                        uint32_t count, InputSwap swap = InputSwap::Here);
  // Keeps the loaded planes with the file's byte count and byte order.
  void FinishLoad(std::vector<Plane> planes, uint64_t byte_count, int32_t bpp);

  const ColorKind kind_;
  uint32_t bits_ = 0;
  uint32_t width_ = 0;
  uint32_t height_ = 0;
  uint64_t raw_byte_size_ = 0;
  std::unique_ptr<DisplayRendition> display_;
  std::unique_ptr<DisplayRendition> alternate_display_;
  std::vector<uint32_t> mask_;
  bool show_alternate_values_ = false;
  Rect roi_ = Rect::None();
  uint32_t view_x_ = 0;
  uint32_t view_y_ = 0;
  bool region_changed_ = true;
  void* owner_data_[2] = {nullptr, nullptr};
  bool big_endian_ = false;
  std::vector<Plane> planes_;
  std::vector<Plane> filtered_planes_;
  std::string filter_label_;
  std::shared_ptr<const FilterTables> kept_filter_;
  bool kept_filter_all_ = false;
  IParallelRunner* runner_ = nullptr;
  std::unique_ptr<HistogramResult> histogram_cache_;
};

}  // namespace korvanel
