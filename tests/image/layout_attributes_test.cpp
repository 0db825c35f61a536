#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "image/format_parser.h"
#include "support/collecting_sink.h"

namespace korvanel {
namespace {

using test::CollectingSink;

struct AttributeRow {
  const char* text;
  BitAlign align;
  uint32_t bits;
  const char* expression;  // as the image's format text keeps it
  const char* plain;       // ToText()
};

TEST(LayoutAttributes, ParseIntoTheRawLayoutAndPrintBack) {
  const AttributeRow rows[] = {
      {"LSB=10,P,Y,16", BitAlign::Lsb, 10, "LSB=10,P,Y,16", "LSB=10,P,Y,16"},
      {"MSB=10,PI,YYYYUV,-16", BitAlign::Msb, 10, "MSB=10,PI,YYYYUV,-16", "MSB=10,PI,YYYYUV,-16"},
      {"-4096,MSB=12,P,YY,U,V,16", BitAlign::Msb, 12, "MSB=12,P,YY,U,V,16", "-4096,MSB=12,P,YY,U,V,16"},
      {"0,LSB=1,I,RGB,8", BitAlign::Lsb, 1, "LSB=1,I,RGB,8", "0,LSB=1,I,RGB,8"},
      {"LSB=31,P,B,G,R,32", BitAlign::Lsb, 31, "LSB=31,P,B,G,R,32", "LSB=31,P,B,G,R,32"},
      {"MSB=7 I UYVY 8", BitAlign::Msb, 7, "MSB=7 I UYVY 8", "MSB=7,I,UYVY,8"},
      // Attributes are read before the packing only; later ones are layout junk.
      {"I,YUYV,LSB=10,16", BitAlign::None, 0, "I,YUYV,LSB=10,16", "I,YUYV,16"},
  };
  for (const AttributeRow& row : rows) {
    CollectingSink log;
    const std::optional<FormatExpression> f = ParseFormatExpression(row.text, 3, log);
    ASSERT_TRUE(f) << row.text << ": " << (log.lines.empty() ? "" : log.lines[0]);
    EXPECT_EQ(f->raw.align, row.align) << row.text;
    EXPECT_EQ(f->raw.bits, row.bits) << row.text;
    EXPECT_EQ(f->expression, row.expression) << row.text;
    EXPECT_EQ(f->ToText(), row.plain) << row.text;
    const std::optional<FormatExpression> back = ParseFormatExpression(f->ToText(), 3, log);
    ASSERT_TRUE(back) << row.plain;
    EXPECT_EQ(back->raw, f->raw) << row.plain;
    EXPECT_EQ(back->ToText(), row.plain);
    EXPECT_TRUE(log.lines.empty()) << log.lines[0];
  }
}

TEST(LayoutAttributes, RefusalsNameTheAttributeAndTheReason) {
  const std::pair<const char*, const char*> rows[] = {
      {"LSB=16,P,Y,16", "Illegal LSB value '16'"},
      {"MSB=8,P,Y,8", "Illegal MSB value '8'"},
      {"LSB=0,P,Y,16", "Illegal LSB value '0'"},
      {"LSB=x,P,Y,16", "Illegal LSB value 'x'"},
      {"LSB=,P,Y,16", "Illegal LSB value ''"},
      {"MSB=4294967306,P,Y,16", "Illegal MSB value '4294967306'"},
      {"LSB=10,LSB=12,P,Y,16", "LSB is given twice"},
      {"LSB=10,MSB=10,P,Y,16", "LSB and MSB exclude each other"},
      {"MSB=10,LSB=10,P,Y,16", "MSB and LSB exclude each other"},
      {"A,LSB=10,P,Y,16", "LSB can't be used with A"},
      // The plain grammar's steps come first and keep their messages.
      {"LSB=10,P,Y,12", "Illegal BPP 12"},
      {"LSB=10", "Illegal packing ''"},
      {"LSB=10,I,RGBA,16", "Illegal 'LSB=10,I,RGBA,16' in this context"},
      // Names outside the table (and lower case, which only typed text folds) stay packing.
      {"PACK=MIPI10,P,Y,16", "Illegal packing 'PACK=MIPI10'"},
      {"lsb=10,P,Y,16", "Illegal packing 'lsb=10'"},
      {"P,Y,LSB=10", "Illegal BPP 0"},
  };
  for (const auto& [text, reason] : rows) {
    CollectingSink log;
    EXPECT_FALSE(ParseFormatExpression(text, 5, log)) << text;
    EXPECT_EQ(log.lines, std::vector<std::string>{std::string("Parse error [#5]: ") + reason}) << text;
  }
}

}  // namespace
}  // namespace korvanel
