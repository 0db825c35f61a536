#include "image/memory_budget.h"

#include <cstdio>
#include <cstring>
#include <limits>

namespace korvanel {

uint64_t AvailableMemoryBytes() {
  std::FILE* file = std::fopen("/proc/meminfo", "r");
  if (file == nullptr) return std::numeric_limits<uint64_t>::max();
  char line[256];
  uint64_t available = std::numeric_limits<uint64_t>::max();
  while (std::fgets(line, sizeof(line), file) != nullptr) {
    unsigned long long kib = 0;
    if (std::sscanf(line, "MemAvailable: %llu kB", &kib) == 1) {
      available = static_cast<uint64_t>(kib) * 1024;
      break;
    }
  }
  std::fclose(file);
  return available;
}

bool MemoryAvailableFor(uint64_t bytes) {
  return bytes < kCheckedAllocationBytes || bytes <= AvailableMemoryBytes();
}

}  // namespace korvanel
