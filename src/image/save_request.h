#pragma once

// What an image's writer (Save) is asked to do. The caller has already
// named the file and settled the area; the writer opens, writes row by row
// and reports one message when it fails.

#include <atomic>
#include <cstdint>
#include <string>

#include "image/region.h"
#include "image/row_observer.h"

namespace korvanel {

// Writer modes by number: raw binary, one text line per pixel, a hex-viewer
// dump, and the same samples as C array declarations.
enum class SaveMode : uint32_t { Raw = 0, Text = 1, HexDump = 2, CArray = 3 };

// The image's own layout, or every component plane in turn, or the
// components of each pixel together.
enum class SavePacking : uint32_t { Original = 0, Planar = 1, Interleave = 2 };

// Shared with whoever shows progress: the writer polls `cancel` once per row
// and adds the pixels of every row it finishes to `pixels_done`; a job
// running the writer also hears of every row through `observer`, whose
// false answer cancels.
struct SaveProgress {
  std::atomic<bool> cancel{false};
  std::atomic<uint64_t> pixels_done{0};
  IRowObserver* observer = nullptr;
};

struct SaveRequest {
  std::string path;
  SaveMode mode = SaveMode::Raw;
  SavePacking packing = SavePacking::Original;
  // Raw and hex modes: each sample's bytes reversed (8-bit grey: groups of
  // four bytes of a row).
  bool big_endian = false;
  // Inclusive; the caller clamps it to the image (and aligns it to the chroma
  // grid for YUV).
  Rect area;
  SaveProgress* progress = nullptr;  // optional
  std::string* error = nullptr;      // optional: receives the failure text
};

}  // namespace korvanel
