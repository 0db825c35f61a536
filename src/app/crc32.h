#pragma once

#include <cstdint>
#include <string_view>

namespace korvanel {

// The common CRC-32 (reflected polynomial 0xEDB88320, initial value all ones,
// final inversion), as zlib and PNG compute it. Pass the previous result as
// `crc` to continue over a further piece of data.
uint32_t Crc32(std::string_view data, uint32_t crc = 0);

}  // namespace korvanel
