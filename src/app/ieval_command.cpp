#include "app/ieval_command.h"

#include "app/feedback_progress.h"
#include "image/text_util.h"

namespace korvanel {

namespace {
constexpr const char* kIEvalTitle = "Image Evaluator";
}  // namespace

bool RunIEvalCommand(AppState& app, const IEvalRequest& request, const std::vector<size_t>& indices) {
  IEvalRequest expanded = request;
  std::string message;
  if (!app.SavedIEvals().ExpandNameMarkers(request.expression, expanded.expression, message)) {
    app.ShowMessage("I-Eval error: " + message, kIEvalTitle);
    return false;
  }
  std::vector<const CImageConcreteBase*> images;
  for (size_t index : indices) {
    const auto* image =
        index < app.Images().Count()
            ? dynamic_cast<const CImageConcreteBase*>(app.Images().At(index).image.get())
            : nullptr;
    if (image == nullptr) {
      app.ShowMessage("I-Eval error: No image to evaluate", kIEvalTitle);
      return false;
    }
    images.push_back(image);
  }

  CFeedbackProgress progress(app.Feedback());
  IEvalResult result = RunImageEval(
      expanded, images, app.Jobs(), [&](uint32_t stage, uint32_t stages, uint64_t pixels) {
        progress.Start(StrFormat("%s (%u/%u)", kIEvalTitle, stage, stages), pixels);
        return &progress;
      });
  for (const IEvalMessage& m : result.messages) app.ShowMessage(m.text, m.title);

  // Outputs of finished stages are kept even when a later stage failed.
  // Replacements name the run's images by number; their registry places do
  // not move while new images are appended behind them.
  bool registered = true;
  for (IEvalOutput& out : result.outputs) {
    if (out.replaces != 0) {
      app.ReplaceImage(indices[out.replaces - 1], std::move(out.image), out.format_text);
      continue;
    }
    if (!app.CheckRoomForImage()) {
      registered = false;
      break;
    }
    const IImageContainer* created = out.image.get();
    app.RegisterImage(std::move(out.image), "ieval_out_image", out.format_text, false);
    app.MarkCreatedUnsaved(created);
  }
  if (!result.status.empty()) app.StatusMessage("%s", result.status.c_str());
  return result.ok && registered;
}

}  // namespace korvanel
