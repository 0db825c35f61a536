#include "image/format_parser.h"

#include <optional>
#include <string>
#include <vector>

#include "image/text_util.h"

namespace korvanel {

namespace {

bool ContainsAnyOf(std::string_view token, std::string_view letters) {
  return token.find_first_of(letters) != std::string_view::npos;
}

struct Layout {
  ColorKind kind;
  std::string text;
};

// Drops the expression text up to and including its first comma.
std::string_view DropThroughComma(std::string_view text) {
  const size_t comma = text.find(',');
  return comma == std::string_view::npos ? std::string_view{} : text.substr(comma + 1);
}

// The packing tokens are the ones ToText() prints.
std::optional<Packing> ParsePacking(std::string_view token) {
  for (Packing packing : {Packing::Interleave, Packing::Planar, Packing::PlanarInterleave}) {
    if (token == PackingToken(packing)) return packing;
  }
  return std::nullopt;
}

// layout (I)  ::= 3 chars with one of R,G,B  |  2..8 chars with one of Y,U,V
std::optional<Layout> ParseInterleaveLayout(const std::vector<std::string>& tokens) {
  if (tokens.empty()) return std::nullopt;
  const std::string& t = tokens[0];
  if (t.size() == 3 && ContainsAnyOf(t, "RGB")) return Layout{ColorKind::Rgb, t};
  if (t.size() >= 2 && t.size() <= 8 && ContainsAnyOf(t, "YUV")) return Layout{ColorKind::Yuv, t};
  return std::nullopt;
}

// layout (P)  ::= 3 tokens with R/G/B  |  3 tokens with Y/U/V  |  "Y"
std::optional<Layout> ParsePlanarLayout(const std::vector<std::string>& tokens) {
  auto all_three = [&](std::string_view letters) {
    return tokens.size() >= 3 && ContainsAnyOf(tokens[0], letters) &&
           ContainsAnyOf(tokens[1], letters) && ContainsAnyOf(tokens[2], letters);
  };
  auto joined = [&] { return tokens[0] + " " + tokens[1] + " " + tokens[2]; };
  if (all_three("RGB")) return Layout{ColorKind::Rgb, joined()};
  if (all_three("YUV")) return Layout{ColorKind::Yuv, joined()};
  // Grey is the single token "Y" and nothing else: "P,Y,U,8" is a typo, not grey.
  if (tokens.size() == 1 && tokens[0] == "Y") return Layout{ColorKind::Gray, "Y"};
  return std::nullopt;
}

// layout (PI) ::= one token with Y/U/V
std::optional<Layout> ParsePlanarInterleaveLayout(const std::vector<std::string>& tokens) {
  if (!tokens.empty() && ContainsAnyOf(tokens[0], "YUV")) return Layout{ColorKind::Yuv, tokens[0]};
  return std::nullopt;
}

std::optional<Layout> ParseLayout(Packing packing, const std::vector<std::string>& tokens) {
  switch (packing) {
    case Packing::Interleave: return ParseInterleaveLayout(tokens);
    case Packing::Planar: return ParsePlanarLayout(tokens);
    case Packing::PlanarInterleave: return ParsePlanarInterleaveLayout(tokens);
  }
  return std::nullopt;
}

void LogError(ILineSink& log, const std::string& text) { log.AddLine(text); }

bool IsOffsetToken(const std::string& token) { return ParseLeadingInt32(token) != 0 || token == "0"; }

// name rule ::= [ offset sep ] { attribute sep } name
// A well-known name as the last token, after nothing but an offset and
// attributes, stands for its expansion. Every text this changes is refused
// by the plain grammar (its packing token would be the name), and a leading
// A keeps the name from applying, so "A,NV12" stays refused as before.
std::optional<std::string> ExpandFormatName(const std::vector<std::string>& tokens,
                                            const FormatVocabulary& vocabulary, ILineSink& log) {
  const std::optional<std::string_view> expansion = FindFormatName(tokens.back(), vocabulary.names);
  if (!expansion) return std::nullopt;
  std::string text;
  for (size_t i = 0; i + 1 < tokens.size(); ++i) {
    const bool offset = i == 0 && IsOffsetToken(tokens[i]);
    if (!offset && !FindAttribute(tokens[i], vocabulary.attributes)) return std::nullopt;
    text += tokens[i] + ",";
  }
  log.AddLine(StrFormat("Format name '%s' reads as %s", tokens.back().c_str(),
                        std::string(*expansion).c_str()));
  return text + std::string(*expansion);
}

// expression ::= [ "A" "," ] [ offset "," ] { attribute "," } packing "," layout... "," bpp
//              |  name rule
// `entry` is the whole text as shown in the "No format expression" error.
std::optional<FormatExpression> ParseExpression(std::string_view text, std::string_view entry,
                                                uint32_t line, ILineSink& log,
                                                const FormatVocabulary& vocabulary) {
  FormatExpression format;
  format.line = line;
  text = TrimAscii(text);
  std::vector<std::string> tokens = SplitTokens(text, ", \t");
  if (tokens.empty()) {
    LogError(log, StrFormat("Parse error [#%u]: No format expression found in %s", line,
                            std::string(entry).c_str()));
    return std::nullopt;
  }
  std::string expanded;
  if (std::optional<std::string> by_name = ExpandFormatName(tokens, vocabulary, log)) {
    expanded = std::move(*by_name);
    text = expanded;
    tokens = SplitTokens(text, ",");
  }

  size_t next = 0;
  if (tokens[next][0] == 'A') {
    format.ascii = true;
    ++next;
    text = DropThroughComma(text);
  }
  if (next < tokens.size()) {
    if (IsOffsetToken(tokens[next])) {
      format.offset = ParseLeadingInt32(tokens[next]);
      ++next;
      text = DropThroughComma(text);
    }
  }
  format.expression = std::string(text);
  // Attributes stay in the expression text: it is the image's format text,
  // which a reload parses again.
  std::vector<AttributeToken> attributes;
  while (next < tokens.size()) {
    std::optional<AttributeToken> attribute = FindAttribute(tokens[next], vocabulary.attributes);
    if (!attribute) break;
    attributes.push_back(std::move(*attribute));
    ++next;
  }

  const std::string packing_token = next < tokens.size() ? tokens[next] : std::string{};
  const std::optional<Packing> packing = ParsePacking(packing_token);
  if (!packing) {
    LogError(log, StrFormat("Parse error [#%u]: Illegal packing '%s'", line, packing_token.c_str()));
    return std::nullopt;
  }
  format.packing = *packing;

  // The layout tokens stand between the packing and the last token (the bpp).
  const size_t layout_begin = next + 1;
  const size_t layout_end = tokens.size() - 1;
  std::vector<std::string> layout_tokens;
  if (layout_begin < layout_end) {
    layout_tokens.assign(tokens.begin() + static_cast<ptrdiff_t>(layout_begin),
                         tokens.begin() + static_cast<ptrdiff_t>(layout_end));
  }
  const std::optional<Layout> layout = ParseLayout(format.packing, layout_tokens);
  if (!layout) {
    LogError(log, StrFormat("Parse error [#%u]: Illegal '%s' in this context", line,
                            format.expression.c_str()));
    return std::nullopt;
  }
  format.color_kind = layout->kind;
  format.layout = layout->text;
  format.components = ReadComponentLayout(format.layout, format.color_kind);

  format.bpp = ParseLeadingInt32(tokens.back());
  const uint32_t magnitude = BppMagnitude(format.bpp);
  if (magnitude != 8 && magnitude != 16 && magnitude != 32) {
    LogError(log, StrFormat("Parse error [#%u]: Illegal BPP %d", line, format.bpp));
    return std::nullopt;
  }
  if (const std::optional<std::string> refusal =
          ApplyAttributes(attributes, magnitude, format.ascii, format.raw)) {
    LogError(log, StrFormat("Parse error [#%u]: %s", line, refusal->c_str()));
    return std::nullopt;
  }
  return format;
}

}  // namespace

FormatVocabulary FullVocabulary() { return {LayoutAttributeTable(), FormatNameTable()}; }

std::optional<FormatExpression> ParseFormatExpression(std::string_view text, uint32_t line,
                                                      ILineSink& log, const FormatVocabulary& vocabulary) {
  return ParseExpression(text, text, line, log, vocabulary);
}

// entry ::= "[" regex "]" sep expression
bool ParseFormatLine(std::string_view entry, uint32_t line, FormatGroup& group, ILineSink& log,
                     const FormatVocabulary& vocabulary) {
  const size_t open = entry.find('[');
  const size_t close = entry.rfind(']');
  if (open == std::string_view::npos || close == std::string_view::npos || close < open) {
    LogError(log, StrFormat("Parse error [#%u]: Can't parse regex in %s", line,
                            std::string(entry).c_str()));
    return false;
  }
  const std::string_view text =
      close + 2 <= entry.size() ? entry.substr(close + 2) : std::string_view{};
  std::optional<FormatExpression> format = ParseExpression(text, entry, line, log, vocabulary);
  if (!format) return false;
  format->regex = std::string(entry.substr(open + 1, close - open - 1));
  if (format->regex.empty()) format->regex = ".*";
  group.formats.push_back(std::move(*format));
  return true;
}

bool SetDirectExpression(std::string_view text, uint32_t width, uint32_t height,
                         DirectFormat& direct, ILineSink& log, const FormatVocabulary& vocabulary) {
  if (uint64_t{width} * height == 0) {
    direct.in_force = false;
    return true;
  }
  const std::string full = "[.*]," + ToUpperAscii(text);
  log.BeginEntry("Set custom format expression");
  log.AddLine(StrFormat("Trying to set: %s", full.c_str()));

  direct.group = FormatGroup{};
  direct.group.width_group = -1;
  direct.group.height_group = -1;
  direct.group.width_value = width;
  direct.group.height_value = height;

  const bool ok = ParseFormatLine(full, 0, direct.group, log, vocabulary);
  log.AddLine(StrFormat("Status: %s", ok ? "Success" : "Fail"));
  direct.in_force = ok;
  return ok;
}

}  // namespace korvanel
