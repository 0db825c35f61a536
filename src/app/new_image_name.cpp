#include "app/new_image_name.h"

#include "files/path_parts.h"
#include "image/text_util.h"

namespace korvanel {

std::string MakeNewImageName(std::string_view source, const Rect* crop) {
  const PathParts parts = SplitPath(source);
  std::string name = "New_Copy_" + parts.stem;
  if (crop != nullptr) {
    name += StrFormat(".xy%u_%u_wh%llux%llu", crop->min_x, crop->min_y,
                      static_cast<unsigned long long>(crop->Width()),
                      static_cast<unsigned long long>(crop->Height()));
  }
  if (parts.has_extension) name += "." + parts.extension;
  return name;
}

}  // namespace korvanel
