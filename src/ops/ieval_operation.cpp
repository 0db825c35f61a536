#include "ops/ieval_operation.h"

#include <algorithm>

#include "expr/image_evaluator.h"
#include "image/format_parser.h"
#include "image/image_factory.h"
#include "image/sample_type.h"
#include "image/text_util.h"
#include "ops/image_eval_processor.h"
#include "ops/split_region.h"

namespace korvanel {
namespace {

constexpr const char* kTitle = "Image Evaluator";
constexpr const char* kErrorTitle = "I-Eval error";
constexpr const char* kRunTimeTitle = "I-Eval run-time error";

std::string Lines(const std::vector<std::string>& lines) {
  std::string out;
  for (const std::string& line : lines) out += (out.empty() ? "" : "\n") + line;
  return out;
}

uint32_t TargetOf(const std::vector<uint32_t>& targets, size_t stage) {
  return targets[std::min(stage, targets.size() - 1)];
}

// Output planes of the full image; outside an evaluated region they take
// image 1's samples (its channel, or its only one), clamped to the depth.
bool AllocateOutputs(std::vector<Plane>& outputs, uint32_t channels, uint32_t bits,
                     const IEvalInputs& inputs, bool copy_input) {
  outputs.clear();
  outputs.resize(channels);
  const uint64_t max = bits >= 32 ? 0xFFFFFFFFull : (uint64_t{1} << bits) - 1;
  for (uint32_t ch = 0; ch < channels; ++ch) {
    if (!outputs[ch].Allocate(bits, inputs.width, inputs.height, !copy_input)) return false;
    if (!copy_input) continue;
    const IEvalImage& first = inputs.images[0];
    const Plane& source = *first.planes[first.components == 1 ? 0 : ch];
    DispatchBits(bits, [&]<typename T>(std::type_identity<T>) {
      for (uint32_t y = 0; y < inputs.height; ++y) {
        T* row = outputs[ch].Row<T>(y);
        for (uint32_t x = 0; x < inputs.width; ++x) {
          row[x] = static_cast<T>(std::min<uint64_t>(source.SampleAt(x, y), max));
        }
      }
    });
  }
  return true;
}

struct MadeImage {
  std::unique_ptr<CImageConcreteBase> image;
  std::string format_text;
};

// The image a stage's planes become. A single channel replacing an image of
// three components is repeated into all three, keeping that image's kind.
// `raw` is the significant-bits layout the result inherits (usually none).
MadeImage MakeOutputImage(std::vector<Plane> planes, bool yuv, const CImageConcreteBase* replaced,
                          const RawLayout& raw) {
  const uint32_t bits = planes[0].bits();
  if (planes.size() == 1 && replaced != nullptr && replaced->ComponentCount() == 3) {
    yuv = ColorKindOf(*replaced) == ColorKind::Yuv;
    std::optional<Plane> second = planes[0].Crop(0, 0, planes[0].width(), planes[0].height());
    std::optional<Plane> third = planes[0].Crop(0, 0, planes[0].width(), planes[0].height());
    if (!second || !third) return {};
    planes.push_back(std::move(*second));
    planes.push_back(std::move(*third));
  }
  MadeImage made;
  const char* format = planes.size() == 1 ? "P,Y,%u" : yuv ? "P,Y,U,V,%u" : "P,R,G,B,%u";
  made.format_text = raw.ToText() + StrFormat(format, bits);
  // The image is of the class its format text names and saves in that
  // (planar) layout as its own packing.
  CNullLineSink quiet;
  const std::optional<FormatExpression> parsed = ParseFormatExpression(made.format_text, 0, quiet);
  if (parsed) made.image = CreateImageForFormat(*parsed);
  if (!made.image || !made.image->AdoptPlanes(std::move(planes))) return {};
  return made;
}

// A result made from one image, at its depth and with its components,
// holds values of that image's significant bits.
RawLayout InheritedLayout(const std::vector<const CImageConcreteBase*>& images, uint32_t out_bits,
                          uint32_t channels) {
  const CImageConcreteBase& only = *images[0];
  if (images.size() != 1 || out_bits != only.GetBitsPerComponent() || channels != only.ComponentCount()) {
    return {};
  }
  return only.RawLayout();
}

}  // namespace

bool ParseOutputOverride(std::string_view text, uint32_t image_count,
                         std::vector<uint32_t>& targets) {
  targets.clear();
  for (const std::string& piece : SplitTokens(text, " ,\t")) {
    if (piece.size() > 2 || piece.find_first_not_of("0123456789") != std::string::npos) {
      return false;
    }
    const auto value = static_cast<uint32_t>(std::stoul(piece));
    if (value > image_count) return false;
    targets.push_back(value);
  }
  if (targets.empty()) targets.push_back(0);
  return true;
}

IEvalResult RunImageEval(const IEvalRequest& request,
                         const std::vector<const CImageConcreteBase*>& images, JobRunner& runner,
                         const IEvalProgressFor& progress) {
  IEvalResult result;
  const auto single = [&result](const std::string& text) {
    result.messages.push_back({kTitle, "I-Eval error: " + text});
    return std::move(result);
  };
  if (images.empty()) return single("No image to evaluate");

  IEvalShared shared;
  std::string error;
  if (!SplitStages(request.expression, shared.stages, error)) return single(error);
  shared.options = request.options;
  const uint32_t out_bits =
      request.options.out_bits != 0 ? request.options.out_bits : images[0]->GetBitsPerComponent();
  if (!ParseOutOfRange(request.out_of_range, out_bits, shared.options.out_of_range, error)) {
    return single(error);
  }
  std::vector<uint32_t> targets;
  const auto count = static_cast<uint32_t>(images.size());
  if (!ParseOutputOverride(request.output_override, count, targets)) {
    return single(StrFormat("Illegal output override list '%s'", request.output_override.c_str()));
  }

  // Every image is read at image 1's coordinates: all must be that size.
  uint32_t width = 0, height = 0;
  images[0]->GetSize(width, height);
  for (const CImageConcreteBase* image : images) {
    uint32_t w = 0, h = 0;
    image->GetSize(w, h);
    if (image->PlaneCount() == 0 || w != width || h != height || w == 0 || h == 0) {
      return single("The images must be non-empty and of one size");
    }
  }
  std::vector<const CImageConcreteBase*> working = images;
  shared.inputs = MakeIEvalInputs(working);
  const IEvalInputs& inputs = shared.inputs;
  Rect region{0, 0, inputs.width - 1, inputs.height - 1};
  if (request.options.in_roi) {
    const Rect roi = inputs.roi;
    if (roi.IsNone() || roi.min_x > region.max_x || roi.min_y > region.max_y ||
        roi.min_x > roi.max_x || roi.min_y > roi.max_y) {
      return single("ROI isn't active");
    }
    region = Rect{roi.min_x, roi.min_y, std::min(roi.max_x, region.max_x),
                  std::min(roi.max_y, region.max_y)};
  }

  // Every stage is prepared before any runs; the channel counts and depths
  // do not change from stage to stage, so the first images answer for all.
  std::string listing;
  std::vector<uint32_t> channels;
  for (size_t s = 0; s < shared.stages.size(); ++s) {
    CImageEvaluator evaluator;
    std::vector<std::string> errors;
    if (evaluator.InitPhrase(shared.stages[s].text, inputs, shared.options)) {
      const uint32_t target = TargetOf(targets, s);
      if (target != 0 && evaluator.OutputChannels() == 3 &&
          inputs.images[target - 1].components == 1) {
        errors.push_back(StrFormat(
            "Can't replace image %u of a single component by a 3 channel output", target));
      }
    } else {
      errors = evaluator.Errors();
    }
    channels.push_back(evaluator.OutputChannels());
    if (!errors.empty()) {
      listing += (listing.empty() ? "" : "\n") +
                 StrFormat("Error(s) in I-Eval #%d:\n", static_cast<int>(s + 1)) + Lines(errors);
    }
  }
  if (!listing.empty()) {
    result.messages.push_back({kErrorTitle, listing});
    return result;
  }

  std::vector<std::unique_ptr<CImageEvalProcessor>> jobs;
  std::vector<IImageProcessorThread*> pointers;
  for (uint32_t j = 0; j < runner.JobSlots(); ++j) {
    jobs.push_back(std::make_unique<CImageEvalProcessor>(shared));
    pointers.push_back(jobs.back().get());
  }
  const auto stage_count = static_cast<uint32_t>(shared.stages.size());
  for (uint32_t s = 0; s < stage_count; ++s) {
    shared.inputs = MakeIEvalInputs(working);
    if (!AllocateOutputs(shared.outputs, channels[s], out_bits, shared.inputs,
                         request.options.in_roi)) {
      return single("Not enough memory for the output image");
    }
    for (auto& job : jobs) job->SetStage(s);
    SplitRegion(pointers.data(), static_cast<uint32_t>(pointers.size()), region);
    runner.SetJobs(pointers);
    runner.SetProgressSink(progress ? progress(s + 1, stage_count, region.Width() * region.Height())
                                    : nullptr);
    runner.RunJobs();
    runner.SetProgressSink(nullptr);
    result.elapsed_ms += runner.ElapsedMs();
    if (runner.Aborted()) {
      for (const auto& job : jobs) {
        if (job->Errors().empty()) continue;
        result.messages.push_back(
            {kRunTimeTitle, StrFormat("Error(s) in I-Eval #%d:\n", static_cast<int>(s + 1)) +
                                Lines(job->Errors())});
        break;
      }
      result.aborted = true;
      result.status = StrFormat("I-Eval: Aborted after %llu ms",
                                static_cast<unsigned long long>(result.elapsed_ms));
      return result;
    }
    const uint32_t target = TargetOf(targets, s);
    MadeImage made = MakeOutputImage(std::move(shared.outputs), request.options.yuv,
                                     target != 0 ? working[target - 1] : nullptr,
                                     InheritedLayout(images, out_bits, channels[s]));
    shared.outputs.clear();
    if (!made.image) return single("Not enough memory for the output image");
    if (target != 0) working[target - 1] = made.image.get();
    result.outputs.push_back({std::move(made.image), std::move(made.format_text), target});
  }
  result.ok = true;
  result.status = StrFormat("I-Eval: Finished in %llu ms",
                            static_cast<unsigned long long>(result.elapsed_ms));
  return result;
}

}  // namespace korvanel
