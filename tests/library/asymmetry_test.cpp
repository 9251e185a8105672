#include "bits.h"
#include "builders.h"
#include "text_of.h"

#include "asymmetry.h"
#include "quality_flags.h"

#include <gait/generate_statistics.h>
#include <gait/result.h>
#include <gait/statistics.h>

#include <cmath>
#include <cstddef>
#include <functional>
#include <limits>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace gait_test;
using gait_test::nan;
using testing::IsEmpty;
using testing::SizeIs;

void expect_absent_key(const std::function<void()>& call) {
  try {
    call();
    FAIL() << "no exception";
  } catch (const std::out_of_range& error) {
    EXPECT_STREQ(error.what(), "unordered_map::at: key not found");
  }
}

// Ratios of the sides' means

gait_statistics_parameter with_mean(double mean, bool enabled = true) {
  gait_statistics_parameter parameter;
  parameter.mean = mean;
  parameter.asymmetry_enabled = enabled;
  return parameter;
}

/// The `asymmetry` of both sides.
struct ratios {
  double left;
  double right;
};

ratios ratios_of(const gait_statistics_parameter& left, const gait_statistics_parameter& right) {
  gait_statistics statistics;
  statistics.parameters = {{"gct_L", left}, {"gct_R", right}};
  gait_detail::write_ratios(statistics);
  return {statistics.parameters.at("gct_L").asymmetry, statistics.parameters.at("gct_R").asymmetry};
}
TEST(Ratios, AreRightByLeftAndItsReciprocal) {
  struct means_and_ratios {
    double left, right;
    ratios expected;
  };
  constexpr double smallest = std::numeric_limits<double>::denorm_min();
  const std::vector<means_and_ratios> all = {
      {1.0, 1.1, {1.0 / 1.1, 1.1}},
      // The reciprocal, and no quotient of its own: 1.1 / 1.3 has other bits.
      {1.1, 1.3, {1.0 / (1.3 / 1.1), 1.3 / 1.1}},
      {-2.0, 4.0, {-0.5, -2.0}},
      // The missing mean of an empty sample is a number like any other.
      {-1.0, 2.0, {-0.5, -2.0}},
      {0.0, 2.0, {infinity, 0.0}},
      {-0.0, -2.0, {infinity, 0.0}},
      {2.0, 0.0, {0.0, 0.0}},
      {-2.0, 0.0, {0.0, -0.0}},
      {0.0, 0.0, {0.0, 0.0}},
      {nan, 2.0, {nan, nan}},
      {2.0, nan, {nan, nan}},
      {nan, 0.0, {0.0, nan}},
      {0.0, nan, {infinity, 0.0}},
      {smallest, 1.0, {0.0, infinity}},
      {1.0, smallest, {infinity, smallest}},
      {1e200, -1e-200, {-infinity, -0.0}},
      {infinity, 1.0, {infinity, 0.0}},
  };
  for (const auto& [left, right, expected] : all) {
    const ratios r = ratios_of(with_mean(left), with_mean(right));
    EXPECT_THAT(r.left, SameBits(expected.left)) << left << ' ' << right;
    EXPECT_THAT(r.right, SameBits(expected.right)) << left << ' ' << right;
  }
}

TEST(Ratios, AreNotWrittenWhereTheLeftRecordHasThemDisabled) {
  const ratios r = ratios_of(with_mean(1.0, false), with_mean(2.0, true));
  EXPECT_THAT(r.left, SameBits(-1.0));
  EXPECT_THAT(r.right, SameBits(-1.0));
}

TEST(Ratios, AreWrittenWhateverTheRightRecordSays) {
  const ratios r = ratios_of(with_mean(1.0, true), with_mean(2.0, false));
  EXPECT_THAT(r.left, SameBits(0.5));
  EXPECT_THAT(r.right, SameBits(2.0));
}

/// Which of these keys, all with a mean of 2.0, have a ratio.
std::vector<std::string> with_ratio(const std::vector<std::string>& keys) {
  gait_statistics statistics;
  for (const std::string& key : keys) {
    statistics.parameters[key] = with_mean(2.0);
  }
  gait_detail::write_ratios(statistics);
  EXPECT_THAT(statistics.parameters, SizeIs(keys.size())) << "no key is added";
  std::vector<std::string> written;
  for (const std::string& key : keys) {
    if (statistics.parameters.at(key).asymmetry != -1.0) {
      written.push_back(key);
    }
  }
  return written;
}

