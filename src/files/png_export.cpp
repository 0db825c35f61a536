#include "files/png_export.h"

#include <QImage>
#include <QString>
#include <climits>

#include "files/path_parts.h"
#include "files/save_area.h"
#include "files/save_path.h"
#include "image/display_rendition.h"
#include "image/text_util.h"

namespace korvanel {

namespace {

// The area of the rendition as a QImage of RGB byte triples (QImage pads
// each row to 4 bytes itself).
QImage RenderArea(const DisplayRendition& shown, const Rect& area) {
  const uint64_t width = area.Width();
  const uint64_t height = area.Height();
  if (width > INT_MAX / 3 || height > INT_MAX) return {};
  QImage out(static_cast<int>(width), static_cast<int>(height), QImage::Format_RGB888);
  if (out.isNull()) return out;
  for (uint64_t y = 0; y < height; ++y) {
    const uint32_t* src = shown.pixels.data() + (area.min_y + y) * shown.width + area.min_x;
    uchar* dst = out.scanLine(static_cast<int>(y));
    for (uint64_t x = 0; x < width; ++x) {
      dst[3 * x] = DisplayRed(src[x]);
      dst[3 * x + 1] = DisplayGreen(src[x]);
      dst[3 * x + 2] = DisplayBlue(src[x]);
    }
  }
  return out;
}

}  // namespace

bool ExportPng(const SaveTarget& target, const SaveOptions& options, const SaveSettings& settings,
               ISaveHost& host) {
  if (target.image == nullptr) return false;
  const std::string name = SplitPath(target.file_name).stem + ".png";
  const std::optional<std::string> path =
      ResolveSavePath(name, SaveFolder(target.file_name, target.from_file, settings), options, settings,
                      "Save image warning", host);
  if (!path) return false;
  const std::optional<SaveArea> area = ChooseSaveArea(*target.image, false);
  const DisplayRendition* shown = target.image->BuildDisplay();
  bool saved = false;
  if (area && shown != nullptr && area->area.max_x < shown->width && area->area.max_y < shown->height) {
    const QImage picture = RenderArea(*shown, area->area);
    saved = !picture.isNull() && picture.save(QString::fromStdString(*path), "PNG");
  }
  if (saved) {
    host.ShowStatus(StrFormat("Exported to PNG: '%s'", path->c_str()));
    return true;
  }
  host.ShowError(StrFormat("%s%s", "Error while saving ", path->c_str()), "Export PNG image error");
  return false;
}

}  // namespace korvanel
