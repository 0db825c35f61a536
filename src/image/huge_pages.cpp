#include "image/huge_pages.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

namespace korvanel {

void AdviseHugePages(void* data, size_t bytes) {
  if (data == nullptr || bytes < kHugePageAdviceBytes) return;
  const auto page = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
  const auto begin = (reinterpret_cast<uintptr_t>(data) + page - 1) / page * page;
  const auto end = (reinterpret_cast<uintptr_t>(data) + bytes) / page * page;
  if (end > begin) madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
}

}  // namespace korvanel
