#pragma once

// Saving images to files: name, path, write, report. The writers belong to
// the image classes; this is the orchestration around them.

#include <string>
#include <vector>

#include "files/save_host.h"
#include "files/save_kind.h"
#include "image/image_container.h"
#include "ops/job_runner.h"

namespace korvanel {

struct SaveTarget {
  IImageContainer* image = nullptr;
  std::string file_name;  // the source path, or the name of a created image
  bool from_file = false;  // opened from `file_name` rather than created
};

// Saves each target in turn. A refused path skips its image; a failed or
// cancelled write is reported. True when every image was saved. With a
// runner each write runs as a job on it (a pool worker, with progress to
// `sink`); without one on the calling thread.
bool SaveImages(const std::vector<SaveTarget>& targets, const SaveKind& kind,
                const SaveOptions& options, const SaveSettings& settings, ISaveHost& host,
                SaveProgress* progress = nullptr, JobRunner* runner = nullptr,
                IProgressSink* sink = nullptr);

}  // namespace korvanel
