// Many things at a time: that results keep their order, how many there are, and on which stacks.

#include "in_order.h"
#include "progress.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <future>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

using gait_program::make_and_use_in_order;
using gait_program::progress_in_words;

constexpr std::size_t jobs = 3;

TEST(ManyAtOnce, AreUsedInTheirOrderAlthoughTheFirstIsMadeLast) {
  std::promise<void> last_is_made;
  const auto is_made = last_is_made.get_future();
  std::vector<std::size_t> used;
  make_and_use_in_order(
      4, jobs,
      [&](std::size_t i) {
        if (i == 0) {
          is_made.wait();
        } else if (i == 3) {
          last_is_made.set_value();
        }
        return i * i;
      },
      [&](std::size_t square) { used.push_back(square); });
  EXPECT_EQ(used, (std::vector<std::size_t>{0, 1, 4, 9}));
}

TEST(ManyAtOnce, AreNoMoreThanAFewForEachJob) {
  std::atomic<std::size_t> living = 0;
  std::atomic<std::size_t> most = 0;
  std::size_t used = 0;
  make_and_use_in_order(
      1000, jobs,
      [&](std::size_t i) {
        const std::size_t now = ++living;
        for (std::size_t seen = most; seen < now && !most.compare_exchange_weak(seen, now);) {
        }
        return i;
      },
      [&](std::size_t /*made*/) {
        --living;
        ++used;
      });
  EXPECT_EQ(used, 1000U);
  EXPECT_GT(most, 0U);
  EXPECT_LE(most, gait_program::results_per_job * jobs);
}

TEST(ManyAtOnce, StartNoThreadForOneJob) {
  const auto this_thread = std::this_thread::get_id();
  make_and_use_in_order(
      5, 1, [&](std::size_t i) { return std::this_thread::get_id() == this_thread ? i : 100; },
      [](std::size_t made) { EXPECT_LT(made, 5U); });
}

TEST(ManyAtOnce, EndWithTheExceptionOfAUse) {
  std::size_t used = 0;
  const auto use = [&](std::size_t i) {
    ++used;
    if (i == 2) {
      throw std::runtime_error("no more");
    }
  };
  EXPECT_THROW(make_and_use_in_order(
                   100, jobs, [](std::size_t i) { return i; }, use),
               std::runtime_error);
  EXPECT_EQ(used, 3U);
}

/// Takes four KiB of stack a call, and touches it. The thread sanitizer keeps no more than 65,536
/// calls, and writes the next ones over other memory.
std::size_t depth_of(std::size_t calls) {
  volatile char frame[4096];
  frame[0] = static_cast<char>(calls);
  return calls == 0 ? static_cast<std::size_t>(frame[0]) : 1 + depth_of(calls - 1);
}

/// Lets the stack grow, as the program does. A thread keeps the stack that it began with, so this
/// comes before all tests.
class large_stack : public testing::Environment {
  void SetUp() override {
    rlimit limit{};
    ::getrlimit(RLIMIT_STACK, &limit);
    limit.rlim_cur = limit.rlim_max;
    ::setrlimit(RLIMIT_STACK, &limit);
  }
};
const auto* const of_all_tests = testing::AddGlobalTestEnvironment(new large_stack);

TEST(ManyAtOnce, HaveRoomForADeepStack) {
  constexpr std::size_t calls = 12500;  // 50 MiB
  const auto main_thread = std::this_thread::get_id();
  std::atomic<int> waiting = 0;
  make_and_use_in_order(
      2, 2,
      [&](std::size_t /*i*/) {
        // Both are made at the same time, so one of them by a thread of its own.
        for (++waiting; waiting < 2;) {
          std::this_thread::yield();
        }
        return std::this_thread::get_id() == main_thread ? calls : depth_of(calls);
      },
      [&](std::size_t depth) { EXPECT_EQ(depth, calls); });
}

TEST(Progress, SaysHowFarHowFastAndHowLongStill) {
  EXPECT_EQ(progress_in_words(0, 40, 0.0, 80), "0 of 40 walks");
  EXPECT_EQ(progress_in_words(12, 40, 4.0, 80), "12 of 40 walks, 3.0 a second, 9 seconds left");
  EXPECT_EQ(progress_in_words(1, 40, 2.0, 80), "1 of 40 walks, 30.0 a minute, 78 seconds left");
  EXPECT_EQ(progress_in_words(1, 3, 7200.0, 80), "1 of 3 walks, 0.5 an hour, 4 hours left");
  EXPECT_EQ(progress_in_words(12, 40, 4.0, 20), "12 of 40 walks, 3.0 ");
}

}  // namespace
