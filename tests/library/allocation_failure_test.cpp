#include <gait/gait.h>

#include "builders.h"
#include "bytes_of.h"
#include "catalogue_keys.h"
#include "failing_allocations.h"
#include "side.h"
#include "text_of.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <list>
#include <map>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// Every allocation that a call makes is made to fail, once alone and once with all that follow.

namespace {

using namespace gait_test;
using testing::AnyOf;

/// To the last bit. What differs is only looked for where something does.
template <class Record>
testing::AssertionResult are_the_same(const Record& a, const Record& b) {
  return same_bytes(a, b) ? testing::AssertionSuccess()
                          : testing::AssertionFailure() << difference(text_of(a), text_of(b));
}

constexpr const char* returned = "returned";
constexpr const char* out_of_memory = "out of memory";

/// How a call ends while allocation k, counted from 0, fails alone or for good: `returned`,
/// `out_of_memory` for std::bad_alloc, or the text of another exception.
std::string outcome_with_failure(long k, bool for_good, const std::function<void()>& call) {
  const auto let_memory_suffice = [] {
    allocations_left = -1;
    memory_stays_short = true;
  };
  memory_stays_short = for_good;
  allocations_left = k;
  try {
    call();
    let_memory_suffice();
    return returned;
  } catch (const std::bad_alloc&) {
    let_memory_suffice();
    return out_of_memory;
  } catch (const std::exception& error) {
    let_memory_suffice();
    return error.what();
  } catch (...) {
    let_memory_suffice();
    return "something else than a standard exception";
  }
}

/// The number of allocations of a call that has memory enough.
long allocations_of(const std::function<void()>& call) {
  const long before = allocations_tried;
  call();
  return allocations_tried - before;
}

/// Lets each allocation of a call fail, alone and with all that follow: std::bad_alloc must come
/// through, and nothing of the call may stay behind. Returns how many allocations the call makes.
///
/// Every time, `prepare` makes what the call works on, `call` uses it, and `look` sees what the
/// failure left of it.
template <class Prepare, class Call, class Look>
long fail_every_allocation(Prepare prepare, Call call, Look look) {
  long allocations = 0;
  {
    auto subject = prepare();
    allocations = allocations_of([&] { call(subject); });
  }
  for (const bool for_good : {false, true}) {
    for (long k = 0; k <= allocations; ++k) {
      const long live_before = live_allocations;
      const long failed_before = allocations_failed;
      {
        auto subject = prepare();
        const std::string outcome = outcome_with_failure(k, for_good, [&] { call(subject); });
        EXPECT_STREQ(outcome.c_str(), k < allocations ? out_of_memory : returned);
        EXPECT_EQ(allocations_failed > failed_before, k < allocations)
            << "the number of allocations differs between calls";
        look(subject);
      }
      EXPECT_EQ(live_allocations - live_before, 0) << "allocations that nobody released";
      if (testing::Test::HasFailure()) {
        ADD_FAILURE() << "allocation " << k << " of " << allocations
                      << (for_good ? " and all that follow" : " alone");
        return allocations;
      }
    }
  }
  return allocations;
}

/// The figure for the log and the report of the test.
void report(const std::string& call, long allocations) {
  EXPECT_GT(allocations, 0) << "nothing was allocated";
  std::printf("%s: %ld allocations, each failed alone and with all that follow\n", call.c_str(),
              allocations);
  testing::Test::RecordProperty("call", call);
  testing::Test::RecordProperty("allocations", static_cast<int>(allocations));
  testing::Test::RecordProperty("failures_survived", static_cast<int>(2 * allocations));
}

// The means

/// Holds what was allocated, lest the compiler leaves out an allocation that it sees through.
void* volatile escaped = nullptr;

TEST(FailingAllocations, AreThoseOfEveryWayToAllocate) {
  struct alignas(64) wide {
    char bytes[64];
  };
  const auto obtain = [&](void* memory) {
    if (memory == nullptr) {
      throw std::bad_alloc();
    }
    return escaped = memory;
  };
  const std::vector<std::function<void()>> ways = {
      [&] { delete static_cast<int*>(obtain(new int)); },
      [&] { delete[] static_cast<int*>(obtain(new int[9])); },
      [&] { delete static_cast<int*>(obtain(new (std::nothrow) int)); },
      [&] { delete[] static_cast<int*>(obtain(new (std::nothrow) int[9])); },
      [&] { delete static_cast<wide*>(obtain(new wide)); },
      [&] { delete[] static_cast<wide*>(obtain(new wide[9])); },
      [&] { delete static_cast<wide*>(obtain(new (std::nothrow) wide)); },
      [&] { delete[] static_cast<wide*>(obtain(new (std::nothrow) wide[9])); },
      [&] { std::free(obtain(std::malloc(9))); },
      [&] { std::free(obtain(std::calloc(9, 9))); },
      [&] { std::free(obtain(std::realloc(nullptr, 9))); },
      [&] { std::free(obtain(std::aligned_alloc(64, 64))); },
      [&] { Eigen::internal::aligned_free(obtain(Eigen::internal::aligned_malloc(9))); },
      [&] { obtain(Eigen::VectorXd(9).data()); },
      [&] { obtain(std::string(99, ' ').data()); },
  };
  for (const auto& way : ways) {
    const long live_before = live_allocations;
    EXPECT_EQ(allocations_of(way), 1) << "way " << &way - ways.data();
    EXPECT_EQ(outcome_with_failure(0, false, way), out_of_memory) << "way " << &way - ways.data();
    EXPECT_EQ(live_allocations, live_before) << "way " << &way - ways.data();
  }
}

TEST(FailingAllocations, LeaveTheBlockThatWasToBeReallocated) {
  void* const block = std::malloc(9);
  const long live_before = live_allocations;
  EXPECT_EQ(outcome_with_failure(0, false, [&] { escaped = std::realloc(block, 99999); }),
            returned);
  EXPECT_EQ(escaped, nullptr);
  EXPECT_EQ(live_allocations, live_before);
  std::free(block);
  EXPECT_EQ(live_allocations, live_before - 1);
}

TEST(FailingAllocations, FailAloneOrWithAllThatFollow) {
  int succeeded = 0;
  const auto five = [&] {
    for (int i = 0; i < 5; ++i) {
      escaped = std::malloc(9);
      succeeded += escaped != nullptr ? 1 : 0;
      std::free(escaped);
    }
  };
  outcome_with_failure(1, false, five);
  EXPECT_EQ(succeeded, 4);
  succeeded = 0;
  outcome_with_failure(1, true, five);
  EXPECT_EQ(succeeded, 1);
}

// The entry

/// A result to call the entry with: a walk, and what earlier calls left in the output.
class entry_call {
public:
  entry_call(walk w, const gait_statistics& earlier)
      : walk_(std::move(w)), result_(&walk_.result()) {
    result_->statistics = earlier;
    result_->quality_flags = earlier_flags;
    input_ = bytes_of_input(*result_);
  }
  // The result points into the walk.
  entry_call(const entry_call&) = delete;
  entry_call& operator=(const entry_call&) = delete;

