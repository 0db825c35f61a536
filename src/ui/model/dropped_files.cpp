#include "ui/model/dropped_files.h"

#include "app/app_state.h"
#include "app/command_outcome.h"
#include "app/diff_command.h"

namespace korvanel {
namespace {

constexpr size_t kPairDropped = 2;

bool SameSize(const AppState& app, size_t a, size_t b) {
  uint32_t aw = 0, ah = 0, bw = 0, bh = 0;
  app.Images().At(a).image->GetSize(aw, ah);
  app.Images().At(b).image->GetSize(bw, bh);
  return aw == bw && ah == bh;
}

}  // namespace

void OpenDroppedFiles(AppState& app, const std::vector<std::string>& paths) {
  size_t opened = 0;
  for (const std::string& path : paths) {
    if (app.OpenImage(path)) ++opened;
  }
  const size_t count = app.Images().Count();
  if (paths.size() != kPairDropped || opened != kPairDropped || app.CompareMode() ||
      count >= ImageRegistry::kMaxImages || app.MaxComparisonParty() <= kPairDropped ||
      !SameSize(app, count - 2, count - 1)) {
    return;
  }
  app.ForceComparison({count - 2, count - 1});
  ShowOutcome(app, DiffComparison(app, CurrentDiffCode(app)));
}

}  // namespace korvanel
