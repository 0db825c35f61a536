#pragma once

#include <optional>
#include <string>

#include "app/app_state.h"
#include "app/command_outcome.h"
#include "image/color_transform.h"

namespace korvanel {

struct ConvertCommand {
  size_t index = 0;         // the source image
  std::string target_text;  // a format expression the loader reads
  bool resize = false;
  std::string size_text;    // "width;height" expressions of w and h
  std::string offset_text;  // "x,y", may be empty
  bool tiled = false;
  bool use_default_transform = false;          // the built-in matrices, not the configured ones
  std::optional<ColorTransform> user_transform;  // for the direction the conversion needs
};

// Creates and registers the converted image; a failure comes back as its
// message and title (an abort as the quiet text "aborted").
CommandOutcome RunConvertCommand(AppState& app, const ConvertCommand& command);

}  // namespace korvanel
