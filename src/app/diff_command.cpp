#include "app/diff_command.h"

#include "app/feedback_progress.h"
#include "files/path_parts.h"
#include "ops/diff_operation.h"
#include "ops/worked_region.h"

namespace korvanel {

namespace {

constexpr const char* kDiffErrorTitle = "Diff images error";

std::string FileName(const ImageRecord& record) {
  const PathParts parts = SplitPath(record.path.empty() ? record.display_name : record.path);
  return parts.stem + (parts.has_extension ? "." + parts.extension : "");
}

// The first failed precondition's text, or null.
const char* Refusal(const AppState& app) {
  if (!app.CompareMode() || app.ComparisonGroup().size() != 2) {
    return "Diff error: Must be in compare mode with 2 open images of the same size and type";
  }
  const IImageContainer& left = *app.Images().At(app.ComparisonGroup()[0]).image;
  const IImageContainer& right = *app.Images().At(app.ComparisonGroup()[1]).image;
  uint32_t lw = 0, lh = 0, rw = 0, rh = 0;
  left.GetSize(lw, lh);
  right.GetSize(rw, rh);
  if (lw != rw || lh != rh) return "Diff error: left and right images are of different size";
  if (ColorKindOf(left) != ColorKindOf(right)) {
    return "Diff error: left and right images are of different base type";
  }
  if (left.GetBitsPerComponent() != right.GetBitsPerComponent()) {
    return "Diff error: left and right images are of different bits depth";
  }
  return nullptr;
}

}  // namespace

uint32_t CurrentDiffCode(const AppState& app) {
  // The configured names map onto the routine bits: all/mask, binary/absolute.
  switch (app.GetDiffType()) {
    case DiffType::kAllBin: return 0;
    case DiffType::kAllAbsDelta: return 1;
    case DiffType::kMaskBin: return 2;
    case DiffType::kMaskAbsDelta: return 3;
  }
  return 0;
}

CommandOutcome DiffComparison(AppState& app, uint32_t code) {
  if (const char* refusal = Refusal(app)) return CommandOutcome::Failed(refusal, kDiffErrorTitle);
  if (app.Images().Full()) {
    return CommandOutcome::Failed(app.FormatMessage("Too many open images, reached a max of %u",
                                                    static_cast<unsigned>(app.Images().Count())),
                                  kDiffErrorTitle);
  }
  const ImageRecord& left = app.Images().At(app.ComparisonGroup()[0]);
  const ImageRecord& right = app.Images().At(app.ComparisonGroup()[1]);
  const auto& l = dynamic_cast<const CImageConcreteBase&>(*left.image);
  const auto& r = dynamic_cast<const CImageConcreteBase&>(*right.image);

  CFeedbackProgress progress(app.Feedback());
  progress.Start("Image Difference", WorkedRegionPixels(l));
  DiffRun diff = RunDiff(l, r, code, app.Jobs(), &progress);
  if (diff.run.parallel) {
    app.StatusMessage(diff.run.aborted ? "Diff: Aborted after %llu ms" : "Diff: Finished in %llu ms",
                      static_cast<unsigned long long>(diff.run.elapsed_ms));
  }
  if (!diff.image) return CommandOutcome::FailedQuietly();
  const std::string name = "Diff_" + FileName(left) + " <--> " + FileName(right);
  const IImageContainer* created = diff.image.get();
  app.RegisterImage(std::move(diff.image), name, "P,Y,8", false);
  app.MarkCreatedUnsaved(created);
  app.StatusMessage("Diff: Created difference image %s (%llu ms)", name.c_str(),
                    static_cast<unsigned long long>(diff.run.elapsed_ms));
  return CommandOutcome::Done();
}

}  // namespace korvanel
