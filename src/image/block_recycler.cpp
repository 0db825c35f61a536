#include "image/block_recycler.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "image/huge_pages.h"

#if defined(__SANITIZE_ADDRESS__)
#define KORVANEL_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KORVANEL_ASAN 1
#endif
#endif

#if defined(KORVANEL_ASAN)
#include <sanitizer/asan_interface.h>
#endif

namespace korvanel {

namespace {

// Mapped blocks are no heap blocks to AddressSanitizer: mark parked blocks
// and the slack behind a block's requested end unusable, so that a use after
// Give or an overrun is still reported.
void MarkUnusable([[maybe_unused]] void* begin, [[maybe_unused]] size_t bytes) {
#if defined(KORVANEL_ASAN)
  ASAN_POISON_MEMORY_REGION(begin, bytes);
#endif
}

void MarkUsable([[maybe_unused]] void* begin, [[maybe_unused]] size_t bytes) {
#if defined(KORVANEL_ASAN)
  ASAN_UNPOISON_MEMORY_REGION(begin, bytes);
#endif
}

// Hands out `bytes` of a block of `step_bytes`.
void* HandOut(void* block, size_t bytes, size_t step_bytes) {
  MarkUsable(block, bytes);
  MarkUnusable(static_cast<uint8_t*>(block) + bytes, step_bytes - bytes);
  return block;
}

void Unmap(void* block, size_t step_bytes) {
  MarkUsable(block, step_bytes);
  munmap(block, step_bytes);
}

// Fresh anonymous pages (zero) at a step boundary: the mapping is made one
// step longer and the ends outside the aligned block are returned.
void* MapAligned(size_t step_bytes) {
  const size_t mapped = step_bytes + kRecycledBlockStep;
  void* raw = mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (raw == MAP_FAILED) return nullptr;
  const auto begin = reinterpret_cast<uintptr_t>(raw);
  const uintptr_t aligned = (begin + kRecycledBlockStep - 1) / kRecycledBlockStep * kRecycledBlockStep;
  const size_t head = aligned - begin;
  if (head != 0) munmap(raw, head);
  const size_t tail = mapped - head - step_bytes;
  if (tail != 0) munmap(reinterpret_cast<void*>(aligned + step_bytes), tail);
  void* block = reinterpret_cast<void*>(aligned);
  AdviseHugePages(block, step_bytes);
  return block;
}

// The shared recycler's bounds: what one more load of the largest common
// frame takes, a 16-bit 4K RGB one (file 48 MiB, three 16 MiB planes, a
// 32 MiB rendition), and of one size no more than an image's three planes.
// Blocks freed beyond that (closing many images, dropping renditions of
// hidden ones) go back to the system.
constexpr CBlockRecycler::Limits kSharedLimits{CBlockRecycler::kMaxParkedBlocks, size_t{128} << 20, 3};

}  // namespace

CBlockRecycler::CBlockRecycler(Limits limits)
    : limits_{std::min(limits.blocks, kMaxParkedBlocks), limits.bytes,
              std::min(limits.blocks_per_size, kMaxParkedBlocks)} {}

CBlockRecycler::~CBlockRecycler() { ReleaseParked(); }

CBlockRecycler& CBlockRecycler::Shared() {
  static auto* const shared = new CBlockRecycler(kSharedLimits);
  return *shared;
}

size_t CBlockRecycler::StepBytes(size_t bytes) {
  if (bytes > std::numeric_limits<size_t>::max() - kRecycledBlockStep) return 0;
  return (bytes + kRecycledBlockStep - 1) / kRecycledBlockStep * kRecycledBlockStep;
}

void* CBlockRecycler::Take(size_t bytes, bool zero) {
  if (bytes < kRecycledBlockBytes) {
    // One byte at least, so that an empty block still has an address.
    const size_t size = bytes == 0 ? 1 : bytes;
    return zero ? std::calloc(size, 1) : std::malloc(size);
  }
  const size_t step_bytes = StepBytes(bytes);
  if (step_bytes == 0) return nullptr;
  if (void* block = TakeParked(step_bytes)) {
    HandOut(block, bytes, step_bytes);
    // Only the part handed out: the slack is never read.
    if (zero) std::memset(block, 0, bytes);
    return block;
  }
  void* block = MapAligned(step_bytes);
  if (block == nullptr) {
    // The parked blocks may be what the system is missing.
    ReleaseParked();
    block = MapAligned(step_bytes);
  }
  return block == nullptr ? nullptr : HandOut(block, bytes, step_bytes);
}

void* CBlockRecycler::TakeParked(size_t step_bytes) {
  std::lock_guard lock(mutex_);
  // The newest first: its pages are the likeliest to be in the caches.
  for (size_t i = parked_count_; i-- > 0;) {
    if (parked_[i].bytes != step_bytes) continue;
    ++reuses_;
    return Unpark(i).block;
  }
  return nullptr;
}

CBlockRecycler::Parked CBlockRecycler::Unpark(size_t index) {
  const Parked parked = parked_[index];
  for (size_t j = index + 1; j < parked_count_; ++j) parked_[j - 1] = parked_[j];
  parked_[--parked_count_] = {};
  parked_bytes_ -= parked.bytes;
  return parked;
}

void CBlockRecycler::Give(void* block, size_t bytes) {
  if (block == nullptr) return;
  if (bytes < kRecycledBlockBytes) {
    std::free(block);
    return;
  }
  const size_t step_bytes = StepBytes(bytes);
  std::array<Parked, kMaxParkedBlocks> evicted{};
  size_t evicted_count = 0;
  bool parked = false;
  {
    std::lock_guard lock(mutex_);
    if (MakeRoom(step_bytes, evicted, evicted_count)) {
      MarkUnusable(block, step_bytes);
      parked_[parked_count_++] = {block, step_bytes};
      parked_bytes_ += step_bytes;
      parked = true;
    }
  }
  // System calls outside the lock.
  for (size_t i = 0; i < evicted_count; ++i) Unmap(evicted[i].block, evicted[i].bytes);
  if (!parked) Unmap(block, step_bytes);
}

bool CBlockRecycler::MakeRoom(size_t step_bytes, std::array<Parked, kMaxParkedBlocks>& evicted,
                              size_t& evicted_count) {
  if (limits_.blocks == 0 || limits_.blocks_per_size == 0 || step_bytes > limits_.bytes) return false;
  // The oldest of this size while the size has no room, then the oldest of
  // any size while the whole has none.
  size_t of_size = 0;
  for (size_t i = 0; i < parked_count_; ++i) of_size += parked_[i].bytes == step_bytes ? 1 : 0;
  for (size_t i = 0; of_size >= limits_.blocks_per_size && i < parked_count_;) {
    if (parked_[i].bytes != step_bytes) {
      ++i;
      continue;
    }
    evicted[evicted_count++] = Unpark(i);
    --of_size;
  }
  while (parked_count_ >= limits_.blocks || parked_bytes_ + step_bytes > limits_.bytes) {
    evicted[evicted_count++] = Unpark(0);
  }
  return true;
}

void CBlockRecycler::ReleaseParked() {
  std::array<Parked, kMaxParkedBlocks> released{};
  size_t count = 0;
  {
    std::lock_guard lock(mutex_);
    released = parked_;
    count = parked_count_;
    parked_ = {};
    parked_count_ = 0;
    parked_bytes_ = 0;
  }
  for (size_t i = 0; i < count; ++i) Unmap(released[i].block, released[i].bytes);
}

size_t CBlockRecycler::ParkedBlocks() const {
  std::lock_guard lock(mutex_);
  return parked_count_;
}

size_t CBlockRecycler::ParkedBytes() const {
  std::lock_guard lock(mutex_);
  return parked_bytes_;
}

uint64_t CBlockRecycler::Reuses() const {
  std::lock_guard lock(mutex_);
  return reuses_;
}

RecycledBlock RecycledBlock::Take(size_t bytes, bool zero) {
  auto* data = static_cast<uint8_t*>(CBlockRecycler::Shared().Take(bytes, zero));
  return data == nullptr ? RecycledBlock() : RecycledBlock(data, bytes);
}

RecycledBlock::RecycledBlock(RecycledBlock&& other) noexcept : data_(other.data_), size_(other.size_) {
  other.data_ = nullptr;
  other.size_ = 0;
}

RecycledBlock& RecycledBlock::operator=(RecycledBlock&& other) noexcept {
  if (this != &other) {
    Reset();
    data_ = other.data_;
    size_ = other.size_;
    other.data_ = nullptr;
    other.size_ = 0;
  }
  return *this;
}

void RecycledBlock::Reset() {
  CBlockRecycler::Shared().Give(data_, size_);
  data_ = nullptr;
  size_ = 0;
}

}  // namespace korvanel
