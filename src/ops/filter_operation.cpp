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
                  const std::string& label, JobRunner& runner, IProgressSink* progress) {
  if (!BeginFilter(image, label)) return {};
  BandRun run = RunBandJobs(WorkedRegion(image), runner, progress, [&] {
    return std::make_unique<CFilterImageProcessor>(image, tables, all_components);
  });
  if (!run.ok) image.ClearFilter();
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
