#pragma once

// Large pixel blocks (planes, display renditions, file bytes) are kept for
// reuse when they are freed. Memory the system hands out for the first time
// costs a page fault per page at its first touch, about 12 us per 4 KiB page
// on a virtual machine, and one 4K frame touches about 70 MB. Users open frame
// after frame of one size, reload changed files, close and reopen: the next
// image of that size gets the pages the last one left, already mapped.
//
// Blocks from kRecycledBlockBytes on are mapped by the recycler itself,
// aligned to and sized in whole 2 MiB steps so that huge pages cover them
// (see huge_pages.h). A freed block is parked under that size and serves the
// next request of the same size only. What is parked is bounded by what the
// next open or reload can take: a few blocks of each size (one image's
// planes), a few blocks in all and a byte cap (one deep 4K frame's file,
// planes and rendition); the oldest go back to the system first. Smaller
// blocks come from malloc as before. Thread-safe.

#include <array>
#include <cstddef>
#include <cstdint>
#include <mutex>

namespace korvanel {

// Blocks from this size on are recycled.
inline constexpr size_t kRecycledBlockBytes = size_t{1} << 20;
// Recycled blocks are aligned to and sized in steps of this many bytes.
inline constexpr size_t kRecycledBlockStep = size_t{2} << 20;

class CBlockRecycler {
 public:
  static constexpr size_t kMaxParkedBlocks = 8;

  struct Limits {
    size_t blocks = kMaxParkedBlocks;  // at most kMaxParkedBlocks
    size_t bytes = 0;
    size_t blocks_per_size = kMaxParkedBlocks;  // of one step size
  };

  explicit CBlockRecycler(Limits limits);
  // Returns the parked blocks. Blocks still out must not be given back later.
  ~CBlockRecycler();
  CBlockRecycler(const CBlockRecycler&) = delete;
  CBlockRecycler& operator=(const CBlockRecycler&) = delete;

  // The one every plane, rendition and file buffer uses; never destroyed, so
  // images freed during exit still have somewhere to go.
  static CBlockRecycler& Shared();

  // At least `bytes` bytes, all zero when `zero`, else undefined; null when
  // the system refuses.
  void* Take(size_t bytes, bool zero);
  // Gives back a block that Take returned for the same `bytes` (null is
  // ignored).
  void Give(void* block, size_t bytes);
  // Returns every parked block to the system.
  void ReleaseParked();

  size_t ParkedBlocks() const;
  size_t ParkedBytes() const;
  // Requests served from a parked block since construction.
  uint64_t Reuses() const;

  // The size a recycled block of `bytes` really has.
  static size_t StepBytes(size_t bytes);

 private:
  struct Parked {
    void* block = nullptr;
    size_t bytes = 0;  // its StepBytes
  };

  void* TakeParked(size_t step_bytes);
  // Evicts the oldest until one more block of `step_bytes` fits; false when
  // it cannot fit at all.
  bool MakeRoom(size_t step_bytes, std::array<Parked, kMaxParkedBlocks>& evicted, size_t& evicted_count);
  // Takes parked_[index] out of the list, keeping the order of the rest.
  Parked Unpark(size_t index);

  const Limits limits_;
  mutable std::mutex mutex_;
  std::array<Parked, kMaxParkedBlocks> parked_{};  // oldest first
  size_t parked_count_ = 0;
  size_t parked_bytes_ = 0;
  uint64_t reuses_ = 0;
};

// A block from the shared recycler that goes back to it when destroyed.
class RecycledBlock {
 public:
  RecycledBlock() = default;
  // Empty when the system refuses.
  static RecycledBlock Take(size_t bytes, bool zero);

  RecycledBlock(RecycledBlock&& other) noexcept;
  RecycledBlock& operator=(RecycledBlock&& other) noexcept;
  RecycledBlock(const RecycledBlock&) = delete;
  RecycledBlock& operator=(const RecycledBlock&) = delete;
  ~RecycledBlock() { Reset(); }

  void Reset();
  bool empty() const { return data_ == nullptr; }
  uint8_t* data() { return data_; }
  const uint8_t* data() const { return data_; }
  size_t size() const { return size_; }

 private:
  RecycledBlock(uint8_t* data, size_t size) : data_(data), size_(size) {}

  uint8_t* data_ = nullptr;
  size_t size_ = 0;
};

}  // namespace korvanel
