#include "ui/model/status_bar.h"

#include <algorithm>
#include <initializer_list>

namespace korvanel {

namespace {

// Letters in display order, one blank apart; null entries are left out.
std::string JoinLetters(std::initializer_list<const char*> letters) {
  std::string text;
  for (const char* letter : letters) {
    if (letter == nullptr) continue;
    if (!text.empty()) text += ' ';
    text += letter;
  }
  return text;
}

const char* LetterIf(bool on, const char* letter) { return on ? letter : nullptr; }

}  // namespace

std::array<int32_t, kStatusPartCount> StatusPartEdges(int32_t width) {
  return {width - 510, width - 260, width - 110, width - 60, width};
}

std::array<int32_t, kStatusPartCount> StatusPartWidths(int32_t width) {
  const std::array<int32_t, kStatusPartCount> edges = StatusPartEdges(width);
  std::array<int32_t, kStatusPartCount> widths{};
  int32_t left = 0;
  for (size_t i = 0; i < kStatusPartCount; ++i) {
    const int32_t right = std::max(edges[i], left);
    widths[i] = right - left;
    left = right;
  }
  return widths;
}

std::string FeatureLetters(const ModeFlags& flags) {
  const ViewFlags& v = flags.view;
  return JoinLetters({LetterIf(v.grid, "G"), LetterIf(v.values, "V"),
                      LetterIf(v.ruler, flags.ruler_matrix ? "M" : "R")});
}

std::string ModeLetters(const ModeFlags& flags) {
  const ViewFlags& v = flags.view;
  return JoinLetters({LetterIf(flags.compare, "C"), LetterIf(v.hex, "X"),
                      LetterIf(v.tracking, "T"), LetterIf(v.offset, "O")});
}

void StatusMessage::Show(std::string_view message) {
  text.assign(message.substr(0, kStatusMessageMax));
  showing = true;
  ticks = 0;
}

bool StatusMessage::Tick() {
  if (!showing) return false;
  ++ticks;
  if (ticks * kStatusTickMs < kStatusClearMs) return false;
  showing = false;
  ticks = 0;
  text.clear();
  return true;
}

}  // namespace korvanel
