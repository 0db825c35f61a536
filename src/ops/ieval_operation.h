#pragma once

// A whole I-Eval run: every stage of a piped expression prepared first (so
// that a mistake in any stage stops the run before a pixel is written),
// then each stage run as CImageEvalProcessor jobs over bands of the image
// or of its region of interest. A stage reads the images as the previous
// stage left them: its output either replaces one of them (after the whole
// stage) or becomes a new image.
//
// The operation hands back the images and the messages; registering the
// images and showing the messages is the application's part.

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "expr/ieval_options.h"
#include "image/image_concrete_base.h"
#include "ops/job_runner.h"

namespace korvanel {

struct IEvalRequest {
  std::string expression;          // name markers already expanded
  std::string out_of_range = "0";  // "v" or "v1;v2;v3"
  std::string output_override;     // "2,1,3": image replaced per stage, 0 or empty: new
  IEvalOptions options;            // out_of_range is taken from the text above
};

struct IEvalOutput {
  std::unique_ptr<CImageConcreteBase> image;
  std::string format_text;  // "P,Y,8", "P,R,G,B,8", "P,Y,U,V,8"
  uint32_t replaces = 0;    // the image number (1-based) it replaces; 0: a new image
};

struct IEvalMessage {
  std::string title;
  std::string text;
};

struct IEvalResult {
  bool ok = false;
  bool aborted = false;  // a stage started and did not finish
  std::vector<IEvalOutput> outputs;   // of the stages that finished, in order
  std::vector<IEvalMessage> messages;  // errors to show
  std::string status;  // "I-Eval: Finished in %llu ms" or "I-Eval: Aborted after %llu ms"
  uint64_t elapsed_ms = 0;
};

// Gives the progress sink for stage `stage` (1-based) of `stages`, which
// works on `pixels` pixels; may give null.
using IEvalProgressFor =
    std::function<IProgressSink*(uint32_t stage, uint32_t stages, uint64_t pixels)>;

// The replace list, "2,1,3" -> {2,1,3} (blanks or commas between entries;
// empty gives {0}). False when an entry is not a number from 0 to `image_count`.
bool ParseOutputOverride(std::string_view text, uint32_t image_count,
                         std::vector<uint32_t>& targets);

// `images` are the images numbered 1..N (the focus image or the comparison
// group, left to right), all of one size.
IEvalResult RunImageEval(const IEvalRequest& request,
                         const std::vector<const CImageConcreteBase*>& images, JobRunner& runner,
                         const IEvalProgressFor& progress = {});

}  // namespace korvanel
