#include "image/layout_attributes.h"

#include <array>
#include <charconv>

#include "image/text_util.h"

namespace korvanel {

namespace {

// A count of bits strictly inside the container: 1..container-1, digits only.
std::optional<uint32_t> ParseBitCount(std::string_view value, uint32_t container) {
  uint32_t bits = 0;
  const char* end = value.data() + value.size();
  const auto [stop, error] = std::from_chars(value.data(), end, bits);
  if (value.empty() || error != std::errc{} || stop != end) return std::nullopt;
  if (bits < 1 || bits >= container) return std::nullopt;
  return bits;
}

template <BitAlign Align>
bool ApplyBitAlign(std::string_view value, uint32_t container, RawLayout& raw) {
  const std::optional<uint32_t> bits = ParseBitCount(value, container);
  if (!bits) return false;
  raw.align = Align;
  raw.bits = *bits;
  return true;
}

constexpr std::array<std::string_view, 1> kExcludesLsb = {"MSB"};
constexpr std::array<std::string_view, 1> kExcludesMsb = {"LSB"};

constexpr LayoutAttribute kAttributes[] = {
    {"LSB", kExcludesLsb, &ApplyBitAlign<BitAlign::Lsb>},
    {"MSB", kExcludesMsb, &ApplyBitAlign<BitAlign::Msb>},
};

const AttributeToken* FindNamed(const std::vector<AttributeToken>& tokens, size_t before,
                                std::string_view name) {
  for (size_t i = 0; i < before; ++i) {
    if (tokens[i].attribute->name == name) return &tokens[i];
  }
  return nullptr;
}

}  // namespace

std::span<const LayoutAttribute> LayoutAttributeTable() { return kAttributes; }

std::optional<AttributeToken> FindAttribute(std::string_view token,
                                            std::span<const LayoutAttribute> table) {
  const size_t equals = token.find('=');
  if (equals == std::string_view::npos) return std::nullopt;
  const std::string_view name = token.substr(0, equals);
  for (const LayoutAttribute& row : table) {
    if (row.name == name) return AttributeToken{&row, std::string(token.substr(equals + 1))};
  }
  return std::nullopt;
}

std::optional<std::string> ApplyAttributes(const std::vector<AttributeToken>& tokens, uint32_t container,
                                           bool ascii, RawLayout& raw) {
  for (size_t i = 0; i < tokens.size(); ++i) {
    const LayoutAttribute& row = *tokens[i].attribute;
    const std::string name(row.name);
    if (ascii) return StrFormat("%s can't be used with A", name.c_str());
    if (FindNamed(tokens, i, row.name) != nullptr) return StrFormat("%s is given twice", name.c_str());
    for (std::string_view other : row.excludes) {
      if (FindNamed(tokens, i, other) != nullptr) {
        return StrFormat("%s and %s exclude each other", std::string(other).c_str(), name.c_str());
      }
    }
    if (!row.apply(tokens[i].value, container, raw)) {
      return StrFormat("Illegal %s value '%s'", name.c_str(), tokens[i].value.c_str());
    }
  }
  return std::nullopt;
}

}  // namespace korvanel
