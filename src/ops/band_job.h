#pragma once

// One band of a band-kernel run as a pool job: the kernel over the job's
// band, counting the band's rows as its progress and stopping when its
// worker is asked to cancel.

#include "image/parallel_runner.h"
#include "image/row_observer.h"
#include "ops/image_processor_thread.h"
#include "ops/split_region.h"

namespace korvanel {

class CBandJob final : public IImageProcessorThread, private IRowObserver {
 public:
  explicit CBandJob(const BandKernel& kernel) : kernel_(kernel) {}

  bool Run() override {
    ResetProgress();
    if (IsEmptyBand(Band())) return true;
    return kernel_(Band(), this);
  }
  void SetCancelFlag(const CancelFlag* flag) override { cancel_ = flag; }

 private:
  bool RowDone(uint32_t pixels) override {
    AddProgress(pixels);
    return !CancelRequested(cancel_);
  }

  const BandKernel& kernel_;
  const CancelFlag* cancel_ = nullptr;
};

}  // namespace korvanel
