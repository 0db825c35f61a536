#pragma once

// The update check as the window runs it: at start when enabled and an
// address is configured, and from Help "Check for &updates...". The window
// only fetches the document; what it means and what the user sees is
// decided here. The Help item stays disabled while a fetch runs.

#include <optional>
#include <string>
#include <string_view>

#include "ui/model/update_document.h"

namespace korvanel {

class AppState;
class IViewerHost;

inline constexpr const char* kUpdateErrorText = "Can't access remote DB. Please try again later...";
inline constexpr const char* kUpdateErrorTitle = "Update manager connection error";
inline constexpr const char* kUpdateDialogTitleFormat = "Check for updates (current version is %s)";
inline constexpr const char* kDownloadLabelText = "New versions can be downloaded from:";

struct UpdateSettings {
  bool check_at_start = false;
  std::string check_url;     // empty: no network at all
  std::string download_url;  // empty: no download link
};

struct UpdateState {
  bool running = false;
  bool from_menu = false;  // the running fetch was asked for from the menu
  bool done = false;       // a fetch brought a valid document
  UpdateDecision decision;
};

class CUpdateCheck {
 public:
  CUpdateCheck(AppState& app, IViewerHost& host, UpdateState& state, UpdateSettings settings);

  // At window creation.
  void OnStart();
  // Help "Check for &updates...": the dialog with a result at hand, else a
  // fresh fetch.
  void OnMenu();
  // The fetch ended with the document's bytes, or with nothing on failure.
  void OnReply(std::optional<std::string_view> body);

  // "Newer version %s is available. Refer to Help menu", or empty.
  std::string NewerVersionLine() const;
  // "Check for updates (current version is 1.4)".
  static std::string DialogTitle();
  const UpdateSettings& Settings() const { return settings_; }

 private:
  void Fetch(bool from_menu);
  void Fail();

  AppState& app_;
  IViewerHost& host_;
  UpdateState& state_;
  UpdateSettings settings_;
};

}  // namespace korvanel
