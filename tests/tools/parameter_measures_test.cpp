// The measures of a walk: which parameter has which, and where in time its strides stand.

#include "parameter_measures.h"

#include "catalogue_keys.h"
#include "mean_precision.h"
#include "walk_model.h"
#include "walk_statistics.h"

#include <gait/result.h>
#include <gait/statistics.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <iterator>
#include <list>
#include <numeric>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

using gait_report::measures_of;
using gait_report::walk_statistics;
using gait_walk::analysed_cycles;

/// A walk with a turn in which some strides were lost and some values not measured, after a change.
walk_statistics walk_with_gaps(
    const std::function<void(gait_walk::walk&)>& change = [](auto&) {},
    analysed_cycles asked_for = analysed_cycles::feet) {
  gait_walk::walk_settings settings;
  settings.strides = 80;
  settings.lost = 4;
  settings.missing = 0.02;
  settings.rate = 200;
  gait_walk::walk walk = gait_walk::make_walk(settings);
  change(walk);
  walk_statistics statistics = gait_report::prepare_walk(std::move(walk), asked_for, 0.0F);
  gait_report::compute_statistics(statistics);
  return statistics;
}

/// Values by position in a list of so many cycles; missing wherever no included value stands.
std::vector<double> in_place(std::size_t cycles, const std::vector<double>& values,
                             const std::vector<int>& positions) {
  std::vector<double> placed(cycles, gait_missing);
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (!gait_is_missing(values[i])) {
      placed.at(static_cast<std::size_t>(positions[i])) = values[i];
    }
  }
  return placed;
}

std::vector<int> all_positions(std::size_t count) {
  std::vector<int> positions(count);
  std::iota(positions.begin(), positions.end(), 0);
  return positions;
}

/// The effective number of strides of a list of values with gaps.
double effective_strides_of(const std::vector<double>& placed) {
  return gait_measures::precision_of_mean(placed, all_positions(placed.size()))->effective_strides;
}

/// The foot's cycle of each included two-feet cycle, -1 where there is none.
std::vector<int> linked(const gait_result& result, gait_foot_cycle* gait_feet_cycle::*link) {
  std::vector<int> positions;
  for (const int index : result.statistics.info.cycles) {
    const gait_feet_cycle& cycle = *std::next(result.feet_result.cycles.begin(), index);
    positions.push_back(cycle.*link != nullptr ? (cycle.*link)->index : -1);
  }
  return positions;
}

TEST(MeasuresOfAWalk, HaveTheKeysOfItsParameters) {
  for (const auto analysed : {analysed_cycles::feet, analysed_cycles::right}) {
    const walk_statistics walk = walk_with_gaps([](auto&) {}, analysed);
    std::set<std::string> keys;
    for (const auto& parameter : parameters_of(walk)) {
      for (const auto& side : parameter.sides) {
        keys.insert(side.key);
      }
    }
    std::set<std::string> measured;
    for (const auto& [key, measures] : measures_of(walk)) {
      measured.insert(key);
    }
    EXPECT_EQ(measured, keys);
  }
}

TEST(MeasuresOfAWalk, HaveTheQuartilesOfTheInterquartileRange) {
  const walk_statistics walk = walk_with_gaps();
  for (const auto& [key, measures] : measures_of(walk)) {
    const auto& record = walk.result().statistics.parameters.at(key);
    ASSERT_TRUE(record.valid);
    EXPECT_EQ(*measures.q3 - *measures.q1, record.iqr) << key;
    EXPECT_LT(*measures.p5, *measures.q1) << key;
    EXPECT_GT(*measures.p95, *measures.q3) << key;
  }
}

TEST(MeasuresOfAWalk, KnowTheStridesOfAFootThatLieBetweenTheIncludedOnes) {
  const walk_statistics walk = walk_with_gaps();
  const gait_result& result = walk.result();
  const auto measures = measures_of(walk);
  const auto expected = [&](const std::string& key, const gait_foot_result& foot,
                            gait_foot_cycle* gait_feet_cycle::*link) {
    return effective_strides_of(in_place(
        foot.cycles.size(), result.statistics.parameters.at(key).values, linked(result, link)));
  };
  EXPECT_EQ(measures.at("gct_R").effective_strides,
            expected("gct_R", *result.right_foot, &gait_feet_cycle::right_cycle));
  EXPECT_EQ(measures.at("gct_L").effective_strides,
            expected("gct_L", *result.left_foot, &gait_feet_cycle::left_cycle));
}

TEST(MeasuresOfAWalk, KnowTheTwoFeetCyclesThatLieBetweenTheIncludedOnes) {
  const walk_statistics walk = walk_with_gaps([](auto& w) {
    double drifting = 20.0;
    for (auto& cycle : w.feet) {
      cycle.ds = gait_is_missing(cycle.ds) ? gait_missing : drifting += 0.1;
    }
  });
  const gait_result& result = walk.result();
  const std::list<int>& cycles = result.statistics.info.cycles;
  const double expected = effective_strides_of(
      in_place(result.feet_result.cycles.size(), result.statistics.parameters.at("DS_R").values,
               {cycles.begin(), cycles.end()}));
  const auto measures = measures_of(walk);
  EXPECT_EQ(measures.at("DS_R").effective_strides, expected);
  EXPECT_EQ(measures.at("DS_L").effective_strides, expected);
}

