#pragma once

// A job whose whole work is one kernel call over its band: it counts the
// band's rows as its progress and stops when its worker is asked to cancel.

#include "image/row_observer.h"
#include "ops/image_processor_thread.h"
#include "ops/split_region.h"

namespace korvanel {

class CBandJob : public IImageProcessorThread, protected IRowObserver {
 public:
  bool Run() final {
    ResetProgress();
    if (IsEmptyBand(Band())) return true;
    return Work(Band(), this);
  }
  void SetCancelFlag(const CancelFlag* flag) final { cancel_ = flag; }

 protected:
  // The kernel over `band`, calling observer->RowDone after every row.
  virtual bool Work(const Rect& band, IRowObserver* observer) = 0;

 private:
  bool RowDone(uint32_t pixels) final {
    AddProgress(pixels);
    return !CancelRequested(cancel_);
  }

  const CancelFlag* cancel_ = nullptr;
};

}  // namespace korvanel
