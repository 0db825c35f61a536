#pragma once

// Automatic output names, made from the image's file name (directory left
// out) and the area written.

#include <cstdint>
#include <string>
#include <string_view>

#include "image/region.h"
#include "image/save_request.h"

namespace korvanel {

inline constexpr size_t kMaxSaveName = 511;

// `roi_area` is the area when it comes from a region of interest, null for
// the whole image of `width` x `height`. `from_picture`: the image was
// decoded from a common picture file.
std::string MakeSaveName(std::string_view file_name, SaveMode mode, const Rect* roi_area,
                         uint32_t width, uint32_t height, bool from_picture);

// "<stem>.stat.txt", or with a region "<stem>_xy_<x>_<y>.<w>x<h>.stat.txt".
std::string MakeStatisticsName(std::string_view file_name, const Rect* roi_area);

}  // namespace korvanel
