#pragma once

#include "files/save_host.h"
#include "files/save_images.h"

namespace korvanel {

// The statistics file of one image (its region of interest, or the whole
// image): status text, name, path, then the image's statistics writer.
bool SaveStatistics(const SaveTarget& target, const SaveOptions& options,
                    const SaveSettings& settings, ISaveHost& host);

}  // namespace korvanel
