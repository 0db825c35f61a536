#include "image/layout_stage.h"

#include <algorithm>

#include "image/image_factory.h"
#include "image/sample_kernels.h"
#include "image/sample_type.h"
#include "image/text_util.h"

namespace korvanel {

namespace {

// The words that break the attribute's promise are the ones with a bit in
// `stray_mask`: above n for LSB, below the top n for MSB. Clean files are
// the rule, so one OR over all words (a plain vector loop, and the byte
// order can wait until the end) settles most files; only a file with stray
// bits is counted word by word. The byte order is a template argument, so
// neither loop holds a branch.
template <typename T, bool BigEndian>
T Swapped(T word) {
  if constexpr (BigEndian && sizeof(T) > 1) return ByteSwap(word);
  return word;
}

template <typename T, bool BigEndian>
uint64_t CountMasked(const uint8_t* data, uint64_t count, T stray_mask) {
  T any = 0;
  for (uint64_t i = 0; i < count; ++i) any = static_cast<T>(any | LoadSample<T>(data + i * sizeof(T)));
  if ((Swapped<T, BigEndian>(any) & stray_mask) == 0) return 0;
  uint64_t stray = 0;
  for (uint64_t i = 0; i < count; ++i) {
    stray += (Swapped<T, BigEndian>(LoadSample<T>(data + i * sizeof(T))) & stray_mask) != 0 ? 1 : 0;
  }
  return stray;
}

uint64_t StrayMask(const RawLayout& raw, uint32_t container) {
  const uint64_t all = container >= 64 ? ~uint64_t{0} : (uint64_t{1} << container) - 1;
  const uint64_t low = (uint64_t{1} << raw.MsbShift(container)) - 1;
  return raw.align == BitAlign::Lsb ? all & ~((uint64_t{1} << raw.bits) - 1) : low;
}

template <bool Up>
void ShiftSamples(const std::vector<Plane*>& planes, uint32_t shift, IParallelRunner* runner) {
  if (shift == 0 || planes.empty() || planes[0]->width() == 0 || planes[0]->height() == 0) return;
  const Rect rows{0, 0, planes[0]->width() - 1, planes[0]->height() - 1};
  RunInBands(rows, runner, nullptr, [&](const Rect& band, IRowObserver*) {
    for (Plane* plane : planes) {
      DispatchBits(plane->bits(), [&]<typename T>(std::type_identity<T>) {
        const uint32_t last = std::min(band.max_y, plane->height() - 1);
        for (uint32_t y = band.min_y; y <= last; ++y) {
          T* row = plane->Row<T>(y);
          for (uint32_t x = 0; x < plane->width(); ++x) {
            row[x] = static_cast<T>(Up ? row[x] << shift : row[x] >> shift);
          }
        }
      });
    }
    return true;
  });
}

}  // namespace

BitCensus CountStraySamples(const uint8_t* data, uint64_t byte_count, int32_t bpp, const RawLayout& raw) {
  BitCensus census;
  const uint32_t container = BppMagnitude(bpp);
  if (raw.Empty() || !IsSupportedBits(container)) return census;
  census.samples = byte_count / (container / 8);
  const uint64_t mask = StrayMask(raw, container);
  DispatchBits(container, [&]<typename T>(std::type_identity<T>) {
    census.stray = bpp < 0 ? CountMasked<T, true>(data, census.samples, static_cast<T>(mask))
                           : CountMasked<T, false>(data, census.samples, static_cast<T>(mask));
  });
  return census;
}

std::string CensusWarning(const BitCensus& census, const RawLayout& raw, uint32_t container) {
  if (census.stray == 0) return {};
  const auto stray = static_cast<unsigned long long>(census.stray);
  const auto samples = static_cast<unsigned long long>(census.samples);
  if (raw.align == BitAlign::Lsb) {
    return StrFormat("Bits: %llu of %llu samples exceed %u bits (MSB-aligned data? try MSB=%u)", stray,
                     samples, raw.bits, raw.bits);
  }
  return StrFormat("Bits: %llu of %llu samples set bits below the top %u of %u (LSB-aligned data? try LSB=%u)",
                   stray, samples, raw.bits, container, raw.bits);
}

void ShiftSamplesDown(std::vector<Plane*> planes, uint32_t shift, IParallelRunner* runner) {
  ShiftSamples<false>(planes, shift, runner);
}

void ShiftSamplesUp(std::vector<Plane*> planes, uint32_t shift, IParallelRunner* runner) {
  ShiftSamples<true>(planes, shift, runner);
}

std::unique_ptr<CImageConcreteBase> LoadWithLayout(const FormatExpression& format, uint8_t* data,
                                                   uint64_t byte_count, uint32_t width, uint32_t height,
                                                   ILineSink& log, IParallelRunner* runner,
                                                   std::string* warning) {
  if (format.raw.Empty()) return LoadWithFormat(format, data, byte_count, width, height, log, runner);
  // Counted before the load, which may swap big-endian words in place.
  const BitCensus census = CountStraySamples(data, byte_count, format.bpp, format.raw);
  std::unique_ptr<CImageConcreteBase> image =
      LoadWithFormat(format, data, byte_count, width, height, log, runner);
  if (!image) return nullptr;
  std::vector<Plane*> planes;
  for (uint32_t i = 0; i < image->PlaneCount(); ++i) planes.push_back(&image->MutablePlane(i));
  ShiftSamplesDown(std::move(planes), format.raw.MsbShift(format.BitsPerComponent()), runner);
  image->SetRawLayout(format.raw);
  const std::string line = CensusWarning(census, format.raw, format.BitsPerComponent());
  if (!line.empty()) {
    log.AddLine(line);
    if (warning != nullptr) *warning = line;
  }
  return image;
}

}  // namespace korvanel
