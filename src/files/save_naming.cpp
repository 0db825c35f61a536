#include "files/save_naming.h"

#include "files/path_parts.h"
#include "files/picture_codec.h"
#include "image/text_util.h"

namespace korvanel {

namespace {

std::string Limited(std::string name) {
  if (name.size() > kMaxSaveName) name.resize(kMaxSaveName);
  return name;
}

std::string RoiPart(const std::string& stem, const Rect& area) {
  return StrFormat("%s_xy_%u_%u.%llux%llu", stem.c_str(), area.min_x, area.min_y,
                   static_cast<unsigned long long>(area.Width()),
                   static_cast<unsigned long long>(area.Height()));
}

}  // namespace

std::string MakeSaveName(std::string_view file_name, SaveMode mode, const Rect* roi_area,
                         uint32_t width, uint32_t height, bool from_picture) {
  const PathParts parts = SplitPath(file_name);
  std::string stem = parts.stem;
  std::string extension = parts.extension;
  if (mode == SaveMode::Text) {
    extension = "txt";
  } else if (mode == SaveMode::HexDump || mode == SaveMode::CArray) {
    extension = "hex.txt";
  } else if (roi_area == nullptr && from_picture) {
    stem += ".bin";
  }
  // Any extension found inside the picture extensions' text becomes "raw". A
  // plain substring search, so "if" or an empty extension match too; the
  // names this program has always given depend on it.
  if (kPictureExtensions.find(extension) != std::string_view::npos) extension = "raw";
  if (roi_area != nullptr) return Limited(RoiPart(stem, *roi_area) + "." + extension);
  const std::string w = std::to_string(width);
  const std::string h = std::to_string(height);
  if (stem.find(w) != std::string::npos && stem.find(h) != std::string::npos) {
    return Limited(StrFormat("%s.%s", stem.c_str(), extension.c_str()));
  }
  return Limited(StrFormat("%s.%sx%s.%s", stem.c_str(), w.c_str(), h.c_str(), extension.c_str()));
}

std::string MakeStatisticsName(std::string_view file_name, const Rect* roi_area) {
  const std::string stem = SplitPath(file_name).stem;
  if (roi_area != nullptr) return Limited(RoiPart(stem, *roi_area) + ".stat.txt");
  return Limited(StrFormat("%s.stat.txt", stem.c_str()));
}

}  // namespace korvanel
