// The update document as the network delivers it, and the decision over its
// records against any own version.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstdlib>
#include <string>

#include "ui/model/update_document.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider input(data, size);
  const korvanel::VersionNumber own{input.ConsumeIntegral<int32_t>(), input.ConsumeIntegral<int32_t>()};
  const std::string text = input.ConsumeRemainingBytesAsString();
  const auto records = korvanel::ParseUpdateDocument(text);
  if (!records) return 0;
  const korvanel::UpdateDecision decision = korvanel::DecideUpdate(*records, own);
  // Every record's version is at most the one the decision names.
  if (!records->empty() && decision.version_text.empty()) std::abort();
  return 0;
}
