#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "ops/job_runner.h"
#include "ops/worker_pool.h"

namespace korvanel {
namespace {

using namespace std::chrono_literals;

class TitledSink : public IProgressSink {
 public:
  explicit TitledSink(std::string title) : title_(std::move(title)) {}
  void OnProgress(uint64_t, uint64_t) override {}
  std::string_view Title() const override { return title_; }

 private:
  std::string title_;
};

// Runs the work on a thread of its own, as the viewer does, and may cancel
// once the jobs have started.
class ThreadHost : public IRunHost {
 public:
  explicit ThreadHost(JobRunner& runner) : runner_(runner) {}
  void RunPool(std::string_view title, const std::function<void()>& work) override {
    titles.emplace_back(title);
    std::thread helper([&] {
      work_thread = std::this_thread::get_id();
      work();
    });
    if (cancel) {
      const auto give_up = std::chrono::steady_clock::now() + 20s;
      while (!started.load() && std::chrono::steady_clock::now() < give_up) std::this_thread::sleep_for(1ms);
      runner_.Cancel();
    }
    helper.join();
  }

  std::vector<std::string> titles;
  std::thread::id work_thread;
  bool cancel = false;
  std::atomic<bool> started{false};

 private:
  JobRunner& runner_;
};

// Counts its rows and stops when cancelled.
class RowJob : public IImageProcessorThread {
 public:
  RowJob(std::atomic<bool>& started, uint32_t rows) : started_(started), rows_(rows) {}
  bool Run() override {
    for (uint32_t y = 0; y < rows_; ++y) {
      started_.store(true);
      if (CancelRequested(flag_)) return true;
      std::this_thread::sleep_for(1ms);
      AddProgress(1);
    }
    return true;
  }
  void SetCancelFlag(const CancelFlag* flag) override { flag_ = flag; }

 private:
  std::atomic<bool>& started_;
  uint32_t rows_;
  const CancelFlag* flag_ = nullptr;
};

class JobRunnerHostTest : public ::testing::Test {
 protected:
  JobRunnerHostTest() { runner.SetRunHost(&host); }
  // Runs two jobs of `rows` rows each with a progress sink titled `title`.
  bool RunTwoJobs(const std::string& title, uint32_t rows) {
    TitledSink sink(title);
    runner.SetProgressSink(&sink, 5);
    RowJob a(host.started, rows), b(host.started, rows);
    runner.SetJobs({&a, &b});
    const bool done = runner.RunJobs();
    runner.SetProgressSink(nullptr);
    progress = a.GetProgress() + b.GetProgress();
    return done;
  }

  WorkerPool pool{2};
  JobRunner runner{&pool};
  ThreadHost host{runner};
  uint64_t progress = 0;
};

TEST_F(JobRunnerHostTest, RunsWithProgressGoThroughTheHostUnderTheOperationsTitle) {
  EXPECT_TRUE(RunTwoJobs("Save image", 3));
  EXPECT_EQ(host.titles, std::vector<std::string>{"Save image"});
  EXPECT_NE(host.work_thread, std::this_thread::get_id());
  EXPECT_EQ(progress, 6u);
}

TEST_F(JobRunnerHostTest, RunsWithoutProgressStayOnTheCallingThread) {
  RowJob job(host.started, 2);
  runner.SetJobs({&job});
  EXPECT_TRUE(runner.RunJobs());
  const BandRun bands = runner.RunBands({0, 0, 3, 3}, nullptr, [](const Rect&, IRowObserver*) { return true; });
  EXPECT_TRUE(bands.ok);
  EXPECT_TRUE(host.titles.empty());
}

TEST_F(JobRunnerHostTest, BandRunsWithProgressGoThroughTheHostToo) {
  TitledSink sink("Image Difference");
  const BandRun run = runner.RunBands({0, 0, 3, 3}, &sink, [](const Rect&, IRowObserver*) { return true; });
  EXPECT_TRUE(run.ok);
  EXPECT_EQ(host.titles, std::vector<std::string>{"Image Difference"});
}

TEST_F(JobRunnerHostTest, CancelFromTheHostsThreadAbortsTheRun) {
  host.cancel = true;
  EXPECT_FALSE(RunTwoJobs("Filter Colors", 20000));
  EXPECT_TRUE(runner.Aborted());
  EXPECT_LT(progress, 40000u);
}

}  // namespace
}  // namespace korvanel
