#include <gait/gait.h>

#include "builders.h"
#include "catalogue_keys.h"
#include "failing_allocations.h"
#include "side.h"
#include "text_of.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
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

/// Whether a call runs out of memory while allocation k, counted from 0, fails alone or for good.
bool runs_out(long k, bool for_good, const std::function<void()>& call) {
  struct shortage {
    ~shortage() { allocations_left = -1; }
  } const ends_here;
  memory_stays_short = for_good;
  allocations_left = k;
  try {
    call();
    return false;
  } catch (const std::bad_alloc&) {
    return true;
  }
}

/// The number of allocations of a call that has memory enough.
long allocations_of(const std::function<void()>& call) {
  const long before = allocations_tried;
  call();
  return allocations_tried - before;
}

/// Lets each allocation of a call fail, alone and with all that follow: std::bad_alloc must come
/// through, and nothing of the call may stay allocated.
///
/// Every time, `prepare` makes what the call works on, `call` uses it, and `look` sees what the
/// failure left of it.
template <class Prepare, class Call, class Look>
void fail_every_allocation(Prepare prepare, Call call, Look look) {
  long allocations = 0;
  {
    auto subject = prepare();
    allocations = allocations_of([&] { call(subject); });
  }
  EXPECT_GT(allocations, 0);
  std::printf("%ld allocations, each failed alone and with all that follow\n", allocations);
  for (const bool for_good : {false, true}) {
    for (long k = 0; k < allocations && !testing::Test::HasFailure(); ++k) {
      SCOPED_TRACE("allocation " + std::to_string(k) + " of " + std::to_string(allocations) +
                   (for_good ? " and all that follow" : " alone"));
      const long live_before = live_allocations;
      {
        auto subject = prepare();
        EXPECT_TRUE(runs_out(k, for_good, [&] { call(subject); }));
        look(subject);
      }
      EXPECT_EQ(live_allocations, live_before) << "allocations that nobody released";
    }
  }
}

/// Holds what was allocated, lest the compiler leaves out an allocation that it sees through.
void* volatile escaped = nullptr;

TEST(FailingAllocations, AreThoseOfEveryWayToAllocate) {
  struct alignas(64) wide {
    char bytes[64];
  };
  const auto obtain = [](void* memory) {
    if (memory == nullptr) {
      throw std::bad_alloc();
    }
    return escaped = memory;
  };
  const std::vector<std::function<void()>> ways = {
      [&] { delete static_cast<int*>(obtain(new int)); },
      [&] { delete[] static_cast<int*>(obtain(new (std::nothrow) int[9])); },
      [&] { delete static_cast<wide*>(obtain(new wide)); },
      [&] { std::free(obtain(std::malloc(9))); },
      [&] { std::free(obtain(std::realloc(nullptr, 9))); },
      [&] { obtain(Eigen::VectorXd(9).data()); },
      [&] { obtain(std::string(99, ' ').data()); },
  };
  for (const auto& way : ways) {
    const long live_before = live_allocations;
    EXPECT_EQ(allocations_of(way), 1) << "way " << &way - ways.data();
    EXPECT_TRUE(runs_out(0, false, way)) << "way " << &way - ways.data();
    EXPECT_EQ(live_allocations, live_before) << "way " << &way - ways.data();
  }
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

  const gait_statistics& statistics() const { return result_->statistics; }
  int flags() const { return result_->quality_flags; }
  void run() { gait_generate_statistics(*result_, walk_.settings()); }
  bool has_its_input() const { return bytes_of_input(*result_) == input_; }

  static constexpr int earlier_flags = 0x7F;

private:
  walk walk_;
  gait_result* result_;
  std::string input_;
};

/// What the entry promises of the output when memory runs out: the accounting is whole, or as it
/// was and with no parameter after it; every entry is whole, but for the ratio, which a later stage
/// writes.
void expect_what_is_promised(const entry_call& left, const gait_statistics& earlier,
                             const entry_call& whole) {
  const auto& parameters = left.statistics().parameters;
  EXPECT_TRUE(are_the_same(left.statistics().info, whole.statistics().info) ||
              (are_the_same(left.statistics().info, earlier.info) &&
               parameters.size() == earlier.parameters.size()));
  for (const auto& [key, parameter] : parameters) {
    gait_statistics_parameter expected = whole.statistics().parameters.at(key);
    if (!same_bits(parameter.asymmetry, expected.asymmetry)) {
      const auto kept = earlier.parameters.find(key);
      expected.asymmetry = kept != earlier.parameters.end() ? kept->second.asymmetry : gait_missing;
    }
    ASSERT_TRUE(are_the_same(parameter, expected)) << key;
  }
  for (const auto& entry : earlier.parameters) {
    ASSERT_EQ(parameters.count(entry.first), 1U) << entry.first << " was there before the call";
  }
  EXPECT_THAT(left.flags(), AnyOf(entry_call::earlier_flags, whole.flags(),
                                  whole.flags() & ~int{gait_quality_swing_asymmetry}));
}

