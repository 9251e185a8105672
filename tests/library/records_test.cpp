#include "bits.h"
#include "builders.h"
#include "text_of.h"

#include <gait/generate_statistics.h>
#include <gait/result.h>
#include <gait/statistics.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace gait_test;
using gait_test::nan;
using testing::IsEmpty;

template <class... Records>
constexpr bool are_values = ((std::is_default_constructible_v<Records> &&
                              std::is_copy_constructible_v<Records> &&
                              std::is_copy_assignable_v<Records> &&
                              std::is_nothrow_move_constructible_v<Records> &&
                              std::is_nothrow_move_assignable_v<Records>)&&...);

static_assert(
    are_values<gait_foot_cycle, gait_feet_cycle, sensor_signal, sensor_recording, gait_foot_result,
               gait_feet_result, gait_result, gait_generate_statistics_settings,
               gait_statistics_parameter, gait_statistics_info, gait_statistics>);

TEST(DefaultValues, OfAFootCycleAreMissing) {
  const gait_foot_cycle cycle;
  EXPECT_EQ(cycle.first_sample, 0);
  EXPECT_EQ(cycle.last_sample, 0);
  EXPECT_EQ(cycle.index, 0);
  for (const auto field : foot::measured_fields) {
    EXPECT_THAT(cycle.*field, SameBits(-1.0));
  }
}

TEST(DefaultValues, OfAFeetCycleAreMissingWithoutLinks) {
  const gait_feet_cycle cycle;
  EXPECT_THAT(cycle.gct, SameBits(-1.0));
  EXPECT_THAT(cycle.ds, SameBits(-1.0));
  EXPECT_EQ(cycle.right_cycle, nullptr);
  EXPECT_EQ(cycle.left_cycle, nullptr);
}

TEST(DefaultValues, OfARecordingAreZeroAndEmpty) {
  const sensor_recording recording;
  EXPECT_EQ(recording.sampling_rate, 0);
  EXPECT_THAT(recording.signals, IsEmpty());
  EXPECT_EQ(sensor_signal().sample_count, 0U);
}

TEST(DefaultValues, OfAResultAreEmptyAndNull) {
  const gait_result result;
  EXPECT_THAT(result.foot_results, IsEmpty());
  EXPECT_EQ(result.left_foot, nullptr);
  EXPECT_EQ(result.right_foot, nullptr);
  EXPECT_THAT(result.feet_result.cycles, IsEmpty());
  EXPECT_THAT(result.statistics.parameters, IsEmpty());
  EXPECT_THAT(result.excluded_1, IsEmpty());
  EXPECT_THAT(result.excluded_1_fallback, IsEmpty());
  EXPECT_THAT(result.excluded_2, IsEmpty());
  EXPECT_THAT(result.excluded_2_fallback, IsEmpty());
  EXPECT_EQ(result.quality_flags, 0);
  EXPECT_EQ(gait_foot_result().recording, nullptr);
  EXPECT_THAT(gait_foot_result().cycles, IsEmpty());
}

TEST(DefaultValues, OfTheSettingsRaiseNoFlag) {
  EXPECT_EQ(gait_generate_statistics_settings().settings_value, 0.0F);
}

TEST(DefaultValues, OfAParameterAreThoseOfAnEmptySample) {
  const gait_statistics_parameter parameter;
  EXPECT_FALSE(parameter.valid);
  EXPECT_EQ(parameter.description, "");
  EXPECT_EQ(parameter.unit, "");
  EXPECT_EQ(parameter.decimals, 0);
  EXPECT_THAT(parameter.values, IsEmpty());
  for (const double statistic : {parameter.mean, parameter.median, parameter.std, parameter.iqr,
                                 parameter.min, parameter.max, parameter.cv, parameter.asymmetry}) {
    EXPECT_THAT(statistic, SameBits(-1.0));
  }
  EXPECT_FALSE(parameter.asymmetry_enabled);
}

