#include "image/interleave_shuffle.h"

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#define KORVANEL_HAVE_SHUFFLE 1
#endif

namespace korvanel {

#if KORVANEL_HAVE_SHUFFLE

bool ShuffleKernelAvailable() {
  static const bool available = __builtin_cpu_supports("ssse3");
  return available;
}

namespace {

// The input count is a template argument, so the step loop keeps every mask
// in a register and has no branch on it.
template <uint32_t kInputs>
__attribute__((target("ssse3"))) void ShuffleSteps(const uint8_t* src, uint64_t src_step,
                                                   uint8_t* const dst[3], uint64_t steps,
                                                   const ShuffleMasks& masks) {
  __m128i mask[3][kInputs];
  for (uint32_t c = 0; c < 3; ++c) {
    for (uint32_t k = 0; k < kInputs; ++k) {
      mask[c][k] = _mm_loadu_si128(reinterpret_cast<const __m128i*>(masks[c][k].data()));
    }
  }
  for (uint64_t i = 0; i < steps; ++i) {
    const uint8_t* in = src + i * src_step;
    __m128i v[kInputs];
    for (uint32_t k = 0; k < kInputs; ++k) {
      v[k] = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + k * kShuffleBytes));
    }
    for (uint32_t c = 0; c < 3; ++c) {
      __m128i out = _mm_shuffle_epi8(v[0], mask[c][0]);
      for (uint32_t k = 1; k < kInputs; ++k) {
        out = _mm_or_si128(out, _mm_shuffle_epi8(v[k], mask[c][k]));
      }
      _mm_storeu_si128(reinterpret_cast<__m128i*>(dst[c] + i * kShuffleBytes), out);
    }
  }
}

}  // namespace

void RunShuffleSteps(const uint8_t* src, uint64_t src_step, uint32_t inputs, uint8_t* const dst[3],
                     uint64_t steps, const ShuffleMasks& masks) {
  switch (inputs) {
    case 1: ShuffleSteps<1>(src, src_step, dst, steps, masks); break;
    case 2: ShuffleSteps<2>(src, src_step, dst, steps, masks); break;
    case 3: ShuffleSteps<3>(src, src_step, dst, steps, masks); break;
    default: break;
  }
}

#else

bool ShuffleKernelAvailable() { return false; }

void RunShuffleSteps(const uint8_t*, uint64_t, uint32_t, uint8_t* const[3], uint64_t,
                     const ShuffleMasks&) {}

#endif

}  // namespace korvanel
