#pragma once

// Text matrices ("1 2 3\n4;5,6\n"): one image row per line, values in
// decimal, 0x-hexadecimal or 0-octal. They are packed into the same native
// sample buffer a binary file would give, so the image classes load them
// unchanged.

#include <cstdint>
#include <istream>
#include <optional>
#include <string>
#include <vector>

#include "image/line_sink.h"

namespace korvanel {

// Reads the values of `path`, skipping the first `skip` values, as unsigned
// samples of `bits` (8, 16 or 32). A requested size of 0 (width * height) is
// replaced by the matrix's own columns and rows. Failures write one line to
// `log` and give nothing.
std::optional<std::vector<uint8_t>> ReadAsciiSamples(const std::string& path, uint64_t skip,
                                                     uint32_t bits, uint32_t& width,
                                                     uint32_t& height, ILineSink& log);
// The same over text already open.
std::optional<std::vector<uint8_t>> ParseAsciiSamples(std::istream& text, uint64_t skip,
                                                      uint32_t bits, uint32_t& width,
                                                      uint32_t& height, ILineSink& log);

}  // namespace korvanel