TEST(Ratios, PairAKeyWithTheOneThatReplacesItsSuffix) {
  using keys = std::vector<std::string>;
  EXPECT_EQ(with_ratio({"a_L", "a_R", "b_R", "c_L", "d"}), (keys{"a_L", "a_R"}))
      << "without a partner nothing is written";
  EXPECT_EQ(with_ratio({"_L", "_R"}), (keys{"_L", "_R"}));
  EXPECT_EQ(with_ratio({"", "_", "L", "R", "a_l", "a_r", "aL", "aR"}), keys{});
  EXPECT_EQ(with_ratio({"a_Lx", "a_R", "a_Rx"}), (keys{"a_Lx", "a_R"}))
      << "what follows the suffix is dropped";
  EXPECT_EQ(with_ratio({"a_Lb_L", "a_R"}), (keys{"a_Lb_L", "a_R"})) << "the first suffix counts";
  EXPECT_EQ(with_ratio({"a_Lb_L", "a_Lb_R"}), keys{}) << "and not the last";
}

TEST(Ratios, AreNotWrittenForOneFoot) {
  walk w = one_foot(foot().ramp(6, 2.0, 0.0));
  gait_result& result = w.result();
  result.statistics.parameters["gct_L"] = with_mean(1.0);
  result.statistics.parameters["gct_R"] = with_mean(2.0);
  gait_generate_statistics(result, {});
  for (const auto& [key, parameter] : result.statistics.parameters) {
    EXPECT_THAT(parameter.asymmetry, SameBits(-1.0)) << key;
  }
  EXPECT_EQ(result.statistics.parameters.count("asymmetry"), 0U);
}

// Quality flags

/// A walk of either mode without a flag: six cycles at 1.2 m/s.
walk fine_foot() { return one_foot(foot().speed({1.2, 1.2, 1.2, 1.2, 1.2, 1.2})); }
walk fine_feet() { return two_feet(foot().speed({1.2, 1.2, 1.2, 1.2, 1.2, 1.2})); }

int flags_of(walk w) { return w.analyse().quality_flags; }

TEST(QualityFlags, WarnOfASettingAboveZeroThatIsNotWithin10To34) {
  for (const walk& fine : {fine_foot(), fine_feet()}) {
    const auto flags = [&](float value) { return flags_of(walk(fine).settings_value(value)); };
    for (const float accepted :
         {10.0F, 34.0F, 20.0F, 0.0F, -0.0F, -5.0F, -40.0F, std::numeric_limits<float>::quiet_NaN(),
          -std::numeric_limits<float>::infinity()}) {
      EXPECT_EQ(flags(accepted), 0) << accepted;
    }
    for (const float refused :
         {9.99F, 34.01F, std::nextafter(10.0F, 0.0F), std::nextafter(34.0F, 100.0F), 1.0F,
          std::numeric_limits<float>::denorm_min(), std::numeric_limits<float>::infinity()}) {
      EXPECT_EQ(flags(refused), 1) << refused;
    }
  }
}

TEST(QualityFlags, WarnOfFourCyclesOrFewerWhetherTheyAreIncludedOrNot) {
  const auto walked = [](std::size_t cycles) {
    return foot().speed(std::vector<double>(cycles, 1.2));
  };
  EXPECT_EQ(flags_of(one_foot(walked(4))), 2);
  EXPECT_EQ(flags_of(one_foot(walked(5))), 0);
  EXPECT_EQ(flags_of(two_feet(walked(4))), 2);
  EXPECT_EQ(flags_of(two_feet(walked(5))), 0);
  EXPECT_EQ(flags_of(fine_foot().excluded_1({0, 1, 2}).excluded_2({3})), 0);
}

/// The flags of a result whose stage before computed these.
int flags_of(const std::vector<std::pair<std::string, double>>& mean_speeds) {
  gait_result result;
  result.foot_results.resize(mean_speeds.size());
  result.statistics.info.cycle_count = 9;
  for (const auto& [key, mean] : mean_speeds) {
    result.statistics.parameters[key] = with_mean(mean);
  }
  gait_detail::write_quality_flags(result, {});
  return result.quality_flags;
}

