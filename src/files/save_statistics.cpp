#include "files/save_statistics.h"

#include "files/save_area.h"
#include "files/save_naming.h"
#include "files/save_path.h"
#include "image/statistics_request.h"
#include "image/text_util.h"

namespace korvanel {

bool SaveStatistics(const SaveTarget& target, const SaveOptions& options,
                    const SaveSettings& settings, ISaveHost& host) {
  if (target.image == nullptr) return false;
  host.ShowStatus(target.image->GetBitsPerComponent() == 32
                      ? "Saving image histogram (might take time due to 32bpp statistics calculation)..."
                      : "Saving image histogram...");
  const std::optional<SaveArea> area = ChooseSaveArea(*target.image, false);
  if (!area) return false;
  const std::string name =
      MakeStatisticsName(target.file_name, area->from_roi ? &area->area : nullptr);
  const std::optional<std::string> path =
      ResolveSavePath(name, SaveFolder(target.file_name, target.from_file, settings), options, settings,
                      "Save image statistics warning", host);
  if (!path) return false;
  StatisticsRequest request;
  request.path = *path;
  request.area = area->area;
  if (target.image->WriteStatistics(request)) return true;
  host.ShowError(StrFormat("Error while saving %s", path->c_str()), "Save image statistics error");
  return false;
}

}  // namespace korvanel
