#pragma once

// What the find phase does with each typed character: the value is typed
// (one number, or three separated by commas, decimal or "0x" hexadecimal),
// a space searches, Backspace deletes, Tab completes from earlier searches,
// "-" clears the find marks and Ctrl+V pastes the value of a P copy. "="
// and "+" are ignored: they come with the keys that start the phase.
// Decides only; the controller searches.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ui/model/pixel_search.h"

namespace korvanel {

inline constexpr const char* kFindPrompt = "Find pixel: ";

// The searched image's shape.
struct FindContext {
  uint32_t components = 1;
  uint32_t bits = 8;
};

struct FindOutcome {
  enum class Kind : uint8_t {
    Continue,    // the input changed (or nothing happened); the phase goes on
    Search,      // search for `value` and end the phase
    Fail,        // end the phase showing `message`
    ClearMarks,  // clear the find marks; the phase goes on
    Notice,      // show `message`; the phase goes on
  };
  Kind kind = Kind::Continue;
  PixelValue value;
  std::string message;
};

// The texts searched before, most recent first, for Tab completion.
class CFindHistory {
 public:
  void Add(std::string_view text);
  const std::vector<std::string>& Entries() const { return entries_; }

 private:
  std::vector<std::string> entries_;
};

class CFindEntry {
 public:
  FindOutcome OnChar(char32_t ch, const FindContext& context, const CFindHistory& history);
  FindOutcome Paste(std::string_view clipboard);
  const std::string& Input() const { return input_; }
  std::string Prompt() const { return kFindPrompt + input_; }

 private:
  void Complete(const CFindHistory& history);

  std::string input_;
  // Tab completion: the text typed before the first Tab and the next entry.
  std::optional<std::string> completing_;
  size_t completion_ = 0;
};

}  // namespace korvanel
