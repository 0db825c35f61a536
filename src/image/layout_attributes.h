#pragma once

// The layout attributes a format expression may name before its packing
// token ("MSB=10,PI,YYYYUV,16"), as a table: a token is an attribute only
// when the text before its '=' is a row here. Everything else goes to the
// grammar's other steps, which refuse it as they always did.

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "image/raw_layout.h"

namespace korvanel {

struct LayoutAttribute {
  std::string_view name;
  // Names of the attributes this one cannot stand with.
  std::span<const std::string_view> excludes;
  // Applies `value` to `raw` for samples of `container` bits; false when the
  // value is not allowed.
  bool (*apply)(std::string_view value, uint32_t container, RawLayout& raw);
};

// Every attribute this build knows.
std::span<const LayoutAttribute> LayoutAttributeTable();

// One NAME=VALUE token whose name is a row of the table.
struct AttributeToken {
  const LayoutAttribute* attribute = nullptr;
  std::string value;
};

// The row `token` names, if it is NAME=VALUE with NAME in `table`.
std::optional<AttributeToken> FindAttribute(std::string_view token,
                                            std::span<const LayoutAttribute> table);

// Applies the tokens in order for samples of `container` bits. On refusal
// returns the reason as the text after "Parse error [#N]: ".
std::optional<std::string> ApplyAttributes(const std::vector<AttributeToken>& tokens, uint32_t container,
                                           bool ascii, RawLayout& raw);

}  // namespace korvanel
