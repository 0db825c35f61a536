// The saved I-Eval list: a list file's text, then marker expansion of a text
// over the items it yielded.
#include <fuzzer/FuzzedDataProvider.h>

#include <fstream>
#include <string>
#include <unistd.h>

#include "expr/ieval_list.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider input(data, size);
  const std::string text = input.ConsumeRandomLengthString(256);
  const std::string list = input.ConsumeRemainingBytesAsString();
  static const std::string path = "/tmp/korvanel_fuzz_ieval_" + std::to_string(getpid()) + ".txt";
  {
    std::ofstream out(path, std::ios::binary);
    out.write(list.data(), static_cast<std::streamsize>(list.size()));
  }
  korvanel::CIEvalList saved;
  std::vector<std::string> messages;
  saved.Load(path, messages);
  std::string expanded, message;
  saved.ExpandNameMarkers(text, expanded, message);
  saved.Add(text, "1+1", true, nullptr, message);
  return 0;
}
