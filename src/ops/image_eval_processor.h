#pragma once

#include <memory>
#include <vector>

#include "expr/image_evaluator.h"
#include "ops/image_processor_thread.h"

namespace korvanel {

// What every job of an I-Eval run shares: the stage texts, the images the
// current stage reads and the output planes it writes. The operation
// updates it between stages, never during one.
struct IEvalShared {
  std::vector<TextPiece> stages;
  IEvalOptions options;
  IEvalInputs inputs;
  std::vector<Plane> outputs;
};

// One band of an I-Eval. Each Run() prepares its own evaluator for the
// current stage (evaluators are not shared between threads), evaluates the
// band and moves on to the next stage.
class CImageEvalProcessor final : public IImageProcessorThread, private IRowObserver {
 public:
  explicit CImageEvalProcessor(IEvalShared& shared);

  bool Run() override;
  void SetCancelFlag(const CancelFlag* flag) override { cancel_ = flag; }

  uint32_t CurrentStage() const { return current_; }
  void SetStage(uint32_t stage) { current_ = stage; }
  // The messages of the last Run(); empty when it succeeded or was cancelled.
  const std::vector<std::string>& Errors() const { return errors_; }

 private:
  bool RowDone(uint32_t pixels) override;

  IEvalShared& shared_;  // the job writes only its band of the outputs
  std::vector<std::unique_ptr<CImageEvaluator>> evaluators_;  // one per stage
  uint32_t current_ = 0;
  const CancelFlag* cancel_ = nullptr;
  std::vector<std::string> errors_;
};

}  // namespace korvanel
