#include "ui/model/find_entry.h"

#include <algorithm>

#include "ui/model/readout.h"

namespace korvanel {

namespace {

using Kind = FindOutcome::Kind;

// Three 32-bit hexadecimal components with their prefixes fit easily.
constexpr size_t kMaxInput = 48;
constexpr size_t kMaxHistory = 40;

}  // namespace

void CFindHistory::Add(std::string_view text) {
  std::erase(entries_, std::string(text));
  entries_.insert(entries_.begin(), std::string(text));
  if (entries_.size() > kMaxHistory) entries_.pop_back();
}

FindOutcome CFindEntry::OnChar(char32_t ch, const FindContext& context,
                               const CFindHistory& history) {
  if (ch == U'\t') {
    Complete(history);
    return {};
  }
  completing_.reset();
  if (ch == U' ') {
    if (input_.empty()) return {};
    ParsedPixelValue parsed = ParsePixelValue(input_, context.components, context.bits);
    if (!parsed.value) return {Kind::Fail, {}, std::move(parsed.error)};
    return {Kind::Search, *parsed.value, {}};
  }
  if (ch == U'-') return {Kind::ClearMarks, {}, {}};
  // The find keys' own characters ("=", and "+" where Shift+= gives it)
  // arrive after the key that started the phase.
  if (ch == U'=' || ch == U'+') return {};
  if (ch == U'\b') {
    if (!input_.empty()) input_.pop_back();
  } else if (ch > U' ' && ch < 0x7F && input_.size() < kMaxInput) {
    // Anything printable is taken; the parser names what is wrong with it.
    input_ += static_cast<char>(ch);
  }
  return {};
}

// Each Tab puts the next earlier search that begins with the typed text.
void CFindEntry::Complete(const CFindHistory& history) {
  if (!completing_) {
    completing_ = input_;
    completion_ = 0;
  }
  const std::vector<std::string>& entries = history.Entries();
  for (size_t tried = 0; tried < entries.size(); ++tried) {
    const std::string& entry = entries[completion_ % entries.size()];
    completion_ = (completion_ + 1) % entries.size();
    if (entry.starts_with(*completing_)) {
      input_ = entry;
      return;
    }
  }
}

FindOutcome CFindEntry::Paste(std::string_view clipboard) {
  const std::optional<CopiedPixel> copied = ParseCopiedPixel(clipboard);
  if (!copied) return {Kind::Notice, {}, "The clipboard holds no pixel copied with P"};
  completing_.reset();
  input_ = copied->value.substr(0, kMaxInput);
  return {};
}

}  // namespace korvanel