TEST(QualityFlags, WarnOfAMeanSpeedThatIsNotWithin031To18) {
  const auto one = [](double mean) { return flags_of({{"speed", mean}}); };
  const auto right = [](double mean) { return flags_of({{"speed_R", mean}, {"speed_L", 1.0}}); };
  const auto left = [](double mean) { return flags_of({{"speed_R", 1.0}, {"speed_L", mean}}); };
  for (const double accepted : {0.31, 1.8, 1.0, nan}) {
    EXPECT_EQ(one(accepted), 0) << accepted;
    EXPECT_EQ(right(accepted), 0) << accepted;
    EXPECT_EQ(left(accepted), 0) << accepted;
  }
  for (const double refused :
       {std::nextafter(0.31, 0.0), std::nextafter(1.8, 2.0), -1.0, 0.0, -infinity, infinity}) {
    EXPECT_EQ(one(refused), 4) << refused;
    EXPECT_EQ(right(refused), 8) << refused;
    EXPECT_EQ(left(refused), 16) << refused;
  }
}

TEST(QualityFlags, WarnOfASideWithoutAnyMeasuredSpeed) {
  EXPECT_EQ(flags_of(one_foot(foot().cycles(6))), 4);
  EXPECT_EQ(flags_of(two_feet(foot().cycles(6))), 8 + 16);
  EXPECT_EQ(flags_of(two_feet(foot().cycles(6), foot().ramp(6, 1.2, 0.0))), 16);
}

TEST(QualityFlags, NeedTheSpeedOfEverySide) {
  for (const char* present : {"speed_L", "speed_R"}) {
    for (const std::size_t feet : {1U, 2U}) {
      gait_result result;
      result.foot_results.resize(feet);
      result.quality_flags = 0x7F00;
      result.statistics.parameters[present] = with_mean(5.0);
      expect_absent_key([&] { gait_detail::write_quality_flags(result, {50.0F}); });
      const bool right_is_there = feet == 2 && present == std::string("speed_R");
      EXPECT_EQ(result.quality_flags, right_is_there ? 1 + 2 + 8 : 1 + 2)
          << "the flags raised before are set";
      EXPECT_THAT(result.statistics.parameters, SizeIs(1));
    }
  }
}

// Swing asymmetry

/// The "asymmetry" entry of a walk whose two-feet cycles have these swings (% of gait cycle), and
/// its flag.
struct swing_asymmetry {
  gait_statistics_parameter parameter;
  bool flagged;
};

swing_asymmetry asymmetry_of(walk w) {
  const gait_result& result = w.analyse();
  return {result.statistics.parameters.at("asymmetry"), (result.quality_flags & 128) != 0};
}
swing_asymmetry asymmetry_of(const std::vector<double>& left, const std::vector<double>& right,
                             int rate = 100) {
  return asymmetry_of(two_feet(foot().swing(left), foot().swing(right)).rate(rate));
}

TEST(SwingAsymmetry, IsARecordOfItsOwn) {
  const auto parameter = asymmetry_of({40.0, 50.0}, {60.0, 50.0}).parameter;
  EXPECT_TRUE(parameter.valid);
  EXPECT_EQ(parameter.description, "Asymmetry");
  EXPECT_EQ(parameter.unit, "");
  EXPECT_EQ(parameter.decimals, 3);
  EXPECT_THAT(parameter.values, SameBitsEach({-20.0, 0.0}));
  EXPECT_THAT(parameter.mean, SameBits(-10.0));
  EXPECT_THAT(parameter.std, SameBits(std::sqrt(200.0)));
  for (const double statistic : {parameter.median, parameter.iqr, parameter.min, parameter.max,
                                 parameter.cv, parameter.asymmetry}) {
    EXPECT_THAT(statistic, SameBits(-1.0));
  }
  EXPECT_FALSE(parameter.asymmetry_enabled);
}

TEST(SwingAsymmetry, RaisesItsFlagFromTwentyOnWhereItHasASpread) {
  EXPECT_TRUE(asymmetry_of({40.0, 38.0}, {60.0, 62.0}).flagged);
  EXPECT_TRUE(asymmetry_of({60.0, 62.0}, {40.0, 38.0}).flagged) << "to the other side too";
  EXPECT_TRUE(asymmetry_of({45.0, 35.0}, {55.0, 65.0}).flagged) << "a mean of exactly -20";
  EXPECT_TRUE(asymmetry_of({55.0, 65.0}, {45.0, 35.0}).flagged) << "a mean of exactly 20";
  EXPECT_FALSE(asymmetry_of({45.0, 36.0}, {55.0, 64.0}).flagged) << "a mean of -19";
  EXPECT_FALSE(asymmetry_of({51.0, 50.0}, {49.0, 50.0}).flagged) << "a mean of exactly 1";
  EXPECT_FALSE(asymmetry_of({10.0, 90.0}, {90.0, 10.0}).flagged) << "-80 and 80";
  EXPECT_FALSE(asymmetry_of({40.0, 40.0, 40.0}, {60.0, 60.0, 60.0}).flagged) << "no spread";
  EXPECT_TRUE(asymmetry_of({1e308, 50.0}, {1.0, 50.0}).flagged) << "infinite";
  EXPECT_FALSE(asymmetry_of({infinity, 40.0}, {50.0, 60.0}).flagged) << "NaN";
}

