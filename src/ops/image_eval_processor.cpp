#include "ops/image_eval_processor.h"

namespace korvanel {

CImageEvalProcessor::CImageEvalProcessor(IEvalShared& shared) : shared_(shared) {
  for (size_t i = 0; i < shared.stages.size(); ++i) {
    evaluators_.push_back(std::make_unique<CImageEvaluator>());
  }
}

bool CImageEvalProcessor::Run() {
  errors_.clear();
  ResetProgress();
  if (current_ >= evaluators_.size()) return false;
  CImageEvaluator& evaluator = *evaluators_[current_];
  const TextPiece& stage = shared_.stages[current_];
  ++current_;
  if (!evaluator.InitPhrase(stage.text, shared_.inputs, shared_.options)) {
    errors_ = evaluator.Errors();
    return false;
  }
  std::vector<Plane*> outputs;
  for (Plane& plane : shared_.outputs) outputs.push_back(&plane);
  const bool ok = evaluator.EvaluateBand(Band(), outputs.data(),
                                         static_cast<uint32_t>(outputs.size()), this);
  if (!ok) errors_ = evaluator.Errors();
  return ok;
}

bool CImageEvalProcessor::RowDone(uint32_t pixels) {
  AddProgress(pixels);
  return !CancelRequested(cancel_);
}

}  // namespace korvanel
