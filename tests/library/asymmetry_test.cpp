#include "bits.h"
#include "builders.h"
#include "text_of.h"

#include "asymmetry.h"

#include <gait/generate_statistics.h>
#include <gait/result.h>
#include <gait/statistics.h>

#include <cmath>
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
ratios ratios_of(double left_mean, double right_mean) {
  return ratios_of(with_mean(left_mean), with_mean(right_mean));
}

TEST(Ratios, AreRightByLeftAndItsReciprocal) {
  const ratios r = ratios_of(1.0, 1.1);
  EXPECT_THAT(r.right, SameBits(1.1));
  EXPECT_THAT(r.left, SameBits(1.0 / 1.1));
}

TEST(Ratios, OfTheLeftSideAreTheReciprocalAndNoQuotientOfTheirOwn) {
  const ratios r = ratios_of(1.1, 1.3);
  EXPECT_THAT(r.right, SameBits(1.3 / 1.1));
  EXPECT_THAT(r.left, SameBits(1.0 / (1.3 / 1.1)));
  EXPECT_NE(bits(r.left), bits(1.1 / 1.3)) << "these means no longer tell the two apart";
}

TEST(Ratios, ByALeftMeanOfZeroAreZeroAndInfinite) {
  EXPECT_THAT(ratios_of(0.0, 2.0).right, SameBits(0.0));
  EXPECT_THAT(ratios_of(0.0, 2.0).left, SameBits(infinity));
  EXPECT_THAT(ratios_of(-0.0, 2.0).right, SameBits(0.0));
  EXPECT_THAT(ratios_of(-0.0, -2.0).left, SameBits(infinity));
}

TEST(Ratios, OfARightMeanOfZeroAreZero) {
  EXPECT_THAT(ratios_of(2.0, 0.0).right, SameBits(0.0));
  EXPECT_THAT(ratios_of(2.0, 0.0).left, SameBits(0.0));
  EXPECT_THAT(ratios_of(-2.0, 0.0).right, SameBits(-0.0));
  EXPECT_THAT(ratios_of(-2.0, 0.0).left, SameBits(0.0));
}

TEST(Ratios, OfTwoMeansOfZeroAreZero) {
  EXPECT_THAT(ratios_of(0.0, 0.0).right, SameBits(0.0));
  EXPECT_THAT(ratios_of(0.0, 0.0).left, SameBits(0.0));
}

TEST(Ratios, TakeNanForAMeanThatIsNotZero) {
  EXPECT_THAT(ratios_of(nan, 2.0).right, SameBits(nan));
  EXPECT_THAT(ratios_of(nan, 2.0).left, SameBits(nan));
  EXPECT_THAT(ratios_of(2.0, nan).right, SameBits(nan));
  EXPECT_THAT(ratios_of(2.0, nan).left, SameBits(nan));
  EXPECT_THAT(ratios_of(nan, 0.0).right, SameBits(nan));
  EXPECT_THAT(ratios_of(nan, 0.0).left, SameBits(0.0));
  EXPECT_THAT(ratios_of(0.0, nan).right, SameBits(0.0));
  EXPECT_THAT(ratios_of(0.0, nan).left, SameBits(infinity));
}

TEST(Ratios, TakeTheMissingMeanOfAnEmptySampleAsItIs) {
  EXPECT_THAT(ratios_of(-1.0, 2.0).right, SameBits(-2.0));
  EXPECT_THAT(ratios_of(-1.0, 2.0).left, SameBits(-0.5));
  EXPECT_THAT(ratios_of(-1.0, -1.0).right, SameBits(1.0));
}