TEST(MeasuresOfAWalk, KnowTheStridesThatLieBetweenThoseOfAFootAlone) {
  const walk_statistics walk = walk_with_gaps(
      [](auto& w) {
        w.exclusions.push_back({analysed_cycles::left, {}, 30, "turn"});
      },
      analysed_cycles::left);
  const gait_result& result = walk.result();
  const std::list<int>& cycles = result.statistics.info.cycles;
  const auto& foot = result.foot_results.front().cycles;
  ASSERT_LT(cycles.size(), foot.size());
  EXPECT_EQ(
      measures_of(walk).at("gct").effective_strides,
      effective_strides_of(in_place(foot.size(), result.statistics.parameters.at("gct").values,
                                    {cycles.begin(), cycles.end()})));
}

TEST(MeasuresOfAWalk, HaveAStandardErrorWhereTheMeanSaysSomething) {
  for (const auto& [key, measures] : measures_of(walk_with_gaps())) {
    const bool is_a_moment = key == "HS_R" || key == "HS_L";
    EXPECT_EQ(measures.effective_strides.has_value(), !is_a_moment) << key;
    EXPECT_EQ(measures.standard_error.has_value(), !is_a_moment) << key;
  }
}

TEST(MeasuresOfAWalk, HaveASymmetryIndexOnRatioScales) {
  const walk_statistics walk = walk_with_gaps();
  const auto measures = measures_of(walk);
  std::set<std::string> without;
  for (const auto& [key, of_side] : measures) {
    if (!of_side.symmetry_index) {
      without.insert(key.substr(0, key.size() - 2));
    }
  }
  // On both feet together there are no sides to compare.
  std::set<std::string> expected = gait_test::keys_without_variation();
  expected.insert("DS");
  EXPECT_EQ(without, expected);
  const auto& records = walk.result().statistics.parameters;
  const double right = records.at("gct_R").mean;
  const double left = records.at("gct_L").mean;
  EXPECT_DOUBLE_EQ(*measures.at("gct_R").symmetry_index, 200.0 * (right - left) / (right + left));
  EXPECT_EQ(measures.at("gct_L").symmetry_index, measures.at("gct_R").symmetry_index);
}

TEST(MeasuresOfAWalk, HaveNoSymmetryIndexWhereASideWasNotMeasured) {
  const walk_statistics walk = walk_with_gaps([](auto& w) {
    for (auto* foot : {&*w.left, &*w.right}) {
      for (gait_foot_cycle& cycle : foot->cycles) {
        cycle.hsp = foot == &*w.left ? gait_missing : -12.0;
      }
    }
  });
  EXPECT_EQ(measures_of(walk).at("HSP_R").symmetry_index, std::nullopt);
}

TEST(MeasuresOfAWalk, HaveNoSymmetryIndexOfOneFoot) {
  for (const auto& [key, measures] :
       measures_of(walk_with_gaps([](auto&) {}, analysed_cycles::left))) {
    EXPECT_EQ(measures.symmetry_index, std::nullopt) << key;
  }
}

TEST(MeasuresOfAWalk, LeaveOutAStepLengthThatHoldsHalvesOfMissingStrideLengths) {
  const auto measure_all = [](auto& w) {
    for (gait_foot_cycle& cycle : w.left->cycles) {
      cycle.slength = std::max(cycle.slength, 1.2);
    }
  };
  const walk_statistics sound = walk_with_gaps(measure_all, analysed_cycles::left);
  EXPECT_NE(measures_of(sound).at("StepLength").q1, std::nullopt);
  const walk_statistics halved = walk_with_gaps(
      [&](auto& w) {
        measure_all(w);
        std::next(w.left->cycles.begin(), 20)->slength = gait_missing;
      },
      analysed_cycles::left);
  const auto measures = measures_of(halved);
  EXPECT_EQ(measures.at("StepLength").q1, std::nullopt);
  EXPECT_EQ(measures.at("StepLength").standard_error, std::nullopt);
  EXPECT_NE(measures.at("slength").q1, std::nullopt);
}

TEST(SwingAsymmetryOfAWalk, IsTheLibrarysAtAHundredHertz) {
  const walk_statistics walk = walk_with_gaps();
  const auto asymmetry = swing_asymmetry_in_percent(walk);
  const gait_statistics_parameter& record = *swing_asymmetry_record(walk);
  EXPECT_EQ(asymmetry->values.size(), walk.info().cycles.size());
  EXPECT_LT(asymmetry->n, asymmetry->values.size());
  std::vector<double> at_200_hertz;
  for (const auto& value : asymmetry->values) {
    if (value) {
      at_200_hertz.push_back(*value * 2.0);
    }
  }
  EXPECT_THAT(at_200_hertz, testing::Pointwise(testing::DoubleEq(), record.values));
  EXPECT_DOUBLE_EQ(*asymmetry->mean * 2.0, record.mean);
  EXPECT_DOUBLE_EQ(*asymmetry->sd * 2.0, record.std);
}

TEST(SwingAsymmetryOfAWalk, NeedsBothFeet) {
  EXPECT_EQ(swing_asymmetry_in_percent(walk_with_gaps([](auto&) {}, analysed_cycles::left)),
            std::nullopt);
}

}  // namespace
