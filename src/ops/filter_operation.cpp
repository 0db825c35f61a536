#include "ops/filter_operation.h"

#include "image/image_filter.h"
#include "ops/worked_region.h"

namespace korvanel {

BandRun RunFilter(CImageConcreteBase& image, const FilterTables& tables, bool all_components,
                  const std::string& label, JobRunner& runner, IProgressSink* progress, bool low_memory) {
  const Rect region = WorkedRegion(image);
  uint32_t width = 0, height = 0;
  image.GetSize(width, height);
  const bool whole = region.Width() == width && region.Height() == height;
  if (!BeginFilter(image, label, whole)) return {};
  // Each band writes only its rows of the mask and the shown copy.
  BandRun run = RunInBands(region, &runner, progress, [&](const Rect& band, IRowObserver* observer) {
    return ApplyFilterBand(image, tables, all_components, band, observer);
  });
  if (!run.ok) image.ClearFilter();
  else if (low_memory) image.KeepFilterTablesOnly(std::make_shared<const FilterTables>(tables), all_components);
  return run;
}

FilterTables ComponentTables(const FilterTables& tables, uint32_t component) {
  FilterTables one;
  one.bits = tables.bits;
  one.components = 1;
  one.table[0] = tables.table[component];
  one.negation = {tables.negation[component], tables.negation[component], tables.negation[component]};
  return one;
}

}  // namespace korvanel
