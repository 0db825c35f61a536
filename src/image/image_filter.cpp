#include "image/image_filter.h"

#include <atomic>
#include <new>

#include "image/sample_type.h"

namespace korvanel {

namespace {

// Writes the bits of pixels [first, first + count) from `bits` (bit k of the
// run = pixel first + k) into the mask. Words shared with other rows are
// updated atomically, since another band may be writing them.
class MaskWriter {
 public:
  explicit MaskWriter(std::vector<uint32_t>& mask) : mask_(mask) {}

  void Put(uint64_t pixel, bool in) {
    const uint64_t word = pixel / 32;
    if (word != word_) {
      Commit();
      word_ = word;
    }
    const uint32_t bit = 1u << (pixel % 32);
    covered_ |= bit;
    if (in) bits_ |= bit;
  }

  void Commit() {
    if (covered_ == 0) return;
    std::atomic_ref<uint32_t> target(mask_[word_]);
    target.fetch_and(~covered_ | bits_, std::memory_order_relaxed);
    target.fetch_or(bits_, std::memory_order_relaxed);
    covered_ = bits_ = 0;
  }

 private:
  std::vector<uint32_t>& mask_;
  uint64_t word_ = ~uint64_t{0};
  uint32_t covered_ = 0;
  uint32_t bits_ = 0;
};

template <typename T>
void FilterGrayRow(const T* src, T* shown, const uint8_t* table, T negation, uint64_t first_pixel,
                   uint32_t count, MaskWriter& mask) {
  for (uint32_t x = 0; x < count; ++x) {
    const T v = src[x];
    const bool in = table[v] != 0;
    shown[x] = in ? v : negation;
    mask.Put(first_pixel + x, in);
  }
}

template <typename T>
void FilterThreeRow(const T* const src[3], T* const shown[3], const FilterTables& tables,
                    bool all_components, uint64_t first_pixel, uint32_t count, MaskWriter& mask) {
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
      mask.Put(first_pixel + x, in);
    } else {
      shown[0][x] = pa ? a : n0;
      shown[1][x] = pb ? b : n1;
      shown[2][x] = pc ? c : n2;
      mask.Put(first_pixel + x, pa || pb || pc);
    }
  }
}

}  // namespace

bool BeginFilter(CImageConcreteBase& image, std::string label) {
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
    std::optional<Plane> copy = image.GetPlane(c).Crop(0, 0, width, height);
    if (!copy) return false;
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
      const uint64_t first_pixel = uint64_t{y} * width + band.min_x;
      if (components == 1) {
        FilterGrayRow<T>(image.GetPlane(0).Row<T>(y) + band.min_x, shown[0].Row<T>(y) + band.min_x,
                         tables.table[0].data(), static_cast<T>(tables.negation[0]), first_pixel, count,
                         mask);
      } else {
        const T* src[3];
        T* dst[3];
        for (uint32_t c = 0; c < 3; ++c) {
          src[c] = image.GetPlane(c).Row<T>(y) + band.min_x;
          dst[c] = shown[c].Row<T>(y) + band.min_x;
        }
        FilterThreeRow<T>(src, dst, tables, all_components, first_pixel, count, mask);
      }
      mask.Commit();
      finished = ContinueAfterRow(observer, count);
    }
  });
  return dispatched && finished;
}

}  // namespace korvanel
