#pragma once

// A byte-shuffle kernel for interleaved 8- and 16-bit groups. A step reads
// one to three 16-byte vectors of input and writes exactly 16 bytes of every
// plane: each output byte is gathered from one of the vectors, one shuffle
// mask per plane and vector. Used where the processor has SSSE3; the callers
// keep a portable path for the rest.

#include <array>
#include <cstdint>

namespace korvanel {

// Output bytes per plane and step; input vectors a step may read.
inline constexpr uint32_t kShuffleBytes = 16;
inline constexpr uint32_t kMaxShuffleInputs = 3;

// masks[c][k][j]: the byte of input vector k that output byte j of plane c
// takes, 0x80 where it takes none from vector k.
using ShuffleMasks =
    std::array<std::array<std::array<uint8_t, kShuffleBytes>, kMaxShuffleInputs>, 3>;

bool ShuffleKernelAvailable();

// Runs `steps` steps: step i reads inputs * 16 bytes at src + i * src_step
// and writes 16 bytes at dst[c] + i * 16 for each of the three planes. The
// caller guarantees that every read and write stays inside its buffers.
// `inputs` is 1 to kMaxShuffleInputs.
void RunShuffleSteps(const uint8_t* src, uint64_t src_step, uint32_t inputs, uint8_t* const dst[3],
                     uint64_t steps, const ShuffleMasks& masks);

}  // namespace korvanel
