#include "image/image_concrete_base.h"

#include <algorithm>

#include "image/format_expression.h"
#include "image/format_label.h"
#include "image/image_filter.h"
#include "image/image_gray.h"
#include "image/layout_stage.h"
#include "image/output_buffer.h"
#include "image/statistics.h"
#include "image/statistics_request.h"
#include "image/text_util.h"
#include "image/plane_processor.h"
#include "image/raw_unpack.h"
#include "image/sample_type.h"

namespace korvanel {

CImageConcreteBase::~CImageConcreteBase() = default;

namespace {

bool InsideImage(int64_t x, int64_t y, uint32_t width, uint32_t height) {
  return x >= 0 && y >= 0 && x < width && y < height;
}

}  // namespace

std::unique_ptr<IImageContainer> CImageConcreteBase::Duplicate(DuplicateArea area) const {
  if (planes_.empty()) return nullptr;
  uint32_t x0 = 0, y0 = 0, w = width_, h = height_;
  if (area == DuplicateArea::RegionOfInterest && !roi_.IsNone()) {
    if (roi_.min_x >= width_ || roi_.min_y >= height_) return nullptr;
    const uint32_t max_x = std::min(roi_.max_x, width_ - 1);
    const uint32_t max_y = std::min(roi_.max_y, height_ - 1);
    if (max_x < roi_.min_x || max_y < roi_.min_y) return nullptr;
    x0 = roi_.min_x;
    y0 = roi_.min_y;
    w = max_x - x0 + 1;
    h = max_y - y0 + 1;
  }
  std::vector<Plane> planes;
  planes.reserve(planes_.size());
  for (const Plane& plane : planes_) {
    std::optional<Plane> copy = plane.Crop(x0, y0, w, h);
    if (!copy) return nullptr;
    planes.push_back(std::move(*copy));
  }
  std::unique_ptr<CImageConcreteBase> out = NewEmptyLike();
  out->big_endian_ = big_endian_;
  out->raw_layout_ = raw_layout_;
  out->SetPlanes(std::move(planes));
  return out;
}

std::unique_ptr<IImageContainer> CImageConcreteBase::ExtractComponent(uint32_t index) const {
  if (planes_.empty()) return nullptr;
  // Three-component images take 0..3, where 3 reads the third plane again.
  const uint32_t last = planes_.size() == 1 ? 0 : 3;
  if (index > last) return nullptr;
  const uint32_t plane_index = std::min<uint32_t>(index, static_cast<uint32_t>(planes_.size()) - 1);
  std::optional<Plane> copy = planes_[plane_index].Crop(0, 0, width_, height_);
  if (!copy) return nullptr;
  auto gray = std::make_unique<CImageGray>();
  std::vector<Plane> planes;
  planes.push_back(std::move(*copy));
  gray->AdoptPlanes(std::move(planes));
  gray->SetRawLayout(raw_layout_);
  return gray;
}

bool CImageConcreteBase::ImportRgb32(uint32_t, const uint32_t*) { return false; }

const DisplayRendition* CImageConcreteBase::BuildDisplay(IParallelRunner* runner) {
  if (display_ || planes_.empty()) return display_.get();
  // A filter kept as tables only: the shown copy exists while rendering.
  const bool transient = kept_filter_ != nullptr && filtered_planes_.empty() && RebuildShownCopy(*this);
  auto rendition = std::make_unique<DisplayRendition>();
  if (RenderDisplay(*rendition, runner)) display_ = std::move(rendition);
  if (transient) {
    filtered_planes_.clear();
    filtered_planes_.shrink_to_fit();
  }
  return display_.get();
}

bool CImageConcreteBase::RunPlaneJob(IPlaneProcessor& processor) {
  for (uint32_t i = 0; i < planes_.size(); ++i) {
    if (!processor.ProcessPlane(i, planes_[i])) return false;
  }
  return !planes_.empty();
}

bool CImageConcreteBase::Resize(uint32_t, uint32_t, const Rect&, ResizeMode) { return false; }

bool CImageConcreteBase::CopyPixelsOut(void*, uint32_t, const Rect*) const { return false; }

bool CImageConcreteBase::BuildAlternate(uint32_t, uint32_t) { return false; }

std::string CImageConcreteBase::FormatLabel() const {
  static constexpr const char* kGrayLabels[] = {"Y8", "Y16", "Y32"};
  static constexpr const char* kRgbLabels[] = {"RGBx8", "RGBx16", "RGBx32"};
  return WithLayoutLabel(LabelForBits(kind_ == ColorKind::Rgb ? kRgbLabels : kGrayLabels, bits_));
}

std::string CImageConcreteBase::WithLayoutLabel(std::string label) const {
  if (raw_layout_.Empty()) return label;
  std::string attributes = raw_layout_.ToText();
  attributes.pop_back();  // the comma that would follow it in an expression
  return label + " (" + attributes + ")";
}

bool CImageConcreteBase::Save(const SaveRequest& request) {
  if (planes_.empty()) return false;
  WriterLayout layout = DescribeForWriter();
  // The file's own bytes: MSB-aligned words go back to the top of the word.
  const uint32_t shift = raw_layout_.MsbShift(bits_);
  if (shift == 0 || request.mode != SaveMode::Raw || request.packing != SavePacking::Original) {
    return WriteImage(layout, request);
  }
  std::vector<Plane> shifted;
  shifted.reserve(layout.planes.size());
  for (const Plane* plane : layout.planes) {
    std::optional<Plane> copy = plane->Crop(0, 0, plane->width(), plane->height());
    if (!copy) return false;
    shifted.push_back(std::move(*copy));
  }
  std::vector<Plane*> targets;
  for (Plane& plane : shifted) targets.push_back(&plane);
  ShiftSamplesUp(std::move(targets), shift, runner_);
  for (size_t i = 0; i < shifted.size(); ++i) layout.planes[i] = &shifted[i];
  return WriteImage(layout, request);
}

namespace {

// Grey sections are "Luma-N"; three-component ones take the letter of their
// plane from the family ("RGB", "YUV").
char StatisticsLetter(const IImageContainer& image, uint32_t component) {
  return image.ComponentCount() == 1 ? 0 : FamilyLetters(ColorKindOf(image))[component];
}

HistogramChannel ChannelOf(const ComponentStatistics& stats) {
  HistogramChannel channel;
  channel.counts.assign(stats.bits == 8 ? 256 : 65536, 0);
  const uint32_t shift = stats.bits == 32 ? 16 : 0;
  for (const StatisticsBin& bin : stats.bins) channel.counts[bin.value >> shift] += bin.count;
  channel.total = stats.total;
  channel.mean = stats.mean;
  channel.variance = stats.variance;
  channel.std_dev = stats.std_dev;
  channel.median = stats.median;
  if (!stats.by_count.empty()) {
    channel.mode = stats.by_count[0].value;
    channel.mode_count = stats.by_count[0].count;
  }
  return channel;
}

}  // namespace

bool CImageConcreteBase::WriteStatistics(const StatisticsRequest& request) {
  const auto fail = [&](std::string text) {
    if (request.error != nullptr) *request.error = std::move(text);
    return false;
  };
  const std::optional<Rect> inside = WorkArea(request.area, width_, height_);
  if (planes_.empty() || !inside || *inside != request.area) {
    return fail("Nothing to count in the requested area");
  }
  COutputBuffer out;
  if (!out.Open(request.path, "wt")) return fail(StrFormat("Can't open %s for writing", request.path.c_str()));
  for (uint32_t c = 0; c < planes_.size(); ++c) {
    ComponentStatistics stats = ComputeStatistics(planes_[c], request.area, mask_);
    stats.name = ComponentName(StatisticsLetter(*this, c), SignificantBits());
    std::string text;
    AppendStatisticsText(text, stats);
    out.Append(text);
    if (!out.FlushIfFull()) break;
  }
  if (!out.Close()) return fail(StrFormat("Unable to write %s", request.path.c_str()));
  return true;
}

bool CImageConcreteBase::Histogram(uint32_t selector, HistogramResult& result) {
  if (selector > 1 || planes_.empty()) return false;
  // Selector 1 recounts even when the region stayed (the pixels may have
  // changed under it); selector 0 keeps the counts of an unchanged region.
  if (!histogram_cache_ || region_changed_ || selector == 1) {
    const std::optional<Rect> area = WorkArea(roi_, width_, height_);
    if (!area) return false;
    auto fresh = std::make_unique<HistogramResult>();
    fresh->bins = bits_ == 8 ? 256 : 65536;
    for (const Plane& plane : planes_) {
      fresh->channels.push_back(ChannelOf(ComputeStatistics(plane, *area, mask_)));
    }
    histogram_cache_ = std::move(fresh);
    region_changed_ = false;
  }
  result = *histogram_cache_;
  return true;
}

void CImageConcreteBase::Refresh() {
  display_.reset();
  alternate_display_.reset();
  BuildDisplay();
  BuildAlternate(0, 0);
}

bool CImageConcreteBase::GetSampleValues(int64_t x, int64_t y,
                                         std::array<uint32_t, 3>& values) const {
  if (planes_.empty() || !InsideImage(x, y, width_, height_)) return false;
  const auto ux = static_cast<uint32_t>(x);
  const auto uy = static_cast<uint32_t>(y);
  const std::vector<Plane>& shown = filtered_planes_.empty() ? planes_ : filtered_planes_;
  for (size_t c = 0; c < values.size(); ++c) {
    values[c] = shown[std::min(c, shown.size() - 1)].SampleAt(ux, uy);
  }
  if (kept_filter_ != nullptr && filtered_planes_.empty()) {
    // The shown values from the kept tables, as the filter would have written them.
    const FilterTables& t = *kept_filter_;
    const size_t n = planes_.size();
    bool pass[3] = {false, false, false};
    bool all = true;
    for (size_t c = 0; c < n; ++c) {
      pass[c] = t.table[c][values[c]] != 0;
      all = all && pass[c];
    }
    for (size_t c = 0; c < n; ++c) {
      if (!(kept_filter_all_ && n == 3 ? all : pass[c])) values[c] = t.negation[c];
    }
    if (n == 1) values[1] = values[2] = values[0];
  }
  return true;
}

void CImageConcreteBase::KeepFilterTablesOnly(std::shared_ptr<const FilterTables> tables, bool all_components) {
  kept_filter_ = std::move(tables);
  kept_filter_all_ = all_components;
  filtered_planes_.clear();
  filtered_planes_.shrink_to_fit();
}

void CImageConcreteBase::SetFilter(std::vector<uint32_t> mask, std::vector<Plane> shown,
                                   std::string label) {
  mask_ = std::move(mask);
  filtered_planes_ = std::move(shown);
  kept_filter_.reset();
  filter_label_ = std::move(label);
  display_.reset();
  region_changed_ = true;  // statistics count only masked-in pixels
}

void CImageConcreteBase::ClearFilter() {
  mask_.clear();
  filtered_planes_.clear();
  kept_filter_.reset();
  filter_label_.clear();
  display_.reset();
  region_changed_ = true;
}

bool CImageConcreteBase::GetDisplayedValue(int64_t x, int64_t y, uint32_t& color) const {
  const DisplayRendition* shown = alternate_display_ ? alternate_display_.get() : display_.get();
  if (shown == nullptr || !InsideImage(x, y, shown->width, shown->height)) return false;
  color = shown->pixels[static_cast<size_t>(y) * shown->width + static_cast<size_t>(x)];
  return true;
}

bool CImageConcreteBase::SetRegionOfInterest(const Rect& region) {
  const bool changed = region.IsNone() || region != roi_;
  roi_ = region;
  region_changed_ = changed;
  return changed;
}

void CImageConcreteBase::SetViewPosition(uint32_t x, uint32_t y) {
  view_x_ = x;
  view_y_ = y;
}

void CImageConcreteBase::GetSize(uint32_t& width, uint32_t& height) const {
  width = width_;
  height = height_;
}

void CImageConcreteBase::GetViewPosition(uint32_t& x, uint32_t& y) const {
  x = view_x_;
  y = view_y_;
}

bool CImageConcreteBase::IsSelected(int64_t x, int64_t y) const {
  if (mask_.empty()) return true;
  if (!InsideImage(x, y, width_, height_)) return false;
  const uint64_t i = static_cast<uint64_t>(y) * width_ + static_cast<uint64_t>(x);
  if (i / 32 >= mask_.size()) return false;
  return (mask_[i / 32] >> (i % 32)) & 1u;
}

bool CImageConcreteBase::AlignToChromaGrid(Rect&) const { return false; }

bool CImageConcreteBase::AdoptPlanes(std::vector<Plane> planes) {
  if (planes.size() != ComponentCount()) return false;
  for (const Plane& plane : planes) {
    if (plane.empty() || plane.bits() != planes[0].bits() || plane.width() != planes[0].width() ||
        plane.height() != planes[0].height()) {
      return false;
    }
  }
  SetPlanes(std::move(planes));
  return true;
}

uint64_t CImageConcreteBase::ComputeRawByteSize() const {
  uint64_t total = 0;
  for (const Plane& plane : planes_) total += plane.byte_size();
  return total;
}

void CImageConcreteBase::SetPlanes(std::vector<Plane> planes) {
  planes_ = std::move(planes);
  bits_ = planes_.empty() ? 0 : planes_[0].bits();
  width_ = planes_.empty() ? 0 : planes_[0].width();
  height_ = planes_.empty() ? 0 : planes_[0].height();
  raw_byte_size_ = ComputeRawByteSize();
  display_.reset();
  alternate_display_.reset();
  histogram_cache_.reset();
  mask_.clear();
  filtered_planes_.clear();
  filter_label_.clear();
  roi_ = Rect::None();
  region_changed_ = true;
}

std::vector<Plane> CImageConcreteBase::PrepareLoad(uint8_t* data, uint64_t byte_count,
                                                   uint64_t expected, int32_t bpp, uint32_t width,
                                                   uint32_t height, uint32_t count, InputSwap swap) {
  const uint32_t bits = BppMagnitude(bpp);
  if (!IsSupportedBits(bits)) return {};
  const bool empty_request = data == nullptr && byte_count == 0;
  if (!empty_request && (data == nullptr || byte_count != expected)) return {};
  std::vector<Plane> planes(count);
  for (Plane& plane : planes) {
    if (!plane.Allocate(bits, width, height, empty_request)) return {};
  }
  if (!empty_request && swap == InputSwap::Here) SwapBytesInPlace(data, byte_count, bpp);
  return planes;
}

void CImageConcreteBase::FinishLoad(std::vector<Plane> planes, uint64_t byte_count, int32_t bpp) {
  SetPlanes(std::move(planes));
  if (byte_count != 0) raw_byte_size_ = byte_count;
  big_endian_ = bpp == -16 || bpp == -32;
}

}  // namespace korvanel
