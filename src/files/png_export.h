#pragma once

// Export of what the viewer shows (the display rendition) of an image's
// region of interest, or the whole image, as an 8-bit RGB PNG file through
// Qt's QImage.

#include "files/save_host.h"
#include "files/save_images.h"

namespace korvanel {

bool ExportPng(const SaveTarget& target, const SaveOptions& options, const SaveSettings& settings,
               ISaveHost& host);

}  // namespace korvanel
