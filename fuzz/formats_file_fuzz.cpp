// A whole formats file, then its patterns against a file name (the regexes
// are the user's, and the file name is ours to choose).
#include <fuzzer/FuzzedDataProvider.h>

#include <string>
#include <vector>

#include "files/formats_file.h"
#include "files/name_regex.h"
#include "image/text_util.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider input(data, size);
  const std::string name = input.ConsumeRandomLengthString(255);
  const std::string text = input.ConsumeRemainingBytesAsString();
  const std::vector<std::string> lines = korvanel::SplitKeepingEmpty(text, "\n");
  std::vector<korvanel::FormatGroup> groups;
  korvanel::CNullLineSink log;
  korvanel::ParseFormatsLines(lines, groups, log);
  // The users' regexes against a file name: nothing may hang or crash.
  for (const korvanel::FormatGroup& group : groups) {
    std::smatch match;
    korvanel::MatchWholeName(group.file_pattern, name, &match, log);
    if (!group.width_regex.empty()) korvanel::MatchWholeName(group.width_regex, name, &match, log);
  }
  return 0;
}
