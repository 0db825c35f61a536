#pragma once

// Applying a parsed colour filter to one image over its worked region.

#include <string>

#include "image/filter_tables.h"
#include "image/image_concrete_base.h"
#include "ops/band_operation.h"

namespace korvanel {

// False in `run.ok` when the image cannot be filtered (32-bit, memory) or
// the run was aborted; an aborted filter is cleared again.
BandRun RunFilter(CImageConcreteBase& image, const FilterTables& tables, bool all_components,
                  const std::string& label, JobRunner& runner, IProgressSink* progress);

// The tables of one component of `tables` as a grey image's tables.
FilterTables ComponentTables(const FilterTables& tables, uint32_t component);

}  // namespace korvanel