TEST(SwingAsymmetry, OfOneStrideHasADeviationOfNanAndRaisesItsFlagFromTwentyOn) {
  EXPECT_THAT(asymmetry_of({40.0}, {60.0}).parameter.std, SameBits(nan));
  EXPECT_TRUE(asymmetry_of({40.0}, {60.0}).flagged);
  EXPECT_FALSE(asymmetry_of({std::nextafter(40.0, 50.0)}, {60.0}).flagged);
  EXPECT_TRUE(asymmetry_of({40.0, -1.0, 0.0}, {60.0, 50.0, 50.0}).flagged)
      << "one usable stride of several";
}

TEST(SwingAsymmetry, OfManyEqualStridesRaisesItsFlagWhereTheMeanIsRounded) {
  const std::vector<double> left(400, 61.4);
  const std::vector<double> right(400, 38.6);
  EXPECT_GT(asymmetry_of(left, right).parameter.std, 0.0);
  EXPECT_TRUE(asymmetry_of(left, right).flagged);
}

TEST(SwingAsymmetry, IsScaledByTheSamplingRate) {
  EXPECT_THAT(asymmetry_of({40.0}, {60.0}, 100).parameter.values, SameBitsEach({-20.0}));
  EXPECT_THAT(asymmetry_of({40.0}, {60.0}, 200).parameter.values, SameBitsEach({-40.0}));
  EXPECT_THAT(asymmetry_of({40.0}, {60.0}, 1).parameter.values, SameBitsEach({-0.2}));
  EXPECT_THAT(asymmetry_of({40.0}, {60.0}, -50).parameter.values, SameBitsEach({10.0}));
  EXPECT_TRUE(asymmetry_of({45.0, 46.0}, {55.0, 54.0}, 400).flagged)
      << "and so is what raises the flag";
  EXPECT_FALSE(asymmetry_of({45.0, 46.0}, {55.0, 54.0}, 100).flagged);
}

TEST(SwingAsymmetry, MultipliesBeforeItDivides) {
  EXPECT_THAT(asymmetry_of({31.0}, {40.0}).parameter.values,
              SameBitsEach({((31.0 - 40.0) * 100.0) / (31.0 + 40.0)}));
  EXPECT_THAT(asymmetry_of({31.0}, {40.0}).parameter.values, SameBitsEach({-0x1.95a240e6c2b45p+3}));
}

TEST(SwingAsymmetry, LeavesOutStridesWithoutASwingAboveZeroOnBothSides) {
  const auto parameter = asymmetry_of({40.0, -1.0, 50.0, 0.0, 50.0, nan, 50.0, -2.0, 50.0, 30.0},
                                      {60.0, 50.0, -1.0, 50.0, 0.0, 50.0, nan, 50.0, -2.0, 70.0})
                             .parameter;
  EXPECT_THAT(parameter.values, SameBitsEach({-20.0, -40.0}));
  EXPECT_THAT(parameter.mean, SameBits(-30.0));
  EXPECT_THAT(parameter.std, SameBits(std::sqrt(200.0)));
}

TEST(SwingAsymmetry, WithoutAnyUsableStrideIsValidAllTheSame) {
  for (const auto& [left, right] :
       {std::pair(std::vector<double>{-1.0, -1.0}, std::vector<double>{50.0, 50.0}),
        std::pair(std::vector<double>{0.0, nan}, std::vector<double>{50.0, 50.0})}) {
    const auto [parameter, flagged] = asymmetry_of(left, right);
    EXPECT_TRUE(parameter.valid);
    EXPECT_THAT(parameter.values, IsEmpty());
    EXPECT_THAT(parameter.mean, SameBits(nan));
    EXPECT_THAT(parameter.std, SameBits(-0.0));
    EXPECT_FALSE(flagged);
  }
}

