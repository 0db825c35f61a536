// Filter expressions and negation colours for every depth and component count.
#include <fuzzer/FuzzedDataProvider.h>

#include "ops/filter_expression.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider input(data, size);
  const uint32_t bits = input.PickValueInArray({8u, 16u});
  const uint32_t components = input.PickValueInArray({1u, 3u});
  const std::string negation = input.ConsumeRandomLengthString(64);
  const std::string expression = input.ConsumeRemainingBytesAsString();
  korvanel::FilterTables tables;
  korvanel::FilterParseState state;
  korvanel::ParseFilterExpression(expression, bits, components, tables, state);
  korvanel::FilterErrorText(state);
  korvanel::ParseNegationColor(negation, tables, state);
  korvanel::FilterErrorText(state);
  return 0;
}
