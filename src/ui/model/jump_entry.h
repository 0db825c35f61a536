#pragma once

// What the jump phase does with each typed character: "X Y" entered with a
// space after each number, negatives counting from the right or bottom edge,
// Backspace, "c" to clear the coordinate history, Tab and "~" (or "`") to
// iterate it, "r" to iterate the active ROI's corners clockwise from the
// top-left, and a pasted P copy. Decides only; the controller jumps.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "image/region.h"
#include "ui/model/coordinate_history.h"
#include "ui/model/geometry.h"
#include "ui/model/pixel_mapping.h"

namespace korvanel {

inline constexpr const char* kJumpPrompt = "Jump to X Y: ";

// The image the coordinates refer to.
struct JumpContext {
  ImageSize size;
  std::optional<Rect> roi;  // the active ROI, if any
};

struct JumpOutcome {
  enum class Kind : uint8_t {
    Continue,  // the input changed (or nothing happened); the phase goes on
    Jump,      // jump to `target` and end the phase
    Visit,     // jump to `target`; the phase goes on
    Fail,      // end the phase showing `message`
    Notice,    // show `message`; the phase goes on
  };
  Kind kind = Kind::Continue;
  PixelPoint target;
  std::string message;
};

class CJumpEntry {
 public:
  JumpOutcome OnChar(char32_t ch, const JumpContext& context, CCoordinateHistory& history);
  // Ctrl+V: a coordinate copied with P becomes the input ("x y"); the next
  // space jumps there.
  JumpOutcome Paste(std::string_view clipboard);
  const std::string& Input() const { return input_; }
  // "Jump to X Y: " and what was typed.
  std::string Prompt() const { return kJumpPrompt + input_; }

 private:
  JumpOutcome Space(const JumpContext& context);
  JumpOutcome NextCorner(const JumpContext& context);

  std::string input_;
  size_t corner_ = 0;
};

}  // namespace korvanel