/// A result as the stage finds it: two feet at 100 Hz whose swings are in the map.
class SwingAsymmetryStage : public testing::Test {
protected:
  SwingAsymmetryStage() {
    recording.sampling_rate = 100;
    result.foot_results.resize(2);
    result.foot_results.front().recording = &recording;
  }

  gait_statistics_parameter of(int cycle_count, int excluded_count, const std::vector<double>& left,
                               const std::vector<double>& right) {
    result.statistics.info.cycle_count = cycle_count;
    result.statistics.info.excluded_count = excluded_count;
    parameters.clear();
    parameters["swing_L"].values = left;
    parameters["swing_R"].values = right;
    gait_detail::add_swing_asymmetry(result);
    return parameters.at("asymmetry");
  }

  sensor_recording recording;
  gait_result result;
  std::unordered_map<std::string, gait_statistics_parameter>& parameters =
      result.statistics.parameters;
};

TEST_F(SwingAsymmetryStage, OfZeroOrFewerIncludedCyclesHasNoMean) {
  for (const auto& [cycles, excluded] : {std::pair(3, 3), std::pair(int_max, -1)}) {
    const auto parameter = of(cycles, excluded, {40.0, 30.0}, {60.0, 70.0});
    EXPECT_TRUE(parameter.valid);
    EXPECT_THAT(parameter.values, IsEmpty());
    EXPECT_THAT(parameter.mean, SameBits(nan));
    EXPECT_THAT(parameter.std, SameBits(-0.0));
    EXPECT_EQ(result.quality_flags, 0);
  }
}

TEST_F(SwingAsymmetryStage, WrapsTheNumberOfIncludedCyclesAroundAt32Bits) {
  EXPECT_THAT(of(int_min, 1, {40.0, 30.0}, {60.0, 70.0}).values, SameBitsEach({-20.0, -40.0}));
  EXPECT_THAT(of(int_min, int_max, {40.0, 30.0}, {60.0, 70.0}).values, SameBitsEach({-20.0}));
}

TEST_F(SwingAsymmetryStage, ReadsNoMoreValuesThanIncludedCyclesAndTheShorterListHold) {
  EXPECT_THAT(of(9, 7, {40.0, 30.0, 10.0}, {60.0, 70.0, 90.0}).values,
              SameBitsEach({-20.0, -40.0}));
  EXPECT_THAT(of(9, 0, {40.0, 30.0, 10.0}, {60.0, 70.0}).values, SameBitsEach({-20.0, -40.0}));
  EXPECT_THAT(of(9, 0, {40.0}, {60.0, 70.0}).values, SameBitsEach({-20.0}));
}

TEST_F(SwingAsymmetryStage, IsNotValidWhereASideHasNoValues) {
  for (const auto& [left, right] : {std::pair(std::vector<double>{}, std::vector<double>{60.0}),
                                    std::pair(std::vector<double>{40.0}, std::vector<double>{}),
                                    std::pair(std::vector<double>{}, std::vector<double>{})}) {
    result.quality_flags = 1;
    const auto parameter = of(5, 0, left, right);
    EXPECT_FALSE(parameter.valid);
    EXPECT_THAT(parameter.values, IsEmpty());
    EXPECT_THAT(parameter.mean, SameBits(0.0));
    EXPECT_THAT(parameter.std, SameBits(0.0));
    EXPECT_EQ(result.quality_flags, 1);
  }
}

TEST_F(SwingAsymmetryStage, KeepsAnEntryThatIsPresentButRaisesTheFlagByTheNewValues) {
  of(5, 0, {40.0, 40.0}, {60.0, 60.0});
  result.quality_flags = 1 + 16;
  const std::string present = text_of(parameters.at("asymmetry"));
  parameters["swing_L"].values = {10.0, 20.0};
  gait_detail::add_swing_asymmetry(result);
  EXPECT_EQ(difference(text_of(parameters.at("asymmetry")), present), "");
  EXPECT_EQ(result.quality_flags, 1 + 16 + 128);
}

TEST_F(SwingAsymmetryStage, NeedsTheSwingOfEitherSide) {
  for (const char* present : {"swing_L", "swing_R", "swing"}) {
    parameters.clear();
    parameters[present].values = {40.0};
    result.quality_flags = 2 + 8;
    const std::string before = text_of_output(result);
    expect_absent_key([&] { gait_detail::add_swing_asymmetry(result); });
    EXPECT_EQ(difference(text_of_output(result), before), "");
  }
}

}  // namespace