  const gait_result& result() const { return *result_; }
  void run() { gait_generate_statistics(*result_, walk_.settings()); }

  void expect_untouched_input() const {
    EXPECT_TRUE(bytes_of_input(*result_) == input_) << "what is only read has become\n"
                                                    << text_of_input(*result_);
  }

  static constexpr int earlier_flags = 0x7F;

private:
  walk walk_;
  gait_result* result_;
  std::string input_;
};

/// The output of a run that has memory enough, and the one that it started from.
struct whole_run {
  whole_run(const walk& w, gait_statistics left_by_earlier_calls)
      : earlier(std::move(left_by_earlier_calls)) {
    entry_call call(w, earlier);
    call.run();
    statistics = call.result().statistics;
    quality_flags = call.result().quality_flags;
  }

  gait_statistics earlier;
  gait_statistics statistics;
  int quality_flags = 0;
};

void expect_output(const gait_result& result, const whole_run& whole) {
  EXPECT_TRUE(are_the_same(result.statistics, whole.statistics));
  EXPECT_EQ(result.quality_flags, whole.quality_flags);
}

/// Every entry that is there is that of a whole run, but perhaps for the ratio, which a later stage
/// writes.
void expect_complete_entries(const gait_statistics& left, const whole_run& whole) {
  for (const auto& [key, parameter] : left.parameters) {
    ASSERT_EQ(whole.statistics.parameters.count(key), 1U) << key;
    gait_statistics_parameter expected = whole.statistics.parameters.at(key);
    if (!same_bits(parameter.asymmetry, expected.asymmetry)) {
      const auto kept = whole.earlier.parameters.find(key);
      expected.asymmetry =
          kept != whole.earlier.parameters.end() ? kept->second.asymmetry : gait_missing;
    }
    ASSERT_TRUE(are_the_same(parameter, expected)) << key;
  }
  for (const auto& [key, parameter] : whole.earlier.parameters) {
    ASSERT_EQ(left.parameters.count(key), 1U) << key << " was there before the call";
  }
}

/// What the entry promises of the output when memory runs out.
void expect_what_is_promised(const gait_result& left, const whole_run& whole) {
  expect_complete_entries(left.statistics, whole);
  EXPECT_TRUE(same_bytes(left.statistics.info, whole.earlier.info) ||
              same_bytes(left.statistics.info, whole.statistics.info))
      << text_of(left.statistics.info);
  EXPECT_THAT(left.quality_flags, AnyOf(entry_call::earlier_flags, whole.quality_flags,
                                        whole.quality_flags & ~int{gait_quality_swing_asymmetry}));
}

/// Fails every allocation of the entry on a walk. After each failure, what was only read is what it
/// was, a second call on the same object completes what the first one left, and one on a fresh
/// object is as good as ever.
void expect_failures_to_pass(const std::string& name, const walk& w,
                             const gait_statistics& earlier = {}) {
  const whole_run whole(w, earlier);
  const auto look = [&](entry_call& call) {
    call.expect_untouched_input();
    expect_what_is_promised(call.result(), whole);
    call.run();
    expect_output(call.result(), whole);
    entry_call fresh(w, earlier);
    fresh.run();
    expect_output(fresh.result(), whole);
  };
  const long allocations = fail_every_allocation([&] { return entry_call(w, earlier); },
                                                 [](entry_call& call) { call.run(); }, look);
  report("gait_generate_statistics, " + name, allocations);
}

/// A foot of strides whose swing differs from the other foot's, with a stride without a stride
/// length.
foot some_foot(std::size_t strides, double swing, double step) {
  foot some = foot().ramp(strides, 1.0, step);
  std::vector<double> swings;
  for (std::size_t i = 0; i < strides; ++i) {
    swings.push_back(swing + step * static_cast<double>(i % 3));
  }
  return some.swing(swings).slength({1.25, gait_missing, 1.5});
}

/// Exclusions of both kinds, with indices that occur twice or are out of range.
walk with_exclusions(walk w) {
  return w.excluded_1({3, 3, 99}).excluded_2({5, -1}).settings_value(40.0F);
}

/// Exclusions whose fallback lists count: kind 1 has no other, and kind 2 takes nothing out.
walk with_fallbacks(walk w) {
  return w.excluded_1_fallback({0, 1}).excluded_2({99}).excluded_2_fallback({2, 4});
}

walk alone(std::size_t strides = 12) { return one_foot(some_foot(strides, 40.0, 0.25)); }

/// Two feet with a swing asymmetry that raises its flag, and with a cycle that either foot lacks.
walk together() {
  return two_feet(some_foot(12, 60.0, 0.25), some_foot(12, 30.0, 0.5))
      .gct({1.0, 1.125, 1.25, 1.0, 1.5})
      .ds({20.0, 22.0, 21.5, gait_missing, 20.5})
      .left_links({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, no_cycle, 11})
      .right_links({no_cycle, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11});
}

/// What an earlier call on another walk and the caller left: of the keys every other one, and a
/// pair of sides.
gait_statistics every_other_record(walk other) {
  gait_statistics statistics = other.analyse().statistics;
  const std::map<std::string, gait_statistics_parameter> by_key(statistics.parameters.begin(),
                                                                statistics.parameters.end());
  bool keep = false;
  for (const auto& entry : by_key) {
    if (!std::exchange(keep, !keep)) {
      statistics.parameters.erase(entry.first);
    }
  }
  for (const char* key : {"of the caller_L", "of the caller_R"}) {
    statistics.parameters[key].asymmetry_enabled = true;
    statistics.parameters[key].description = "A record that the caller put there";
  }
  return statistics;
}

TEST(EntryShortOfMemory, IsTriedOnWalksThatReachEveryStage) {
  const whole_run two(with_exclusions(together()), {});
  EXPECT_EQ(two.statistics.parameters.size(), 2 * keys_of_side(true).size() + 1);
  EXPECT_EQ(two.statistics.parameters.at("asymmetry").values.size(), 8U);
  EXPECT_EQ(two.statistics.info.excluded_count, 2);
  EXPECT_NE(two.quality_flags & gait_quality_swing_asymmetry, 0);
  const whole_run fallbacks(with_fallbacks(together()), {});
  EXPECT_EQ(fallbacks.statistics.info.excluded_1_fallback_count, 2U);
  EXPECT_THAT(fallbacks.statistics.info.excluded_2_gct_sum, SameBits(1.25 + 1.5));
}

TEST(EntryShortOfMemory, LetsBadAllocOfOneFootPass) {
  expect_failures_to_pass("one foot", with_exclusions(alone()));
}

TEST(EntryShortOfMemory, LetsBadAllocOfTwoFeetPass) {
  expect_failures_to_pass("two feet", with_exclusions(together()));
}

TEST(EntryShortOfMemory, LetsBadAllocOfOneFootWithFallbackListsPass) {
  expect_failures_to_pass("one foot, fallback lists", with_fallbacks(alone()));
}

TEST(EntryShortOfMemory, LetsBadAllocOfTwoFeetWithFallbackListsPass) {
  expect_failures_to_pass("two feet, fallback lists", with_fallbacks(together()));
}

TEST(EntryShortOfMemory, LetsBadAllocOfALongWalkPass) {
  expect_failures_to_pass("one foot, 60 strides", alone(60));
}

TEST(EntryShortOfMemory, LetsBadAllocOfAWalkWithoutIncludedCyclesPass) {
  expect_failures_to_pass("two feet, all cycles excluded", together().excluded_1(first_cycles(12)));
}

TEST(EntryShortOfMemory, KeepsTheRecordsOfAnEarlierCallOfOneFoot) {
  expect_failures_to_pass("one foot, records kept", with_exclusions(alone()),
                          every_other_record(alone(5)));
}

TEST(EntryShortOfMemory, KeepsTheRecordsOfAnEarlierCallOfTwoFeet) {
  expect_failures_to_pass("two feet, records kept", with_exclusions(together()),
                          every_other_record(with_fallbacks(together())));
}

TEST(EntryShortOfMemory, KeepsAllRecordsOfAnEarlierCall) {
  expect_failures_to_pass("two feet, all records kept", together(),
                          with_exclusions(together()).analyse().statistics);
}

TEST(EntryShortOfMemory, BuildsTheRightSideBeforeTheLeft) {
  bool left_seen = false;
  fail_every_allocation([] { return entry_call(together(), {}); },
                        [](entry_call& call) { call.run(); },
                        [&](const entry_call& call) {
                          const auto& parameters = call.result().statistics.parameters;
                          if (parameters.count("gct_L") != 0 && !left_seen) {
                            left_seen = true;
                            EXPECT_EQ(parameters.size(), keys_of_side(true).size() + 1)
                                << "all of the right side, and the first of the left";
                          }
                        });
  EXPECT_TRUE(left_seen);
}

TEST(EntryShortOfMemory, AccountsForTheWalkBeforeItBuildsParameters) {
  for (const walk& w : {with_exclusions(alone()), with_exclusions(together())}) {
    const whole_run whole(w, {});
    fail_every_allocation(
        [&] { return entry_call(w, {}); }, [](entry_call& call) { call.run(); },
        [&](const entry_call& call) {
          const auto& [info, parameters] = call.result().statistics;
          EXPECT_TRUE(parameters.empty() || same_bytes(info, whole.statistics.info));
        });
  }
}

TEST(EntryShortOfMemory, WritesRatiosBeforeItRaisesFlags) {
  gait_statistics earlier;
  // The name of the other side needs memory only where it is as long as this.
  gait_statistics_parameter& left = earlier.parameters["what the caller measured_L"];
  left.asymmetry_enabled = true;
  left.mean = earlier.parameters["what the caller measured_R"].mean = 2.0;
  bool was_short_of_memory_for_a_ratio = false;
  fail_every_allocation(
      [&] { return entry_call(together(), earlier); }, [](entry_call& call) { call.run(); },
      [&](const entry_call& call) {
        const auto& parameters = call.result().statistics.parameters;
        const bool has_ratio = parameters.at("what the caller measured_L").asymmetry == 1.0;
        EXPECT_TRUE(has_ratio || call.result().quality_flags == entry_call::earlier_flags);
        was_short_of_memory_for_a_ratio |=
            !has_ratio && parameters.size() == 2 + 2 * keys_of_side(true).size();
      });
  EXPECT_TRUE(was_short_of_memory_for_a_ratio);
}

/// What a call allocates beside the nodes of its index lists, of which it makes so many for each
/// cycle.
long allocations_beside_nodes(walk w, int cycles, int nodes_per_cycle) {
  entry_call call(std::move(w), {});
  return allocations_of([&] { call.run(); }) - cycles * nodes_per_cycle;
}

TEST(EntryAllocations, GrowWithTheCyclesByTheNodesOfTheirIndexListsAlone) {
  const auto of_one_foot = [](int cycles) {
    return allocations_beside_nodes(alone(static_cast<std::size_t>(cycles)), cycles, 2);
  };
  const auto of_two_feet = [](int cycles) {
    const foot some = some_foot(static_cast<std::size_t>(cycles), 40.0, 0.25);
    return allocations_beside_nodes(two_feet(some, some), cycles, 5);
  };
  for (const int cycles : {100, 1000}) {
    EXPECT_EQ(of_one_foot(cycles), of_one_foot(20));
    EXPECT_EQ(of_two_feet(cycles), of_two_feet(20));
  }
  EXPECT_LT(of_one_foot(20), 8 * static_cast<long>(keys_of_side(false).size()));
  EXPECT_LT(of_two_feet(20), 8 * static_cast<long>(2 * keys_of_side(true).size() + 1));
}

TEST(PercentileOfOneValue, AllocatesNothing) {
  const Eigen::VectorXd one = Eigen::VectorXd::Constant(1, 7.25);
  EXPECT_EQ(allocations_of([&] { EXPECT_EQ(one.percentile(Eigen::Array2d(25.0, 75.0))(1), 7.25); }),
            0);
}

TEST(EntryWithoutFeet, AllocatesNothing) {
  gait_result result;
  EXPECT_EQ(allocations_of([&] { gait_generate_statistics(result, {}); }), 0);
}

// The entry on recordings that lack a signal

struct absence {
  const char* name;
  walk (*make)();
};

class AbsentSignalShortOfMemory : public testing::TestWithParam<absence> {};

/// The entry on output that earlier calls filled. The exception's own text needs memory as well.
TEST_P(AbsentSignalShortOfMemory, LeavesTheResultUntouchedAndNothingBehind) {
  const char* const key_not_found = "unordered_map::at: key not found";
  for (const gait_statistics& earlier :
       {gait_statistics(), every_other_record(alone()), every_other_record(together())}) {
    const walk w = with_exclusions(GetParam().make());
    const long live_before = live_allocations;
    const auto expect_exception = [&](long k, bool for_good, const auto& expected) {
      entry_call call(w, earlier);
      const std::string output = text_of_output(call.result());
      EXPECT_THAT(outcome_with_failure(k, for_good, [&] { call.run(); }), expected);
      EXPECT_EQ(difference(text_of_output(call.result()), output), "");
      call.expect_untouched_input();
    };
    expect_exception(-1, false, testing::StrEq(key_not_found));
    for (const bool for_good : {false, true}) {
      // The first is that of the exception's own text.
      expect_exception(0, for_good, testing::StrEq(out_of_memory));
      for (long k = 1; k < 5; ++k) {
        expect_exception(k, for_good, AnyOf(key_not_found, out_of_memory));
      }
    }
    EXPECT_EQ(live_allocations - live_before, 0) << "allocations that nobody released";
  }
}

INSTANTIATE_TEST_SUITE_P(
    Recordings, AbsentSignalShortOfMemory,
    testing::Values(
        absence{"OneFoot1", [] { return one_foot(some_foot(12, 40.0, 0.5).without_signal(1)); }},
        absence{"OneFoot2", [] { return one_foot(some_foot(12, 40.0, 0.5).without_signal(2)); }},
        absence{"Left1",
                [] { return two_feet(foot().cycles(12).without_signal(1), foot().cycles(12)); }},
        absence{"Left2",
                [] { return two_feet(foot().cycles(12).without_signal(2), foot().cycles(12)); }},
        absence{"Right1",
                [] { return two_feet(foot().cycles(12), foot().cycles(12).without_signal(1)); }},
        absence{"Right2",
                [] { return two_feet(foot().cycles(12), foot().cycles(12).without_signal(2)); }}),
    [](const auto& tested) { return std::string(tested.param.name); });

// The functions of the headers

/// Fails every allocation of a function that builds into statistics, some of which an earlier call
/// left.
void expect_builder_failures_to_pass(const std::string& name,
                                     const std::function<void(gait_statistics&)>& build,
                                     const gait_statistics& earlier = {}) {
  gait_statistics whole = earlier;
  build(whole);
  const long allocations = fail_every_allocation(
      [&] { return earlier; }, build,
      [&](gait_statistics& left) {
        EXPECT_EQ(text_of(left.info), text_of(earlier.info));
        for (const auto& [key, parameter] : left.parameters) {
          ASSERT_TRUE(are_the_same(parameter, whole.parameters.at(key))) << key;
        }
        EXPECT_GE(left.parameters.size(), earlier.parameters.size());
        build(left);
        EXPECT_TRUE(are_the_same(left, whole)) << "after a second call";
        gait_statistics fresh = earlier;
        build(fresh);
        EXPECT_TRUE(are_the_same(fresh, whole)) << "of a fresh object";
      });
  report(name, allocations);
}

class HeadersShortOfMemory : public testing::Test {
protected:
  ~HeadersShortOfMemory() override {
    EXPECT_EQ(text_of(side), side_before);
    EXPECT_EQ(cycles, cycles_before);
  }

