#pragma once

// The state of the Filter Colors dialog: the filter and negation texts, the
// four options, and the last accepted request that Ctrl+F applies again.

#include <optional>
#include <string>

#include "app/config_values.h"
#include "app/edit_history.h"
#include "app/filter_command.h"
#include "ui/model/dialog_message.h"

namespace korvanel {

class AppState;

inline constexpr const char* kFilterExpressionTag = "[FC_FILTER_EXPR]";
inline constexpr const char* kNegationColorTag = "[FC_NEG_COLOR]";

class CFilterColorsManager final : public IEditHistoryAccessor {
 public:
  explicit CFilterColorsManager(const ConfigDialogFilter& defaults);

  std::string expression;
  std::string negation;
  bool apply_to_all = false;       // every compared image of the same family
  bool apply_to_new = false;       // a duplicate receives the filter
  bool all_3_must_pass = false;    // a pixel is valid only when all components pass
  bool separate_components = false;

  // Filters the focus image (or what the options say) with the current
  // fields. On success the request is remembered for Reapply and the fields
  // join the edit history.
  DialogResult Apply(AppState& app);
  // The last accepted request on the current focus image; false when there
  // is none yet (nothing is done then).
  bool HasLastRequest() const { return last_.has_value(); }
  DialogResult Reapply(AppState& app);

  void RecordEditHistory(CEditHistory& history) const override;

 private:
  FilterCommand Request(const AppState& app) const;
  static DialogResult Run(AppState& app, FilterCommand command);

  std::optional<FilterCommand> last_;
};

}  // namespace korvanel
