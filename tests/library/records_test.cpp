#include "bits.h"
#include "builders.h"
#include "text_of.h"

#include <gait/generate_statistics.h>
#include <gait/result.h>
#include <gait/statistics.h>

#include <cstddef>
#include <list>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace gait_test;
using testing::IsEmpty;

/// The distance of a member from the front of its record.
template <class Record, class Member>
std::ptrdiff_t offset(const Record& record, const Member& member) {
  return reinterpret_cast<const char*>(&member) - reinterpret_cast<const char*>(&record);
}

template <class Record>
std::vector<std::ptrdiff_t> offsets() {
  const Record record;
  std::vector<std::ptrdiff_t> all;
  for_each_field(record, [&](const char* /*name*/, const auto& member) {
    all.push_back(offset(record, member));
  });
  return all;
}

template <class Record>
void expect_members_in_order() {
  const auto in_order = offsets<Record>();
  EXPECT_EQ(in_order.front(), 0);
  for (std::size_t i = 1; i < in_order.size(); ++i) {
    EXPECT_LT(in_order[i - 1], in_order[i]) << i;
  }
}

TEST(Members, StandInTheOrderThatCallersRelyOn) {
  expect_members_in_order<gait_statistics_info>();
  expect_members_in_order<gait_statistics_parameter>();
  expect_members_in_order<gait_foot_cycle>();
  expect_members_in_order<gait_feet_cycle>();
  expect_members_in_order<gait_result>();
}

TEST(MembersOfAFootCycle, ThatAreMeasuredFollowOneAnotherWithNothingBetween) {
  const gait_foot_cycle cycle;
  for (std::size_t i = 0; i < measured_fields.size(); ++i) {
    EXPECT_EQ(&(cycle.*measured_fields[i]), &cycle.hs + i);
  }
  EXPECT_EQ(static_cast<const void*>(&cycle.index), &cycle.hs + measured_fields.size());
}

TEST(MembersOfAFeetCycle, FollowOneAnotherWithNothingBetween) {
  const auto all = offsets<gait_feet_cycle>();
  EXPECT_THAT(all, testing::ElementsAre(0, 8, 16, 24));
}

TEST(DefaultValues, OfAParameterAreThoseOfAnEmptySample) {
  const gait_statistics_parameter parameter;
  for_each_field(parameter, [](const char* name, const auto& member) {
    if constexpr (std::is_same_v<decltype(member), const double&>) {
      EXPECT_THAT(member, SameBits(gait_missing)) << name;
    } else {
      EXPECT_EQ(member, std::decay_t<decltype(member)>()) << name;
    }
  });
}

TEST(DefaultValues, OfTheAccountingAreZero) {
  const gait_statistics_info info;
  for_each_field(info, [](const char* name, const auto& member) {
    EXPECT_EQ(member, std::decay_t<decltype(member)>()) << name;
  });
}

TEST(DefaultValues, OfARecordingAndAResultAreZeroEmptyAndNull) {
  EXPECT_EQ(sensor_recording().sampling_rate, 0);
  EXPECT_THAT(sensor_recording().signals, IsEmpty());
  EXPECT_EQ(gait_foot_result().recording, nullptr);
  const gait_result result;
  EXPECT_EQ(result.left_foot, nullptr);
  EXPECT_EQ(result.right_foot, nullptr);
  EXPECT_EQ(result.quality_flags, 0);
}

TEST(Records, AMoveKeepsEveryLinkBetweenThem) {
  walk w = two_feet(foot().ramp(6, 1.0, 0.25), foot().ramp(6, 1.5, 0.125)).excluded_1({0});
  gait_result moved = std::move(w.result());
  EXPECT_EQ(moved.right_foot, &moved.foot_results[1]);
  EXPECT_EQ(moved.feet_result.cycles.front().left_cycle, &moved.foot_results[0].cycles.front());
  gait_generate_statistics(moved, {});
  EXPECT_EQ(difference(text_of_output(moved), text_of_output(w.analyse())), "");
}

}  // namespace
