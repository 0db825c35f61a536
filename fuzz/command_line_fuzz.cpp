// A command line (or batch file body): tokenized per line, then parsed.
#include <string>
#include <vector>

#include "app/command_line.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  std::vector<std::string> arguments;
  size_t start = 0;
  while (start <= text.size()) {
    const size_t end = text.find('\n', start);
    const std::string line = text.substr(start, end == std::string::npos ? std::string::npos : end - start);
    if (!line.empty() && line[0] != '#') {
      for (std::string& a : korvanel::TokenizeCommandLine(line)) arguments.push_back(std::move(a));
    }
    if (end == std::string::npos) break;
    start = end + 1;
  }
  // A batch file naming itself would be read from disk; the parse is what is fuzzed.
  if (!arguments.empty() && (arguments[0] == "-bt" || arguments[0] == "--batch_file")) arguments[0] = "-q";
  korvanel::ParseArguments(arguments);
  return 0;
}
