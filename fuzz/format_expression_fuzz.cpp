// One format entry, as a formats-file line and as a typed expression; an
// expression that parses must print as text that parses back to itself.
// Attributes and well-known names give meaning only to text the plain
// grammar refuses: with both tables empty every other input must give the
// same record and the same log lines.
#include <optional>
#include <string>
#include <vector>

#include "image/format_parser.h"
#include "image/text_util.h"

namespace {

struct Outcome {
  std::optional<korvanel::FormatExpression> format;
  std::vector<std::string> lines;
};

class LinesSink : public korvanel::ILineSink {
 public:
  void BeginEntry(std::string_view title) override { lines.push_back("entry " + std::string(title)); }
  void AddLine(std::string_view line) override { lines.emplace_back(line); }
  std::vector<std::string> lines;
};

Outcome Parse(const std::string& text, const korvanel::FormatVocabulary& vocabulary) {
  LinesSink log;
  Outcome outcome;
  outcome.format = korvanel::ParseFormatExpression(text, 1, log, vocabulary);
  korvanel::FormatGroup group;
  korvanel::ParseFormatLine(text, 2, group, log, vocabulary);
  korvanel::DirectFormat direct;
  korvanel::SetDirectExpression(text, 640, 480, direct, log, vocabulary);
  outcome.lines = std::move(log.lines);
  return outcome;
}

// Whether the text names an attribute or a name the full tables know, in
// any case and wherever it stands (the character after a regex's ']' is
// skipped unseen, so that text is split on its own); such input may differ
// from the plain grammar's reading.
bool MentionsVocabulary(const std::string& text) {
  const korvanel::FormatVocabulary full = korvanel::FullVocabulary();
  const std::string upper = korvanel::ToUpperAscii(text);
  for (const korvanel::LayoutAttribute& row : full.attributes) {
    if (upper.find(std::string(row.name) + "=") != std::string::npos) return true;
  }
  const size_t close = text.rfind(']');
  const std::string behind = close != std::string::npos && close + 2 <= text.size() ? text.substr(close + 2) : "";
  for (const std::string& part : {text, behind}) {
    for (const std::string& token : korvanel::SplitTokens(part, ", \t[]")) {
      if (korvanel::FindFormatName(korvanel::TrimAscii(token), full.names)) return true;
    }
  }
  return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const Outcome full = Parse(text, korvanel::FullVocabulary());
  if (!MentionsVocabulary(text)) {
    const Outcome plain = Parse(text, korvanel::FormatVocabulary{});
    if (plain.format != full.format || plain.lines != full.lines) __builtin_trap();
  }
  korvanel::CNullLineSink log;
  if (full.format) {
    const std::string plain = full.format->ToText();
    const std::optional<korvanel::FormatExpression> back = korvanel::ParseFormatExpression(plain, 1, log);
    if (!back || back->ToText() != plain || back->components != full.format->components ||
        back->color_kind != full.format->color_kind || back->bpp != full.format->bpp ||
        back->raw != full.format->raw) {
      __builtin_trap();
    }
  }
  return 0;
}
