#include "image/format_parser.h"

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <utility>

#include "image/format_generator.h"
#include "support/collecting_sink.h"

namespace korvanel {
namespace {

using test::CollectingSink;

struct Accepted {
  const char* entry;
  ColorKind kind;
  Packing packing;
  const char* layout;
  const char* expression;
  int32_t bpp;
  int32_t offset;
  bool ascii;
  const char* regex;
};

void PrintTo(const Accepted& c, std::ostream* os) { *os << c.entry; }

class FormatAccepted : public ::testing::TestWithParam<Accepted> {};

TEST_P(FormatAccepted, FillsEveryField) {
  const Accepted& c = GetParam();
  FormatGroup group;
  CollectingSink log;
  ASSERT_TRUE(ParseFormatLine(c.entry, 7, group, log)) << (log.lines.empty() ? "" : log.lines[0]);
  ASSERT_EQ(group.formats.size(), 1u);
  const FormatExpression& f = group.formats[0];
  EXPECT_EQ(f.color_kind, c.kind);
  EXPECT_EQ(f.packing, c.packing);
  EXPECT_EQ(f.layout, c.layout);
  EXPECT_EQ(f.expression, c.expression);
  EXPECT_EQ(f.bpp, c.bpp);
  EXPECT_EQ(f.offset, c.offset);
  EXPECT_EQ(f.ascii, c.ascii);
  EXPECT_EQ(f.regex, c.regex);
  EXPECT_EQ(f.line, 7u);
  EXPECT_TRUE(log.lines.empty());
}

constexpr int32_t kNone = kOffsetNotGiven;
INSTANTIATE_TEST_SUITE_P(
    Forms, FormatAccepted,
    ::testing::Values(
        Accepted{"[.*],P,Y,8", ColorKind::Gray, Packing::Planar, "Y", "P,Y,8", 8, kNone, false, ".*"},
        Accepted{"[.*],A,P,Y,16", ColorKind::Gray, Packing::Planar, "Y", "P,Y,16", 16, kNone, true, ".*"},
        Accepted{"[.*],0,I,RGB,8", ColorKind::Rgb, Packing::Interleave, "RGB", "I,RGB,8", 8, 0, false, ".*"},
        Accepted{"[.*],-1024,I,YUYV,-16", ColorKind::Yuv, Packing::Interleave, "YUYV", "I,YUYV,-16", -16,
                 -1024, false, ".*"},
        Accepted{"[],I,BGR,32", ColorKind::Rgb, Packing::Interleave, "BGR", "I,BGR,32", 32, kNone, false, ".*"},
        Accepted{"[.*\\.yuv] P,YY,U,V,8", ColorKind::Yuv, Packing::Planar, "YY U V", "P,YY,U,V,8", 8, kNone,
                 false, ".*\\.yuv"},
        Accepted{"[x],P,B,G,R,-32", ColorKind::Rgb, Packing::Planar, "B G R", "P,B,G,R,-32", -32, kNone, false,
                 "x"},
        Accepted{"[x],PI,YYYYVU,8", ColorKind::Yuv, Packing::PlanarInterleave, "YYYYVU", "PI,YYYYVU,8", 8,
                 kNone, false, "x"},
        Accepted{"[x],A,100,P,Y,8", ColorKind::Gray, Packing::Planar, "Y", "P,Y,8", 8, 100, true, "x"},
        // The loader, not the parser, refuses letters outside the family.
        Accepted{"[x],I,YUVA,8", ColorKind::Yuv, Packing::Interleave, "YUVA", "I,YUVA,8", 8, kNone, false, "x"},
        // Three characters without R/G/B fall to the YUV row.
        Accepted{"[x],I,UYV,8", ColorKind::Yuv, Packing::Interleave, "UYV", "I,UYV,8", 8, kNone, false, "x"},
        // Whatever stands between layout and the last token is ignored.
        Accepted{"[x],I,RGB,junk,16", ColorKind::Rgb, Packing::Interleave, "RGB", "I,RGB,junk,16", 16, kNone,
                 false, "x"},
        Accepted{"[x],P,Y,-8", ColorKind::Gray, Packing::Planar, "Y", "P,Y,-8", -8, kNone, false, "x"},
        Accepted{"[x] P Y 8", ColorKind::Gray, Packing::Planar, "Y", "P Y 8", 8, kNone, false, "x"}));

// Every accepted form prints as text that parses back to the same descriptor
// and prints the same again.
TEST_P(FormatAccepted, ToTextParsesBackToTheSameDescriptor) {
  FormatGroup group;
  CollectingSink log;
  ASSERT_TRUE(ParseFormatLine(GetParam().entry, 7, group, log));
  const FormatExpression& f = group.formats[0];
  const std::string text = f.ToText();
  const std::optional<FormatExpression> back = ParseFormatExpression(text, 7, log);
  ASSERT_TRUE(back) << text;
  EXPECT_EQ(back->ToText(), text);
  EXPECT_EQ(back->color_kind, f.color_kind) << text;
  EXPECT_EQ(back->packing, f.packing) << text;
  EXPECT_EQ(back->layout, f.layout) << text;
  EXPECT_EQ(back->components, f.components) << text;
  EXPECT_EQ(back->bpp, f.bpp) << text;
  EXPECT_EQ(back->offset, f.offset) << text;
  EXPECT_EQ(back->ascii, f.ascii) << text;
  EXPECT_TRUE(log.lines.empty());
}

TEST(FormatExpressionText, PlainFormsComeBackAsWrittenAndLooseOnesNormalised) {
  const std::pair<const char*, const char*> rows[] = {
      {"P,Y,8", "P,Y,8"},
      {"A,P,Y,16", "A,P,Y,16"},
      {"0,I,RGB,8", "0,I,RGB,8"},
      {"-1024,I,YUYV,-16", "-1024,I,YUYV,-16"},
      {"A,100,P,Y,-8", "A,100,P,Y,-8"},
      {"P,YY,U,V,8", "P,YY,U,V,8"},
      {"P,B,G,R,-32", "P,B,G,R,-32"},
      {"PI,YYYYVU,32", "PI,YYYYVU,32"},
      {"I,YUVA,8", "I,YUVA,8"},
      {"P Y 8", "P,Y,8"},
      {"P , R , G , B , 16", "P,R,G,B,16"},
      {"ASCII,+12,P,Y,8", "A,12,P,Y,8"},
      {"I,BGR,08", "I,BGR,8"},
      {"I,RGB,junk,16", "I,RGB,16"},
  };
  for (const auto& [written, plain] : rows) {
    CollectingSink log;
    const std::optional<FormatExpression> f = ParseFormatExpression(written, 0, log);
    ASSERT_TRUE(f) << written;
    EXPECT_EQ(f->ToText(), plain) << written;
  }
}

TEST(FormatExpressionText, ParsingWithoutRegexLogsTheSameErrors) {
  const std::pair<const char*, const char*> rows[] = {
      {"", "Parse error [#4]: No format expression found in "},
      {"X,Y,8", "Parse error [#4]: Illegal packing 'X'"},
      {"P,Y,12", "Parse error [#4]: Illegal BPP 12"},
      {"I,RGBA,8", "Parse error [#4]: Illegal 'I,RGBA,8' in this context"},
  };
  for (const auto& [text, message] : rows) {
    CollectingSink log;
    EXPECT_FALSE(ParseFormatExpression(text, 4, log)) << text;
    EXPECT_EQ(log.lines, std::vector<std::string>{message});
  }
}

struct LayoutRow {
  const char* layout;
  ColorKind kind;
  std::vector<std::string> tokens;
  const char* letters;
  std::array<uint32_t, 3> counts;
  const char* order;
  bool only_family;
  bool cell_pairs;
};

TEST(ComponentLayout, ReadsTokensCountsAndOrderOnce) {
  const LayoutRow rows[] = {
      {"YUYV", ColorKind::Yuv, {"YUYV"}, "YUYV", {2, 1, 1}, "YUV", true, false},
      {"UYVY", ColorKind::Yuv, {"UYVY"}, "UYVY", {2, 1, 1}, "UYV", true, false},
      {"YY U V", ColorKind::Yuv, {"YY", "U", "V"}, "YYUV", {2, 1, 1}, "YUV", true, false},
      {"YYYYVU", ColorKind::Yuv, {"YYYYVU"}, "YYYYVU", {4, 1, 1}, "YVU", true, true},
      {"YYYYUV", ColorKind::Yuv, {"YYYYUV"}, "YYYYUV", {4, 1, 1}, "YUV", true, true},
      {"YYYYUUV", ColorKind::Yuv, {"YYYYUUV"}, "YYYYUUV", {4, 2, 1}, "YUV", true, false},
      {"YUVA", ColorKind::Yuv, {"YUVA"}, "YUVA", {1, 1, 1}, "YUV", false, false},
      {"YY", ColorKind::Yuv, {"YY"}, "YY", {2, 0, 0}, "", true, false},
      {"B G R", ColorKind::Rgb, {"B", "G", "R"}, "BGR", {1, 1, 1}, "BGR", true, false},
      {"GRB", ColorKind::Rgb, {"GRB"}, "GRB", {1, 1, 1}, "GRB", true, false},
      {"Y", ColorKind::Gray, {"Y"}, "Y", {1, 0, 0}, "", true, false},
  };
  for (const LayoutRow& row : rows) {
    SCOPED_TRACE(row.layout);
    const ComponentLayout layout = ReadComponentLayout(row.layout, row.kind);
    EXPECT_EQ(layout.tokens, row.tokens);
    EXPECT_EQ(layout.letters, row.letters);
    EXPECT_EQ(layout.counts, row.counts);
    EXPECT_EQ(layout.order, row.order);
    EXPECT_EQ(layout.OnlyFamilyLetters(), row.only_family);
    EXPECT_EQ(layout.IsCellPairLayout(), row.cell_pairs);
  }
}

TEST(ComponentLayout, ParserStoresTheLayoutItRead) {
  CollectingSink log;
  const std::optional<FormatExpression> f = ParseFormatExpression("P,YY,U,V,16", 0, log);
  ASSERT_TRUE(f);
  EXPECT_EQ(f->components, ReadComponentLayout("YY U V", ColorKind::Yuv));
  EXPECT_EQ(f->components.MaxCount(), 2u);
  // A record made without parsing describes the grey layout it defaults to.
  EXPECT_EQ(FormatExpression{}.components, ReadComponentLayout("Y", ColorKind::Gray));
  EXPECT_EQ(FormatExpression{}.ToText(), "P,Y,8");
}

struct Refused {
  const char* entry;
  const char* message;
};

void PrintTo(const Refused& c, std::ostream* os) { *os << c.entry; }

class FormatRefused : public ::testing::TestWithParam<Refused> {};

TEST_P(FormatRefused, LogsOneLineAndLeavesGroup) {
  FormatGroup group;
  CollectingSink log;
  EXPECT_FALSE(ParseFormatLine(GetParam().entry, 3, group, log));
  EXPECT_TRUE(group.formats.empty());
  ASSERT_EQ(log.lines.size(), 1u);
  EXPECT_EQ(log.lines[0], GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, FormatRefused,
    ::testing::Values(
        Refused{"P,Y,8", "Parse error [#3]: Can't parse regex in P,Y,8"},
        Refused{"[.*",  "Parse error [#3]: Can't parse regex in [.*"},
        Refused{"].*[,P,Y,8", "Parse error [#3]: Can't parse regex in ].*[,P,Y,8"},
        Refused{"[.*]", "Parse error [#3]: No format expression found in [.*]"},
        Refused{"[.*], , ,", "Parse error [#3]: No format expression found in [.*], , ,"},
        Refused{"[.*],X,Y,8", "Parse error [#3]: Illegal packing 'X'"},
        Refused{"[.*],A", "Parse error [#3]: Illegal packing ''"},
        Refused{"[.*],P,Y,12", "Parse error [#3]: Illegal BPP 12"},
        Refused{"[.*],P,Y,24", "Parse error [#3]: Illegal BPP 24"},
        Refused{"[.*],P,Y,-12", "Parse error [#3]: Illegal BPP -12"},
        Refused{"[.*],P,Y,bits", "Parse error [#3]: Illegal BPP 0"},
        Refused{"[.*],I,RGBA,8", "Parse error [#3]: Illegal 'I,RGBA,8' in this context"},
        Refused{"[.*],I,Y,8", "Parse error [#3]: Illegal 'I,Y,8' in this context"},
        Refused{"[.*],I,YYYYYUUUV,8", "Parse error [#3]: Illegal 'I,YYYYYUUUV,8' in this context"},
        Refused{"[.*],P,Y,U,8", "Parse error [#3]: Illegal 'P,Y,U,8' in this context"},
        Refused{"[.*],P,R,G,X,8", "Parse error [#3]: Illegal 'P,R,G,X,8' in this context"},
        Refused{"[.*],P,8", "Parse error [#3]: Illegal 'P,8' in this context"},
        Refused{"[.*],PI,RGB,8", "Parse error [#3]: Illegal 'PI,RGB,8' in this context"},
        Refused{"[.*],-5,I,8", "Parse error [#3]: Illegal 'I,8' in this context"}));

TEST(FormatParser, MostNegativeBppIsRefusedWithoutOverflow) {
  // A number far below the int32 range saturates; its magnitude must not overflow.
  FormatGroup group;
  CollectingSink log;
  EXPECT_FALSE(ParseFormatLine("[.*],P,Y,-99999999999", 1, group, log));
  EXPECT_EQ(log.lines, std::vector<std::string>{"Parse error [#1]: Illegal BPP -2147483648"});
  EXPECT_EQ(BppMagnitude(INT32_MIN), 2147483648u);
}

TEST(FormatParser, AppendsToExistingFormatsInOrder) {
  FormatGroup group;
  CollectingSink log;
  ASSERT_TRUE(ParseFormatLine("[a],P,Y,8", 1, group, log));
  ASSERT_FALSE(ParseFormatLine("[b],P,Y,9", 2, group, log));
  ASSERT_TRUE(ParseFormatLine("[c],I,RGB,16", 3, group, log));
  ASSERT_EQ(group.formats.size(), 2u);
  EXPECT_EQ(group.formats[0].regex, "a");
  EXPECT_EQ(group.formats[1].regex, "c");
  EXPECT_EQ(group.formats[1].BytesPerComponent(), 2u);
}

TEST(DirectExpression, ZeroSizeSwitchesOffWithoutParsing) {
  DirectFormat direct;
  CollectingSink log;
  ASSERT_TRUE(SetDirectExpression("p,y,8", 640, 480, direct, log));
  ASSERT_TRUE(direct.in_force);
  log.lines.clear();
  EXPECT_TRUE(SetDirectExpression("garbage", 0, 480, direct, log));
  EXPECT_FALSE(direct.in_force);
  EXPECT_TRUE(log.lines.empty());
}

TEST(DirectExpression, UpperCasesAndLogsItsSection) {
  DirectFormat direct;
  CollectingSink log;
  ASSERT_TRUE(SetDirectExpression("i,yuyv,-16", 640, 480, direct, log));
  EXPECT_EQ(log.lines, (std::vector<std::string>{"## Set custom format expression",
                                                 "Trying to set: [.*],I,YUYV,-16", "Status: Success"}));
  ASSERT_EQ(direct.group.formats.size(), 1u);
  EXPECT_EQ(direct.group.formats[0].layout, "YUYV");
  EXPECT_EQ(direct.group.formats[0].line, 0u);
  EXPECT_EQ(direct.group.width_value, 640u);
  EXPECT_EQ(direct.group.height_value, 480u);
  EXPECT_EQ(direct.group.width_group, -1);
  EXPECT_TRUE(direct.group.width_regex.empty());
}

TEST(DirectExpression, ReplacesThePreviousFormatAndReportsFailure) {
  DirectFormat direct;
  CollectingSink log;
  ASSERT_TRUE(SetDirectExpression("P,Y,8", 4, 4, direct, log));
  log.lines.clear();
  EXPECT_FALSE(SetDirectExpression("P,Y,7", 8, 8, direct, log));
  EXPECT_FALSE(direct.in_force);
  EXPECT_TRUE(direct.group.formats.empty());
  EXPECT_EQ(log.lines.back(), "Status: Fail");
  EXPECT_EQ(log.lines[2], "Parse error [#0]: Illegal BPP 7");
}

struct Generated {
  FormatChoices choices;
  const char* text;
};

void PrintTo(const Generated& c, std::ostream* os) { *os << c.text; }

class FormatGenerator : public ::testing::TestWithParam<Generated> {};

TEST_P(FormatGenerator, BuildsTextThatParsesBack) {
  EXPECT_EQ(GenerateFormatExpression(GetParam().choices), GetParam().text);
  DirectFormat direct;
  CNullLineSink log;
  EXPECT_TRUE(SetDirectExpression(GetParam().text, 2, 2, direct, log));
}

INSTANTIATE_TEST_SUITE_P(
    Choices, FormatGenerator,
    ::testing::Values(
        Generated{{true, ColorChoice::Yuv444, DepthChoice::Bits8, true}, "P,Y,U,V,8"},
        Generated{{false, ColorChoice::Yuv444, DepthChoice::Bits16, false}, "I,YUV,-16"},
        Generated{{true, ColorChoice::Yuv422, DepthChoice::Bits16, true}, "P,YY,U,V,16"},
        Generated{{false, ColorChoice::Yuv422, DepthChoice::Bits32, false}, "I,YUYV,-32"},
        Generated{{false, ColorChoice::Yuv420, DepthChoice::Bits8, true}, "PI,YYYYUV,8"},
        Generated{{true, ColorChoice::Yuv420, DepthChoice::Bits16, false}, "PI,YYYYUV,-16"},
        Generated{{true, ColorChoice::Gray, DepthChoice::Bits8, false}, "P,Y,8"},
        Generated{{true, ColorChoice::Rgb, DepthChoice::Bits32, true}, "P,R,G,B,32"},
        Generated{{false, ColorChoice::Rgb, DepthChoice::Bits8, false}, "I,RGB,8"}));

TEST(FormatGenerator, LabelNamesTheExpression) {
  EXPECT_EQ(GeneratedExpressionLabel({false, ColorChoice::Rgb, DepthChoice::Bits16, true}),
            "Generated format expression: I,RGB,16");
}

}  // namespace
}  // namespace korvanel
