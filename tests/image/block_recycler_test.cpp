#include "image/block_recycler.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <thread>
#include <vector>

#include "image/plane.h"

namespace korvanel {
namespace {

constexpr size_t kMiB = size_t{1} << 20;

// Requests of one recycled step: 3 MiB and 4 MiB both take 4 MiB.
constexpr size_t kSmallerOfStep = 3 * kMiB;
constexpr size_t kLargerOfStep = 4 * kMiB;

bool AllZero(const void* block, size_t bytes) {
  const auto* p = static_cast<const uint8_t*>(block);
  return std::all_of(p, p + bytes, [](uint8_t b) { return b == 0; });
}

TEST(BlockRecycler, StepSizesRoundUpToWholeSteps) {
  struct Case {
    size_t bytes;
    size_t step;
  };
  const Case cases[] = {
      {kRecycledBlockBytes, 2 * kMiB},
      {2 * kMiB, 2 * kMiB},
      {2 * kMiB + 1, 4 * kMiB},
      {kSmallerOfStep, 4 * kMiB},
      {33177600, 32 * kMiB},  // a 3840x2160 display rendition
      {std::numeric_limits<size_t>::max(), 0},  // no such step
  };
  for (const Case& c : cases) EXPECT_EQ(CBlockRecycler::StepBytes(c.bytes), c.step) << c.bytes;
}

TEST(BlockRecycler, AGivenBlockServesTheNextRequestOfItsStepOnly) {
  CBlockRecycler recycler({4, 64 * kMiB});
  void* first = recycler.Take(kLargerOfStep, false);
  ASSERT_NE(first, nullptr);
  recycler.Give(first, kLargerOfStep);
  EXPECT_EQ(recycler.ParkedBlocks(), 1u);
  EXPECT_EQ(recycler.ParkedBytes(), 4 * kMiB);

  // Another step size does not take it.
  void* other = recycler.Take(8 * kMiB, false);
  ASSERT_NE(other, nullptr);
  EXPECT_NE(other, first);
  EXPECT_EQ(recycler.Reuses(), 0u);

  // A smaller request of the same step does.
  void* again = recycler.Take(kSmallerOfStep, false);
  EXPECT_EQ(again, first);
  EXPECT_EQ(recycler.Reuses(), 1u);
  EXPECT_EQ(recycler.ParkedBlocks(), 0u);
  EXPECT_EQ(recycler.ParkedBytes(), 0u);
  recycler.Give(again, kSmallerOfStep);
  recycler.Give(other, 8 * kMiB);
  EXPECT_EQ(recycler.ParkedBlocks(), 2u);
  recycler.ReleaseParked();
  EXPECT_EQ(recycler.ParkedBlocks(), 0u);
  EXPECT_EQ(recycler.ParkedBytes(), 0u);
}

TEST(BlockRecycler, ZeroRequestsGetZerosFromFreshAndFromUsedBlocks) {
  CBlockRecycler recycler({4, 64 * kMiB});
  auto* fresh = static_cast<uint8_t*>(recycler.Take(kLargerOfStep, true));
  ASSERT_NE(fresh, nullptr);
  EXPECT_TRUE(AllZero(fresh, kLargerOfStep));
  std::memset(fresh, 0xA5, kLargerOfStep);
  recycler.Give(fresh, kLargerOfStep);

  auto* reused = static_cast<uint8_t*>(recycler.Take(kLargerOfStep, true));
  ASSERT_EQ(reused, fresh);
  EXPECT_TRUE(AllZero(reused, kLargerOfStep));
  recycler.Give(reused, kLargerOfStep);
}

TEST(BlockRecycler, RecycledBlocksStartOnAStepBoundary) {
  CBlockRecycler recycler({4, 64 * kMiB});
  for (size_t bytes : {kRecycledBlockBytes, kSmallerOfStep, 10 * kMiB + 5}) {
    void* block = recycler.Take(bytes, false);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(block) % kRecycledBlockStep, 0u) << bytes;
    // The whole request is usable.
    std::memset(block, 1, bytes);
    recycler.Give(block, bytes);
  }
}

TEST(BlockRecycler, SmallBlocksAreNeverParked) {
  CBlockRecycler recycler({4, 64 * kMiB});
  for (size_t bytes : {size_t{0}, size_t{1}, kRecycledBlockBytes - 1}) {
    void* block = recycler.Take(bytes, true);
    ASSERT_NE(block, nullptr) << bytes;
    EXPECT_TRUE(AllZero(block, bytes));
    recycler.Give(block, bytes);
    EXPECT_EQ(recycler.ParkedBlocks(), 0u) << bytes;
  }
}

// Gives back blocks of the given sizes in MiB, oldest first, under limits,
// and reads which stay parked by taking each size again.
struct LimitCase {
  const char* name;
  CBlockRecycler::Limits limits;
  std::vector<size_t> given_mib;
  std::vector<bool> kept;  // per given block
};

TEST(BlockRecycler, LimitsEvictTheOldestBlocksFirst) {
  const LimitCase cases[] = {
      {"all fit", {4, 64 * kMiB}, {2, 4, 6}, {true, true, true}},
      {"block count", {2, 64 * kMiB}, {2, 4, 6}, {false, true, true}},
      {"byte cap", {8, 10 * kMiB}, {4, 4, 6}, {false, true, true}},
      {"byte cap, two out", {8, 10 * kMiB}, {2, 4, 8}, {false, false, true}},
      {"larger than the cap", {8, 10 * kMiB}, {2, 12}, {true, false}},
      {"nothing parked", {0, 64 * kMiB}, {2, 4}, {false, false}},
      {"more than the table holds", {20, 64 * kMiB}, {2, 2, 2, 2, 2, 2, 2, 2, 2},
       {false, true, true, true, true, true, true, true, true}},
      // Closing many images of one size keeps one image's planes of it.
      {"per size", {8, 64 * kMiB, 3}, {2, 2, 4, 2, 2, 2}, {false, false, true, true, true, true}},
      {"per size, then byte cap", {8, 8 * kMiB, 2}, {4, 2, 4, 4}, {false, false, true, true}},
      {"per size zero", {8, 64 * kMiB, 0}, {2, 4}, {false, false}},
  };
  for (const LimitCase& c : cases) {
    SCOPED_TRACE(c.name);
    CBlockRecycler recycler(c.limits);
    std::vector<void*> blocks;
    for (size_t mib : c.given_mib) blocks.push_back(recycler.Take(mib * kMiB, false));
    for (size_t i = 0; i < blocks.size(); ++i) {
      ASSERT_NE(blocks[i], nullptr);
      recycler.Give(blocks[i], c.given_mib[i] * kMiB);
    }
    size_t kept_bytes = 0;
    size_t kept_count = 0;
    for (size_t i = 0; i < blocks.size(); ++i) {
      if (c.kept[i]) {
        kept_bytes += c.given_mib[i] * kMiB;
        ++kept_count;
      }
    }
    EXPECT_EQ(recycler.ParkedBlocks(), kept_count);
    EXPECT_EQ(recycler.ParkedBytes(), kept_bytes);
    // Taken back newest first, so a kept block of a repeated size is found
    // even when an older one of that size was evicted. (An evicted block's
    // address may come back from the system, so reuses are counted.)
    std::vector<void*> taken;
    for (size_t i = blocks.size(); i-- > 0;) {
      const uint64_t reuses = recycler.Reuses();
      void* block = recycler.Take(c.given_mib[i] * kMiB, false);
      const bool reused = recycler.Reuses() == reuses + 1;
      EXPECT_EQ(reused, c.kept[i]) << "block " << i;
      if (reused) {
        EXPECT_EQ(block, blocks[i]) << "block " << i;
      }
      taken.push_back(block);
    }
    for (size_t i = 0; i < taken.size(); ++i) recycler.Give(taken[i], c.given_mib[blocks.size() - 1 - i] * kMiB);
  }
}

// Each thread fills the block it holds with its own byte and checks it back:
// a block handed to two holders at once, or parked while held, shows up as
// foreign bytes.
TEST(BlockRecycler, ThreadsNeverShareABlock) {
  CBlockRecycler recycler({3, 12 * kMiB});
  constexpr int kThreads = 4;
  constexpr int kRounds = 40;
  std::vector<int> foreign(kThreads, 0);
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&recycler, &foreign, t] {
      for (int round = 0; round < kRounds; ++round) {
        const size_t bytes = (round % 2 == 0 ? 2 : 4) * kMiB;
        auto* block = static_cast<uint8_t*>(recycler.Take(bytes, round % 3 == 0));
        if (block == nullptr) {
          ++foreign[t];
          continue;
        }
        const auto mark = static_cast<uint8_t>(t + 1);
        std::memset(block, mark, bytes);
        std::this_thread::yield();
        if (block[0] != mark || block[bytes / 2] != mark || block[bytes - 1] != mark) ++foreign[t];
        recycler.Give(block, bytes);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (int t = 0; t < kThreads; ++t) EXPECT_EQ(foreign[t], 0) << "thread " << t;
  EXPECT_LE(recycler.ParkedBlocks(), 3u);
  EXPECT_LE(recycler.ParkedBytes(), 12 * kMiB);
  EXPECT_GT(recycler.Reuses(), 0u);
}

TEST(RecycledBlock, MovesOwnershipAndGivesTheBlockBackOnce) {
  RecycledBlock first = RecycledBlock::Take(kSmallerOfStep, true);
  ASSERT_FALSE(first.empty());
  EXPECT_EQ(first.size(), kSmallerOfStep);
  uint8_t* data = first.data();

  RecycledBlock second(std::move(first));
  EXPECT_TRUE(first.empty());
  EXPECT_EQ(first.size(), 0u);
  EXPECT_EQ(second.data(), data);

  RecycledBlock third;
  third = std::move(second);
  EXPECT_TRUE(second.empty());
  EXPECT_EQ(third.data(), data);
  third.Reset();
  EXPECT_TRUE(third.empty());
  second.Reset();  // already empty: gives nothing back
  first.Reset();
  // Parked once: the next request of its step gets it, the one after that
  // another block.
  RecycledBlock again = RecycledBlock::Take(kLargerOfStep, false);
  EXPECT_EQ(again.data(), data);
  RecycledBlock another = RecycledBlock::Take(kLargerOfStep, false);
  EXPECT_NE(another.data(), data);
}

// A plane that asks for zeros gets them even when the last plane of its size
// left its bytes behind in the same block.
TEST(RecycledBlock, ZeroedPlanesAfterAWrittenPlaneOfTheSameSize) {
  struct Case {
    uint32_t bits;
    uint32_t width;
    uint32_t height;
  };
  const Case cases[] = {{8, 3840, 2160}, {16, 1920, 1080}, {32, 1024, 512}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.bits);
    Plane written;
    ASSERT_TRUE(written.Allocate(c.bits, c.width, c.height));
    std::memset(written.bytes(), 0xFF, static_cast<size_t>(written.byte_size()));
    const uint8_t* old_address = written.bytes();
    written.Reset();

    Plane zeroed;
    ASSERT_TRUE(zeroed.Allocate(c.bits, c.width, c.height, true));
    EXPECT_EQ(zeroed.bytes(), old_address);
    EXPECT_TRUE(AllZero(zeroed.bytes(), static_cast<size_t>(zeroed.byte_size())));
  }
}

#if defined(__SANITIZE_ADDRESS__)
#define KORVANEL_TEST_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KORVANEL_TEST_ASAN 1
#endif
#endif

#if defined(KORVANEL_TEST_ASAN)
// Parked blocks and the slack behind a request stay visible to the sanitizer.
TEST(BlockRecyclerDeathTest, SanitizerReportsUseAfterGiveAndOverrun) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  CBlockRecycler recycler({4, 64 * kMiB});
  EXPECT_DEATH(
      {
        auto* block = static_cast<volatile uint8_t*>(recycler.Take(kSmallerOfStep, false));
        recycler.Give(const_cast<uint8_t*>(block), kSmallerOfStep);
        block[10] = 1;
      },
      "use-after-poison");
  EXPECT_DEATH(
      {
        auto* block = static_cast<volatile uint8_t*>(recycler.Take(kSmallerOfStep, false));
        block[kSmallerOfStep] = 1;
      },
      "use-after-poison");
}
#endif

}  // namespace
}  // namespace korvanel
