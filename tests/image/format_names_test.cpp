#include "image/format_names.h"

#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "image/format_parser.h"
#include "image/text_util.h"
#include "support/collecting_sink.h"

namespace korvanel {
namespace {

using test::CollectingSink;

// Every row: its expansion parses, the name in any case reads as the
// expansion, and without the table the name gets the plain grammar's refusal.
TEST(FormatNames, EveryRowReadsAsItsExpansionAndOnlyWithTheTable) {
  std::set<std::string> folded;
  for (const FormatName& row : FormatNameTable()) {
    const std::string name(row.name);
    EXPECT_TRUE(folded.insert(ToUpperAscii(name)).second) << "twice: " << name;
    CollectingSink log;
    const std::optional<FormatExpression> expansion = ParseFormatExpression(row.expansion, 1, log);
    ASSERT_TRUE(expansion) << row.expansion;
    for (const std::string& form : {ToLowerAscii(name), ToUpperAscii(name)}) {
      CollectingSink named_log;
      const std::optional<FormatExpression> named = ParseFormatExpression(form, 1, named_log);
      ASSERT_TRUE(named) << form;
      EXPECT_EQ(*named, *expansion) << form;
      EXPECT_EQ(named_log.lines, std::vector<std::string>{"Format name '" + form + "' reads as " +
                                                          std::string(row.expansion)});
      CollectingSink plain_log;
      const FormatVocabulary plain{LayoutAttributeTable(), {}};
      EXPECT_FALSE(ParseFormatExpression(form, 1, plain_log, plain)) << form;
      ASSERT_EQ(plain_log.lines.size(), 1u);
      EXPECT_TRUE(plain_log.lines[0].starts_with("Parse error [#1]: Illegal packing '")) << plain_log.lines[0];
    }
  }
}

struct NamedRow {
  const char* text;
  const char* plain;  // ToText(), or the refusal after "Parse error [#2]: "
  bool accepted;
};

TEST(FormatNames, StandLastAfterAnOffsetAndAttributesOnly) {
  const NamedRow rows[] = {
      {"-4096,nv12", "-4096,PI,YYYYUV,8", true},
      {"0 Y10", "0,LSB=10,P,Y,16", true},
      {"LSB=12,P016", "LSB=12,PI,YYYYUV,16", true},
      {"422P", "P,YY,U,V,8", true},
      {"MSB=10,p010le", "MSB is given twice", false},
      {"LSB=10,p010le", "LSB and MSB exclude each other", false},
      {"A,NV12", "Illegal packing 'NV12'", false},
      {"A,0,nv12", "Illegal packing 'nv12'", false},
      {"NV12,8", "Illegal packing 'NV12'", false},
      {"P,nv12", "Illegal 'P,nv12' in this context", false},
      {"4096,5,nv12", "Illegal packing '5'", false},
      // Names whose layouts are not loadable yet keep their refusal.
      {"yuv420p", "Illegal packing 'yuv420p'", false},
      {"v210", "Illegal packing 'v210'", false},
      {"SRGGB10", "Illegal packing 'SRGGB10'", false},
  };
  for (const NamedRow& row : rows) {
    CollectingSink log;
    const std::optional<FormatExpression> f = ParseFormatExpression(row.text, 2, log);
    ASSERT_EQ(f.has_value(), row.accepted) << row.text;
    if (row.accepted) {
      EXPECT_EQ(f->ToText(), row.plain) << row.text;
    } else {
      EXPECT_EQ(log.lines.back(), std::string("Parse error [#2]: ") + row.plain) << row.text;
    }
  }
}

}  // namespace
}  // namespace korvanel
