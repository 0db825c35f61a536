#pragma once

// Saving one image as a job: the image's writer runs on a worker, counting
// its rows as the job's progress and stopping at the worker's cancel
// request.

#include "image/image_container.h"
#include "image/row_observer.h"
#include "image/save_request.h"
#include "ops/image_processor_thread.h"

namespace korvanel {

class CSaveFileImageProcessor final : public IImageProcessorThread, protected IRowObserver {
 public:
  // `request.progress` must be set; the job becomes its row observer.
  CSaveFileImageProcessor(IImageContainer& image, SaveRequest& request) : image_(image), request_(request) {
    if (request_.progress != nullptr) request_.progress->observer = this;
  }
  ~CSaveFileImageProcessor() override {
    if (request_.progress != nullptr) request_.progress->observer = nullptr;
  }

  bool Run() override {
    ResetProgress();
    return image_.Save(request_);
  }
  void SetCancelFlag(const CancelFlag* flag) override { cancel_ = flag; }

 private:
  bool RowDone(uint32_t pixels) override {
    AddProgress(pixels);
    return !CancelRequested(cancel_);
  }

  IImageContainer& image_;
  SaveRequest& request_;
  const CancelFlag* cancel_ = nullptr;
};

}  // namespace korvanel
