#include "image/interleave_plan.h"

#include <algorithm>

#include "image/interleave_shuffle.h"
#include "image/sample_kernels.h"
#include "image/sample_type.h"

namespace korvanel {

namespace {

uint64_t PixelCount(const Plane& plane) { return uint64_t{plane.width()} * plane.height(); }

}  // namespace

InterleavePlan::InterleavePlan(std::string_view letters, std::string_view components,
                               const std::array<uint32_t, 3>& counts, uint32_t bits)
    : bits_(bits) {
  pixels_per_group_ = std::max({counts[0], counts[1], counts[2], 1u});
  uint32_t seen[3] = {0, 0, 0};
  for (char letter : letters) {
    const size_t c = components.find(letter);
    if (c == std::string_view::npos || c > 2 || counts[c] == 0) continue;
    const uint32_t repeat = pixels_per_group_ / counts[c];
    positions_.push_back({static_cast<uint32_t>(c), seen[c] * repeat, repeat});
    ++seen[c];
  }
  BuildShuffleMasks();
}

void InterleavePlan::BuildShuffleMasks() {
  const uint32_t bytes = bits_ / 8;
  const uint32_t out_bytes = pixels_per_group_ * bytes;  // of each plane, per group
  if (bytes == 0 || bytes > 2 || positions_.empty() || kShuffleBytes % out_bytes != 0 ||
      !ShuffleKernelAvailable()) {
    return;
  }
  // A step fills 16 bytes of every plane: that many whole groups. Each plane
  // has at most m samples a group, so their input fits in three vectors.
  const uint32_t groups = kShuffleBytes / out_bytes;
  const uint64_t group_bytes = positions_.size() * uint64_t{bytes};
  const uint64_t in_bytes = groups * group_bytes;
  if (in_bytes > kMaxShuffleInputs * kShuffleBytes) return;
  ShuffleMasks masks;
  for (auto& plane : masks) {
    for (auto& vector : plane) vector.fill(0x80);
  }
  for (uint32_t c = 0; c < 3; ++c) {
    for (uint32_t j = 0; j < kShuffleBytes; ++j) {
      const uint32_t pixel = j / bytes;
      const uint32_t g = pixel / pixels_per_group_;
      const uint32_t q = pixel % pixels_per_group_;
      bool found = false;
      for (uint32_t p = 0; p < positions_.size() && !found; ++p) {
        const InterleavePosition& pos = positions_[p];
        if (pos.plane != c || q < pos.first_pixel || q >= pos.first_pixel + pos.repeat) continue;
        const uint64_t source = (g * positions_.size() + p) * bytes + j % bytes;
        masks[c][source / kShuffleBytes][j] = static_cast<uint8_t>(source % kShuffleBytes);
        found = true;
      }
      // A plane without samples is left alone by the portable walk; a step
      // cannot skip bytes, so such layouts stay on that walk.
      if (!found) return;
    }
  }
  shuffle_masks_ = masks;
  shuffle_inputs_ = static_cast<uint32_t>((in_bytes + kShuffleBytes - 1) / kShuffleBytes);
  shuffle_groups_ = groups;
}

uint64_t InterleavePlan::GroupCount(uint64_t pixels) const {
  return (pixels + pixels_per_group_ - 1) / pixels_per_group_;
}

void InterleavePlan::RunAll(const uint8_t* src, uint64_t byte_count, Plane* const planes[3]) const {
  RunGroups(0, GroupCount(PixelCount(*planes[0])), src, byte_count, planes);
}

void InterleavePlan::RunOn(IParallelRunner* runner, const uint8_t* src, uint64_t byte_count,
                           Plane* const planes[3]) const {
  // Below two bands of this many groups a band costs more to hand over than
  // to unpack.
  constexpr uint64_t kMinGroupsPerBand = 64 * 1024;
  const Plane& first = *planes[0];
  if (first.width() == 0 || first.height() == 0) return;
  const uint64_t width = first.width();
  // A band of rows owns the groups whose first pixel lies in it.
  const auto first_group = [&](uint64_t row) { return GroupCount(row * width); };
  const Rect rows{0, 0, first.width() - 1, first.height() - 1};
  RunInBands(
      rows, runner, nullptr,
      [&](const Rect& band, IRowObserver*) {
        RunGroups(first_group(band.min_y), first_group(uint64_t{band.max_y} + 1), src, byte_count, planes);
        return true;
      },
      2 * kMinGroupsPerBand * pixels_per_group_);
}

void InterleavePlan::RunGroups(uint64_t group_begin, uint64_t group_end, const uint8_t* src,
                               uint64_t byte_count, Plane* const planes[3]) const {
  uint64_t done = group_begin;
  if (shuffle_groups_ > 0) {
    const uint64_t bytes = bits_ / 8;
    const uint64_t group_bytes = positions_.size() * bytes;
    const uint64_t out_bytes = pixels_per_group_ * bytes;
    const uint64_t step_in = shuffle_groups_ * group_bytes;
    const uint64_t read = uint64_t{shuffle_inputs_} * kShuffleBytes;
    // Steps cover whole groups of this band that lie inside the plane, and
    // each step's reads (which may pass its own groups) lie in the input.
    const uint64_t whole_end = std::min(group_end, PixelCount(*planes[0]) / pixels_per_group_);
    const uint64_t start = group_begin * group_bytes;
    if (whole_end > group_begin && byte_count >= read && start <= byte_count - read) {
      const uint64_t steps = std::min((whole_end - group_begin) / shuffle_groups_,
                                      (byte_count - read - start) / step_in + 1);
      if (steps > 0) {
        uint8_t* const dst[3] = {planes[0]->bytes() + group_begin * out_bytes,
                                 planes[1]->bytes() + group_begin * out_bytes,
                                 planes[2]->bytes() + group_begin * out_bytes};
        RunShuffleSteps(src + start, step_in, shuffle_inputs_, dst, steps, shuffle_masks_);
        done = group_begin + steps * shuffle_groups_;
      }
    }
  }
  RunGroupsPortable(done, group_end, src, byte_count, planes);
}

void InterleavePlan::RunGroupsPortable(uint64_t group_begin, uint64_t group_end, const uint8_t* src,
                                       uint64_t byte_count, Plane* const planes[3]) const {
  // Position by position over cache-sized chunks, so every pass over a
  // chunk finds its bytes still in cache.
  constexpr uint64_t kChunkBytes = 64 * 1024;
  const uint64_t chunk = std::max<uint64_t>(1, kChunkBytes / (positions_.size() * (bits_ / 8)));
  for (uint64_t g0 = group_begin; g0 < group_end; g0 += chunk) {
    const uint64_t g1 = std::min(group_end, g0 + chunk);
    for (uint32_t p = 0; p < positions_.size(); ++p) RunPosition(p, g0, g1, src, byte_count, planes);
  }
}

void InterleavePlan::RunPosition(uint32_t position, uint64_t group_begin, uint64_t group_end,
                                 const uint8_t* src, uint64_t byte_count,
                                 Plane* const planes[3]) const {
  const InterleavePosition& pos = positions_[position];
  Plane& plane = *planes[pos.plane];
  const uint64_t pixels = PixelCount(plane);
  const uint64_t group_samples = positions_.size();
  const uint64_t bytes = bits_ / 8;
  const uint64_t m = pixels_per_group_;
  const uint64_t available = byte_count / bytes;  // whole samples in the input
  // Groups whose sample exists and whose pixels all lie inside the plane.
  const uint64_t with_sample =
      available > position ? (available - position + group_samples - 1) / group_samples : 0;
  const uint64_t full_end = std::min({group_end, pixels / m, with_sample});

  DispatchBits(bits_, [&]<typename T>(std::type_identity<T>) {
    T* dst = plane.Row<T>(0);
    const uint8_t* first = src + position * bytes;
    if (group_begin < full_end) {
      SpreadStridedAny<T>(first, group_samples * bytes, dst + pos.first_pixel, m, pos.repeat,
                          group_begin, full_end);
    }
    // The last, partial group (a pixel count that is not a multiple of the
    // group) stays inside the plane; a pixel whose sample is missing from
    // the file repeats the last sample of this position.
    for (uint64_t g = std::max(group_begin, full_end); g < group_end; ++g) {
      const uint64_t sample = g * group_samples + position;
      T v{0};
      if (sample < available) {
        v = LoadSample<T>(src + sample * bytes);
      } else if (available > position) {
        const uint64_t last = position + (available - 1 - position) / group_samples * group_samples;
        v = LoadSample<T>(src + last * bytes);
      }
      const uint64_t begin = g * m + pos.first_pixel;
      for (uint64_t p = begin; p < begin + pos.repeat && p < pixels; ++p) dst[p] = v;
    }
  });
}

}  // namespace korvanel
