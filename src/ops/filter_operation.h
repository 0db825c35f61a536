#pragma once

// Applying a parsed colour filter to one image over its worked region.

#include <string>

#include "image/filter_tables.h"
#include "image/image_concrete_base.h"
#include "ops/job_runner.h"

namespace korvanel {

// False in `run.ok` when the image cannot be filtered (32-bit, memory) or
// the run was aborted; an aborted filter is cleared again. With
// `low_memory` the image keeps the tables instead of the shown copy: one
// plane set less for as long as the filter stays, paid for by a lookup per
// readout and a rebuilt copy while the display renders.
BandRun RunFilter(CImageConcreteBase& image, const FilterTables& tables, bool all_components,
                  const std::string& label, JobRunner& runner, IProgressSink* progress,
                  bool low_memory = false);

// The tables of one component of `tables` as a grey image's tables.
FilterTables ComponentTables(const FilterTables& tables, uint32_t component);

}  // namespace korvanel
