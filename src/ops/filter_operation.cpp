#include "ops/filter_operation.h"

#include "image/image_filter.h"
#include "ops/worked_region.h"

namespace korvanel {

namespace {

class CFilterImageProcessor final : public CBandJob {
 public:
  CFilterImageProcessor(CImageConcreteBase& image, const FilterTables& tables, bool all_components)
      : image_(image), tables_(tables), all_components_(all_components) {}

 private:
  bool Work(const Rect& band, IRowObserver* observer) override {
    return ApplyFilterBand(image_, tables_, all_components_, band, observer);
  }

  CImageConcreteBase& image_;  // each job writes only its band of the mask and copy
  const FilterTables& tables_;
  bool all_components_;
};

}  // namespace

BandRun RunFilter(CImageConcreteBase& image, const FilterTables& tables, bool all_components,
                  const std::string& label, JobRunner& runner, IProgressSink* progress, bool low_memory) {
  const Rect region = WorkedRegion(image);
  uint32_t width = 0, height = 0;
  image.GetSize(width, height);
  const bool whole = region.Width() == width && region.Height() == height;
  if (!BeginFilter(image, label, whole)) return {};
  BandRun run = RunBandJobs(region, runner, progress, [&] {
    return std::make_unique<CFilterImageProcessor>(image, tables, all_components);
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
