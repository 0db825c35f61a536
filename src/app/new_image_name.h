#pragma once

#include <string>
#include <string_view>

#include "image/region.h"

namespace korvanel {

// "New_Copy_<stem>[.xy<x>_<y>_wh<w>x<h>][.<ext>]" for a duplicate of `source`,
// with the crop part only when `crop` is given.
std::string MakeNewImageName(std::string_view source, const Rect* crop);

}  // namespace korvanel
