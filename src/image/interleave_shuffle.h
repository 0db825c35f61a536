#pragma once

// A byte-shuffle kernel for interleaved 8- and 16-bit groups: each 16-byte
// step of input is shuffled into up to 16 bytes of every plane. Used where
// the processor has SSSE3; the callers keep a portable path for the rest.

#include <array>
#include <cstdint>

namespace korvanel {

bool ShuffleKernelAvailable();

// Runs `steps` steps: step i reads 16 bytes at src + i * src_step and writes
// 16 bytes at dst[c] + i * dst_step for each of the three planes. The caller
// guarantees that every read and write stays inside its buffers (the bytes
// of a step beyond dst_step are overwritten by the next step or lie in the
// caller's own range).
void RunShuffleSteps(const uint8_t* src, uint64_t src_step, uint8_t* const dst[3],
                     uint64_t dst_step, uint64_t steps,
                     const std::array<std::array<uint8_t, 16>, 3>& masks);

}  // namespace korvanel