TEST(DefaultValues, OfTheAccountingAreZero) {
  const gait_statistics_info info;
  for (const double value :
       {info.recording_duration, info.duration, info.excluded_1_fallback_gct_sum,
        info.excluded_2_gct_sum, info.included_gct_sum, info.included_distance, info.total_distance,
        info.excluded_2_fallback_duration, info.excluded_2_duration,
        info.excluded_1_fallback_duration, info.excluded_1_duration, info.included_duration}) {
    EXPECT_THAT(value, SameBits(0.0));
  }
  EXPECT_EQ(info.cycle_count, 0);
  EXPECT_EQ(info.excluded_count, 0);
  EXPECT_THAT(info.cycles, IsEmpty());
  EXPECT_EQ(info.excluded_2_fallback_count, 0U);
  EXPECT_EQ(info.excluded_2_count, 0U);
  EXPECT_EQ(info.excluded_1_fallback_count, 0U);
  EXPECT_EQ(info.excluded_1_count, 0U);
  EXPECT_EQ(info.included_count, 0);
}

/// A walk with something in every member.
walk full_walk() {
  return two_feet(foot().ramp(6, 1.0, 0.25), foot().ramp(6, 1.5, 0.125))
      .gct({1.0, 1.1, 1.2, 1.3, 1.4, 1.5})
      .ds({20.0, 21.0, 22.0})
      .excluded_1({0})
      .excluded_1_fallback({1, 2})
      .excluded_2({3})
      .excluded_2_fallback({4})
      .settings_value(40.0F);
}

TEST(Records, ACopyHoldsTheSameAndIsIndependent) {
  walk w = full_walk();
  const gait_result& original = w.analyse();
  gait_result copy = original;
  EXPECT_EQ(difference(text_of_output(copy), text_of_output(original)), "");
  EXPECT_EQ(copy.right_foot, original.right_foot) << "pointers are copied, not what they point to";

  const std::string before = text_of_output(original);
  copy.statistics.parameters.clear();
  copy.statistics.info.cycles.clear();
  copy.quality_flags = 0;
  EXPECT_EQ(difference(text_of_output(original), before), "");
}

TEST(Records, AMoveKeepsEveryLinkBetweenTheRecords) {
  walk w = full_walk();
  gait_result expected = w.result();
  gait_generate_statistics(expected, w.settings());

  gait_result moved = std::move(w.result());
  EXPECT_EQ(moved.right_foot, &moved.foot_results[1]);
  EXPECT_EQ(moved.feet_result.cycles.front().left_cycle, &moved.foot_results[0].cycles.front());
  gait_generate_statistics(moved, w.settings());
  EXPECT_EQ(difference(text_of_output(moved), text_of_output(expected)), "");
}

TEST(Records, TheEntryWritesOnlyStatisticsAndQualityFlags) {
  for (walk w : {full_walk(),
                 one_foot(foot().ramp(6, 1.0, 0.25)).excluded_1({1, 1, 9}).excluded_2({2, -4})}) {
    gait_result& result = w.result();
    const std::string input = text_of_input(result);
    gait_generate_statistics(result, w.settings());
    EXPECT_EQ(difference(text_of_input(result), input), "");
    EXPECT_FALSE(result.statistics.parameters.empty());
  }
}

TEST(MissingValue, IsOnlyWhatComparesEqualToMinusOne) {
  EXPECT_TRUE(gait_is_missing(-1.0));
  for (const double measured :
       {-0.999, -1.0000001, std::nextafter(-1.0, 0.0), std::nextafter(-1.0, -2.0), 0.0, -0.0, 1.0,
        -2.0, nan, infinity, -infinity}) {
    EXPECT_FALSE(gait_is_missing(measured)) << measured;
  }
}

/// A parameter of the two-feet mode, and the field that it is read from.
struct source {
  const char* key;
  double gait_foot_cycle::*field;
};

