// The clipboard text pasted into the jump and find phases, then the keys
// typed after it, over an image of any size with or without a ROI.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstdlib>
#include <string>

#include "ui/model/find_entry.h"
#include "ui/model/jump_entry.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace korvanel;
  FuzzedDataProvider input(data, size);
  JumpContext jump_context;
  jump_context.size = {input.ConsumeIntegral<uint32_t>(), input.ConsumeIntegral<uint32_t>()};
  if (input.ConsumeBool()) {
    jump_context.roi = Rect{input.ConsumeIntegral<uint32_t>(), input.ConsumeIntegral<uint32_t>(),
                            input.ConsumeIntegral<uint32_t>(), input.ConsumeIntegral<uint32_t>()};
  }
  FindContext find_context;
  find_context.components = input.PickValueInArray({1u, 3u});
  find_context.bits = input.PickValueInArray({8u, 16u, 32u});
  const std::string clipboard = input.ConsumeRandomLengthString(256);
  const std::string keys = input.ConsumeRemainingBytesAsString();

  CJumpEntry jump;
  CCoordinateHistory coordinates;
  jump.Paste(clipboard);
  CFindEntry find;
  CFindHistory searched;
  find.Paste(clipboard);
  for (const char key : keys) {
    const char32_t ch = static_cast<unsigned char>(key);
    const JumpOutcome jumped = jump.OnChar(ch, jump_context, coordinates);
    // A jump or visit goes only to a pixel inside the image.
    if ((jumped.kind == JumpOutcome::Kind::Jump || jumped.kind == JumpOutcome::Kind::Visit) &&
        (jumped.target.x < 0 || jumped.target.y < 0 || jumped.target.x >= jump_context.size.width ||
         jumped.target.y >= jump_context.size.height)) {
      std::abort();
    }
    if (jumped.kind == JumpOutcome::Kind::Jump) coordinates.Add(jumped.target);
    const FindOutcome found = find.OnChar(ch, find_context, searched);
    if (found.kind == FindOutcome::Kind::Search) searched.Add(find.Input());
  }
  (void)jump.Prompt();
  (void)find.Prompt();
  return 0;
}
