#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <latch>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

#include "ops/job_runner.h"
#include "ops/split_region.h"
#include "ops/worker_pool.h"

namespace korvanel {
namespace {

using namespace std::chrono_literals;

// A job whose behaviour a test scripts: it records that it ran and on which
// thread, may wait for a latch or a cancel request, and returns `result`.
class ScriptedJob : public IImageProcessorThread {
 public:
  bool Run() override {
    runs.fetch_add(1);
    {
      std::lock_guard lock(mutex);
      thread = std::this_thread::get_id();
    }
    if (started != nullptr) started->count_down();
    // Bounded so that a broken cancel fails the test instead of hanging it.
    if (wait_aborted != nullptr) WaitUntil([&] { return wait_aborted->Aborted(); });
    if (wait_for_cancel) WaitUntil([&] { return CancelRequested(flag); });
    saw_cancel = CancelRequested(flag);
    AddProgress(progress_step);
    if (after_progress != nullptr) after_progress->WaitFor(20s);
    if (done != nullptr) done->count_down();
    return result;
  }
  void SetCancelFlag(const CancelFlag* f) override {
    flag = f;
    got_flag = f != nullptr;
  }

  template <typename Done>
  static void WaitUntil(Done done) {
    const auto give_up = std::chrono::steady_clock::now() + 20s;
    while (!done() && std::chrono::steady_clock::now() < give_up) std::this_thread::sleep_for(1ms);
  }