  gait_foot_result side = some_foot(12, 40.0, 0.5).result();
  gait_feet_result feet = feet_with_ds({20.0, gait_missing, 22.0});
  std::list<int> cycles = {0, 2, 99, 1, 2, 11};
  const std::string long_suffix = "_a suffix too long to be held without an allocation";

private:
  std::string side_before = text_of(side);
  std::list<int> cycles_before = cycles;
};

TEST_F(HeadersShortOfMemory, BuildAParameterOrLeaveTheMapUnchanged) {
  const auto build = [&](gait_statistics& statistics) {
    gait_statistics_build_parameter<gait_foot_result, SLENGTH>(statistics, side, cycles,
                                                               long_suffix, SLENGTH{});
  };
  expect_builder_failures_to_pass("gait_statistics_build_parameter, one foot", build);
}

TEST_F(HeadersShortOfMemory, BuildAParameterOfTwoFeetOrLeaveTheMapUnchanged) {
  const auto build = [&](gait_statistics& statistics) {
    gait_statistics_build_parameter<gait_feet_result, DS>(statistics, feet, cycles, "_R", DS{});
  };
  expect_builder_failures_to_pass("gait_statistics_build_parameter, two feet", build);
}

TEST_F(HeadersShortOfMemory, BuildAParameterOfNoCyclesOrLeaveTheMapUnchanged) {
  const auto build = [&](gait_statistics& statistics) {
    gait_statistics_build_parameter<gait_foot_result, GCT>(statistics, side, {}, long_suffix,
                                                           GCT{});
  };
  expect_builder_failures_to_pass("gait_statistics_build_parameter, no cycles", build);
}

TEST_F(HeadersShortOfMemory, BuildAParameterWithoutMeasuredValuesOrLeaveTheMapUnchanged) {
  const std::list<int> unmeasured = {1, 99};
  const auto build = [&](gait_statistics& statistics) {
    gait_statistics_build_parameter<gait_feet_result, DS>(statistics, feet, unmeasured, long_suffix,
                                                          DS{});
  };
  expect_builder_failures_to_pass("gait_statistics_build_parameter, no measured values", build);
}

TEST_F(HeadersShortOfMemory, KeepTheRecordThatIsThere) {
  gait_statistics earlier;
  earlier.parameters["gct_R"].description = "A record that the caller put there";
  const auto build = [&](gait_statistics& statistics) {
    gait_statistics_build_parameter<gait_foot_result, GCT>(statistics, side, cycles, "_R", GCT{});
  };
  expect_builder_failures_to_pass("gait_statistics_build_parameter, record kept", build, earlier);
}

TEST_F(HeadersShortOfMemory, BuildTheParametersOfASide) {
  const auto build = [&](gait_statistics& statistics) {
    gait_statistics_build_parameters(statistics, side, cycles, "", nullptr, nullptr);
  };
  expect_builder_failures_to_pass("gait_statistics_build_parameters, one foot", build);
}

TEST_F(HeadersShortOfMemory, BuildTheParametersOfASideOfTwo) {
  const std::list<int> feet_cycles = {0, 1, 2};
  const auto build = [&](gait_statistics& statistics) {
    gait_statistics_build_parameters(statistics, side, cycles, "_R", &feet, &feet_cycles);
  };
  expect_builder_failures_to_pass("gait_statistics_build_parameters, two feet", build);
}

TEST_F(HeadersShortOfMemory, GatherAllValuesOrNone) {
  const auto& row = gait_catalogue::row_of<SLENGTH>;
  const long allocations = fail_every_allocation(
      [] { return std::list<gait_detail::gathered_values>(); },
      [&](auto& gathered) { gathered.push_back(gait_detail::gather(row, side, cycles)); },
      [&](const auto& gathered) {
        for (const auto& [sample, values] : gathered) {
          EXPECT_THAT(values,
                      SameBitsEach({1.25, 1.5, gait_missing, gait_missing, 1.5, 1.0 + 11 * 0.5}));
          EXPECT_THAT(std::vector<double>(sample.begin(), sample.end()),
                      SameBitsEach({1.25, 1.5, 1.5, 1.0 + 11 * 0.5}));
        }
      });
  report("gait_detail::gather", allocations);
}

TEST_F(HeadersShortOfMemory, LeaveASampleThatCannotShrinkAsItIs) {
  const auto filled = [] {
    gait_detail::sample sample(9);
    sample.push_back(1.5);
    sample.push_back(-0.0);
    return sample;
  };
  const auto values_of = [](const gait_detail::sample& sample) {
    return std::vector<double>(sample.begin(), sample.end());
  };
  const long allocations = fail_every_allocation(
      filled, [](gait_detail::sample& sample) { sample.shrink(); },
      [&](gait_detail::sample& sample) {
        EXPECT_THAT(values_of(sample), SameBitsEach({1.5, -0.0}));
        sample.shrink();
        EXPECT_THAT(values_of(sample), SameBitsEach({1.5, -0.0})) << "after a second call";
      });
  report("gait_detail::sample::shrink", allocations);
}

TEST_F(HeadersShortOfMemory, ShrinkASampleToNothingWithoutMemory) {
  gait_detail::sample sample(9);
  const long live_before = live_allocations;
  EXPECT_EQ(outcome_with_failure(0, true, [&] { sample.shrink(); }), returned);
  EXPECT_EQ(sample.size(), 0);
  EXPECT_EQ(live_allocations, live_before - 1);
}

TEST_F(HeadersShortOfMemory, DescribeASampleWithinTheRecordAlone) {
  gait_detail::sample sample(3);
  for (const double value : {3.0, 1.0, 2.0}) {
    sample.push_back(value);
  }
  const auto describe = [&](gait_statistics_parameter& record) {
    gait_detail::describe(sample, gait_catalogue::cv, record);
  };
  const long allocations =
      fail_every_allocation([] { return gait_statistics_parameter(); }, describe,
                            [&](gait_statistics_parameter& record) {
                              describe(record);
                              EXPECT_THAT(record.median, SameBits(2.0));
                              EXPECT_THAT(record.iqr, SameBits(1.5));
                            });
  EXPECT_THAT(std::vector<double>(sample.begin(), sample.end()), SameBitsEach({3.0, 1.0, 2.0}));
  report("gait_detail::describe", allocations);
}

/// Fails every allocation of a percentile whose result is to be (1.0, 2.0), or empty before it is
/// there.
template <class Percentile>
void expect_percentile_failures_to_pass(const std::string& name, Percentile percentile) {
  const long allocations =
      fail_every_allocation([] { return std::list<Eigen::Array2d>(1); },
                            [&](auto& results) { results.front() = percentile(); },
                            [&](auto& results) {
                              results.front() = percentile();
                              EXPECT_THAT(results.front()[0], SameBits(1.0));
                              EXPECT_THAT(results.front()[1], SameBits(2.0));
                            });
  report("percentile, " + name, allocations);
}

TEST_F(HeadersShortOfMemory, ComputePercentilesOfAVector) {
  const Eigen::VectorXd vector = Eigen::Vector3d(3.0, 1.0, 2.0);
  expect_percentile_failures_to_pass("request of two",
                                     [&] { return vector.percentile(Eigen::Array2d(0.0, 50.0)); });
  EXPECT_EQ(vector, Eigen::Vector3d(3.0, 1.0, 2.0));
}

TEST_F(HeadersShortOfMemory, ComputePercentilesOfARequestOfAnyLength) {
  const Eigen::VectorXd vector = Eigen::Vector3d(3.0, 1.0, 2.0);
  const Eigen::ArrayXd request = Eigen::Array2d(0.0, 50.0);
  expect_percentile_failures_to_pass("request of any length",
                                     [&] { return Eigen::Array2d(vector.percentile(request)); });
}

TEST_F(HeadersShortOfMemory, ComputePercentilesOfAnExpression) {
  const Eigen::MatrixXd matrix = Eigen::Matrix3d::Identity();
  const Eigen::VectorXd vector = Eigen::Vector3d(3.0, 1.0, 2.0);
  expect_percentile_failures_to_pass(
      "of a product", [&] { return (matrix * vector).percentile(Eigen::Array2d(0.0, 50.0)); });
}

TEST_F(HeadersShortOfMemory, AccountAndSortWithoutMemory) {
  gait_result gait;
  gait.excluded_1 = {1, 99};
  gait.excluded_2_fallback = {0};
  gait_statistics_info info;
  gait_statistics_info expected;
  const auto compute = [&](gait_statistics_info& into) {
    gait_statistics_compute_info<gait_foot_result, GCT>(into, side, gait, GCT{}, 12, 20.0);
  };
  compute(expected);
  std::vector<double> values = {3.0, 1.0, 2.0};
  double sum = 0.0;
  EXPECT_EQ(outcome_with_failure(0, true,
                                 [&] {
                                   compute(info);
                                   _kalvio_eigen_quicksort(values.data(), 0, 2);
                                   sum = gait_detail::index_sum(side.cycles, cycles,
                                                                &gait_foot_cycle::gct);
                                 }),
            returned);
  EXPECT_EQ(text_of(info), text_of(expected));
  EXPECT_THAT(values, SameBitsEach({1.0, 2.0, 3.0}));
  EXPECT_THAT(sum, SameBits(1.0 + 2.0 + 1.5 + 2.0 + 6.5));
}

}  // namespace
