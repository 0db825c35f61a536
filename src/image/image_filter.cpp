#include "image/image_filter.h"

#include <atomic>
#include <new>

#include "image/sample_type.h"

namespace korvanel {

namespace {

// Appends the mask bits of consecutive pixels. Words that lie wholly inside
// the run are this band's alone and are stored plainly; the partial words at
// its ends may be shared with another band's row and are merged atomically.
class MaskWriter {
 public:
  explicit MaskWriter(std::vector<uint32_t>& mask) : mask_(mask) {}

  void Start(uint64_t first_pixel) {
    word_ = first_pixel / 32;
    pos_ = static_cast<uint32_t>(first_pixel % 32);
    covered_ = pos_ == 0 ? ~0u : ~0u << pos_;
    bits_ = 0;
  }

  void Put(bool in) {
    bits_ |= uint32_t{in} << pos_;
    if (++pos_ == 32) {
      Store();
      ++word_;
      pos_ = 0;
      covered_ = ~0u;
      bits_ = 0;
    }
  }

  // Ends the run: the last word is partial unless the run ended on a boundary.
  void Finish() {
    if (pos_ == 0) return;
    covered_ &= pos_ == 32 ? ~0u : (1u << pos_) - 1;
    Store();
  }

 private:
  void Store() {
    if (covered_ == ~0u) {
      mask_[word_] = bits_;
      return;
    }
    std::atomic_ref<uint32_t> target(mask_[word_]);
    target.fetch_and(~covered_ | bits_, std::memory_order_relaxed);
    target.fetch_or(bits_, std::memory_order_relaxed);
  }

  std::vector<uint32_t>& mask_;
  uint64_t word_ = 0;
  uint32_t pos_ = 0;
  uint32_t covered_ = 0;
  uint32_t bits_ = 0;
};

template <typename T>
void FilterGrayRow(const T* src, T* shown, const uint8_t* table, T negation, uint32_t count, MaskWriter& mask) {
  for (uint32_t x = 0; x < count; ++x) {
    const T v = src[x];
    const bool in = table[v] != 0;
    shown[x] = in ? v : negation;
    mask.Put(in);
  }
}

template <typename T>
void FilterThreeRow(const T* const src[3], T* const shown[3], const FilterTables& tables,
                    bool all_components, uint32_t count, MaskWriter& mask) {
  const uint8_t* t0 = tables.table[0].data();
  const uint8_t* t1 = tables.table[1].data();
  const uint8_t* t2 = tables.table[2].data();
  const T n0 = static_cast<T>(tables.negation[0]);
  const T n1 = static_cast<T>(tables.negation[1]);
  const T n2 = static_cast<T>(tables.negation[2]);
  for (uint32_t x = 0; x < count; ++x) {
    const T a = src[0][x], b = src[1][x], c = src[2][x];
    const bool pa = t0[a] != 0, pb = t1[b] != 0, pc = t2[c] != 0;
    if (all_components) {
      const bool in = pa && pb && pc;
      shown[0][x] = in ? a : n0;
      shown[1][x] = in ? b : n1;
      shown[2][x] = in ? c : n2;
      mask.Put(in);
    } else {
      shown[0][x] = pa ? a : n0;
      shown[1][x] = pb ? b : n1;
      shown[2][x] = pc ? c : n2;
      mask.Put(pa || pb || pc);
    }
  }
}

}  // namespace

bool BeginFilter(CImageConcreteBase& image, std::string label, bool whole_image) {
  const uint32_t bits = image.GetBitsPerComponent();
  if (bits != 8 && bits != 16) return false;
  uint32_t width = 0, height = 0;
  image.GetSize(width, height);
  const uint64_t pixels = uint64_t{width} * height;
  std::vector<uint32_t> mask;
  std::vector<Plane> shown;
  try {
    // Every bit set, including the unused tail of the last word.
    mask.assign(static_cast<size_t>((pixels + 31) / 32), ~uint32_t{0});
  } catch (const std::bad_alloc&) {
    return false;
  }
  for (uint32_t c = 0; c < image.PlaneCount(); ++c) {
    // A filter over the whole image writes every shown sample itself.
    std::optional<Plane> copy;
    if (whole_image) {
      copy.emplace();
      if (!copy->Allocate(bits, width, height)) return false;
    } else {
      copy = image.GetPlane(c).Crop(0, 0, width, height);
      if (!copy) return false;
    }
    shown.push_back(std::move(*copy));
  }
  image.SetFilter(std::move(mask), std::move(shown), std::move(label));
  return true;
}

bool ApplyFilterBand(CImageConcreteBase& image, const FilterTables& tables, bool all_components,
                     const Rect& band, IRowObserver* observer) {
  const uint32_t components = image.PlaneCount();
  // The tables hold 2^bits entries: only 8 and 16 bits are ever filtered.
  if ((tables.bits != 8 && tables.bits != 16) || !image.HasFilter() ||
      tables.bits != image.GetBitsPerComponent()) {
    return false;
  }
  uint32_t width = 0, height = 0;
  image.GetSize(width, height);
  if (band.max_x >= width || band.max_y >= height || band.min_x > band.max_x || band.min_y > band.max_y) {
    return false;
  }
  std::vector<Plane>& shown = image.FilteredPlanes();
  MaskWriter mask(image.MutableSelectionMask());
  const uint32_t count = band.max_x - band.min_x + 1;
  bool finished = true;
  const bool dispatched = DispatchBits(tables.bits, [&]<typename T>(std::type_identity<T>) {
    for (uint32_t y = band.min_y; y <= band.max_y && finished; ++y) {
      mask.Start(uint64_t{y} * width + band.min_x);
      if (components == 1) {
        FilterGrayRow<T>(image.GetPlane(0).Row<T>(y) + band.min_x, shown[0].Row<T>(y) + band.min_x,
                         tables.table[0].data(), static_cast<T>(tables.negation[0]), count, mask);
      } else {
        const T* src[3];
        T* dst[3];
        for (uint32_t c = 0; c < 3; ++c) {
          src[c] = image.GetPlane(c).Row<T>(y) + band.min_x;
          dst[c] = shown[c].Row<T>(y) + band.min_x;
        }
        FilterThreeRow<T>(src, dst, tables, all_components, count, mask);
      }
      mask.Finish();
      finished = ContinueAfterRow(observer, count);
    }
  });
  return dispatched && finished;
}

bool RebuildShownCopy(CImageConcreteBase& image) {
  const std::shared_ptr<const FilterTables> tables = image.KeptFilterTables();
  if (tables == nullptr) return false;
  uint32_t width = 0, height = 0;
  image.GetSize(width, height);
  std::vector<Plane>& shown = image.FilteredPlanes();
  shown.resize(image.PlaneCount());
  for (Plane& plane : shown) {
    if (!plane.Allocate(image.GetBitsPerComponent(), width, height)) {
      shown.clear();
      return false;
    }
  }
  // The mask is rewritten with the bits it already holds.
  return ApplyFilterBand(image, *tables, image.KeptFilterAllComponents(), {0, 0, width - 1, height - 1}, nullptr);
}

}  // namespace korvanel
