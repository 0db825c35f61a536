#pragma once

// Common picture files (PNG, JPEG, BMP, GIF, TIFF, ICO, ...) through Qt's
// image readers, as 8-bit RGB images.

#include <memory>
#include <string>
#include <string_view>

#include "image/image_rgb.h"

namespace korvanel {

// The extensions of the pictures Qt reads here, as words of one text.
inline constexpr std::string_view kPictureExtensions = "bmp gif jpeg jpg png tiff exif wmf emf ico";

// Whether the extension (without dot, any case) is one of kPictureExtensions,
// compared as whole words.
bool IsPictureExtension(std::string_view extension);

// Decodes the first frame; null when Qt cannot read the file.
std::unique_ptr<CImageRgb> DecodePicture(const std::string& path);

}  // namespace korvanel
