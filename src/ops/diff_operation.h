#pragma once

// The difference image of two images of the same kind, size and depth.

#include <cstdint>
#include <memory>

#include "image/image_concrete_base.h"
#include "ops/job_runner.h"

namespace korvanel {

// The routine code of a diff type as the interface numbers them (0 all
// pixels binary, 1 masked binary, 2 all pixels absolute, 3 masked absolute).
uint32_t DiffRoutineCode(uint32_t type_index);

struct DiffRun {
  std::unique_ptr<CImageConcreteBase> image;  // null when aborted or out of memory
  BandRun run;
};

// Works the left image's region of interest (or the whole image) into a new
// 8-bit grey image that is zero elsewhere and carries that region.
DiffRun RunDiff(const CImageConcreteBase& left, const CImageConcreteBase& right, uint32_t code,
                JobRunner& runner, IProgressSink* progress);

}  // namespace korvanel
