#include "ui/model/file_watch.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <deque>
#include <filesystem>
#include <string>
#include <vector>

#include "app/app_state.h"
#include "support/recording_feedback.h"
#include "support/temp_dir.h"
#include "ui/model/recording_viewer_host.h"
#include "ui/model/viewer_controller.h"

namespace korvanel {
namespace {

// Answers the modification questions from a script and records them.
class AnsweringHost : public test::RecordingViewerHost {
 public:
  ModifiedAnswer AskFileModified(std::string_view path, bool& keep_settings) override {
    asked.emplace_back(path);
    box_states.push_back(keep_settings);
    timer_running_while_asked.push_back(timers.contains(TimerId::FileWatch));
    const ModifiedAnswer answer = answers.empty() ? ModifiedAnswer::Ignore : answers.front();
    if (!answers.empty()) answers.pop_front();
    return answer;
  }
  std::deque<ModifiedAnswer> answers;
  std::vector<std::string> asked;
  std::vector<bool> box_states;
  std::vector<bool> timer_running_while_asked;
};

uint32_t FirstSample(const AppState& app, size_t index) {
  std::array<uint32_t, 3> values{};
  EXPECT_TRUE(app.Images().At(index).image->GetSampleValues(0, 0, values));
  return values[0];
}

// Three 4 x 2 grey files a, b, c are open; a and b change outside.
struct WatchedFolder {
  WatchedFolder() {
    EXPECT_TRUE(app.LoadFormats(dir.Write("rules.fmt",
                                          "<format_group>\nfile_pattern = [.*\\.y8]\nwidth = 4\nheight = "
                                          "2\nformat = [],P,Y,8\n</format_group>\n")));
    for (const char* name : {"a.y8", "b.y8", "c.y8"}) {
      paths.push_back(dir.Write(name, "AAAAAAAA").string());
      EXPECT_TRUE(app.OpenImage(paths.back()));
    }
  }
  void ChangeOutside(size_t index, char fill) {
    const auto before = std::filesystem::last_write_time(paths[index]);
    dir.Write(std::filesystem::path(paths[index]).filename().string(), std::string(8, fill));
    std::filesystem::last_write_time(paths[index], before + std::chrono::seconds(3));
  }
  std::vector<bool> Watched() const {
    std::vector<bool> watched;
    for (size_t i = 0; i < app.Images().Count(); ++i) watched.push_back(app.Images().At(i).watched);
    return watched;
  }
  std::vector<uint32_t> FirstSamples() const {
    std::vector<uint32_t> samples;
    for (size_t i = 0; i < app.Images().Count(); ++i) samples.push_back(FirstSample(app, i));
    return samples;
  }

  test::TempDir dir;
  test::RecordingFeedback feedback;
  AppState app{feedback};
  AnsweringHost host;
  std::vector<std::string> paths;
};

class FileWatchTest : public ::testing::Test, protected WatchedFolder {};

struct RoundCase {
  const char* name;
  std::vector<ModifiedAnswer> answers;
  size_t questions;
  std::vector<uint32_t> samples;  // first sample of a, b, c after the round
  std::vector<bool> watched;
};

TEST_F(FileWatchTest, EachAnswerReloadsOrStopsWatching) {
  using enum ModifiedAnswer;
  const RoundCase cases[] = {
      {"yes to each", {Yes, Yes}, 2, {'a', 'b', 'A'}, {true, true, true}},
      {"ignore then yes", {Ignore, Yes}, 2, {'A', 'b', 'A'}, {false, true, true}},
      {"yes to all", {YesToAll}, 1, {'a', 'b', 'A'}, {true, true, true}},
      {"ignore all", {IgnoreAll}, 1, {'A', 'A', 'A'}, {false, false, true}},
      {"yes then ignore all", {Yes, IgnoreAll}, 2, {'a', 'A', 'A'}, {true, false, true}},
  };
  for (const RoundCase& c : cases) {
    SCOPED_TRACE(c.name);
    WatchedFolder fresh;
    fresh.ChangeOutside(0, 'a');
    fresh.ChangeOutside(1, 'b');
    fresh.host.answers.assign(c.answers.begin(), c.answers.end());
    fresh.host.StartTimer(TimerId::FileWatch, 2000);
    RunFileWatchRound(fresh.app, fresh.host, true);
    EXPECT_EQ(fresh.host.asked.size(), c.questions);
    EXPECT_EQ(fresh.host.asked.front(), fresh.paths[0]);
    EXPECT_EQ(fresh.FirstSamples(), c.samples);
    EXPECT_EQ(fresh.Watched(), c.watched);
    // The timer is off while a question is open and runs again afterwards.
    EXPECT_EQ(fresh.host.timer_running_while_asked, std::vector<bool>(c.questions, false));
    EXPECT_EQ(fresh.host.timers.at(TimerId::FileWatch), 2000u);
    // A reloaded or ignored file is not asked about again.
    fresh.host.asked.clear();
    RunFileWatchRound(fresh.app, fresh.host, true);
    EXPECT_TRUE(fresh.host.asked.empty());
  }
}

TEST_F(FileWatchTest, TheCheckBoxStartsFromTheSettingAndChoosesHowToReload) {
  ChangeOutside(0, 'a');
  host.answers = {ModifiedAnswer::Yes};
  RunFileWatchRound(app, host, false);
  EXPECT_EQ(host.box_states, std::vector<bool>{false});
  EXPECT_EQ(FirstSamples(), (std::vector<uint32_t>{'a', 'A', 'A'}));
  EXPECT_FALSE(app.IsCreatedUnsaved(app.Images().At(0).image.get()));
}

TEST_F(FileWatchTest, ADeletedFileAsksNothingAndPollingGoesOn) {
  std::filesystem::remove(paths[1]);
  ViewerSettings settings;
  CViewerController controller(app, host, settings);
  EXPECT_EQ(host.timers.at(TimerId::FileWatch), 2000u);
  controller.OnTimer(TimerId::FileWatch);
  EXPECT_TRUE(host.asked.empty());
  EXPECT_EQ(host.timers.at(TimerId::FileWatch), 2000u);
  EXPECT_EQ(app.Images().Count(), 3u);
  // Written again later, it is asked about.
  dir.Write("b.y8", "bbbbbbbb");
  std::filesystem::last_write_time(paths[1], std::filesystem::file_time_type::clock::now() + std::chrono::seconds(9));
  controller.OnTimer(TimerId::FileWatch);
  EXPECT_EQ(host.asked, std::vector<std::string>{paths[1]});
}

TEST_F(FileWatchTest, IgnoringOutsideChangesStartsNoPoll) {
  ViewerSettings settings;
  settings.watch_files = false;
  CViewerController controller(app, host, settings);
  EXPECT_FALSE(host.timers.contains(TimerId::FileWatch));
}

}  // namespace
}  // namespace korvanel
