#include "analysis.h"
#include "bytes_of_walk.h"
#include "random_numbers.h"
#include "temporary_folder.h"
#include "walk_folder.h"
#include "walk_model.h"

#include <gait/generate_statistics.h>
#include <gait/result.h>
#include <gait/statistics.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <list>
#include <map>
#include <numeric>
#include <optional>
#include <random>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <sys/wait.h>

namespace {

namespace fs = std::filesystem;
using gait_walk::analysed_cycles;
using gait_walk::exclusion_list;
using gait_walk::make_walk;
using gait_walk::side;
using gait_walk::typical_value;
using gait_walk::walk;
using gait_walk::walk_settings;
using gait_walk::worn_on;
using tool_tests::bytes_of;
using tool_tests::temporary_folder;
namespace typical = gait_walk::typical;

using cycle_field = double gait_foot_cycle::*;
constexpr auto& measured_fields = gait_test::foot::measured_fields;

// ---------------------------------------------------------------- walks

/// Straight on, from a start to a stop.
walk_settings straight_walk(int strides) {
  walk_settings settings;
  settings.strides = strides;
  settings.turns = 0;
  return settings;
}

/// One of everything that a walk can have.
walk_settings eventful_walk() {
  walk_settings settings;
  settings.strides = 120;
  settings.turns = 3;
  settings.pauses = 2;
  settings.outliers = 3;
  settings.lost = 5;
  return settings;
}

const std::list<gait_foot_cycle>& cycles_of(const walk& walk, side side) {
  return (side == side::left ? walk.left : walk.right).value().cycles;
}

std::vector<gait_foot_cycle> as_vector(const std::list<gait_foot_cycle>& cycles) {
  return {cycles.begin(), cycles.end()};
}

analysed_cycles alone(side side) {
  return side == side::left ? analysed_cycles::left : analysed_cycles::right;
}

std::set<int> excluded(const walk& walk, analysed_cycles cycles, const std::string& reason = "") {
  std::set<int> indices;
  for (const gait_walk::exclusion& exclusion : walk.exclusions) {
    if (exclusion.cycles == cycles && (reason.empty() || exclusion.reason == reason)) {
      indices.insert(exclusion.index);
    }
  }
  return indices;
}

/// The strides that are excluded for this reason; for no reason, those that are not excluded.
std::vector<gait_foot_cycle> strides(const walk& walk, side side, const std::string& reason = "") {
  const std::set<int> excluded_ones = excluded(walk, alone(side), reason);
  std::vector<gait_foot_cycle> found;
  for (const gait_foot_cycle& cycle : cycles_of(walk, side)) {
    if ((excluded_ones.count(cycle.index) == 1) == !reason.empty()) {
      found.push_back(cycle);
    }
  }
  return found;
}

std::vector<double> values(const std::vector<gait_foot_cycle>& cycles, cycle_field field) {
  std::vector<double> found;
  for (const gait_foot_cycle& cycle : cycles) {
    found.push_back(cycle.*field);
  }
  return found;
}

// ---------------------------------------------------------------- statistics

double mean(const std::vector<double>& x) {
  return std::accumulate(x.begin(), x.end(), 0.0) / static_cast<double>(x.size());
}

double covariance(const std::vector<double>& x, const std::vector<double>& y) {
  const double mean_x = mean(x);
  const double mean_y = mean(y);
  double sum = 0.0;
  for (std::size_t i = 0; i < x.size(); ++i) {
    sum += (x[i] - mean_x) * (y[i] - mean_y);
  }
  return sum / static_cast<double>(x.size() - 1);
}

double deviation(const std::vector<double>& x) { return std::sqrt(covariance(x, x)); }

double correlation(const std::vector<double>& x, const std::vector<double>& y) {
  return covariance(x, y) / (deviation(x) * deviation(y));
}

double slope(const std::vector<double>& x, const std::vector<double>& y) {
  return covariance(x, y) / covariance(x, x);
}

/// Squared distance of y from its straight line.
double off_the_line(const std::vector<double>& y) {
  std::vector<double> x(y.size());
  std::iota(x.begin(), x.end(), 0.0);
  const double b = slope(x, y);
  return (covariance(y, y) - b * b * covariance(x, x)) * static_cast<double>(y.size() - 1);
}

/// The exponent of detrended fluctuation analysis (C.-K. Peng et al., Phys Rev E 49:1685-1689,
/// 1994), over box sizes from 4 to a quarter of the series.
double dfa_exponent(const std::vector<double>& series) {
  std::vector<double> profile;
  const double level = mean(series);
  double sum = 0.0;
  for (const double x : series) {
    profile.push_back(sum += x - level);
  }
  std::vector<double> log_size;
  std::vector<double> log_fluctuation;
  for (std::size_t size = 4; size <= series.size() / 4; size *= 2) {
    double squares = 0.0;
    const std::size_t boxes = profile.size() / size;
    for (std::size_t box = 0; box < boxes; ++box) {
      const auto begin = profile.begin() + static_cast<std::ptrdiff_t>(box * size);
      squares += off_the_line({begin, begin + static_cast<std::ptrdiff_t>(size)});
    }
    log_size.push_back(std::log(static_cast<double>(size)));
    log_fluctuation.push_back(std::log(squares / static_cast<double>(boxes * size)) / 2.0);
  }
  return slope(log_size, log_fluctuation);
}

std::vector<double> shuffled(std::vector<double> x) {
  gait_walk::random_numbers random(1);
  for (std::size_t i = x.size() - 1; i > 0; --i) {
    std::swap(x[i], x[static_cast<std::size_t>(random.below(static_cast<int>(i + 1)))]);
  }
  return x;
}

std::string file_text(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  EXPECT_TRUE(stream) << file;
  std::ostringstream text;
  text << stream.rdbuf();
  return text.str();
}

struct run_result {
  int exit_code;
  std::string output;
};

/// Runs a gait-make-walk command line in a folder.
run_result run(const fs::path& folder, const std::string& arguments) {
  const fs::path output = folder / "output.txt";
  const std::string command = "cd '" + folder.string() + "' && '" GAIT_MAKE_WALK "' " + arguments +
                              " >'" + output.string() + "' 2>&1";
  const int status = std::system(command.c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, file_text(output)};
}

const std::vector<std::string> tables = {"recording.csv", "foot_cycles.csv", "feet_cycles.csv",
                                         "exclusions.csv"};

// ---------------------------------------------------------------- the model's figures

TEST(WalkModel, StrideDurationsAreLongRangeCorrelated) {
  for (const std::uint64_t seed : {1U, 2U, 3U, 4U, 5U}) {
    walk_settings settings = straight_walk(4096);
    settings.seed = seed;
    const walk walk = make_walk(settings);
    const auto durations = values(strides(walk, side::right), &gait_foot_cycle::gct);
    EXPECT_GT(dfa_exponent(durations), 0.65) << "seed " << seed;
    EXPECT_LT(dfa_exponent(durations), 1.0) << "seed " << seed;
  }
}

TEST(WalkModel, ShufflingStrideDurationsTakesTheCorrelationAway) {
  const walk walk = make_walk(straight_walk(4096));
  const auto durations = values(strides(walk, side::right), &gait_foot_cycle::gct);
  EXPECT_NEAR(dfa_exponent(shuffled(durations)), 0.5, 0.07);
}

TEST(WalkModel, StrideValuesHaveTheMeansAndDeviationsOfTheTable) {
  const walk walk = make_walk(straight_walk(4096));
  for (const side side : {side::left, side::right}) {
    const auto straight = strides(walk, side);
    for (const typical_value& value : typical::stride_values) {
      const double difference = side == side::left ? value.left_less_right : -value.left_less_right;
      const auto drawn = values(straight, value.field);
      EXPECT_NEAR(mean(drawn), value.mean + difference / 2.0, 0.1 * value.deviation) << value.mean;
      EXPECT_NEAR(deviation(drawn), value.deviation, 0.1 * value.deviation) << value.mean;
    }
  }
}

TEST(WalkModel, StepsAndStanceHaveTheMeansAndDeviationsOfTheTable) {
  walk_settings settings = straight_walk(4096);
  settings.rate = 1000;
  const walk walk = make_walk(settings);
  for (const side side : {side::left, side::right}) {
    const auto straight = strides(walk, side);
    for (const typical_value& value : {typical::step_time, typical::step_length, typical::stance}) {
      const double difference = side == side::left ? value.left_less_right : -value.left_less_right;
      const auto drawn = values(straight, value.field);
      EXPECT_NEAR(mean(drawn), value.mean + difference / 2.0, 0.5 * value.deviation) << value.mean;
      EXPECT_NEAR(deviation(drawn), value.deviation, 0.15 * value.deviation) << value.mean;
    }
  }
}

TEST(WalkModel, StrideDurationVariesByAboutTwoPercentAndStrideLengthByTwoAndAHalf) {
  const walk walk = make_walk(straight_walk(4096));
  const auto straight = strides(walk, side::left);
  const auto durations = values(straight, &gait_foot_cycle::gct);
  const auto lengths = values(straight, &gait_foot_cycle::slength);
  EXPECT_NEAR(100.0 * deviation(durations) / mean(durations), 2.0, 0.3);
  EXPECT_NEAR(100.0 * deviation(lengths) / mean(lengths), 2.5, 0.4);
}

TEST(WalkModel, LongerStridesAreQuickerAndFaster) {
  const walk walk = make_walk(straight_walk(4096));
  const auto straight = strides(walk, side::left);
  const auto lengths = values(straight, &gait_foot_cycle::slength);
  EXPECT_NEAR(correlation(lengths, values(straight, &gait_foot_cycle::gct)),
              typical::step_time_length_correlation, 0.15);
  EXPECT_GT(correlation(lengths, values(straight, &gait_foot_cycle::speed)), 0.7);
}

TEST(WalkModel, AWalkHasTheSameSpeedOnBothFeet) {
  const walk walk = make_walk(straight_walk(1000));
  const double left = mean(values(strides(walk, side::left), &gait_foot_cycle::speed));
  const double right = mean(values(strides(walk, side::right), &gait_foot_cycle::speed));
  EXPECT_NEAR(left / right, 1.0, 0.001);
}

// ---------------------------------------------------------------- records

TEST(WalkModel, ValuesOfAStrideAgreeWithEachOther) {
  const walk walk = make_walk(eventful_walk());
  for (const side side : {side::left, side::right}) {
    for (const gait_foot_cycle& cycle : cycles_of(walk, side)) {
      const int samples = cycle.last_sample - cycle.first_sample + 1;
      EXPECT_NEAR(cycle.hs, cycle.first_sample / 100.0, 1e-9);
      EXPECT_NEAR(cycle.gct, samples / 100.0, 1e-9);
      EXPECT_NEAR(cycle.cadence, 120.0 / cycle.gct, 0.0005 + 1e-9);
      EXPECT_NEAR(cycle.swing + cycle.stance, 100.0, 1e-9);
      EXPECT_NEAR(cycle.ldr + cycle.ffr + cycle.pur, 100.0, 1e-9);
      EXPECT_NEAR(cycle.contact, cycle.stance / 100.0 * cycle.gct * 1000.0, 0.01);
      EXPECT_NEAR(cycle.speed, cycle.slength / cycle.gct, 0.0001);
      EXPECT_LT(cycle.step_time, cycle.gct);
      EXPECT_LT(cycle.step_length, cycle.slength);
    }
  }
}

TEST(WalkModel, StridesFollowEachOtherWithoutGapWhereNoneIsLostAndNobodyStands) {
  const walk walk = make_walk(straight_walk(50));
  for (const side side : {side::left, side::right}) {
    const auto cycles = as_vector(cycles_of(walk, side));
    ASSERT_EQ(cycles.size(), 50U);
    for (std::size_t i = 1; i < cycles.size(); ++i) {
      EXPECT_EQ(cycles[i].first_sample, cycles[i - 1].last_sample + 1);
    }
  }
}

TEST(WalkModel, AStrideIsAStepOfEachFoot) {
  const walk walk = make_walk(straight_walk(50));
  const auto left = as_vector(cycles_of(walk, side::left));
  const auto right = as_vector(cycles_of(walk, side::right));
  for (std::size_t i = 1; i < right.size(); ++i) {
    EXPECT_NEAR(right[i].gct, left[i - 1].step_time + right[i].step_time, 1e-9) << i;
    EXPECT_NEAR(right[i].slength, left[i - 1].step_length + right[i].step_length, 0.00015 + 1e-9)
        << i;
  }
}

TEST(WalkModel, DoubleSupportIsTheTimeInWhichTheStancesOfBothFeetOverlap) {
  const walk walk = make_walk(straight_walk(50));
  const auto left = as_vector(cycles_of(walk, side::left));
  const auto right = as_vector(cycles_of(walk, side::right));
  const auto toe_off = [](const gait_foot_cycle& cycle) {
    return cycle.hs + cycle.contact / 1000.0;
  };
  for (std::size_t i = 1; i < right.size(); ++i) {
    const double both = toe_off(left[i - 1]) - right[i].hs + toe_off(right[i]) - left[i].hs;
    EXPECT_NEAR(walk.feet[i].ds, 100.0 * both / right[i].gct, 0.001) << i;
  }
  EXPECT_EQ(walk.feet[0].ds, gait_missing)
      << "the left foot's stance before the first stride is not known";
}

TEST(WalkModel, CyclesOfBothFeetLinkARightStrideToTheLeftOneThatBeginsWithinIt) {
  const walk walk = make_walk(eventful_walk());
  const auto left = as_vector(cycles_of(walk, side::left));
  const auto right = as_vector(cycles_of(walk, side::right));
  std::set<int> left_links;
  std::set<int> right_links;
  for (const gait_walk::feet_cycle& cycle : walk.feet) {
    if (cycle.left_index) {
      EXPECT_TRUE(left_links.insert(*cycle.left_index).second);
    }
    if (cycle.right_index) {
      EXPECT_TRUE(right_links.insert(*cycle.right_index).second);
      EXPECT_EQ(cycle.gct, right.at(static_cast<std::size_t>(*cycle.right_index)).gct);
    }
    if (cycle.left_index && cycle.right_index) {
      const gait_foot_cycle& l = left.at(static_cast<std::size_t>(*cycle.left_index));
      const gait_foot_cycle& r = right.at(static_cast<std::size_t>(*cycle.right_index));
      EXPECT_GT(l.first_sample, r.first_sample);
      EXPECT_LE(l.first_sample, r.last_sample);
    }
  }
  EXPECT_EQ(left_links.size(), left.size());
  EXPECT_EQ(right_links.size(), right.size());
}

TEST(WalkModel, IndicesArePositions) {
  const walk walk = make_walk(eventful_walk());
  for (const side side : {side::left, side::right}) {
    int position = 0;
    for (const gait_foot_cycle& cycle : cycles_of(walk, side)) {
      EXPECT_EQ(cycle.index, position++);
    }
  }
}

TEST(WalkModel, ALostStrideIsInNoTableAndLeavesItsPartnerAlone) {
  walk_settings settings = straight_walk(100);
  settings.lost = 5;
  const walk walk = make_walk(settings);
  const auto without = [&](auto link) {
    return std::count_if(walk.feet.begin(), walk.feet.end(),
                         [&](const auto& cycle) { return !(cycle.*link); });
  };
  EXPECT_EQ(walk.feet.size(), 100U);
  EXPECT_EQ(cycles_of(walk, side::left).size(), 97U);
  EXPECT_EQ(cycles_of(walk, side::right).size(), 98U);
  EXPECT_EQ(without(&gait_walk::feet_cycle::left_index), 3);
  EXPECT_EQ(without(&gait_walk::feet_cycle::right_index), 2);
  for (const gait_walk::feet_cycle& cycle : walk.feet) {
    EXPECT_TRUE((cycle.left_index && cycle.right_index) || cycle.ds == gait_missing);
    EXPECT_NE(cycle.gct, gait_missing);
  }
}

TEST(WalkModel, RecordingsHoldAllStridesAndTheStandingAroundThem) {
  const walk walk = make_walk(eventful_walk());
  for (const auto* foot : {&walk.left, &walk.right}) {
    EXPECT_EQ((*foot)->sampling_rate, 100);
    EXPECT_GE((*foot)->cycles.front().first_sample, 200);
    EXPECT_GE((*foot)->signal_1_samples,
              static_cast<std::uint64_t>((*foot)->cycles.back().last_sample) + 200U);
    EXPECT_EQ((*foot)->signal_1_samples, (*foot)->signal_2_samples);
  }
}

TEST(WalkModel, OnlyWhatCannotBeKnownIsMissingAndNoValueIsRoundedToTheMissingOne) {
  const walk walk = make_walk(straight_walk(20000));
  int beside = 0;
  for (const side side : {side::left, side::right}) {
    for (const gait_foot_cycle& cycle : cycles_of(walk, side)) {
      for (const cycle_field field : measured_fields) {
        ASSERT_NE(cycle.*field, gait_missing);
      }
      beside += cycle.ta == -0.99 ? 1 : 0;
    }
  }
  EXPECT_GT(beside, 80)
      << "about 65 turning angles a hundredth of a degree, and -1.00 is counted with -0.99";
}

// ---------------------------------------------------------------- turns, starts and stops

TEST(WalkModel, EveryTurnAddsUpToHalfARevolution) {
  walk_settings settings = straight_walk(400);
  settings.turns = 20;
  const walk walk = make_walk(settings);
  for (const side side : {side::left, side::right}) {
    const auto angles = values(strides(walk, side, "turn"), &gait_foot_cycle::ta);
    EXPECT_NEAR(std::accumulate(angles.begin(), angles.end(), 0.0) / 20.0, 180.0, 5.0);
  }
}

TEST(WalkModel, StridesInATurnAreSlowerShorterAndWider) {
  walk_settings settings = straight_walk(400);
  settings.turns = 20;
  const walk walk = make_walk(settings);
  for (const side side : {side::left, side::right}) {
    const auto turn = strides(walk, side, "turn");
    const auto straight = strides(walk, side);
    const auto compared = [&](cycle_field field) {
      return mean(values(turn, field)) / mean(values(straight, field));
    };
    EXPECT_LT(compared(&gait_foot_cycle::speed), 0.9);
    EXPECT_LT(compared(&gait_foot_cycle::slength), 0.9);
    EXPECT_GT(compared(&gait_foot_cycle::gct), 1.02);
    EXPECT_GT(compared(&gait_foot_cycle::swidth), 1.5);
  }
}

TEST(WalkModel, FirstAndLastStridesAreSlower) {
  walk_settings settings;
  settings.strides = 120;
  settings.pauses = 4;
  const walk walk = make_walk(settings);
  for (const side side : {side::left, side::right}) {
    const double slowest = mean(values(strides(walk, side), &gait_foot_cycle::speed)) * 0.95;
    for (const char* reason : {"start", "stop"}) {
      const auto speeds = values(strides(walk, side, reason), &gait_foot_cycle::speed);
      EXPECT_EQ(speeds.size(), 5U);
      EXPECT_LT(*std::max_element(speeds.begin(), speeds.end()), slowest) << reason;
    }
  }
}

TEST(WalkModel, APauseIsTwoSecondsOfStanding) {
  walk_settings settings = straight_walk(40);
  settings.pauses = 1;
  const auto right = as_vector(cycles_of(make_walk(settings), side::right));
  const double standing = (right[20].first_sample - right[19].last_sample - 1) / 100.0;
  EXPECT_GT(standing, 2.0);
  EXPECT_LT(standing, 3.0) << "the left foot's last step is within it";
}

TEST(WalkModel, TurnsAndStumblesAreOfKindOneStartsAndStopsOfKindTwo) {
  const walk walk = make_walk(eventful_walk());
  const std::map<std::string, exclusion_list> list_of = {{"turn", exclusion_list::excluded_1},
                                                         {"outlier", exclusion_list::excluded_1},
                                                         {"start", exclusion_list::excluded_2},
                                                         {"stop", exclusion_list::excluded_2}};
  for (const gait_walk::exclusion& exclusion : walk.exclusions) {
    EXPECT_EQ(exclusion.list, list_of.at(exclusion.reason));
  }
  for (const analysed_cycles cycles :
       {analysed_cycles::feet, analysed_cycles::left, analysed_cycles::right}) {
    EXPECT_EQ(excluded(walk, cycles, "outlier").size(), 3U);
    EXPECT_EQ(excluded(walk, cycles, "start").size(), 3U);
    EXPECT_EQ(excluded(walk, cycles, "stop").size(), 3U);
    EXPECT_EQ(excluded(walk, cycles, "turn").size(), cycles == analysed_cycles::right ? 9U : 12U);
  }
}

TEST(WalkModel, ACycleOfBothFeetIsExcludedWithEitherOfItsStrides) {
  const walk walk = make_walk(eventful_walk());
  const auto feet = excluded(walk, analysed_cycles::feet);
  const auto left = excluded(walk, analysed_cycles::left);
  const auto right = excluded(walk, analysed_cycles::right);
  for (std::size_t i = 0; i < walk.feet.size(); ++i) {
    const bool of_left = walk.feet[i].left_index && left.count(*walk.feet[i].left_index) == 1;
    const bool of_right = walk.feet[i].right_index && right.count(*walk.feet[i].right_index) == 1;
    EXPECT_EQ(feet.count(static_cast<int>(i)) == 1, of_left || of_right) << i;
  }
}

// ---------------------------------------------------------------- settings

TEST(WalkModel, AnyLengthFromOneStrideOnKeepsACycle) {
  for (int n = 1; n <= 40; ++n) {
    const walk walk = make_walk(straight_walk(n));
    EXPECT_EQ(walk.feet.size(), static_cast<std::size_t>(n));
    for (const analysed_cycles cycles :
         {analysed_cycles::feet, analysed_cycles::left, analysed_cycles::right}) {
      EXPECT_EQ(excluded(walk, cycles).size(), n < 4 ? 0U : 2U) << n;
    }
  }
}

TEST(WalkModel, AHundredThousandStridesAreMadeAndCounted) {
  walk_settings settings;
  settings.strides = 100'000;
  settings.turns = 5000;
  settings.pauses = 100;
  settings.outliers = 1000;
  settings.lost = 1000;
  const walk walk = make_walk(settings);
  EXPECT_EQ(walk.feet.size(), 100'000U);
  EXPECT_EQ(cycles_of(walk, side::left).size(), 99'500U);
  EXPECT_EQ(excluded(walk, analysed_cycles::right, "turn").size(), 15'000U);
}

TEST(WalkModel, MissingTakesOutItsShareAndChangesNothingElse) {
  walk_settings settings = straight_walk(1000);
  const walk whole = make_walk(settings);
  settings.missing = 0.2;
  const walk holed = make_walk(settings);
  int missing = 0;
  for (const side side : {side::left, side::right}) {
    auto other = cycles_of(whole, side).begin();
    for (const gait_foot_cycle& cycle : cycles_of(holed, side)) {
      EXPECT_NE(cycle.gct, gait_missing);
      EXPECT_NE(cycle.hs, gait_missing);
      for (const cycle_field field : measured_fields) {
        missing += cycle.*field == gait_missing ? 1 : 0;
        EXPECT_TRUE(cycle.*field == gait_missing || cycle.*field == (*other).*field);
      }
      ++other;
    }
  }
  EXPECT_NEAR(missing / (2.0 * 1000.0 * 24.0), 0.2, 0.01);
}

TEST(WalkModel, AFootAloneIsThatFootOfTheWalkWithoutWhatItCannotKnowOfTheOther) {
  walk_settings settings = eventful_walk();
  const walk both = make_walk(settings);
  settings.feet = worn_on::left;
  const walk left = make_walk(settings);
  EXPECT_FALSE(left.right);
  EXPECT_TRUE(left.feet.empty());
  EXPECT_EQ(excluded(left, analysed_cycles::left), excluded(both, analysed_cycles::left));
  EXPECT_TRUE(excluded(left, analysed_cycles::feet).empty());
  EXPECT_TRUE(excluded(left, analysed_cycles::right).empty());
  auto other = cycles_of(both, side::left).begin();
  for (const gait_foot_cycle& cycle : cycles_of(left, side::left)) {
    EXPECT_EQ(cycle.step_time, gait_missing);
    EXPECT_EQ(cycle.step_length, gait_missing);
    EXPECT_EQ(cycle.gct, other->gct);
    EXPECT_EQ(cycle.impact_hor, other->impact_hor);
    ++other;
  }
  settings.feet = worn_on::right;
  EXPECT_FALSE(make_walk(settings).left);
  EXPECT_TRUE(make_walk(settings).right);
}

TEST(WalkModel, SettingsOutOfRangeAreRefused) {
  const auto refused = [](auto change) {
    walk_settings settings;
    change(settings);
    EXPECT_THROW(make_walk(settings), std::invalid_argument);
  };
  refused([](walk_settings& s) { s.strides = 0; });
  refused([](walk_settings& s) { s.strides = 1'000'001; });
  refused([](walk_settings& s) { s.strides = 11; });
  refused([](walk_settings& s) { s.turns = -1; });
  refused([](walk_settings& s) { s.turns = 1'000'000; });
  refused([](walk_settings& s) { s.pauses = 1'000'000; });
  refused([](walk_settings& s) { s.pauses = 4; });
  refused([](walk_settings& s) { s.lost = 5; });
  refused([](walk_settings& s) { s.outliers = 3, s.lost = 2; });
  refused([](walk_settings& s) { s.missing = -0.1; });
  refused([](walk_settings& s) { s.missing = 1.1; });
  refused([](walk_settings& s) { s.missing = std::nan(""); });
  refused([](walk_settings& s) { s.rate = 49; });
  refused([](walk_settings& s) { s.rate = 1001; });
}

TEST(WalkModel, TheFewestStridesThatASettingTakesAreEnough) {
  for (int turns = 0; turns <= 5; ++turns) {
    for (int pauses = turns == 0 ? 1 : 0; pauses <= 5; ++pauses) {
      walk_settings settings;
      settings.turns = turns;
      settings.pauses = pauses;
      settings.strides = (pauses + 1) * 6 * ((turns + pauses) / (pauses + 1) + 1);
      settings.lost = settings.strides / 10;
      const walk walk = make_walk(settings);
      EXPECT_EQ(excluded(walk, analysed_cycles::right, "turn").size(),
                3U * static_cast<unsigned>(turns));
      EXPECT_EQ(excluded(walk, analysed_cycles::right, "start").size(),
                static_cast<unsigned>(pauses) + 1U);
      --settings.strides;
      settings.lost = 0;
      EXPECT_THROW(make_walk(settings), std::invalid_argument);
    }
  }
}

// ---------------------------------------------------------------- the same walk everywhere

TEST(WalkModel, TheSameSeedMakesTheSameWalkAndAnotherSeedAnother) {
  walk_settings settings = eventful_walk();
  const std::string once = bytes_of(make_walk(settings));
  EXPECT_TRUE(bytes_of(make_walk(settings)) == once);
  settings.seed = 2;
  EXPECT_FALSE(bytes_of(make_walk(settings)) == once);
}

TEST(WalkModel, EveryCompilerMakesTheSameWalk) {
  walk_settings settings = eventful_walk();
  settings.strides = 10'000;
  settings.missing = 0.01;
  std::uint64_t digest = 0xcbf29ce484222325U;  // FNV-1a
  for (const char c : bytes_of(make_walk(settings))) {
    digest = (digest ^ static_cast<unsigned char>(c)) * 0x100000001b3U;
  }
  EXPECT_EQ(digest, 7851950531310859003U);
}

TEST(RandomNumbers, UniformOnesAreTheUpper53BitsOfTheEnginesNumbers) {
  gait_walk::random_numbers random(std::mt19937_64::default_seed);
  for (int i = 1; i < 10'000; ++i) {
    random.uniform();
  }
  // The C++ standard states the engine's 10000th number.
  EXPECT_EQ(random.uniform(), std::ldexp(static_cast<double>(9981545732273789042U >> 11U), -53));
}

TEST(RandomNumbers, NormalOnesHaveMeanZeroDeviationOneAndTheTailsOfTheNormalDistribution) {
  gait_walk::random_numbers random(1);
  std::vector<double> x(100'000);
  std::generate(x.begin(), x.end(), [&] { return random.normal(); });
  const auto beyond =
      std::count_if(x.begin(), x.end(), [](double z) { return std::abs(z) > 1.959963984540054; });
  EXPECT_NEAR(mean(x), 0.0, 0.015);
  EXPECT_NEAR(deviation(x), 1.0, 0.01);
  EXPECT_NEAR(static_cast<double>(beyond) / 100'000.0, 0.05, 0.003);
}

// ---------------------------------------------------------------- folders

TEST(WalkModel, ReadingAWrittenWalkGivesAnEqualOne) {
  const temporary_folder folder;
  walk_settings settings = eventful_walk();
  settings.missing = 0.05;
  settings.rate = 300;
  for (const worn_on feet : {worn_on::both, worn_on::left, worn_on::right}) {
    settings.feet = feet;
    settings.name = "walk" + std::to_string(static_cast<int>(feet));
    const walk made = make_walk(settings);
    write_walk_folder(made, folder / settings.name);
    const gait_walk::read_result read = gait_walk::read_walk_folder(folder / settings.name);
    EXPECT_TRUE(read.warnings.empty());
    EXPECT_EQ(read.walk.name, made.name);
    EXPECT_TRUE(bytes_of(read.walk) == bytes_of(made));
  }
}

TEST(WalkModel, NumbersAreRoundedToFewDigits) {
  const temporary_folder folder;
  write_walk_folder(make_walk(eventful_walk()), folder / "walk");
  std::istringstream rows(file_text(folder / "walk" / "foot_cycles.csv"));
  std::string row;
  std::getline(rows, row);
  while (std::getline(rows, row)) {
    std::istringstream cells(row);
    for (std::string cell; std::getline(cells, cell, ',');) {
      EXPECT_LE(cell.size(), 7U) << cell;
    }
  }
}

// ---------------------------------------------------------------- statistics of a modelled walk

gait_result analysed(const walk& walk, analysed_cycles asked_for, gait_walk::analysis& analysis) {
  analysis = gait_walk::make_analysis(walk, asked_for);
  gait_generate_statistics(analysis.result, {});
  return analysis.result;
}

walk example(const char* name) {
  return gait_walk::read_walk_folder(fs::path(GAIT_EXAMPLE_WALKS) / name).walk;
}

TEST(ExampleWalks, TheWalkOfBothFeetHasNoQualityFlagAndEveryParameter) {
  gait_walk::analysis analysis;
  const gait_result result = analysed(example("two_feet_turn"), analysed_cycles::feet, analysis);
  EXPECT_EQ(result.quality_flags, 0);
  EXPECT_EQ(result.statistics.parameters.size(), 2U * 28U + 1U);
  for (const auto& [key, parameter] : result.statistics.parameters) {
    EXPECT_TRUE(parameter.valid) << key;
  }
}

TEST(ExampleWalks, TheWalkOfBothFeetIsPlausible) {
  gait_walk::analysis analysis;
  const gait_result result = analysed(example("two_feet_turn"), analysed_cycles::feet, analysis);
  const auto& parameters = result.statistics.parameters;
  for (const std::string side : {"_L", "_R"}) {
    EXPECT_NEAR(parameters.at("speed" + side).mean, 1.26, 0.1);
    EXPECT_GT(parameters.at("gct" + side).cv, 1.0);
    EXPECT_LT(parameters.at("gct" + side).cv, 3.0);
    for (const char* key :
         {"gct", "swing", "stance", "slength", "speed", "Step Time", "StepLength"}) {
      EXPECT_NEAR(parameters.at(key + side).asymmetry, 1.0, 0.05) << key;
    }
  }
  EXPECT_LT(std::abs(parameters.at("asymmetry").mean), 3.0);
}

TEST(ExampleWalks, TheWalkOfBothFeetHasATurnAStumbleStartsStopsAndStridesWithoutPartner) {
  const walk walk = example("two_feet_turn");
  EXPECT_EQ(walk.feet.size(), 40U);
  EXPECT_EQ(cycles_of(walk, side::left).size(), 39U);
  EXPECT_EQ(cycles_of(walk, side::right).size(), 39U);
  for (const analysed_cycles cycles :
       {analysed_cycles::feet, analysed_cycles::left, analysed_cycles::right}) {
    for (const char* reason : {"turn", "outlier", "start", "stop"}) {
      EXPECT_FALSE(excluded(walk, cycles, reason).empty()) << reason;
    }
  }
}

TEST(ExampleWalks, EachFootCanBeAnalysedAlone) {
  const walk both = example("two_feet_turn");
  for (const side side : {side::left, side::right}) {
    gait_walk::analysis analysis;
    const gait_result result = analysed(both, alone(side), analysis);
    EXPECT_EQ(result.quality_flags, 0);
    EXPECT_EQ(result.statistics.parameters.size(), 27U);
    EXPECT_EQ(result.statistics.info.cycle_count, 39);
    EXPECT_EQ(result.statistics.info.excluded_2_count, 4U);
    EXPECT_NEAR(result.statistics.parameters.at("speed").mean, 1.26, 0.1);
  }
}

TEST(ExampleWalks, TheShortWalkOfOneFootIsAnalysedWithoutStartAndStop) {
  gait_walk::analysis analysis;
  const gait_result result = analysed(example("one_foot_short"), analysed_cycles::feet, analysis);
  EXPECT_EQ(result.quality_flags, 0);
  EXPECT_EQ(result.statistics.info.cycle_count, 14);
  EXPECT_EQ(result.statistics.info.included_count, 12);
  EXPECT_FALSE(result.statistics.parameters.at("Step Time").valid);
  EXPECT_NEAR(result.statistics.parameters.at("gct").mean, 1.08, 0.05);
}

/// The arguments of the command in a README.
std::string command_in(const fs::path& readme) {
  const std::string text = file_text(readme);
  const std::string prompt = "    gait-make-walk ";
  const auto begin = text.find(prompt);
  EXPECT_NE(begin, std::string::npos) << readme;
  return text.substr(begin + prompt.size(), text.find('\n', begin) - begin - prompt.size());
}

TEST(ExampleWalks, TheCommandInEachReadmeMakesItsTablesAgainToTheBit) {
  for (const char* name : {"two_feet_turn", "one_foot_short"}) {
    const temporary_folder folder;
    const fs::path original = fs::path(GAIT_EXAMPLE_WALKS) / name;
    const run_result result = run(folder.path(), command_in(original / "README.md"));
    ASSERT_EQ(result.exit_code, 0) << result.output;
    for (const std::string& table : tables) {
      EXPECT_EQ(file_text(folder / name / table), file_text(original / table))
          << name << '/' << table;
    }
  }
}

TEST(ExampleWalks, EachReadmeSaysThatTheWalkIsModelled) {
  for (const char* name : {"two_feet_turn", "one_foot_short"}) {
    const std::string readme = file_text(fs::path(GAIT_EXAMPLE_WALKS) / name / "README.md");
    EXPECT_NE(readme.find("modelled, not measured"), std::string::npos) << name;
  }
}

// ---------------------------------------------------------------- the program

TEST(MakeWalkProgram, WritesTheWalkOfItsOptions) {
  const temporary_folder folder;
  const run_result result =
      run(folder.path(),
          "some/walk --strides 60 --seed 7 --feet both --turns 2 --pauses 1 --outliers 1 "
          "--lost 2 --missing 0.1 --rate 200");
  ASSERT_EQ(result.exit_code, 0) << result.output;
  EXPECT_EQ(result.output, "");
  walk_settings settings;
  settings.name = "walk";
  settings.strides = 60;
  settings.seed = 7;
  settings.turns = 2;
  settings.pauses = 1;
  settings.outliers = 1;
  settings.lost = 2;
  settings.missing = 0.1;
  settings.rate = 200;
  EXPECT_TRUE(bytes_of(gait_walk::read_walk_folder(folder / "some" / "walk").walk) ==
              bytes_of(make_walk(settings)));
}

TEST(MakeWalkProgram, RefusesAFolderThatIsThereUnlessForced) {
  const temporary_folder folder;
  ASSERT_EQ(run(folder.path(), "walk").exit_code, 0);
  const std::string before = file_text(folder / "walk" / "foot_cycles.csv");

  const run_result refused = run(folder.path(), "walk --seed 2");
  EXPECT_EQ(refused.exit_code, 1);
  EXPECT_EQ(refused.output, "gait-make-walk: walk is there already (--force writes over it)\n");
  EXPECT_EQ(file_text(folder / "walk" / "foot_cycles.csv"), before);

  EXPECT_EQ(run(folder.path(), "walk --seed 2 --force").exit_code, 0);
  EXPECT_NE(file_text(folder / "walk" / "foot_cycles.csv"), before);
}

TEST(MakeWalkProgram, AnswersBadUsageWithCodeTwoAndWritesNothing) {
  const temporary_folder folder;
  for (const std::string arguments :
       {"", "walk --strides many", "walk --strides 0", "walk --feet three", "walk --turns 40",
        "walk --missing 2", "walk --no-such-option"}) {
    const run_result result = run(folder.path(), arguments);
    EXPECT_EQ(result.exit_code, 2) << arguments;
    EXPECT_FALSE(result.output.empty()) << arguments;
    EXPECT_FALSE(fs::exists(folder / "walk")) << arguments;
  }
}

TEST(MakeWalkProgram, SaysHowManyStridesTheTurnsNeed) {
  const temporary_folder folder;
  EXPECT_EQ(run(folder.path(), "walk --turns 40").output,
            "gait-make-walk: that many turns and pauses need at least 246 strides\n");
}

TEST(MakeWalkProgram, NamesEveryOptionInItsHelp) {
  const temporary_folder folder;
  const run_result result = run(folder.path(), "--help");
  EXPECT_EQ(result.exit_code, 0);
  for (const char* option :
       {"FOLDER", "--strides", "--seed", "--feet", "--turns", "--pauses", "--outliers", "--lost",
        "--missing", "--rate", "--force", "both, left or right", "modelled, not measured"}) {
    EXPECT_NE(result.output.find(option), std::string::npos) << option;
  }
}

}  // namespace