TEST(Ratios, KeepTheSign) {
  EXPECT_THAT(ratios_of(-2.0, 4.0).right, SameBits(-2.0));
  EXPECT_THAT(ratios_of(-2.0, 4.0).left, SameBits(-0.5));
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

TEST(Ratios, AreWrittenForEveryParameterThatHasThemEnabled) {
  walk w = two_feet(foot().ramp(6, 2.0, 0.0), foot().ramp(6, 3.0, 0.0))
               .ds({20.0, 21.0, 22.0, 23.0, 24.0, 25.0});
  for (const auto& [key, parameter] : w.analyse().statistics.parameters) {
    const bool disabled =
        key == "asymmetry" || key.rfind("DS_", 0) == 0 || key.rfind("HS_", 0) == 0;
    EXPECT_EQ(parameter.asymmetry_enabled, !disabled) << key;
    if (disabled) {
      EXPECT_THAT(parameter.asymmetry, SameBits(-1.0)) << key;
    } else {
      EXPECT_THAT(parameter.asymmetry, SameBits(key.back() == 'R' ? 1.5 : 1.0 / 1.5)) << key;
    }
  }
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

TEST(Ratios, AreWrittenForPairsThatTheCallerLeftInTheMap) {
  walk w = two_feet(foot().ramp(6, 2.0, 0.0));
  gait_result& result = w.result();
  result.statistics.parameters["own_L"] = with_mean(1.0);
  result.statistics.parameters["own_R"] = with_mean(2.0);
  gait_generate_statistics(result, {});
  EXPECT_THAT(result.statistics.parameters.at("own_L").asymmetry, SameBits(0.5));
}

// Quality flags

/// A walk of either mode without a flag: six cycles at 1.2 m/s.
walk fine_foot() { return one_foot(foot().speed({1.2, 1.2, 1.2, 1.2, 1.2, 1.2})); }
walk fine_feet() { return two_feet(foot().speed({1.2, 1.2, 1.2, 1.2, 1.2, 1.2})); }

int flags_of(walk w) { return w.analyse().quality_flags; }

TEST(QualityFlags, OfAnUnremarkableWalkAreZero) {
  EXPECT_EQ(flags_of(fine_foot()), 0);
  EXPECT_EQ(flags_of(fine_feet()), 0);
}

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

TEST(QualityFlags, WarnOfFourCyclesOrFewer) {
  const auto walked = [](std::size_t cycles) {
    return foot().speed(std::vector<double>(cycles, 1.2));
  };
  EXPECT_EQ(flags_of(one_foot(walked(4))), 2);
  EXPECT_EQ(flags_of(one_foot(walked(5))), 0);
  EXPECT_EQ(flags_of(two_feet(walked(4))), 2);
  EXPECT_EQ(flags_of(two_feet(walked(5))), 0);
}

TEST(QualityFlags, CountAllCyclesAndNotTheIncludedOnes) {
  EXPECT_EQ(flags_of(fine_foot().excluded_1({0, 1, 2}).excluded_2({3})), 0);
  EXPECT_EQ(flags_of(fine_feet().excluded_1({0, 1, 2}).excluded_2({3})), 0);
}

/// The flags of a result whose stage before computed these.
int flags_of(int cycle_count, const std::vector<std::pair<std::string, double>>& mean_speeds) {
  gait_result result;
  result.foot_results.resize(mean_speeds.size());
  result.statistics.info.cycle_count = cycle_count;
  for (const auto& [key, mean] : mean_speeds) {
    result.statistics.parameters[key] = with_mean(mean);
  }
  gait_detail::write_quality_flags(result, {});
  return result.quality_flags;
}

TEST(QualityFlags, CompareTheCycleCountWithItsSign) {
  EXPECT_EQ(flags_of(int_min, {{"speed", 1.0}}), 2);
  EXPECT_EQ(flags_of(int_max, {{"speed", 1.0}}), 0);
}

TEST(QualityFlags, WarnOfAMeanSpeedThatIsNotWithin031To18) {
  const auto one = [](double mean) { return flags_of(9, {{"speed", mean}}); };
  const auto right = [](double mean) { return flags_of(9, {{"speed_R", mean}, {"speed_L", 1.0}}); };
  const auto left = [](double mean) { return flags_of(9, {{"speed_R", 1.0}, {"speed_L", mean}}); };
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

TEST(QualityFlags, AreRewritten) {
  for (walk w : {fine_foot(), fine_feet()}) {
    gait_result& result = w.result();
    result.quality_flags = -1;
    gait_generate_statistics(result, {});
    EXPECT_EQ(result.quality_flags, 0);
  }
}

TEST(QualityFlags, NeverHoldOtherBitsThanTheirOwn) {
  const foot left = foot().swing({10.0, 20.0});
  const foot right = foot().swing({60.0, 60.0});
  EXPECT_EQ(flags_of(one_foot(left).settings_value(50.0F)), 1 + 2 + 4);
  EXPECT_EQ(flags_of(two_feet(left, right).settings_value(50.0F)), 1 + 2 + 8 + 16 + 128);
}

TEST(QualityFlags, OfOneFootNeedASpeed) {
  gait_result result;
  result.foot_results.resize(1);
  result.quality_flags = 0x7F00;
  result.statistics.parameters["speed_R"] = with_mean(5.0);
  expect_absent_key([&] { gait_detail::write_quality_flags(result, {50.0F}); });
  EXPECT_EQ(result.quality_flags, 1 + 2) << "the flags raised before are set";
  EXPECT_THAT(result.statistics.parameters, SizeIs(1));
}

TEST(QualityFlags, OfTwoFeetNeedTheSpeedOfEitherSide) {
  gait_result result;
  result.foot_results.resize(2);
  result.statistics.parameters["speed_L"] = with_mean(5.0);
  expect_absent_key([&] { gait_detail::write_quality_flags(result, {50.0F}); });
  EXPECT_EQ(result.quality_flags, 1 + 2) << "the right side is asked first";

  result.statistics.parameters.clear();
  result.statistics.parameters["speed_R"] = with_mean(5.0);
  expect_absent_key([&] { gait_detail::write_quality_flags(result, {}); });
  EXPECT_EQ(result.quality_flags, 2 + 8);
  EXPECT_THAT(result.statistics.parameters, SizeIs(1));
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

TEST(SwingAsymmetry, WithoutSpreadRaisesNoFlag) {
  const auto [parameter, flagged] = asymmetry_of({40.0, 40.0, 40.0}, {60.0, 60.0, 60.0});
  EXPECT_THAT(parameter.values, SameBitsEach({-20.0, -20.0, -20.0}));
  EXPECT_THAT(parameter.mean, SameBits(-20.0));
  EXPECT_THAT(parameter.std, SameBits(0.0));
  EXPECT_FALSE(flagged);
}

TEST(SwingAsymmetry, WithSpreadRaisesItsFlagFromTwentyOn) {
  EXPECT_TRUE(asymmetry_of({40.0, 38.0}, {60.0, 62.0}).flagged);
  EXPECT_TRUE(asymmetry_of({60.0, 62.0}, {40.0, 38.0}).flagged) << "to the other side too";
  EXPECT_TRUE(asymmetry_of({45.0, 35.0}, {55.0, 65.0}).flagged) << "a mean of exactly -20";
  EXPECT_TRUE(asymmetry_of({55.0, 65.0}, {45.0, 35.0}).flagged) << "a mean of exactly 20";
  EXPECT_FALSE(asymmetry_of({45.0, 36.0}, {55.0, 64.0}).flagged) << "a mean of -19";
  EXPECT_FALSE(asymmetry_of({10.0, 90.0}, {90.0, 10.0}).flagged) << "-80 and 80";
}

TEST(SwingAsymmetry, WithAMeanOfExactlyOneRaisesNoFlag) {
  const auto [parameter, flagged] = asymmetry_of({51.0, 50.0}, {49.0, 50.0});
  EXPECT_THAT(parameter.mean, SameBits(1.0));
  EXPECT_FALSE(flagged);
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

TEST(SwingAsymmetry, IsScaledByTheSamplingRateOfTheFirstEntryAlone) {
  const auto left_first =
      asymmetry_of(two_feet(foot().swing({40.0}).rate(100), foot().swing({60.0}).rate(500)));
  EXPECT_THAT(left_first.parameter.values, SameBitsEach({-20.0}));
}

TEST(SwingAsymmetry, MultipliesBeforeItDivides) {
  EXPECT_THAT(asymmetry_of({31.0}, {40.0}).parameter.values,
              SameBitsEach({((31.0 - 40.0) * 100.0) / (31.0 + 40.0)}));
  EXPECT_THAT(asymmetry_of({31.0}, {40.0}).parameter.values, SameBitsEach({-0x1.95a240e6c2b45p+3}));
  EXPECT_THAT(asymmetry_of({30.0}, {42.0}).parameter.values, SameBitsEach({-0x1.0aaaaaaaaaaabp+4}));
}

TEST(SwingAsymmetry, SumsInTheOrderOfTheCycles) {
  const std::vector<double> left = {38.0, 35.0, 38.0, 39.0};
  const std::vector<double> right = {44.0, 40.0, 45.0, 45.0};
  const auto parameter = asymmetry_of(left, right).parameter;
  EXPECT_THAT(parameter.mean, SameBits(-0x1.d8f71e9a75e0dp+2));
  EXPECT_THAT(parameter.std, SameBits(0x1.7f07dcc3eeb22p-1));
  const auto reversed =
      asymmetry_of({left.rbegin(), left.rend()}, {right.rbegin(), right.rend()}).parameter;
  EXPECT_NE(bits(reversed.mean), bits(parameter.mean))
      << "these swings no longer tell the orders apart";
}

TEST(SwingAsymmetry, OfOneStrideHasADeviationOfNanWhereAParameterHasZero) {
  walk w = two_feet(foot().swing({40.0}), foot().swing({60.0}));
  const auto& parameters = w.analyse().statistics.parameters;
  EXPECT_THAT(parameters.at("asymmetry").std, SameBits(nan));
  EXPECT_THAT(parameters.at("swing_L").std, SameBits(0.0));
}

TEST(SwingAsymmetry, OfOneStrideRaisesItsFlagFromTwentyOn) {
  EXPECT_TRUE(asymmetry_of({40.0}, {60.0}).flagged);
  EXPECT_FALSE(asymmetry_of({41.0}, {60.0}).flagged);
  EXPECT_TRUE(asymmetry_of({40.0, -1.0, 0.0}, {60.0, 50.0, 50.0}).flagged)
      << "one usable stride of several";
}

TEST(SwingAsymmetry, LeavesOutStridesWithoutASwingAboveZeroOnBothSides) {
  const auto parameter = asymmetry_of({40.0, -1.0, 50.0, 0.0, 50.0, nan, 50.0, -2.0, 50.0, 30.0},
                                      {60.0, 50.0, -1.0, 50.0, 0.0, 50.0, nan, 50.0, -2.0, 70.0})
                             .parameter;
  EXPECT_THAT(parameter.values, SameBitsEach({-20.0, -40.0}));
  EXPECT_THAT(parameter.mean, SameBits(-30.0));
  EXPECT_THAT(parameter.std, SameBits(std::sqrt(200.0)));
}

TEST(SwingAsymmetry, TakesAnInfiniteSwingForOneAboveZero) {
  const auto [parameter, flagged] = asymmetry_of({infinity, 40.0}, {50.0, 60.0});
  EXPECT_THAT(parameter.values, SameBitsEach({nan, -20.0}));
  EXPECT_THAT(parameter.mean, SameBits(nan));
  EXPECT_FALSE(flagged);
}

TEST(SwingAsymmetry, LeavesOutAStrideWithoutAPartner) {
  const foot left = foot().swing({40.0, 10.0, 30.0});
  const foot right = foot().swing({60.0, 60.0, 70.0});
  EXPECT_THAT(asymmetry_of(two_feet(left, right).left_links({0, no_cycle, 2})).parameter.values,
              SameBitsEach({-20.0, -40.0}));
  EXPECT_THAT(asymmetry_of(two_feet(left, right).right_links({0, no_cycle, 2})).parameter.values,
              SameBitsEach({-20.0, -40.0}));
}

TEST(SwingAsymmetry, PairsTheCyclesThatATwoFeetCycleLinks) {
  const foot left = foot().swing({40.0, 30.0});
  const foot right = foot().swing({70.0, 60.0});
  EXPECT_THAT(asymmetry_of(two_feet(left, right).right_links({1, 0})).parameter.values,
              SameBitsEach({-20.0, -40.0}));
}

TEST(SwingAsymmetry, IsTakenOverTheIncludedCyclesOnly) {
  const walk w =
      two_feet(foot().swing({40.0, 10.0, 30.0, 20.0}), foot().swing({60.0, 90.0, 70.0, 80.0}));
  EXPECT_THAT(asymmetry_of(walk(w).excluded_1({1}).excluded_2({3})).parameter.values,
              SameBitsEach({-20.0, -40.0}));
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

TEST(SwingAsymmetry, OfNoIncludedCycleIsNotValid) {
  const auto [parameter, flagged] = asymmetry_of(
      two_feet(foot().swing({40.0, 41.0}), foot().swing({60.0, 60.0})).excluded_1({0, 1}));
  EXPECT_FALSE(parameter.valid);
  EXPECT_EQ(parameter.description, "Asymmetry");
  EXPECT_EQ(parameter.decimals, 3);
  EXPECT_THAT(parameter.values, IsEmpty());
  EXPECT_THAT(parameter.mean, SameBits(0.0));
  EXPECT_THAT(parameter.std, SameBits(0.0));
  EXPECT_THAT(parameter.median, SameBits(-1.0));
  EXPECT_FALSE(flagged);
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
  for (const auto& [cycles, excluded] :
       {std::pair(3, 3), std::pair(3, 4), std::pair(int_max, -1), std::pair(int_min, 0)}) {
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

TEST_F(SwingAsymmetryStage, ReadsNoMoreValuesThanThereAreIncludedCycles) {
  EXPECT_THAT(of(9, 7, {40.0, 30.0, 10.0}, {60.0, 70.0, 90.0}).values,
              SameBitsEach({-20.0, -40.0}));
}

TEST_F(SwingAsymmetryStage, ReadsNoMoreValuesThanTheShorterListHolds) {
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

TEST_F(SwingAsymmetryStage, AddsItsFlagToThoseThatAreSet) {
  result.quality_flags = 1 + 16;
  of(5, 0, {40.0, 30.0}, {60.0, 70.0});
  EXPECT_EQ(result.quality_flags, 1 + 16 + 128);
}

TEST_F(SwingAsymmetryStage, KeepsAnEntryThatIsPresentButRaisesTheFlagByTheNewValues) {
  of(5, 0, {40.0, 40.0}, {60.0, 60.0});
  EXPECT_EQ(result.quality_flags, 0);
  const std::string present = text_of(parameters.at("asymmetry"));
  parameters["swing_L"].values = {10.0, 20.0};
  gait_detail::add_swing_asymmetry(result);
  EXPECT_EQ(difference(text_of(parameters.at("asymmetry")), present), "");
  EXPECT_EQ(result.quality_flags, 128);
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

TEST(SwingAsymmetry, IsNotOverwrittenByTheEntry) {
  walk w = two_feet(foot().swing({40.0, 30.0}), foot().swing({60.0, 70.0}));
  gait_result& result = w.result();
  gait_statistics_parameter present;
  present.description = "left by the caller";
  result.statistics.parameters["asymmetry"] = present;
  gait_generate_statistics(result, {});
  EXPECT_EQ(difference(text_of(result.statistics.parameters.at("asymmetry")), text_of(present)),
            "");
  EXPECT_NE(result.quality_flags & 128, 0);
}

TEST(SwingAsymmetry, ReadsNoFurtherThanEntriesThatWereKeptFromASmallerSelection) {
  const std::size_t cycles = 200;
  const foot left = foot().swing(std::vector<double>(cycles, 40.0));
  const foot right = foot().swing(std::vector<double>(cycles, 60.0));
  std::list<int> all_but_two;
  for (int i = 2; i < static_cast<int>(cycles); ++i) {
    all_but_two.push_back(i);
  }
  walk w = two_feet(left, right).excluded_1(all_but_two);
  gait_result& result = w.analyse();
  result.excluded_1.clear();
  result.statistics.parameters.erase("asymmetry");
  gait_generate_statistics(result, {});
  EXPECT_EQ(result.statistics.info.excluded_count, 0);
  EXPECT_THAT(result.statistics.parameters.at("swing_L").values, SizeIs(2));
  EXPECT_THAT(result.statistics.parameters.at("asymmetry").values, SameBitsEach({-20.0, -20.0}));
}

TEST(SwingAsymmetry, OfASecondCallWithoutIncludedCyclesHasNoMean) {
  walk w = two_feet(foot().swing({40.0, 30.0}), foot().swing({60.0, 70.0}));
  gait_result& result = w.analyse();
  result.excluded_1 = {0, 1};
  result.statistics.parameters.erase("asymmetry");
  gait_generate_statistics(result, {});
  const auto& parameter = result.statistics.parameters.at("asymmetry");
  EXPECT_TRUE(parameter.valid);
  EXPECT_THAT(parameter.values, IsEmpty());
  EXPECT_THAT(parameter.std, SameBits(-0.0));
  EXPECT_EQ(result.quality_flags & 128, 0);
}

}  // namespace
