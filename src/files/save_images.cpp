#include "files/save_images.h"

#include <chrono>

#include "files/save_area.h"
#include "files/save_naming.h"
#include "files/save_path.h"
#include "image/image_rgb.h"
#include "image/text_util.h"
#include "ops/save_file_processor.h"

namespace korvanel {

namespace {

bool FromPicture(const IImageContainer& image) {
  const auto* rgb = dynamic_cast<const CImageRgb*>(&image);
  return rgb != nullptr && rgb->FromPicture();
}

// One image: false when it was not saved.
// The write itself, as a job when there is a runner.
bool Write(IImageContainer& image, SaveRequest& request, JobRunner* runner, IProgressSink* sink) {
  if (runner == nullptr) return image.Save(request);
  CSaveFileImageProcessor job(image, request);
  runner->SetJobs({&job});
  runner->SetProgressSink(sink);
  const bool ok = runner->RunJobs();
  runner->SetProgressSink(nullptr);
  return ok;
}

bool SaveOne(const SaveTarget& target, const SaveKind& kind, const SaveOptions& options,
             const SaveSettings& settings, ISaveHost& host, SaveProgress* progress, JobRunner* runner,
             IProgressSink* sink) {
  const std::optional<SaveArea> area = ChooseSaveArea(*target.image, true);
  if (!area) return false;
  uint32_t width = 0, height = 0;
  target.image->GetSize(width, height);
  const SaveMode mode = WriterModeFor(kind.format, settings.c_arrays);
  const std::string name = MakeSaveName(target.file_name, mode, area->from_roi ? &area->area : nullptr,
                                        width, height, FromPicture(*target.image));
  const std::optional<std::string> path =
      ResolveSavePath(name, SaveFolder(target.file_name, target.from_file, settings), options, settings,
                      "Save image warning", host);
  if (!path) return false;

  SaveRequest request;
  request.path = *path;
  request.mode = mode;
  request.packing = kind.packing;
  request.big_endian = kind.big_endian;
  request.area = area->area;
  // A job needs a progress record to hear of every row.
  SaveProgress own;
  request.progress = progress != nullptr ? progress : runner != nullptr ? &own : nullptr;
  std::string error;
  request.error = &error;
  const auto start = std::chrono::steady_clock::now();
  if (Write(*target.image, request, runner, sink)) {
    const auto elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now() - start);
    host.ShowStatus(StrFormat("Saved '%s' (%llu ms)", path->c_str(),
                              static_cast<unsigned long long>(elapsed.count())));
    host.Saved(target.image);
    return true;
  }
  if (request.progress != nullptr && request.progress->cancel.load()) {
    host.ShowStatus("Save file: User abort (partially written...)");
  } else {
    host.ShowError(StrFormat("Error %s while saving %s", error.c_str(), path->c_str()),
                   "Save image error");
  }
  return false;
}

}  // namespace

bool SaveImages(const std::vector<SaveTarget>& targets, const SaveKind& kind,
                const SaveOptions& options, const SaveSettings& settings, ISaveHost& host,
                SaveProgress* progress, JobRunner* runner, IProgressSink* sink) {
  host.ShowStatus("Saving image(s)...");
  bool all = true;
  for (const SaveTarget& target : targets) {
    if (target.image == nullptr || !SaveOne(target, kind, options, settings, host, progress, runner, sink)) {
      all = false;
    }
  }
  return all;
}

}  // namespace korvanel
