#include "app/filter_command.h"

#include <optional>

#include "app/feedback_progress.h"
#include "app/new_image_name.h"
#include "files/path_parts.h"
#include "ops/filter_expression.h"
#include "ops/filter_operation.h"
#include "ops/worked_region.h"

namespace korvanel {

namespace {

constexpr const char* kErrorTitle = "Filter colors error";

CImageConcreteBase& Image(AppState& app, size_t index) {
  return dynamic_cast<CImageConcreteBase&>(*app.Images().At(index).image);
}

FilterResult Refused(FilterOutcome status, std::string text, std::string title) {
  return {status, CommandOutcome::Failed(std::move(text), std::move(title))};
}

FilterResult FailedQuietly() { return {FilterOutcome::Failed, CommandOutcome::FailedQuietly()}; }

// Checks the depth and parses the texts for this image's depth and
// component count; the refusal, if any.
std::optional<FilterResult> Prepare(const CImageConcreteBase& image, const FilterCommand& command,
                                    FilterTables& tables) {
  const uint32_t bits = image.GetBitsPerComponent();
  if (bits != 8 && bits != 16) {
    return Refused(FilterOutcome::BadDepth, "Filter colors error: Can't filter 32bpp images", kErrorTitle);
  }
  FilterParseState state;
  if (ParseFilterExpression(command.expression, bits, image.PlaneCount(), tables, state) &&
      ParseNegationColor(command.negation, tables, state)) {
    return std::nullopt;
  }
  return Refused(FilterOutcome::BadExpression, FilterErrorText(state), FilterErrorTitle(state));
}

struct Applier {
  AppState& app;
  CFeedbackProgress progress{app.Feedback()};
  uint64_t elapsed_ms = 0;

  bool Apply(CImageConcreteBase& image, const FilterTables& tables, bool all, const std::string& label) {
    progress.Start("Filter Colors", WorkedRegionPixels(image));
    const BandRun run = RunFilter(image, tables, all, label, app.Jobs(), &progress, app.FavorLowMemory());
    elapsed_ms += run.elapsed_ms;
    return run.ok;
  }
};

std::string ComponentName(const ImageRecord& record, uint32_t component) {
  const PathParts parts = SplitPath(record.path.empty() ? record.display_name : record.path);
  // Grey has one component and takes the "Y" of the YUV letters.
  const ColorKind kind = ColorKindOf(*record.image);
  const std::string_view letters = FamilyLetters(kind == ColorKind::Rgb ? kind : ColorKind::Yuv);
  return "New_Copy_" + parts.stem + "_" + letters[component] +
         (parts.has_extension ? "." + parts.extension : "");
}

}  // namespace

FilterResult RunFilterCommand(AppState& app, const FilterCommand& command) {
  if (command.index >= app.Images().Count()) return FailedQuietly();
  Applier applier{app};
  std::vector<size_t> targets = {command.index};
  if (command.target == FilterTarget::CompareFamily && app.CompareMode() && !app.ComparisonGroup().empty()) {
    const IImageContainer& first = *app.Images().At(app.ComparisonGroup()[0]).image;
    targets.clear();
    for (size_t member : app.ComparisonGroup()) {
      const IImageContainer& image = *app.Images().At(member).image;
      if (ColorKindOf(image) == ColorKindOf(first) &&
          image.ComponentCount() == first.ComponentCount()) {
        targets.push_back(member);
      }
    }
    app.StatusMessage("Applying filter to all compared images...");
  }

  CImageConcreteBase& source = Image(app, targets[0]);
  FilterTables tables;
  if (std::optional<FilterResult> refusal = Prepare(source, command, tables)) return *refusal;

  switch (command.target) {
    case FilterTarget::SeparateComponents: {
      if (app.Images().Count() + 3 > ImageRegistry::kMaxImages) {
        return Refused(FilterOutcome::NoSlots, "Filter colors error: not enough free image slots", kErrorTitle);
      }
      app.StatusMessage("Applying filter to separate channels...");
      // Names first: registering new images moves the records.
      std::vector<std::string> names;
      for (uint32_t c = 0; c < source.PlaneCount(); ++c) {
        names.push_back(ComponentName(app.Images().At(command.index), c));
      }
      for (uint32_t c = 0; c < source.PlaneCount(); ++c) {
        std::unique_ptr<IImageContainer> channel = source.ExtractComponent(c);
        auto* gray = dynamic_cast<CImageConcreteBase*>(channel.get());
        if (gray == nullptr || !applier.Apply(*gray, ComponentTables(tables, c), false, command.expression)) {
          return FailedQuietly();
        }
        const IImageContainer* created = channel.get();
        app.RegisterImage(std::move(channel), names[c], "P,Y," + std::to_string(source.GetBitsPerComponent()),
                          false);
        app.MarkCreatedUnsaved(created);
      }
      break;
    }
    case FilterTarget::NewImage: {
      if (app.Images().Full()) {
        return Refused(FilterOutcome::NoSlots, "Filter colors error: no free image slots", kErrorTitle);
      }
      const ImageRecord& record = app.Images().At(command.index);
      const std::string name = MakeNewImageName(record.path.empty() ? record.display_name : record.path, nullptr);
      const std::string format_text = record.format_text;
      app.StatusMessage("Applying filter to a new image %s...", name.c_str());
      std::unique_ptr<IImageContainer> copy = source.Duplicate(DuplicateArea::WholeImage);
      auto* target = dynamic_cast<CImageConcreteBase*>(copy.get());
      if (target == nullptr) return FailedQuietly();
      target->SetRegionOfInterest(source.GetRegionOfInterest());
      if (!applier.Apply(*target, tables, command.all_components, command.expression)) return FailedQuietly();
      const IImageContainer* created = copy.get();
      app.RegisterImage(std::move(copy), name, format_text, false);
      app.MarkCreatedUnsaved(created);
      break;
    }
    case FilterTarget::Image:
    case FilterTarget::CompareFamily:
      if (command.target == FilterTarget::Image) app.StatusMessage("Applying filter on image...");
      for (size_t index : targets) {
        CImageConcreteBase& image = Image(app, index);
        app.StatusMessage("Applying filter to %s", app.Images().At(index).display_name.c_str());
        FilterTables own;
        if (std::optional<FilterResult> refusal = Prepare(image, command, own)) return *refusal;
        if (!applier.Apply(image, own, command.all_components, command.expression)) return FailedQuietly();
      }
      break;
  }
  app.StatusMessage("Filter: Applied in %llu ms", static_cast<unsigned long long>(applier.elapsed_ms));
  return {};
}

void ClearFilterCommand(AppState& app, size_t index) {
  if (index >= app.Images().Count()) return;
  app.StatusMessage("Filter colors: clearing filter from...");
  Image(app, index).ClearFilter();
  app.Feedback().RequestRepaint();
}

}  // namespace korvanel
