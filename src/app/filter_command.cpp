#include "app/filter_command.h"

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

// Parses the texts for this image's depth and component count.
bool ParseFor(AppState& app, const CImageConcreteBase& image, const FilterCommand& command,
              bool report, FilterTables& tables) {
  FilterParseState state;
  const uint32_t bits = image.GetBitsPerComponent();
  if (ParseFilterExpression(command.expression, bits, image.PlaneCount(), tables, state) &&
      ParseNegationColor(command.negation, tables, state)) {
    return true;
  }
  if (report) app.ShowMessage(FilterErrorText(state), FilterErrorTitle(state));
  return false;
}

bool Filterable(AppState& app, const CImageConcreteBase& image, bool report) {
  const uint32_t bits = image.GetBitsPerComponent();
  if (bits == 8 || bits == 16) return true;
  if (report) app.ShowMessage("Filter colors error: Can't filter 32bpp images", kErrorTitle);
  return false;
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

FilterOutcome RunFilterCommand(AppState& app, const FilterCommand& command, bool report) {
  if (command.index >= app.Images().Count()) return FilterOutcome::Failed;
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
  if (!Filterable(app, source, report)) return FilterOutcome::BadDepth;
  FilterTables tables;
  if (!ParseFor(app, source, command, report, tables)) return FilterOutcome::BadExpression;

  switch (command.target) {
    case FilterTarget::SeparateComponents: {
      if (app.Images().Count() + 3 > ImageRegistry::kMaxImages) {
        if (report) app.ShowMessage("Filter colors error: not enough free image slots", kErrorTitle);
        return FilterOutcome::NoSlots;
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
          return FilterOutcome::Failed;
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
        if (report) app.ShowMessage("Filter colors error: no free image slots", kErrorTitle);
        return FilterOutcome::NoSlots;
      }
      const ImageRecord& record = app.Images().At(command.index);
      const std::string name = MakeNewImageName(record.path.empty() ? record.display_name : record.path, nullptr);
      const std::string format_text = record.format_text;
      app.StatusMessage("Applying filter to a new image %s...", name.c_str());
      std::unique_ptr<IImageContainer> copy = source.Duplicate(DuplicateArea::WholeImage);
      auto* target = dynamic_cast<CImageConcreteBase*>(copy.get());
      if (target == nullptr) return FilterOutcome::Failed;
      target->SetRegionOfInterest(source.GetRegionOfInterest());
      if (!applier.Apply(*target, tables, command.all_components, command.expression)) {
        return FilterOutcome::Failed;
      }
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
        if (!Filterable(app, image, report)) return FilterOutcome::BadDepth;
        FilterTables own;
        if (!ParseFor(app, image, command, report, own)) return FilterOutcome::BadExpression;
        if (!applier.Apply(image, own, command.all_components, command.expression)) return FilterOutcome::Failed;
      }
      break;
  }
  app.StatusMessage("Filter: Applied in %llu ms", static_cast<unsigned long long>(applier.elapsed_ms));
  return FilterOutcome::Applied;
}

void ClearFilterCommand(AppState& app, size_t index) {
  if (index >= app.Images().Count()) return;
  app.StatusMessage("Filter colors: clearing filter from...");
  Image(app, index).ClearFilter();
  app.Feedback().RequestRepaint();
}

}  // namespace korvanel