  std::atomic<int> runs{0};
  bool result = true;
  bool wait_for_cancel = false;
  std::latch* started = nullptr;
  const WorkerPool* wait_aborted = nullptr;  // looks at its flag once the run is aborted
  CEvent* after_progress = nullptr;
  std::latch* done = nullptr;
  uint32_t progress_step = 0;
  const CancelFlag* flag = nullptr;
  bool got_flag = false;
  std::atomic<bool> saw_cancel{false};
  std::mutex mutex;
  std::thread::id thread;
};

std::vector<IImageProcessorThread*> Pointers(std::vector<ScriptedJob>& jobs) {
  std::vector<IImageProcessorThread*> out;
  for (ScriptedJob& job : jobs) out.push_back(&job);
  return out;
}

std::vector<int> Runs(const std::vector<ScriptedJob>& jobs) {
  std::vector<int> out;
  for (const ScriptedJob& job : jobs) out.push_back(job.runs.load());
  return out;
}

// --- band split -------------------------------------------------------------

struct SplitCase {
  const char* name;
  Rect rect;
  uint32_t count;
  std::vector<Rect> bands;
};

TEST(SplitRegionTest, CutsRowsOrColumnsWithTheRemainderLast) {
  // clang-format off
  const SplitCase cases[] = {
      {"wide 10x7 on 3: columns 3,3,4", {0, 0, 9, 6}, 3, {{0, 0, 2, 6}, {3, 0, 5, 6}, {6, 0, 9, 6}}},
      {"square 7x7 on 2: rows 3,4", {0, 0, 6, 6}, 2, {{0, 0, 6, 2}, {0, 3, 6, 6}}},
      {"one job takes all", {4, 5, 90, 7}, 1, {{4, 5, 90, 7}}},
      {"offset tall rect", {10, 20, 13, 29}, 3, {{10, 20, 13, 22}, {10, 23, 13, 25}, {10, 26, 13, 29}}},
      {"more jobs than rows", {0, 0, 1, 2}, 5, {kEmptyBand, kEmptyBand, kEmptyBand, kEmptyBand, {0, 0, 1, 2}}},
      {"more jobs than columns", {3, 0, 5, 1}, 4, {kEmptyBand, kEmptyBand, kEmptyBand, {3, 0, 5, 1}}},
      {"exact division", {0, 0, 3, 7}, 4, {{0, 0, 3, 1}, {0, 2, 3, 3}, {0, 4, 3, 5}, {0, 6, 3, 7}}},
      {"rect at the end of the range", {0, 0xFFFFFFF0u, 0, 0xFFFFFFFFu}, 2,
       {{0, 0xFFFFFFF0u, 0, 0xFFFFFFF7u}, {0, 0xFFFFFFF8u, 0, 0xFFFFFFFFu}}},
  };
  // clang-format on
  for (const SplitCase& c : cases) {
    std::vector<ScriptedJob> jobs(c.count);
    const auto pointers = Pointers(jobs);
    SplitRegion(pointers.data(), c.count, c.rect);
    for (uint32_t i = 0; i < c.count; ++i) {
      EXPECT_EQ(jobs[i].Band(), c.bands[i]) << c.name << ", job " << i;
    }
  }
}

// SplitRows is checked through JobRunner::RunBands below.
TEST(SplitRegionTest, EmptyBandsHaveNoRowsAndNoColumns) {
  EXPECT_TRUE(IsEmptyBand(kEmptyBand));
  EXPECT_FALSE(IsEmptyBand(Rect{0, 0, 0, 0}));
  uint32_t rows = 0;
  for (uint64_t y = kEmptyBand.min_y; y <= kEmptyBand.max_y; ++y) ++rows;
  EXPECT_EQ(rows, 0u);
}

// --- pool size --------------------------------------------------------------

TEST(WorkerPoolTest, CapacityFollowsTheConfiguredMaximum) {
  struct Case {
    int32_t configured;
    uint32_t processors;
    uint32_t expected;
  };
  const Case cases[] = {{6, 4, 4}, {0, 4, 4}, {-1, 4, 0}, {2, 4, 2}, {4, 4, 4}, {32, 1, 1}};
  for (const Case& c : cases) {
    EXPECT_EQ(PoolCapacityFor(c.configured, c.processors), c.expected)
        << c.configured << " on " << c.processors;
  }
}

// --- runs -------------------------------------------------------------------

TEST(WorkerPoolTest, EveryAttachedJobRunsOnceOnItsOwnWorker) {
  WorkerPool pool(4);
  JobRunner runner(&pool);
  std::vector<ScriptedJob> jobs(4);
  runner.SetJobs(Pointers(jobs));
  EXPECT_TRUE(runner.RunJobs());
  std::set<std::thread::id> threads;
  for (ScriptedJob& job : jobs) {
    EXPECT_EQ(job.runs.load(), 1);
    EXPECT_TRUE(job.got_flag);
    threads.insert(job.thread);
  }
  EXPECT_EQ(threads.size(), 4u);
  EXPECT_FALSE(threads.contains(std::this_thread::get_id()));
  EXPECT_EQ(pool.ActiveCount(), 0u);
  EXPECT_FALSE(runner.Aborted());
}

TEST(WorkerPoolTest, JobsBeyondTheWorkersGetNoFlagAndDoNotRun) {
  WorkerPool pool(2);
  {
    // Fewer jobs than workers start only the threads they need.
    JobRunner runner(&pool);
    std::vector<ScriptedJob> one(1);
    runner.SetJobs(Pointers(one));
    EXPECT_TRUE(runner.RunJobs());
    EXPECT_EQ(pool.StartedThreads(), 1u);
  }
  JobRunner runner(&pool);
  std::vector<ScriptedJob> jobs(3);
  runner.SetJobs(Pointers(jobs));
  EXPECT_TRUE(runner.RunJobs());
  EXPECT_EQ(Runs(jobs), (std::vector<int>{1, 1, 0}));
  EXPECT_FALSE(jobs[2].got_flag);
}

TEST(WorkerPoolTest, RepeatedRunsReuseTheSameThreads) {
  WorkerPool pool(3);
  EXPECT_EQ(pool.StartedThreads(), 0u);
  JobRunner runner(&pool);
  std::set<std::thread::id> seen;
  for (int round = 0; round < 4; ++round) {
    std::vector<ScriptedJob> jobs(3);
    runner.SetJobs(Pointers(jobs));
    EXPECT_TRUE(runner.RunJobs());
    for (ScriptedJob& job : jobs) seen.insert(job.thread);
    EXPECT_EQ(pool.StartedThreads(), 3u);
  }
  EXPECT_EQ(seen.size(), 3u);
}

TEST(WorkerPoolTest, AFailingJobAbortsTheRunAndCancelsTheOthers) {
  WorkerPool pool(3);
  JobRunner runner(&pool);
  std::vector<ScriptedJob> jobs(3);
  jobs[0].result = false;
  jobs[1].wait_for_cancel = true;
  jobs[2].wait_for_cancel = true;
  runner.SetJobs(Pointers(jobs));
  EXPECT_FALSE(runner.RunJobs());
  EXPECT_TRUE(runner.Aborted());
  EXPECT_FALSE(pool.LastResult(0));
  EXPECT_TRUE(pool.LastResult(1));
  EXPECT_TRUE(jobs[1].saw_cancel.load());
  EXPECT_TRUE(jobs[2].saw_cancel.load());
}

// Cancel requests reach only workers whose threads started in the same run;
// a later failure still marks the run aborted.
TEST(WorkerPoolTest, InLaterRunsAFailureMarksTheRunAbortedWithoutCancelling) {
  WorkerPool pool(2);
  JobRunner runner(&pool);
  for (int round = 0; round < 2; ++round) {
    std::vector<ScriptedJob> jobs(2);
    jobs[0].result = false;
    jobs[1].wait_aborted = &pool;
    runner.SetJobs(Pointers(jobs));
    EXPECT_FALSE(runner.RunJobs()) << "round " << round;
    EXPECT_TRUE(runner.Aborted());
    EXPECT_EQ(jobs[1].runs.load(), 1);
    EXPECT_EQ(jobs[1].saw_cancel.load(), round == 0) << "round " << round;
  }
}

TEST(WorkerPoolTest, CancelStopsTheJobsOfARunningOperation) {
  WorkerPool pool(2);
  JobRunner runner(&pool);
  std::latch started(2);
  std::vector<ScriptedJob> jobs(2);
  for (ScriptedJob& job : jobs) {
    job.wait_for_cancel = true;
    job.started = &started;
  }
  runner.SetJobs(Pointers(jobs));
  std::thread canceller([&] {
    started.wait();
    runner.Cancel();
  });
  EXPECT_FALSE(runner.RunJobs());
  canceller.join();
  EXPECT_TRUE(runner.Aborted());
  for (ScriptedJob& job : jobs) EXPECT_TRUE(job.saw_cancel.load());
  // The next run starts clean.
  std::vector<ScriptedJob> next(2);
  runner.SetJobs(Pointers(next));
  EXPECT_TRUE(runner.RunJobs());
}

TEST(WorkerPoolTest, CancelWithoutARunDoesNothing) {
  WorkerPool pool(2);
  pool.Cancel();
  EXPECT_FALSE(pool.Aborted());
}

TEST(WorkerPoolTest, ShutdownJoinsEveryThread) {
  WorkerPool pool(3);
  JobRunner runner(&pool);
  std::vector<ScriptedJob> jobs(3);
  runner.SetJobs(Pointers(jobs));
  runner.RunJobs();
  EXPECT_EQ(pool.StartedThreads(), 3u);
  pool.Shutdown();
  EXPECT_EQ(pool.StartedThreads(), 0u);
  pool.Shutdown();  // a second shutdown finds nothing to do
}

TEST(WorkerPoolTest, CompletionEventIsSignalledAfterEachRun) {
  WorkerPool pool(2);
  CEvent completion(EventReset::Manual);
  pool.SetCompletionEvent(&completion);
  ScriptedJob job;
  pool.AttachJob(&job);
  EXPECT_FALSE(completion.WaitFor(0ms));
  EXPECT_TRUE(pool.Run());
  EXPECT_TRUE(completion.WaitFor(0ms));
}

// --- runner -----------------------------------------------------------------

TEST(JobRunnerTest, WithoutAPoolJobsRunInOrderUntilOneFails) {
  JobRunner runner(nullptr);
  EXPECT_EQ(runner.JobSlots(), 1u);
  std::vector<ScriptedJob> jobs(3);
  jobs[1].result = false;
  runner.SetJobs(Pointers(jobs));
  EXPECT_FALSE(runner.RunJobs());
  EXPECT_TRUE(runner.Aborted());
  EXPECT_EQ(Runs(jobs), (std::vector<int>{1, 1, 0}));
  EXPECT_EQ(jobs[0].thread, std::this_thread::get_id());
  EXPECT_FALSE(jobs[0].got_flag);
}

// Records the samples; opens `reached` once the sum hits `target`.
class RecordingSink : public IProgressSink {
 public:
  void OnProgress(uint64_t elapsed_ms, uint64_t sum) override {
    std::lock_guard lock(mutex);
    samples.push_back({elapsed_ms, sum});
    if (sum >= target) reached.Set();
  }
  std::mutex mutex;
  std::vector<std::pair<uint64_t, uint64_t>> samples;
  uint64_t target = 0;
  CEvent reached{EventReset::Manual};
};

TEST(JobRunnerTest, TheProgressThreadReportsTheSummedCounters) {
  WorkerPool pool(2);
  JobRunner runner(&pool);
  RecordingSink sink;
  sink.target = 30;
  runner.SetProgressSink(&sink, 2);
  std::vector<ScriptedJob> jobs(2);
  jobs[0].progress_step = 10;
  jobs[1].progress_step = 20;
  // The jobs end only after the sink saw both counters.
  jobs[0].after_progress = &sink.reached;
  jobs[1].after_progress = &sink.reached;
  runner.SetJobs(Pointers(jobs));
  EXPECT_TRUE(runner.RunJobs());
  std::lock_guard lock(sink.mutex);
  ASSERT_FALSE(sink.samples.empty());
  EXPECT_EQ(sink.samples.back().second, 30u);
  EXPECT_EQ(runner.LastProgressSum(), 30u);
  for (size_t i = 1; i < sink.samples.size(); ++i) {
    EXPECT_LE(sink.samples[i - 1].first, sink.samples[i].first);
    EXPECT_LE(sink.samples[i - 1].second, sink.samples[i].second);
  }
}

// --- band kernels -----------------------------------------------------------

// Records the bands a kernel was called with and the threads that ran them.
struct BandLog {
  std::mutex mutex;
  std::vector<Rect> bands;
  std::set<std::thread::id> threads;
  BandKernel Kernel() {
    return [this](const Rect& band, IRowObserver*) {
      std::lock_guard lock(mutex);
      bands.push_back(band);
      threads.insert(std::this_thread::get_id());
      return true;
    };
  }
  std::vector<Rect> Sorted() {
    std::sort(bands.begin(), bands.end(), [](const Rect& a, const Rect& b) { return a.min_y < b.min_y; });
    return bands;
  }
};

TEST(JobRunnerTest, RunBandsGivesEachWorkerABandOfRows) {
  struct Case {
    const char* name;
    uint32_t workers;
    Rect region;
    std::vector<Rect> bands;  // the non-empty ones, top to bottom
  };
  const Case cases[] = {
      {"wide region on 3", 3, {0, 0, 9, 6}, {{0, 0, 9, 1}, {0, 2, 9, 3}, {0, 4, 9, 6}}},
      {"offset region on 2", 2, {4, 10, 7, 14}, {{4, 10, 7, 11}, {4, 12, 7, 14}}},
      {"fewer rows than workers", 4, {0, 0, 99, 1}, {{0, 0, 99, 1}}},
  };
  for (const Case& c : cases) {
    WorkerPool pool(c.workers);
    JobRunner runner(&pool);
    BandLog log;
    const BandRun run = runner.RunBands(c.region, nullptr, log.Kernel());
    EXPECT_TRUE(run.ok && run.parallel && !run.aborted) << c.name;
    EXPECT_EQ(log.Sorted(), c.bands) << c.name;
    EXPECT_EQ(log.threads.count(std::this_thread::get_id()), 0u) << c.name;
  }
}

TEST(JobRunnerTest, RunInBandsKeepsSmallOrPoollessWorkOnTheCallingThread) {
  WorkerPool pool(2);
  JobRunner pooled(&pool);
  JobRunner poolless(nullptr);
  struct Case {
    const char* name;
    IParallelRunner* runner;
    Rect region;
    bool parallel;
  };
  const Case cases[] = {
      {"no runner", nullptr, {0, 0, 99, 99}, false},
      {"runner without a pool", &poolless, {0, 0, 99, 99}, false},
      {"below the minimum", &pooled, {0, 0, 99, 19}, false},  // 2000 pixels
      {"at the minimum", &pooled, {0, 0, 2000, 0}, true},
  };
  for (const Case& c : cases) {
    BandLog log;
    const BandRun run = RunInBands(c.region, c.runner, nullptr, log.Kernel());
    EXPECT_TRUE(run.ok) << c.name;
    EXPECT_EQ(run.parallel, c.parallel) << c.name;
    if (!c.parallel) {
      EXPECT_EQ(log.bands, std::vector<Rect>{c.region}) << c.name;
      EXPECT_EQ(log.threads, std::set<std::thread::id>{std::this_thread::get_id()}) << c.name;
    }
  }
}

TEST(JobRunnerTest, AFailingOrCancelledBandAbortsTheBandRun) {
  WorkerPool pool(2);
  JobRunner runner(&pool);
  BandRun run = runner.RunBands({0, 0, 9, 9}, nullptr, [](const Rect& band, IRowObserver*) {
    return band.min_y != 0;
  });
  EXPECT_FALSE(run.ok);
  EXPECT_TRUE(run.aborted);

  // The first band cancels after its second row and must stop there (a
  // cancel reaches the workers started in the same run: a fresh pool).
  WorkerPool fresh(2);
  JobRunner cancelling(&fresh);
  std::atomic<uint32_t> first_band_rows{0};
  run = cancelling.RunBands({0, 0, 9, 99}, nullptr, [&](const Rect& band, IRowObserver* observer) {
    for (uint32_t y = band.min_y; y <= band.max_y; ++y) {
      if (band.min_y == 0) first_band_rows.fetch_add(1);
      if (band.min_y == 0 && y == 1) cancelling.Cancel();
      if (!ContinueAfterRow(observer, 10)) return false;
    }
    return true;
  });
  EXPECT_FALSE(run.ok);
  EXPECT_TRUE(run.aborted);
  EXPECT_EQ(first_band_rows.load(), 2u);
  // The next run starts clean.
  BandLog log;
  EXPECT_TRUE(cancelling.RunBands({0, 0, 9, 9}, nullptr, log.Kernel()).ok);
}

TEST(JobRunnerTest, ABandRunFindingThePoolBusyRunsOnItsOwnThread) {
  WorkerPool pool(2);
  JobRunner runner(&pool);
  BandLog log;
  BandRun run;
  {
    std::lock_guard busy(pool.RunLease());
    run = runner.RunBands({0, 0, 99, 99}, nullptr, log.Kernel());
  }
  EXPECT_TRUE(run.ok);
  EXPECT_FALSE(run.parallel);
  EXPECT_EQ(log.bands, (std::vector<Rect>{{0, 0, 99, 99}}));
  EXPECT_EQ(log.threads, std::set<std::thread::id>{std::this_thread::get_id()});
  EXPECT_EQ(pool.StartedThreads(), 0u);
}

TEST(JobRunnerTest, RunJobsWaitsWhileAnotherRunHoldsThePool) {
  WorkerPool pool(2);
  JobRunner runner(&pool);
  ScriptedJob job;
  runner.SetJobs({&job});
  std::unique_lock busy(pool.RunLease());
  std::thread second([&] { EXPECT_TRUE(runner.RunJobs()); });
  std::this_thread::sleep_for(50ms);
  EXPECT_EQ(job.runs.load(), 0);  // still waiting for the pool
  busy.unlock();
  second.join();
  EXPECT_EQ(job.runs.load(), 1);
}

TEST(SyncEventTest, AutoResetIsConsumedManualResetStays) {
  CEvent automatic(EventReset::Auto);
  automatic.Set();
  automatic.Set();  // setting twice is harmless
  EXPECT_TRUE(automatic.WaitFor(0ms));
  EXPECT_FALSE(automatic.WaitFor(0ms));
  CEvent manual(EventReset::Manual);
  manual.Set();
  EXPECT_TRUE(manual.WaitFor(0ms));
  EXPECT_TRUE(manual.WaitFor(0ms));
  manual.Reset();
  EXPECT_FALSE(manual.WaitFor(0ms));
}

}  // namespace
}  // namespace korvanel
