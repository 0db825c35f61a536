#pragma once

// The state of the I-Eval dialog: the expression (shown as typed or with its
// name markers expanded), the out-of-range value, the images a stage
// replaces, the ROI, channel and depth options, and the saved list's edits.
// The evaluator tells the user about its own errors (per stage); a failed
// run keeps the dialog open.

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/config_values.h"
#include "app/edit_history.h"
#include "ops/ieval_operation.h"
#include "ui/model/dialog_message.h"

namespace korvanel {

class AppState;

inline constexpr const char* kIEvalExpressionTag = "[IE_EXPR]";
inline constexpr const char* kIEvalOutOfRangeTag = "[IE_OUT_OF_RANGE]";
inline constexpr const char* kIEvalOverrideTag = "[IE_IMG_OVERRIDE]";
inline constexpr const char* kIEvalNameTag = "[IE_EXPR_NAME]";

class CImageEvalManager final : public IEditHistoryAccessor {
 public:
  explicit CImageEvalManager(const ConfigDialogIeval& defaults);

  std::string expression;
  std::string out_of_range;
  std::string output_override;  // "2,1,3": the image each stage replaces
  bool replace_image = false;    // off: every stage makes a new image
  bool roi_only = false;
  IEvalChannelMode channels = IEvalChannelMode::Context;
  bool yuv = false;              // 3 channels as Y, U, V
  uint32_t out_bits = 0;         // 0: image 1's depth
  bool overwrite_saved = false;  // replace a saved item without asking
  std::string save_name;

  // What the editor shows: the expression itself, or with every `$name$`
  // replaced from the saved list (the refusal titled "I-Eval error").
  DialogResult ExpandedText(AppState& app, std::string& text) const;

  // Runs on the comparison party (image 1 the left-most) or the focus image.
  DialogResult Apply(AppState& app);
  bool HasLastRequest() const { return last_.has_value(); }
  DialogResult Reapply(AppState& app);

  // The saved list; each change is written to its file at once.
  DialogResult SaveExpression(AppState& app, const std::function<bool(std::string_view)>& ask_overwrite);
  DialogResult DeleteSaved(AppState& app, std::string_view name);
  DialogResult MoveSaved(AppState& app, std::string_view name, bool up);

  void RecordEditHistory(CEditHistory& history) const override;

 private:
  IEvalRequest Request() const;
  static std::vector<size_t> Inputs(const AppState& app);
  static DialogResult Run(AppState& app, const IEvalRequest& request);
  static DialogResult StoreList(AppState& app);

  std::optional<IEvalRequest> last_;
};

}  // namespace korvanel