class EveryFootParameter : public testing::TestWithParam<source> {
protected:
  /// The parameter of a right foot whose field holds these values.
  static gait_statistics_parameter of(const std::vector<double>& values) {
    const foot right = foot().with(GetParam().field, values);
    walk w = two_feet(foot().cycles(1), right);
    return w.analyse().statistics.parameters.at(std::string(GetParam().key) + "_R");
  }
};

TEST_P(EveryFootParameter, LeavesOutMinusOneAndKeepsItsPlace) {
  const gait_statistics_parameter parameter = of({-1.0, 2.5, -1.0, 3.5});
  EXPECT_TRUE(parameter.valid) << "values may hold the missing value also where some are valid";
  EXPECT_THAT(parameter.values, SameBitsEach({-1.0, 2.5, -1.0, 3.5}));
  EXPECT_THAT(parameter.mean, SameBits(3.0));
  EXPECT_THAT(parameter.min, SameBits(2.5));
}

TEST_P(EveryFootParameter, CountsAnyOtherNegativeValueAsMeasured) {
  const gait_statistics_parameter parameter = of({-1.0, -0.999});
  EXPECT_TRUE(parameter.valid);
  EXPECT_THAT(parameter.mean, SameBits(-0.999));
  EXPECT_THAT(parameter.max, SameBits(-0.999));
}

TEST_P(EveryFootParameter, CountsNanAsMeasured) {
  const gait_statistics_parameter parameter = of({-1.0, nan});
  EXPECT_TRUE(parameter.valid);
  EXPECT_THAT(parameter.values, SameBitsEach({-1.0, nan}));
  EXPECT_TRUE(std::isnan(parameter.mean));
}

TEST_P(EveryFootParameter, HasAnEntryWithItsTextsWhenItsSampleIsEmpty) {
  const gait_statistics_parameter empty = of({-1.0, -1.0});
  const gait_statistics_parameter measured = of({2.5, -1.0});
  EXPECT_FALSE(empty.valid);
  EXPECT_NE(empty.description, "");
  EXPECT_EQ(empty.description, measured.description);
  EXPECT_EQ(empty.unit, measured.unit);
  EXPECT_EQ(empty.decimals, measured.decimals);
  EXPECT_THAT(empty.values, SameBitsEach({-1.0, -1.0}));
  for (const double statistic :
       {empty.mean, empty.median, empty.std, empty.iqr, empty.min, empty.max, empty.cv}) {
    EXPECT_THAT(statistic, SameBits(-1.0));
  }
}

using cycle = gait_foot_cycle;
INSTANTIATE_TEST_SUITE_P(
    Catalogue, EveryFootParameter,
    testing::Values(source{"gct", &cycle::gct}, source{"swing", &cycle::swing},
                    source{"stance", &cycle::stance}, source{"contact", &cycle::contact},
                    source{"cadence", &cycle::cadence}, source{"LDr", &cycle::ldr},
                    source{"FFr", &cycle::ffr}, source{"PUr", &cycle::pur},
                    source{"slength", &cycle::slength}, source{"swidth", &cycle::swidth},
                    source{"PathLength", &cycle::path_length}, source{"speed", &cycle::speed},
                    source{"TA", &cycle::ta}, source{"peakswing", &cycle::peakswing},
                    source{"TOP", &cycle::top}, source{"HSP", &cycle::hsp},
                    source{"maxHC", &cycle::max_hc}, source{"minTC", &cycle::min_tc},
                    source{"maxTC1", &cycle::max_tc1}, source{"maxTC2", &cycle::max_tc2},
                    source{"mtcS", &cycle::mtc_speed}, source{"HS", &cycle::hs},
                    source{"Step Time", &cycle::step_time},
                    source{"StepLength", &cycle::step_length},
                    source{"impact_vert", &cycle::impact_vert},
                    source{"impact_hor", &cycle::impact_hor},
                    source{"strike_eversion", &cycle::strike_eversion}),
    [](const auto& tested) {
      std::string name = tested.param.key;
      name.erase(
          std::remove_if(name.begin(), name.end(), [](char c) { return c == ' ' || c == '_'; }),
          name.end());
      return name;
    });

}  // namespace
