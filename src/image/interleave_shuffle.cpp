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

__attribute__((target("ssse3"))) void RunShuffleSteps(
    const uint8_t* src, uint64_t src_step, uint8_t* const dst[3], uint64_t dst_step, uint64_t steps,
    const std::array<std::array<uint8_t, 16>, 3>& masks) {
  const __m128i m0 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(masks[0].data()));
  const __m128i m1 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(masks[1].data()));
  const __m128i m2 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(masks[2].data()));
  uint8_t* d0 = dst[0];
  uint8_t* d1 = dst[1];
  uint8_t* d2 = dst[2];
  for (uint64_t i = 0; i < steps; ++i) {
    const __m128i in = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + i * src_step));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(d0 + i * dst_step), _mm_shuffle_epi8(in, m0));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(d1 + i * dst_step), _mm_shuffle_epi8(in, m1));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(d2 + i * dst_step), _mm_shuffle_epi8(in, m2));
  }
}

#else

bool ShuffleKernelAvailable() { return false; }

void RunShuffleSteps(const uint8_t*, uint64_t, uint8_t* const[3], uint64_t, uint64_t,
                     const std::array<std::array<uint8_t, 16>, 3>&) {}

#endif

}  // namespace korvanel
