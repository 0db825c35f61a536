#include "ui/model/update_check.h"

#include <cstdio>
#include <utility>

#include "app/app_state.h"
#include "app/app_version.h"
#include "ui/model/frame_plan.h"
#include "ui/model/viewer_host.h"

namespace korvanel {

CUpdateCheck::CUpdateCheck(AppState& app, IViewerHost& host, UpdateState& state, UpdateSettings settings)
    : app_(app), host_(host), state_(state), settings_(std::move(settings)) {}

void CUpdateCheck::OnStart() {
  if (settings_.check_at_start && !settings_.check_url.empty()) Fetch(false);
}

void CUpdateCheck::OnMenu() {
  if (state_.running) return;
  if (state_.done) {
    host_.OpenDialog(DialogId::Update);
    return;
  }
  if (settings_.check_url.empty()) {
    Fail();
    return;
  }
  Fetch(true);
}

void CUpdateCheck::Fetch(bool from_menu) {
  state_.running = true;
  state_.from_menu = from_menu;
  host_.SetMenuState(Command::CheckUpdates, false, false);
  host_.StartUpdateCheck(settings_.check_url);
}

void CUpdateCheck::OnReply(std::optional<std::string_view> body) {
  if (!state_.running) return;  // a late reply nobody waits for
  state_.running = false;
  host_.SetMenuState(Command::CheckUpdates, false, true);
  const std::optional<std::vector<VersionRecord>> records =
      body ? ParseUpdateDocument(*body) : std::nullopt;
  if (!records) {
    // A failed start-up check stays silent.
    if (state_.from_menu) Fail();
    return;
  }
  state_.done = true;
  state_.decision = DecideUpdate(*records, {static_cast<int32_t>(kVersionMajor), static_cast<int32_t>(kVersionMinor)});
  if (state_.from_menu) host_.OpenDialog(DialogId::Update);
}

void CUpdateCheck::Fail() { app_.ShowMessage(kUpdateErrorText, kUpdateErrorTitle, MessageStyle::Error); }

std::string CUpdateCheck::NewerVersionLine() const {
  if (!state_.done || !state_.decision.newer_available) return {};
  char line[128];
  std::snprintf(line, sizeof line, kNewerVersionFormat, state_.decision.version_text.c_str());
  return line;
}

std::string CUpdateCheck::DialogTitle() {
  char title[96];
  std::snprintf(title, sizeof title, kUpdateDialogTitleFormat, kAppVersion);
  return title;
}

}  // namespace korvanel
