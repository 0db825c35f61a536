#pragma once

// What the mouse hits on the tabs above the pictures: the close box ("X"
// closes the image; "O", shown while Ctrl is held in a comparison of more
// than two, takes it out of the party), the tab itself (focuses its image),
// and in layer mode the party's HK numbers at the start of the caption.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "ui/model/hit_map.h"
#include "ui/model/geometry.h"

namespace korvanel {

class AppState;
class ITextMetrics;

// The caption starts this far right of the close box, as the renderer
// draws it.
inline constexpr int32_t kTabCaptionIndent = 4;

enum class TabAction : uint8_t { None, Close, RemoveFromParty, Focus };

struct TabHit {
  TabAction action = TabAction::None;
  size_t image = 0;  // registry index
};

// The first drawn tab under `p` and what a left click there does. `ctrl`
// is the modifier held at the click; `party_size` the number of compared
// images (0 outside compare mode).
TabHit HitTab(std::span<const PanelHit> panels, ScreenPoint p, bool ctrl, size_t party_size);
// Carries the click out on the state; false for no action.
bool ApplyTabHit(AppState& app, const TabHit& hit);

// The party position whose HK number in a layer-mode tab caption lies under
// `p`. `hk_ids` are the party's HK ids left to right, as the caption lists
// them, each followed by a blank.
std::optional<size_t> LayerNumberAt(const TabArea& tab, ScreenPoint p,
                                    const std::vector<uint32_t>& hk_ids,
                                    const ITextMetrics& metrics);

}  // namespace korvanel
