#pragma once

// The state of the modeless ruler settings dialog: the spacing in screen
// pixels, the spacing and offset in image pixels, and which of the two is in
// force. "Apply changes" sends the chosen values to the views as one message
// of 16-bit spacings, a 16-bit x offset and a 15-bit y offset, so values it
// cannot carry are refused.

#include <optional>
#include <string>

#include "app/config_values.h"
#include "app/edit_history.h"
#include "ui/model/dialog_message.h"
#include "ui/model/image_view.h"

namespace korvanel {

inline constexpr const char* kRulerScreenSpacingTag = "[RS_SCREEN_SPACING]";
inline constexpr const char* kRulerImageSpacingTag = "[RS_IMAGE_SPACING]";
inline constexpr const char* kRulerImageOffsetTag = "[RS_IMAGE_OFFSET]";
inline constexpr const char* kRulerSettingsErrorTitle = "Ruler settings error";

class CRulerSettingsManager final : public IEditHistoryAccessor {
 public:
  explicit CRulerSettingsManager(const ConfigDialogRuler& defaults);

  // "x,y" pairs.
  std::string screen_spacing;
  std::string image_spacing;
  std::string image_offset;
  bool screen_pixels = true;

  // The settings the views take, or the refusal in `message`.
  std::optional<RulerSettings> Settings(DialogMessage& message) const;

  void RecordEditHistory(CEditHistory& history) const override;
};

}  // namespace korvanel
