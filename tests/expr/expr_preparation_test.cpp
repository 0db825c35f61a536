#include "expr/expr_preparation.h"

#include <gtest/gtest.h>

namespace korvanel {
namespace {

struct PrepareCase {
  const char* raw;
  bool fold;
  const char* prepared;
};
void PrintTo(const PrepareCase& c, std::ostream* os) {
  *os << c.raw;
}

class PrepareTest : public ::testing::TestWithParam<PrepareCase> {};

TEST_P(PrepareTest, RewritesTheText) {
  const PrepareCase& c = GetParam();
  std::string out;
  ExprErrorState error;
  ASSERT_TRUE(PrepareExpressionText(c.raw, c.fold, out, error));
  EXPECT_EQ(out, c.prepared);
  EXPECT_EQ(error.code, kExprSuccess);
}

INSTANTIATE_TEST_SUITE_P(
    Steps, PrepareTest,
    ::testing::Values(
        // Blanks go; a minus after an operand becomes "+-".
        PrepareCase{"a - b", false, "a+-b"}, PrepareCase{"5--3", false, "5+--3"},
        PrepareCase{"(1)-2", false, "(1)+-2"}, PrepareCase{"x - -y", false, "x+--y"},
        PrepareCase{"1e-5", false, "1e+-5"},
        // After an operator, '(', ',', '.' or at the start it stays a prefix minus.
        PrepareCase{"2*-3", false, "2*-3"}, PrepareCase{"(-3)", false, "(-3)"},
        PrepareCase{"f(a,-b)", false, "f(a,-b)"}, PrepareCase{"1.-2", false, "1.-2"},
        PrepareCase{"-x", false, "-x"}, PrepareCase{"a<-1", false, "a<-1"},
        // Negated calls are wrapped; names with digits deliberately are not.
        PrepareCase{"-sin(x)", false, "-(sin(x))"}, PrepareCase{"a-sin(x)", false, "a+-(sin(x))"},
        PrepareCase{"2*-cos(x)+1", false, "2*-(cos(x))+1"},
        PrepareCase{"-sin(-cos(x))", false, "-(sin(-(cos(x))))"},
        PrepareCase{"-_f(1)", false, "-(_f(1))"}, PrepareCase{"-log10(x)", false, "-log10(x)"},
        PrepareCase{"-atan2(1,2)", false, "-atan2(1,2)"},
        PrepareCase{"-min(x,1)", false, "-(min(x,1))"},
        // Case folding touches A-Z only.
        PrepareCase{"SIN(X) - A_1", true, "sin(x)+-a_1"}, PrepareCase{"SIN(X)", false, "SIN(X)"}));

struct BalanceCase {
  const char* raw;
  uint32_t code;
  const char* detail;
};

TEST(PrepareExpressionText, BalanceCheckReportsTheCount) {
  const BalanceCase cases[] = {
      {"(1+2", kExprExtraOpenParenthesis, "1"},
      {"((((1", kExprExtraOpenParenthesis, "4"},
      {"1+2)", kExprUnexpectedCloseParenthesis, "-1"},
      // Counting stops at the first unmatched ')', so a later '(' cannot balance it.
      {"1)+(2", kExprUnexpectedCloseParenthesis, "-1"},
  };
  for (const BalanceCase& c : cases) {
    std::string out;
    ExprErrorState error;
    EXPECT_FALSE(PrepareExpressionText(c.raw, false, out, error)) << c.raw;
    EXPECT_EQ(error.code, c.code) << c.raw;
    EXPECT_EQ(error.detail, c.detail) << c.raw;
  }
}

}  // namespace
}  // namespace korvanel
