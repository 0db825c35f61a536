#include "ui/model/file_watch.h"

#include <vector>

#include "app/app_state.h"
#include "ui/model/viewer_host.h"

namespace korvanel {

bool RunFileWatchRound(AppState& app, IViewerHost& host, bool keep_format) {
  const std::vector<size_t> changed = app.ChangedFiles();
  if (changed.empty()) return false;
  // A question is a nested event loop: the timer must not start another.
  host.StopTimer(TimerId::FileWatch);
  bool reloaded = false;
  for (size_t i = 0; i < changed.size(); ++i) {
    bool keep = keep_format;
    const ModifiedAnswer answer = host.AskFileModified(app.Images().At(changed[i]).path, keep);
    const bool to_all = answer == ModifiedAnswer::YesToAll || answer == ModifiedAnswer::IgnoreAll;
    const bool reload = answer == ModifiedAnswer::Yes || answer == ModifiedAnswer::YesToAll;
    // "all" answers cover this image and every later changed one, then end the round.
    const size_t end = to_all ? changed.size() : i + 1;
    for (size_t j = i; j < end; ++j) {
      if (reload) reloaded = app.ReloadImage(changed[j], keep) || reloaded;
      else app.Images().At(changed[j]).watched = false;
    }
    if (to_all) break;
  }
  host.StartTimer(TimerId::FileWatch, TimerPeriod(TimerId::FileWatch));
  return reloaded;
}

}  // namespace korvanel
