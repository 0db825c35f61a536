#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "image/image_container.h"

namespace korvanel {

// Size and last-write time of an opened file, for noticing outside changes.
struct FileAttributes {
  bool valid = false;
  uint64_t size = 0;
  std::filesystem::file_time_type last_write{};
};

// One open image and everything the application keeps about it.
struct ImageRecord {
  uint64_t serial = 0;  // identifies the image across renumbering; the viewer keys its view state by it
  std::unique_ptr<IImageContainer> image;
  std::string path;          // as given when opened; empty for created images
  std::string display_name;  // the path, or the generated name
  std::string format_text;
  uint32_t hk_id = 0;
  std::string summary;
  FileAttributes file_attributes;
  // Polled for changes by other programs; "Ignore" in the viewer clears it.
  bool watched = false;
};

}  // namespace korvanel
