#pragma once

// Pixel-format names people type (ffmpeg's -pix_fmt names, V4L2's fourcc
// names) and the format expression each one stands for. Case does not
// matter: "nv12", "NV12" and "Nv12" are one name.

#include <optional>
#include <span>
#include <string_view>

namespace korvanel {

struct FormatName {
  std::string_view name;
  std::string_view expansion;
};

// Every name this build knows.
std::span<const FormatName> FormatNameTable();

// The expansion of `token` in `table`, compared without regard to case.
std::optional<std::string_view> FindFormatName(std::string_view token, std::span<const FormatName> table);

}  // namespace korvanel
