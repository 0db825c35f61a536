#pragma once

// The control parameters of an I-Eval run that the evaluator itself needs.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace korvanel {

enum class IEvalChannelMode : uint32_t { Context = 0, Single = 1, Three = 2 };

struct IEvalOptions {
  // Read where an index points outside the image, per component of the token.
  std::array<uint32_t, 3> out_of_range{0, 0, 0};
  IEvalChannelMode channels = IEvalChannelMode::Context;
  bool yuv = false;       // 3-channel output as Y, U, V planes instead of R, G, B
  uint32_t out_bits = 0;  // 0: image 1's depth
  bool in_roi = false;    // evaluate only the region of interest
};

// "v" or "v1;v2;v3", each a number that fits `bits`. False with the message
// ("Must enter 1 or 3 components", "'%s' for comp %d isn't valid number or
// bpp out-of-range").
bool ParseOutOfRange(std::string_view text, uint32_t bits, std::array<uint32_t, 3>& values,
                     std::string& error);

}  // namespace korvanel
