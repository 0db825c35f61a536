#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "image/image_container.h"

namespace korvanel {

// What the viewer restores when an image becomes the focus image again.
struct ViewState {
  double zoom = 1.0;
  int32_t scroll_x = 0;
  int32_t scroll_y = 0;
  bool grid = false;
  bool rulers = false;
  bool hex_values = false;
};

// Size and last-write time of an opened file, for noticing outside changes.
struct FileAttributes {
  bool valid = false;
  uint64_t size = 0;
  std::filesystem::file_time_type last_write{};
};

// One open image and everything the application keeps about it.
struct ImageRecord {
  uint64_t serial = 0;  // identifies the image across renumbering
  std::unique_ptr<IImageContainer> image;
  std::string path;          // as given when opened; empty for created images
  std::string display_name;  // the path, or the generated name
  std::string format_text;
  uint32_t hk_id = 0;
  std::string summary;
  FileAttributes file_attributes;
  ViewState view;
};

}  // namespace korvanel
