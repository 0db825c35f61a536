// The update check as the window runs it, through the controller and a
// recording window: when it fetches, what a reply changes, what the user sees.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "app/app_state.h"
#include "support/recording_feedback.h"
#include "ui/model/recording_viewer_host.h"
#include "ui/model/viewer_controller.h"

namespace korvanel {
namespace {

constexpr const char* kUrl = "http://127.0.0.1:9/versions.txt";
constexpr const char* kNewer = "<version>\r\n1.5\r\nFaster\r\n</version>\r\n<version_end>\r\n";
constexpr const char* kSame = "<version>\r\n1.4\r\nThis one\r\n</version>\r\n<version_end>\r\n";
constexpr const char* kConnectionError = "[Update manager connection error]: Can't access remote DB. Please try again later...";

ViewerSettings WithUpdate(bool at_start, std::string url) {
  ViewerSettings settings;
  settings.update = {at_start, std::move(url), "http://example.org/download"};
  return settings;
}

class UpdateCheckTest : public ::testing::Test {
 protected:
  void Make(bool at_start, const std::string& url) {
    controller = std::make_unique<CViewerController>(app, host, WithUpdate(at_start, url));
  }
  bool MenuEnabled() { return host.menu.at(Command::CheckUpdates).enabled; }
  std::string NewerLine() { return controller->PrepareFrame().no_image.newer_version; }

  test::RecordingFeedback feedback;
  AppState app{feedback};
  test::RecordingViewerHost host;
  std::unique_ptr<CViewerController> controller;
};

TEST_F(UpdateCheckTest, StartFetchesOnlyWhenEnabledAndAnAddressIsSet) {
  const struct {
    bool at_start;
    const char* url;
    size_t fetches;
  } rows[] = {{true, kUrl, 1}, {false, kUrl, 0}, {true, "", 0}};
  for (const auto& row : rows) {
    host.update_fetches.clear();
    Make(row.at_start, row.url);
    controller->CheckUpdatesAtStart();
    EXPECT_EQ(host.update_fetches, std::vector<std::string>(row.fetches, kUrl))
        << row.at_start << " '" << row.url << "'";
  }
}

TEST_F(UpdateCheckTest, NewerVersionAtStartShowsTheMagentaLineAndReenablesTheMenu) {
  Make(true, kUrl);
  controller->CheckUpdatesAtStart();
  EXPECT_FALSE(MenuEnabled());
  EXPECT_EQ(NewerLine(), "");
  controller->OnUpdateReply(kNewer);
  EXPECT_TRUE(MenuEnabled());
  EXPECT_EQ(NewerLine(), "Newer version 1.5 is available. Refer to Help menu");
  EXPECT_TRUE(host.dialogs.empty());  // the start-up check opens nothing
  EXPECT_TRUE(feedback.messages.empty());

  // With the result at hand the menu opens the dialog without a new fetch.
  controller->Execute(Command::CheckUpdates);
  EXPECT_EQ(host.dialogs, std::vector<DialogId>{DialogId::Update});
  EXPECT_EQ(host.update_fetches.size(), 1u);
  EXPECT_EQ(controller->State().update.decision.status_line, "Available update: version 1.5");
}

TEST_F(UpdateCheckTest, FailedOrInvalidStartReplyStaysSilent) {
  for (const std::optional<std::string_view> reply :
       {std::optional<std::string_view>(), std::optional<std::string_view>("<version>\r\n1.x\r\n<version_end>\r\n"),
        std::optional<std::string_view>("<version>\r\n1.5\r\n</version>\r\n")}) {
    Make(true, kUrl);
    controller->CheckUpdatesAtStart();
    controller->OnUpdateReply(reply);
    EXPECT_TRUE(MenuEnabled());
    EXPECT_EQ(NewerLine(), "");
    EXPECT_TRUE(feedback.messages.empty());
    EXPECT_FALSE(controller->State().update.done);
  }
}

TEST_F(UpdateCheckTest, MenuFetchesThenOpensTheDialogOrShowsTheConnectionError) {
  Make(false, kUrl);
  controller->CheckUpdatesAtStart();
  controller->Execute(Command::CheckUpdates);
  EXPECT_EQ(host.update_fetches, std::vector<std::string>{kUrl});
  EXPECT_FALSE(MenuEnabled());
  controller->Execute(Command::CheckUpdates);  // while running: nothing more
  EXPECT_EQ(host.update_fetches.size(), 1u);
  controller->OnUpdateReply(std::nullopt);
  EXPECT_TRUE(MenuEnabled());
  EXPECT_EQ(feedback.messages, std::vector<std::string>{kConnectionError});
  EXPECT_TRUE(host.dialogs.empty());

  // No result was kept, so the next request fetches again.
  controller->Execute(Command::CheckUpdates);
  EXPECT_EQ(host.update_fetches.size(), 2u);
  controller->OnUpdateReply(kSame);
  EXPECT_EQ(host.dialogs, std::vector<DialogId>{DialogId::Update});
  EXPECT_EQ(controller->State().update.decision.status_line,
            "Application is up to date, no new version is available");
  EXPECT_EQ(controller->State().update.decision.head_log, "This one\n");
  EXPECT_EQ(NewerLine(), "");
}

TEST_F(UpdateCheckTest, MenuWithoutAnAddressShowsTheConnectionErrorWithoutNetwork) {
  Make(true, "");
  controller->Execute(Command::CheckUpdates);
  EXPECT_TRUE(host.update_fetches.empty());
  EXPECT_EQ(feedback.messages, std::vector<std::string>{kConnectionError});
}

TEST_F(UpdateCheckTest, LateReplyWithoutARunningFetchIsIgnored) {
  Make(false, kUrl);
  controller->OnUpdateReply(kNewer);
  EXPECT_EQ(NewerLine(), "");
  EXPECT_TRUE(host.dialogs.empty());
}

TEST(UpdateCheckTexts, DialogTitleNamesOurVersion) {
  EXPECT_EQ(CUpdateCheck::DialogTitle(), "Check for updates (current version is 1.4)");
}

}  // namespace
}  // namespace korvanel
