#include "ops/filter_expression.h"

#include <gtest/gtest.h>

namespace korvanel {
namespace {

// The values of table `c` that are visible, as ranges "a-b" joined by ",".
std::string Visible(const FilterTables& t, int c) {
  std::string out;
  for (size_t v = 0; v < t.table[c].size();) {
    if (!t.table[c][v]) {
      ++v;
      continue;
    }
    size_t end = v;
    while (end + 1 < t.table[c].size() && t.table[c][end + 1]) ++end;
    if (!out.empty()) out += ",";
    out += end == v ? std::to_string(v) : std::to_string(v) + "-" + std::to_string(end);
    v = end + 1;
  }
  return out;
}

TEST(FilterExpression, TokensApplyLeftToRight) {
  struct Row {
    const char* text;
    uint32_t bits;
    const char* visible;
  };
  // clang-format off
  const Row rows[] = {
      {"30,45-100,^60-70", 8, "30,45-59,71-100"}, {"0-100,^99", 8, "0-98,100"},
      {"*,^0-1024,512", 16, "512,1025-65535"}, {"*-999, 2001-*", 16, "0-999,2001-65535"},
      {"", 8, ""}, {"^*", 8, ""}, {"*", 8, "0-255"}, {",,7,,", 8, "7"},
      {"2 5 5", 8, "255"},  // blanks are removed first
  };
  // clang-format on
  for (const Row& row : rows) {
    FilterTables t;
    FilterParseState state;
    ASSERT_TRUE(ParseFilterExpression(row.text, row.bits, 1, t, state)) << row.text;
    EXPECT_EQ(Visible(t, 0), row.visible) << row.text;
  }
}

TEST(FilterExpression, OneComponentServesAllThree) {
  FilterTables t;
  FilterParseState state;
  ASSERT_TRUE(ParseFilterExpression("10-20", 8, 3, t, state));
  EXPECT_EQ(Visible(t, 2), "10-20");
  ASSERT_TRUE(ParseFilterExpression("100-128;200-*;*-80", 8, 3, t, state));
  EXPECT_EQ(Visible(t, 0), "100-128");
  EXPECT_EQ(Visible(t, 1), "200-255");
  EXPECT_EQ(Visible(t, 2), "0-80");
  ASSERT_TRUE(ParseFilterExpression(";;5", 8, 3, t, state));
  EXPECT_EQ(Visible(t, 0), "");
  EXPECT_EQ(Visible(t, 2), "5");
}

TEST(FilterExpression, ErrorsNameComponentAndToken) {
  struct Row {
    const char* text;
    uint32_t components;
    uint32_t code, component, token;
    const char* message;
  };
  const Row rows[] = {
      {"1;2", 3, 1, 0, 0, "Please make sure you supply 1 or 3 comma separated components"},
      {"1;2;3", 1, 1, 0, 0, "Please make sure you supply 1 or 3 comma separated components"},
      {"5-3", 1, 2, 1, 1, "Please fix comp 1 token 1"},
      {"300", 1, 2, 1, 1, "Please fix comp 1 token 1"},
      {"1;2,3,0-256;4", 3, 2, 2, 3, "Please fix comp 2 token 3"},
      {"1;2;x", 3, 2, 3, 1, "Please fix comp 3 token 1"},
      {"*-", 1, 2, 1, 1, "Please fix comp 1 token 1"},
      {"-5", 1, 2, 1, 1, "Please fix comp 1 token 1"},
  };
  for (const Row& row : rows) {
    FilterTables t;
    FilterParseState state;
    EXPECT_FALSE(ParseFilterExpression(row.text, 8, row.components, t, state)) << row.text;
    EXPECT_EQ(state.code, row.code) << row.text;
    EXPECT_EQ(state.component, row.component) << row.text;
    EXPECT_EQ(state.token, row.token) << row.text;
    EXPECT_STREQ(FilterErrorTitle(state), "Colors parse error");
    EXPECT_EQ(FilterErrorText(state), row.message);
  }
}

TEST(FilterExpression, OverlongTextsAreRefusedBeforeParsing) {
  FilterTables t;
  FilterParseState state;
  const std::string long_text(kMaxFilterTextLength + 1, '1');
  EXPECT_FALSE(ParseFilterExpression(long_text, 8, 1, t, state));
  EXPECT_EQ(state.code, 5u);
  EXPECT_STREQ(FilterErrorTitle(state), "Colors parse error");
  EXPECT_EQ(FilterErrorText(state), "Please keep the text below 16384 characters");
  EXPECT_FALSE(ParseNegationColor(long_text, t, state));
  EXPECT_EQ(state.code, 6u);
  EXPECT_STREQ(FilterErrorTitle(state), "Negate color parse error");
}

TEST(NegationColor, OneOrThreeValuesInRange) {
  FilterTables t;
  t.Reset(8, 3);
  FilterParseState state;
  ASSERT_TRUE(ParseNegationColor("", t, state));
  EXPECT_EQ(t.negation, (std::array<uint32_t, 3>{0, 0, 0}));
  ASSERT_TRUE(ParseNegationColor(" 16; 128 ,128", t, state));
  EXPECT_EQ(t.negation, (std::array<uint32_t, 3>{16, 128, 128}));
  ASSERT_TRUE(ParseNegationColor("7", t, state));
  EXPECT_EQ(t.negation, (std::array<uint32_t, 3>{7, 7, 7}));

  EXPECT_FALSE(ParseNegationColor("1,2", t, state));
  EXPECT_EQ(state.code, 3u);
  EXPECT_STREQ(FilterErrorTitle(state), "Negate color parse error");
  EXPECT_EQ(FilterErrorText(state), "Please make sure you supply 1 or 3 comma separated components");
  EXPECT_FALSE(ParseNegationColor("1,256,3", t, state));
  EXPECT_EQ(state.code, 4u);
  EXPECT_EQ(FilterErrorText(state), "Please fix comp 2");
  t.Reset(16, 1);
  EXPECT_TRUE(ParseNegationColor("65535", t, state));
}

}  // namespace
}  // namespace korvanel
