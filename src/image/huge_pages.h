#pragma once

// Large pixel buffers (planes, renditions, file bytes) ask the kernel for
// transparent huge pages. Their first touch is what a fresh process pays
// for: one fault per 4 KiB page, which costs about 12 us on a virtual
// machine, against one fault per 2 MiB with huge pages. Debian enables them
// only for memory that asks ("madvise").

#include <cstddef>

namespace korvanel {

// Buffers from this size on are worth the advice.
inline constexpr size_t kHugePageAdviceBytes = size_t{4} << 20;

// Advises the whole pages inside [data, data + bytes); smaller buffers and
// a refusal by the kernel leave the memory as it was.
void AdviseHugePages(void* data, size_t bytes);

}  // namespace korvanel
