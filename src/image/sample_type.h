#pragma once

// The one place that turns a runtime bit depth into a sample type. Algorithms
// are written once as generic lambdas over the sample type:
//
//   DispatchBits(bits, [&]<typename T>(std::type_identity<T>) { ... T ... });
//
// An unsupported depth calls nothing and returns false.

#include <cstdint>
#include <type_traits>

namespace korvanel {

inline constexpr bool IsSupportedBits(uint32_t bits) { return bits == 8 || bits == 16 || bits == 32; }

inline constexpr uint32_t BytesForBits(uint32_t bits) { return (bits + 7) / 8; }

template <typename F>
bool DispatchBits(uint32_t bits, F&& work) {
  switch (bits) {
    case 8: work(std::type_identity<uint8_t>{}); return true;
    case 16: work(std::type_identity<uint16_t>{}); return true;
    case 32: work(std::type_identity<uint32_t>{}); return true;
    default: return false;
  }
}

}  // namespace korvanel
