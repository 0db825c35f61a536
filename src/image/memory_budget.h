#pragma once

// How much memory the system can still give, so that huge images are
// refused before they are allocated: Linux overcommits, and an allocation
// that succeeds may still end the process when its pages are first touched.

#include <cstdint>

namespace korvanel {

// MemAvailable of /proc/meminfo in bytes, or UINT64_MAX when it is unknown.
uint64_t AvailableMemoryBytes();

// Requests above this size are checked against the available memory.
inline constexpr uint64_t kCheckedAllocationBytes = uint64_t{256} << 20;

// Whether `bytes` more can be allocated without exhausting the system.
bool MemoryAvailableFor(uint64_t bytes);

}  // namespace korvanel
