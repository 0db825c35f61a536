#include "ui/model/update_document.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace korvanel {
namespace {

constexpr VersionNumber kOwn{1, 4};

struct DocumentCase {
  const char* name;
  std::string text;
  bool valid;
  std::vector<std::pair<int32_t, int32_t>> versions;  // in document order
  std::vector<std::string> logs;
};

std::string Crlf(const std::string& lf_text) {
  std::string out;
  for (char c : lf_text) {
    if (c == '\n') out += '\r';
    out += c;
  }
  return out;
}

const std::string kTwoRecords =
    "Korvanel releases\n"
    "<version>\n1.5\nFaster I-Eval\nNew convert dialog\n</version>\n"
    "between records\n"
    "<version>\n1.4\nFirst Linux build\n</version>\n"
    "<version_end>\n";

TEST(UpdateDocument, ParsesRecordsOrRejectsTheWholeDocument) {
  const DocumentCase cases[] = {
      {"crlf", Crlf(kTwoRecords), true, {{1, 5}, {1, 4}}, {"Faster I-Eval\nNew convert dialog\n", "First Linux build\n"}},
      {"bare lf", kTwoRecords, true, {{1, 5}, {1, 4}}, {"Faster I-Eval\nNew convert dialog\n", "First Linux build\n"}},
      {"empty log", "<version>\r\n2.0\r\n</version>\r\n<version_end>\r\n", true, {{2, 0}}, {""}},
      {"no records", "<version_end>", true, {}, {}},
      {"text after the end line is not read", "<version_end>\r\n<version>\r\n1.x\r\n", true, {}, {}},
      {"the end line inside a record keeps what it held", "<version>\n1.9\nhalf\n<version_end>\n", true,
       {{1, 9}}, {"half\n"}},
      {"version read as %d.%d", "<version>\n 1.10 beta\n</version>\n<version_end>\n", true, {{1, 10}}, {""}},
      {"1.x", "<version>\r\n1.x\r\nlog\r\n</version>\r\n<version_end>\r\n", false, {}, {}},
      {"one number", "<version>\n7\n</version>\n<version_end>\n", false, {}, {}},
      {"opening line last", "<version>", false, {}, {}},
      {"missing end line", "<version>\r\n1.5\r\nlog\r\n</version>\r\n", false, {}, {}},
      {"empty document", "", false, {}, {}},
      {"end line with blanks is no end line", "<version_end> \n", false, {}, {}},
  };
  for (const DocumentCase& c : cases) {
    SCOPED_TRACE(c.name);
    const std::optional<std::vector<VersionRecord>> records = ParseUpdateDocument(c.text);
    ASSERT_EQ(records.has_value(), c.valid);
    if (!records) continue;
    std::vector<std::pair<int32_t, int32_t>> versions;
    std::vector<std::string> logs;
    for (const VersionRecord& record : *records) {
      versions.emplace_back(record.version.major, record.version.minor);
      logs.push_back(record.log);
    }
    EXPECT_EQ(versions, c.versions);
    EXPECT_EQ(logs, c.logs);
  }
}

std::vector<VersionRecord> Records(const std::vector<std::pair<VersionNumber, const char*>>& rows) {
  std::vector<VersionRecord> records;
  for (const auto& [version, log] : rows) records.push_back({version, log});
  return records;
}

TEST(UpdateDocument, NewestRecordByMajorThenMinorDecides) {
  struct Case {
    const char* name;
    std::vector<VersionRecord> records;
    bool newer;
    const char* status;
    const char* head;
    const char* previous;
  } cases[] = {
      {"newer first", Records({{{1, 5}, "five\n"}, {{1, 4}, "four\n"}}), true, "Available update: version 1.5",
       "five\n", "four\n"},
      {"out of order", Records({{{1, 3}, "three\n"}, {{2, 0}, "two\n"}, {{1, 12}, "twelve\n"}}), true,
       "Available update: version 2.0", "two\n", "twelve\nthree\n"},
      {"minor 10 after minor 9", Records({{{1, 9}, "nine\n"}, {{1, 10}, "ten\n"}}), true,
       "Available update: version 1.10", "ten\n", "nine\n"},
      {"equal", Records({{{1, 4}, "four\n"}, {{1, 2}, "two\n"}}), false,
       "Application is up to date, no new version is available", "four\n", "two\n"},
      {"older only", Records({{{0, 9}, "old\n"}}), false, "Application is up to date, no new version is available",
       "old\n", ""},
      {"none", {}, false, "Application is up to date, no new version is available", "", ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const UpdateDecision decision = DecideUpdate(c.records, kOwn);
    EXPECT_EQ(decision.newer_available, c.newer);
    EXPECT_EQ(decision.status_line, c.status);
    EXPECT_EQ(decision.head_log, c.head);
    EXPECT_EQ(decision.previous_logs, c.previous);
  }
}

}  // namespace
}  // namespace korvanel
