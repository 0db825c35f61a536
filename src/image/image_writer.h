#pragma once

// The writer behind Save of every image class. A class describes itself
// (its planes, component letters and own layout as sections) and this writes
// the requested mode: raw bytes, text lines, a hex-viewer dump or C arrays.

#include <string>
#include <vector>

#include "image/plane.h"
#include "image/save_request.h"
#include "image/save_sections.h"

namespace korvanel {

struct WriterLayout {
  std::vector<const Plane*> planes;  // R, G, B / Y, U, V / Y
  std::string letters;               // output component order: "Y", "BGR", "YUV", ...
  std::vector<uint32_t> order;       // the plane of each letter
  bool gray = false;
  const char* text_kind = "";        // "RGB" or "YUV" in three-component text headers
  std::vector<SampleSection> original;  // the image's own layout
  bool original_planar = false;         // how text mode reads the Original packing
};

// The sections a packing writes: the own layout, one per plane, or one
// interleaved section.
std::vector<SampleSection> SectionsForPacking(const WriterLayout& layout, SavePacking packing);

// False on failure (with the message in request.error) and on cancel.
bool WriteImage(const WriterLayout& layout, const SaveRequest& request);

}  // namespace korvanel
