#include "ui/model/clipboard_copy.h"

#include <new>

#include "app/image_record.h"
#include "files/save_area.h"
#include "image/image_container.h"

namespace korvanel {

namespace {

void CopyRow(const uint32_t* src, uint64_t width, uint8_t* dst) {
  for (uint64_t x = 0; x < width; ++x) {
    dst[3 * x] = DisplayRed(src[x]);
    dst[3 * x + 1] = DisplayGreen(src[x]);
    dst[3 * x + 2] = DisplayBlue(src[x]);
  }
}

}  // namespace

std::optional<Rgb888Image> CopyRenditionArea(const DisplayRendition& shown, const Rect& area) {
  if (area.min_x > area.max_x || area.min_y > area.max_y || area.max_x >= shown.width ||
      area.max_y >= shown.height) {
    return std::nullopt;
  }
  const uint64_t width = area.Width();
  const uint64_t height = area.Height();
  if (width * 3 > kMaxClipboardRowBytes || height > kMaxClipboardRowBytes) return std::nullopt;
  Rgb888Image copy;
  try {
    copy.bytes.resize(width * 3 * height);
  } catch (const std::bad_alloc&) {
    return std::nullopt;
  }
  copy.width = static_cast<uint32_t>(width);
  copy.height = static_cast<uint32_t>(height);
  for (uint64_t y = 0; y < height; ++y) {
    CopyRow(shown.pixels.data() + (area.min_y + y) * shown.width + area.min_x, width,
            copy.bytes.data() + y * width * 3);
  }
  return copy;
}

std::optional<Rgb888Image> ClipboardImageOf(IImageContainer& image, IParallelRunner* runner) {
  const std::optional<SaveArea> area = ChooseSaveArea(image, false);
  if (!area) return std::nullopt;
  const DisplayRendition* shown = image.BuildDisplay(runner);
  if (shown == nullptr) return std::nullopt;
  return CopyRenditionArea(*shown, area->area);
}

const std::string& FullPathOf(const ImageRecord& record) {
  return record.path.empty() ? record.display_name : record.path;
}

}  // namespace korvanel