/// A foot of strides whose swing differs from the other foot's, with a stride without a stride
/// length.
foot some_foot(std::size_t strides, double swing, double difference) {
  foot some = foot().ramp(strides, 1.0, difference);
  std::vector<double> swings;
  for (std::size_t i = 0; i < strides; ++i) {
    swings.push_back(swing + difference * static_cast<double>(i % 3));
  }
  return some.swing(swings).slength({1.25, gait_missing, 1.5});
}

walk alone(std::size_t strides = 12) {
  return one_foot(some_foot(strides, 40.0, 0.25)).excluded_1({3, 3, 99}).excluded_2({5, -1});
}

/// Two feet with a swing asymmetry that raises its flag, with a cycle that either foot lacks, and
/// with exclusions whose fallback lists count.
walk together() {
  return two_feet(some_foot(12, 60.0, 0.25), some_foot(12, 30.0, 0.5))
      .gct({1.0, 1.125, 1.25, 1.0, 1.5})
      .ds({20.0, 22.0, 21.5, gait_missing, 20.5})
      .left_links({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, no_cycle, 11})
      .right_links({no_cycle, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11})
      .excluded_1_fallback({0, 1})
      .excluded_2({99})
      .excluded_2_fallback({2, 4})
      .settings_value(40.0F);
}

walk without_included_cycles() { return together().excluded_1(first_cycles(12)); }

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

struct call_to_fail {
  const char* name;
  walk (*make)();
  gait_statistics (*earlier)();
};

class EntryShortOfMemory : public testing::TestWithParam<call_to_fail> {};

/// After each failure a second call on the same object completes what the first one left, and one
/// on a fresh object after all of them is as good as ever.
TEST_P(EntryShortOfMemory, LetsBadAllocPassAndLeavesWhatItPromises) {
  const walk w = GetParam().make();
  const gait_statistics earlier = GetParam().earlier();
  entry_call whole(w, earlier);
  whole.run();
  const auto expect_whole = [&](entry_call& call) {
    call.run();
    EXPECT_TRUE(are_the_same(call.statistics(), whole.statistics()));
    EXPECT_EQ(call.flags(), whole.flags());
  };
  fail_every_allocation([&] { return entry_call(w, earlier); },
                        [](entry_call& call) { call.run(); },
                        [&](entry_call& call) {
                          EXPECT_TRUE(call.has_its_input());
                          expect_what_is_promised(call, earlier, whole);
                          expect_whole(call);
                        });
  entry_call fresh(w, earlier);
  expect_whole(fresh);
}

gait_statistics nothing() { return {}; }

