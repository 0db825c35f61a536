#pragma once

// Common picture files (PNG, JPEG, BMP, GIF, TIFF, ICO, ...) through Qt's
// image readers, as 8-bit RGB images.

#include <memory>
#include <string>
#include <string_view>

#include "image/image_rgb.h"

namespace korvanel {

// Whether the extension (without dot, any case) is one of
// "bmp gif jpeg jpg png tiff exif wmf emf ico", compared as whole words.
bool IsPictureExtension(std::string_view extension);

// Decodes the first frame; null when Qt cannot read the file.
std::unique_ptr<CImageRgb> DecodePicture(const std::string& path);

}  // namespace korvanel
