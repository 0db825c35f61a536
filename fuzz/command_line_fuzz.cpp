// A command line (or batch file body): tokenized per line, then parsed.
#include <string>
#include <vector>

#include "app/command_line.h"
#include "image/text_util.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  std::vector<std::string> arguments;
  for (const std::string& line : korvanel::SplitKeepingEmpty(text, "\n")) {
    if (line.empty() || line[0] == '#') continue;
    for (std::string& a : korvanel::TokenizeCommandLine(line)) arguments.push_back(std::move(a));
  }
  // A batch file naming itself would be read from disk; the parse is what is fuzzed.
  if (!arguments.empty() && (arguments[0] == "-bt" || arguments[0] == "--batch_file")) arguments[0] = "-q";
  korvanel::ParseArguments(arguments);
  return 0;
}
