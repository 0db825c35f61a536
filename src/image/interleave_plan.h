#pragma once

// Unpacking of interleaved files: the layout's samples repeat as groups
// ("YUYV", "UYVY", "YYYYUV", "BGR", ...), each group covering m consecutive
// raster pixels, m being the largest component count. A plan is built once
// per image; the work is then split into bands of groups, which write
// disjoint pixels and can run on separate workers.

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "image/interleave_shuffle.h"
#include "image/parallel_runner.h"
#include "image/plane.h"

namespace korvanel {

// Where one sample position of a group goes.
struct InterleavePosition {
  uint32_t plane = 0;        // destination component
  uint32_t first_pixel = 0;  // offset of its pixels inside the group
  uint32_t repeat = 1;       // pixels one sample covers
};

class InterleavePlan {
 public:
  // `letters` names the component of each group position; `components` maps
  // letters to plane indices ("YUV" or "RGB"); `counts` says how often each
  // component occurs in a group.
  InterleavePlan(std::string_view letters, std::string_view components,
                 const std::array<uint32_t, 3>& counts, uint32_t bits);

  uint64_t GroupCount(uint64_t pixels) const;
  // Fills the pixels of groups [group_begin, group_end) and nothing else.
  void RunGroups(uint64_t group_begin, uint64_t group_end, const uint8_t* src, uint64_t byte_count,
                 Plane* const planes[3]) const;
  // Every group in order, on the calling thread.
  void RunAll(const uint8_t* src, uint64_t byte_count, Plane* const planes[3]) const;
  // Every group, in bands of groups spread over `runner` (null: RunAll).
  // Bands, not layout positions: the positions of a group write into the
  // same cache lines, the groups of different bands only at band edges.
  void RunOn(IParallelRunner* runner, const uint8_t* src, uint64_t byte_count,
             Plane* const planes[3]) const;

  // Whether whole runs of groups go through the byte-shuffle kernel.
  bool UsesShuffleKernel() const { return shuffle_groups_ > 0; }
  // The portable path alone, for checking the shuffle kernel against it.
  void RunGroupsPortable(uint64_t group_begin, uint64_t group_end, const uint8_t* src,
                         uint64_t byte_count, Plane* const planes[3]) const;

 private:
  void RunPosition(uint32_t position, uint64_t group_begin, uint64_t group_end, const uint8_t* src,
                   uint64_t byte_count, Plane* const planes[3]) const;
  void BuildShuffleMasks();

  std::vector<InterleavePosition> positions_;
  uint32_t bits_ = 8;
  uint32_t pixels_per_group_ = 1;
  // Byte-shuffle kernel: groups per step (0 = not used), the 16-byte input
  // vectors a step reads, and per plane and vector which byte each output
  // byte takes.
  uint32_t shuffle_groups_ = 0;
  uint32_t shuffle_inputs_ = 0;
  ShuffleMasks shuffle_masks_{};
};

}  // namespace korvanel
