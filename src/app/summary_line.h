#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace korvanel {

// "%u B | name", "%6.2lf KB | name" from 50000 bytes, "%6.2lf MB (~%u MP) | name"
// from 1 MiB; MP is width * height / 1000000 rounded down.
std::string MakeSummaryLine(uint64_t data_bytes, uint32_t width, uint32_t height,
                            std::string_view name);

}  // namespace korvanel
