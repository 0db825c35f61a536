#include "ui/model/save_phase.h"

#include "ui/model/image_commands.h"

namespace korvanel {

std::string CSavePhase::Prompt() const {
  return group_ ? SaveEntryPrompt(*group_) : SaveGroupPrompt();
}

PhaseStep CSavePhase::OnChar(char32_t ch) {
  if (ch > 0x7F) return {};
  const char key = static_cast<char>(ch);
  if (!group_) {
    group_ = SaveGroupForKey(key);
    return {};
  }
  const SaveMenuEntry* entry = SaveEntryAt(*group_, key);
  if (entry == nullptr) return {};
  SaveFocusWith(app_, *entry);
  return {true, {}};
}

}  // namespace korvanel
