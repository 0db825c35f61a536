#pragma once

// The five-part status bar: part edges for a client width, the texts of the
// parts, the mode letters and the status message with its display ticks.
//
// Part 3 holds the zoom text, so the mode letters go to the two parts that
// are otherwise free: the feature letters (G grid, V values, R or M ruler)
// in part 2 and the mode letters (C compare, X hex, T tracking, O offset)
// in the right-most part 4. Letters keep that order, one blank apart.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "ui/model/view_flags.h"

namespace korvanel {

inline constexpr size_t kStatusPartCount = 5;
inline constexpr size_t kStatusReadoutPart = 0;
inline constexpr size_t kStatusFeaturePart = 2;
inline constexpr size_t kStatusZoomPart = 3;
inline constexpr size_t kStatusModePart = 4;

struct StatusFields {
  std::array<std::string, kStatusPartCount> parts;
  friend bool operator==(const StatusFields&, const StatusFields&) = default;
};

// Right edges W-510, W-260, W-110, W-60 and W (the window's edge).
std::array<int32_t, kStatusPartCount> StatusPartEdges(int32_t width);
// The widths those edges give (W-510, 250, 150, 50, 60); none below 0, so a
// window narrower than 510 pixels squeezes the first part away.
std::array<int32_t, kStatusPartCount> StatusPartWidths(int32_t width);

// What the letters are made from: the toggles, the FI's ruler type and
// compare mode.
struct ModeFlags {
  ViewFlags view;
  bool ruler_matrix = false;
  bool compare = false;
};

std::string FeatureLetters(const ModeFlags& flags);  // "G V R"
std::string ModeLetters(const ModeFlags& flags);     // "C X T O"

// A status message: cut at 511 characters, shown for 16 ticks of 100 ms.
inline constexpr size_t kStatusMessageMax = 511;
inline constexpr uint32_t kStatusTickMs = 100;
inline constexpr uint32_t kStatusClearMs = 1501;

struct StatusMessage {
  std::string text;
  bool showing = false;
  uint32_t ticks = 0;

  void Show(std::string_view message);
  // Counts one tick; true when the message has just been cleared.
  bool Tick();
};

}  // namespace korvanel
