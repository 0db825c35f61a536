#pragma once

// The state of the open-raw dialog, shown when no rule of the formats file
// reads a file: width, height, offset, the format radio buttons or a direct
// expression. It only checks the numbers; whether the expression parses and
// loads is the registry's question, which shows its box and asks again.

#include <string>

#include "app/config_values.h"
#include "app/edit_history.h"
#include "app/user_feedback.h"
#include "image/format_generator.h"
#include "ui/model/dialog_message.h"

namespace korvanel {

inline constexpr const char* kOpenRawExpressionTag = "[OR_DIRECT_EXPR]";
inline constexpr const char* kOpenRawWidthTag = "[OR_WIDTH]";
inline constexpr const char* kOpenRawHeightTag = "[OR_HEIGHT]";
inline constexpr const char* kOpenRawOffsetTag = "[OR_OFFSET]";
inline constexpr const char* kOpenRawErrorTitle = "Open raw image error";

class COpenRawImageManager final : public IEditHistoryAccessor {
 public:
  explicit COpenRawImageManager(const ConfigDialogOpen& defaults);

  std::string width_text;
  std::string height_text;
  std::string offset_text;        // blank: no offset token
  std::string direct_expression;  // used as it stands when not blank
  FormatChoices choices;
  bool ascii = false;

  // The direct expression, or the generated one behind the ASCII and
  // offset tokens the buttons cannot express.
  std::string Expression() const;
  // "Generated format expression: %s" for the buttons' state.
  std::string GeneratedLabel() const;
  // Fills `answer` when width, height and offset read as numbers.
  DialogResult Accept(OpenRawAnswer& answer) const;

  void RecordEditHistory(CEditHistory& history) const override;
};

}  // namespace korvanel