INSTANTIATE_TEST_SUITE_P(
    Walks, EntryShortOfMemory,
    testing::Values(call_to_fail{"OneFoot", [] { return alone(); }, nothing},
                    call_to_fail{"OneFootOfManyStrides", [] { return alone(34); }, nothing},
                    call_to_fail{"TwoFeet", together, nothing},
                    call_to_fail{"NoIncludedCycles", without_included_cycles, nothing},
                    call_to_fail{"OneFootWithRecords", [] { return alone(); },
                                 [] { return every_other_record(alone(5)); }},
                    call_to_fail{"TwoFeetWithRecords", together,
                                 [] { return every_other_record(without_included_cycles()); }}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST(EntryShortOfMemoryInOrder, BuildsTheRightSideThenTheLeftThenWritesRatiosThenFlags) {
  gait_statistics earlier;
  // The name of the other side needs memory only where it is as long as this.
  gait_statistics_parameter& caller = earlier.parameters["what the caller measured_L"];
  caller.asymmetry_enabled = true;
  caller.mean = earlier.parameters["what the caller measured_R"].mean = 2.0;
  const std::string last = gait_test::keys_of_side(true).back();
  bool was_short_of_memory_for_a_ratio = false;
  fail_every_allocation(
      [&] { return entry_call(together(), earlier); }, [](entry_call& call) { call.run(); },
      [&](const entry_call& call) {
        const auto& parameters = call.statistics().parameters;
        const bool has_left_side = parameters.count(last + "_L") != 0;
        const bool has_ratio = parameters.at("what the caller measured_L").asymmetry == 1.0;
        EXPECT_GE(parameters.count(last + "_R"), parameters.count("gct_L"));
        EXPECT_TRUE(has_left_side || !has_ratio);
        EXPECT_TRUE(has_ratio || call.flags() == entry_call::earlier_flags);
        was_short_of_memory_for_a_ratio |= has_left_side && !has_ratio;
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
    const foot some = some_foot(static_cast<std::size_t>(cycles), 40.0, 0.25);
    return allocations_beside_nodes(one_foot(some), cycles, 2);
  };
  const auto of_two_feet = [](int cycles) {
    const foot some = some_foot(static_cast<std::size_t>(cycles), 40.0, 0.25);
    return allocations_beside_nodes(two_feet(some), cycles, 5);
  };
  EXPECT_EQ(of_one_foot(1000), of_one_foot(20));
  EXPECT_EQ(of_two_feet(1000), of_two_feet(20));
}

TEST(PercentileOfOneValue, AllocatesNothing) {
  const Eigen::VectorXd one = Eigen::VectorXd::Constant(1, 7.25);
  EXPECT_EQ(allocations_of([&] { EXPECT_EQ(one.percentile(Eigen::Array2d(25.0, 75.0))(1), 7.25); }),
            0);
}

// The functions of the headers

TEST(BuildParameter, LeavesTheMapUnchangedWhenMemoryRunsOut) {
  const gait_foot_result side = some_foot(12, 40.0, 0.5).result();
  const std::list<int> cycles = {0, 2, 99, 1, 2, 11};
  const std::string suffix = "_a suffix too long to be held without an allocation";
  fail_every_allocation([] { return gait_statistics(); },
                        [&](gait_statistics& statistics) {
                          gait_statistics_build_parameter<gait_foot_result, SLENGTH>(
                              statistics, side, cycles, suffix, SLENGTH{});
                        },
                        [](const gait_statistics& statistics) {
                          EXPECT_TRUE(are_the_same(statistics, gait_statistics()));
                        });
}

/// The keys of a side in the order in which they are inserted, but for the last: when that is in,
/// nothing fails. A hash map does not show the order, but memory that runs out ever later does.
std::vector<std::string> order_of_insertion(gait_feet_result* feet) {
  const gait_foot_result side = foot().ramp(3, 1.0, 0.25).result();
  const std::list<int> cycles = {0, 1, 2};
  std::vector<std::string> order;
  order.reserve(100);  // lest it grows where allocations are counted
  fail_every_allocation([] { return gait_statistics(); },
                        [&](gait_statistics& statistics) {
                          gait_statistics_build_parameters(statistics, side, cycles, "", feet,
                                                           &cycles);
                        },
                        [&](const gait_statistics& statistics) {
                          for (const auto& entry : statistics.parameters) {
                            if (std::find(order.begin(), order.end(), entry.first) == order.end()) {
                              order.push_back(entry.first);
                            }
                          }
                        });
  return order;
}

TEST(BuildParameters, InsertsInTheOrderOfTheCatalogue) {
  std::vector<std::string> keys;
  gait_catalogue::for_each_row([&](const auto& row) { keys.emplace_back(row.key); });
  // Of the two step lengths, one foot and two feet have one each.
  keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
  keys.pop_back();
  gait_feet_result feet = feet_with_ds({20.0});
  EXPECT_EQ(order_of_insertion(&feet), keys);
  keys.erase(std::find(keys.begin(), keys.end(), "DS"));
  EXPECT_EQ(order_of_insertion(nullptr), keys);
}

TEST(AccountingAndSorting, TakeNoMemory) {
  const gait_foot_result side = some_foot(12, 40.0, 0.5).result();
  gait_result gait;
  gait.excluded_1 = {1, 99};
  gait_statistics_info info;
  std::vector<double> values = {3.0, 1.0, 2.0};
  EXPECT_EQ(allocations_of([&] {
              gait_statistics_compute_info<gait_foot_result, GCT>(info, side, gait, GCT{}, 12,
                                                                  20.0);
              _kalvio_eigen_quicksort(values.data(), 0, 2);
            }),
            0);
}

}  // namespace
