#include "ui/model/image_eval_manager.h"

#include "app/app_state.h"
#include "app/ieval_command.h"

namespace korvanel {

namespace {

constexpr const char* kStoreTitle = "Store I-Eval list";

struct ChannelChoice {
  OutputChannels config;
  IEvalChannelMode mode;
  bool yuv;
};

constexpr ChannelChoice kChannelChoices[] = {
    {OutputChannels::kContext, IEvalChannelMode::Context, false},
    {OutputChannels::kContextAsYuv, IEvalChannelMode::Context, true},
    {OutputChannels::kSingle, IEvalChannelMode::Single, false},
};

uint32_t OutputBits(IevalBppChoice choice) {
  constexpr uint32_t kBits[] = {0, 8, 16, 32};
  const auto index = static_cast<size_t>(choice);
  return index < std::size(kBits) ? kBits[index] : 0;
}

}  // namespace

CImageEvalManager::CImageEvalManager(const ConfigDialogIeval& defaults)
    : expression(defaults.def_ieval_expr),
      out_of_range(defaults.def_out_of_range_val),
      output_override(defaults.def_output_overwrite),
      replace_image(defaults.out_replace_image),
      roi_only(defaults.apply_on_roi),
      out_bits(OutputBits(defaults.bpp)),
      overwrite_saved(defaults.overwrite_saved_ieval) {
  for (const ChannelChoice& choice : kChannelChoices) {
    if (choice.config != defaults.output_channels) continue;
    channels = choice.mode;
    yuv = choice.yuv;
  }
}

DialogResult CImageEvalManager::ExpandedText(AppState& app, std::string& text) const {
  std::string message;
  if (app.SavedIEvals().ExpandNameMarkers(expression, text, message)) return std::nullopt;
  return DialogMessage{"I-Eval error: " + message, "I-Eval error"};
}

IEvalRequest CImageEvalManager::Request() const {
  IEvalRequest request;
  request.expression = expression;
  request.out_of_range = out_of_range.empty() ? "0" : out_of_range;
  request.output_override = replace_image ? output_override : "";
  request.options.channels = channels;
  request.options.yuv = yuv;
  request.options.out_bits = out_bits;
  request.options.in_roi = roi_only;
  return request;
}

std::vector<size_t> CImageEvalManager::Inputs(const AppState& app) {
  if (app.CompareMode() && !app.ComparisonGroup().empty()) return app.ComparisonGroup();
  return {app.FocusIndex()};
}

DialogResult CImageEvalManager::Run(AppState& app, const IEvalRequest& request) {
  if (app.FocusIndex() >= app.Images().Count()) return std::nullopt;
  // The evaluator has shown its errors itself.
  if (!RunIEvalCommand(app, request, Inputs(app))) return DialogMessage{};
  return std::nullopt;
}

DialogResult CImageEvalManager::Apply(AppState& app) {
  const IEvalRequest request = Request();
  DialogResult result = Run(app, request);
  if (result) return result;
  last_ = request;
  RecordEditHistory(app.EditHistory());
  app.StoreEditHistory();
  return std::nullopt;
}

DialogResult CImageEvalManager::Reapply(AppState& app) {
  if (!last_) return std::nullopt;
  return Run(app, *last_);
}

DialogResult CImageEvalManager::StoreList(AppState& app) {
  std::string message;
  if (app.SavedIEvals().Store(app.SavedIEvalsPath(), message)) return std::nullopt;
  return DialogMessage{message, kStoreTitle};
}

DialogResult CImageEvalManager::SaveExpression(AppState& app,
                                               const std::function<bool(std::string_view)>& ask_overwrite) {
  std::string message;
  if (!app.SavedIEvals().Add(save_name, expression, overwrite_saved, ask_overwrite, message)) {
    // An empty message: the user kept the saved item.
    return DialogMessage{message, message.empty() ? "" : "Save name error"};
  }
  app.EditHistory().Add(kIEvalNameTag, save_name);
  app.StoreEditHistory();
  return StoreList(app);
}

DialogResult CImageEvalManager::DeleteSaved(AppState& app, std::string_view name) {
  if (!app.SavedIEvals().Delete(name)) return DialogMessage{};
  return StoreList(app);
}

DialogResult CImageEvalManager::MoveSaved(AppState& app, std::string_view name, bool up) {
  CIEvalList& list = app.SavedIEvals();
  if (!(up ? list.MoveUp(name) : list.MoveDown(name))) return DialogMessage{};
  return StoreList(app);
}

void CImageEvalManager::RecordEditHistory(CEditHistory& history) const {
  history.Add(kIEvalExpressionTag, expression);
  history.Add(kIEvalOutOfRangeTag, out_of_range);
  history.Add(kIEvalOverrideTag, output_override);
  history.Add(kIEvalNameTag, save_name);
}

}  // namespace korvanel
