#include "ops/filter_expression.h"

#include <charconv>
#include <optional>

#include "image/text_util.h"

namespace korvanel {

namespace {

std::string WithoutBlanks(std::string_view text) {
  std::string out;
  for (char c : text) {
    if (c != ' ' && c != '\t') out.push_back(c);
  }
  return out;
}


// "%u": a whole unsigned decimal number.
std::optional<uint64_t> ReadUnsigned(std::string_view text) {
  uint64_t value = 0;
  if (text.empty() || text[0] == '+' || text[0] == '-') return std::nullopt;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

// token ::= ["^"] ( "*-" n | n "-*" | n "-" n | "*" | n )
bool ApplyToken(std::string_view token, uint32_t max_value, std::vector<uint8_t>& table) {
  uint8_t write = 1;
  if (!token.empty() && token[0] == '^') {
    write = 0;
    token.remove_prefix(1);
  }
  uint64_t low = 0, high = max_value;
  if (token.find('-') != std::string_view::npos) {
    std::optional<uint64_t> a, b;
    if (token.substr(0, 2) == "*-") {
      a = 0;
      b = ReadUnsigned(token.substr(2));
    } else if (token.size() >= 2 && token.substr(token.size() - 2) == "-*") {
      a = ReadUnsigned(token.substr(0, token.size() - 2));
      b = max_value;
    } else {
      const size_t dash = token.find('-');
      a = ReadUnsigned(token.substr(0, dash));
      b = ReadUnsigned(token.substr(dash + 1));
    }
    if (!a || !b || *a > *b || *a > max_value || *b > max_value) return false;
    low = *a;
    high = *b;
  } else if (!token.empty() && token[0] == '*') {
    // the whole table
  } else {
    const std::optional<uint64_t> v = ReadUnsigned(token);
    if (!v || *v > max_value) return false;
    low = high = *v;
  }
  std::fill(table.begin() + static_cast<ptrdiff_t>(low), table.begin() + static_cast<ptrdiff_t>(high) + 1, write);
  return true;
}

}  // namespace

// expression ::= component { ";" component };  component ::= token { "," token }
bool ParseFilterExpression(std::string_view text, uint32_t bits, uint32_t components,
                           FilterTables& tables, FilterParseState& state) {
  state = {};
  tables.Reset(bits, components);
  if (text.size() > kMaxFilterTextLength) {
    state.code = 5;
    return false;
  }
  const std::vector<std::string> parts = SplitKeepingEmpty(WithoutBlanks(text), ";");
  if ((parts.size() != 1 && parts.size() != 3) || parts.size() > components) {
    state.code = 1;
    return false;
  }
  for (size_t c = 0; c < parts.size(); ++c) {
    const std::vector<std::string> tokens = SplitTokens(parts[c], ",");
    for (size_t t = 0; t < tokens.size(); ++t) {
      if (!ApplyToken(tokens[t], tables.MaxValue(), tables.table[c])) {
        state = {2, static_cast<uint32_t>(c + 1), static_cast<uint32_t>(t + 1)};
        return false;
      }
    }
  }
  if (parts.size() == 1) tables.table[2] = tables.table[1] = tables.table[0];
  return true;
}

bool ParseNegationColor(std::string_view text, FilterTables& tables, FilterParseState& state) {
  state = {};
  tables.negation = {0, 0, 0};
  if (text.size() > kMaxFilterTextLength) {
    state.code = 6;
    return false;
  }
  const std::string compact = WithoutBlanks(text);
  if (compact.empty()) return true;
  const std::vector<std::string> parts = SplitKeepingEmpty(compact, ",;");
  if (parts.size() != 1 && parts.size() != 3) {
    state.code = 3;
    return false;
  }
  for (size_t c = 0; c < parts.size(); ++c) {
    const std::optional<uint64_t> v = ReadUnsigned(parts[c]);
    if (!v || *v > tables.MaxValue()) {
      state = {4, static_cast<uint32_t>(c + 1), 0};
      return false;
    }
    tables.negation[c] = static_cast<uint32_t>(*v);
  }
  if (parts.size() == 1) tables.negation = {tables.negation[0], tables.negation[0], tables.negation[0]};
  return true;
}

const char* FilterErrorTitle(const FilterParseState& state) {
  const bool negation = state.code == 3 || state.code == 4 || state.code == 6;
  return negation ? "Negate color parse error" : "Colors parse error";
}

std::string FilterErrorText(const FilterParseState& state) {
  switch (state.code) {
    case 1:
    case 3: return "Please make sure you supply 1 or 3 comma separated components";
    case 2: return StrFormat("Please fix comp %u token %u", state.component, state.token);
    case 4: return StrFormat("Please fix comp %u", state.component);
    case 5:
    case 6: return StrFormat("Please keep the text below %zu characters", kMaxFilterTextLength);
    default: return {};
  }
}

}  // namespace korvanel
