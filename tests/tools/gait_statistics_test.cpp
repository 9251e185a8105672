// What gait-statistics writes as JSON, against the values that the library computes of the same
// walk. Its CSV is compared with its JSON in gait_statistics_test.py.

#include "analysis.h"
#include "bits.h"
#include "temporary_folder.h"
#include "walk.h"
#include "walk_folder.h"

#include <gait/catalogue.h>
#include <gait/gait.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using gait_test::SameBits;
using gait_walk::analysed_cycles;
using nlohmann::json;

std::string run_program(const std::string& arguments) {
  std::FILE* pipe = popen((std::string(GAIT_STATISTICS_PROGRAM) + " " + arguments).c_str(), "r");
  std::string text;
  std::array<char, 4096> buffer{};
  for (std::size_t n = 0; (n = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0;) {
    text.append(buffer.data(), n);
  }
  EXPECT_EQ(pclose(pipe), 0) << arguments;
  return text;
}

// --- A walk with numbers that need all of their digits

class random_walk {
public:
  explicit random_walk(unsigned number) : random_(number) {}

  gait_walk::walk both_feet(int cycles) {
    gait_walk::walk walk;
    walk.left = foot(cycles);
    walk.right = foot(cycles);
    for (int i = 0; i < cycles; ++i) {
      gait_walk::feet_cycle cycle;
      cycle.gct = measured(1.0);
      cycle.ds = measured(25.0);
      cycle.right_index = i;
      cycle.left_index = i % 7 == 3 ? std::nullopt : std::optional(i);
      walk.feet.push_back(cycle);
    }
    walk.exclusions = {
        {gait_walk::analysed_cycles::feet, gait_walk::exclusion_list::excluded_1, 2, "turn"},
        {gait_walk::analysed_cycles::feet, gait_walk::exclusion_list::excluded_2_fallback, 5,
         "stop"},
        {gait_walk::analysed_cycles::left, gait_walk::exclusion_list::excluded_2, 1, "start"}};
    return walk;
  }

private:
  /// About `typical`, and missing now and then.
  double measured(double typical) {
    return std::uniform_int_distribution(0, 9)(random_) == 0
               ? gait_missing
               : typical * std::uniform_real_distribution(0.8, 1.2)(random_);
  }

  gait_walk::foot foot(int cycles) {
    gait_walk::foot foot;
    foot.sampling_rate = 128;
    foot.signal_1_samples = 100000;
    foot.signal_2_samples = 99999;
    for (int i = 0; i < cycles; ++i) {
      gait_foot_cycle cycle;
      cycle.index = i;
      cycle.first_sample = 150 * i;
      cycle.last_sample = 150 * i + 149;
      gait_catalogue::for_each_row([&](const auto& row) {
        if constexpr (std::is_convertible_v<decltype(row.source), double gait_foot_cycle::*>) {
          cycle.*row.source = measured(30.0);
        }
      });
      cycle.strike_eversion = gait_missing;
      foot.cycles.push_back(cycle);
    }
    return foot;
  }

  std::mt19937 random_;
};

/// A walk in a folder, what the library computes of it, and what the program writes of it.
class ProgramOutput : public testing::TestWithParam<std::pair<const char*, analysed_cycles>> {
protected:
  ProgramOutput() : walk_(random_walk(20240531).both_feet(40)) {
    gait_walk::write_walk_folder(walk_, folder_ / "random");
    analysis_ = gait_walk::make_analysis(walk_, GetParam().second);
    gait_generate_statistics(analysis_.result, {settings_value});
  }

  std::string run(const std::string& format) const {
    return run_program("--settings-value 40.1 --format " + format + " " + GetParam().first + " " +
                       (folder_ / "random").string());
  }
  const gait_result& result() const { return analysis_.result; }
  const gait_statistics_parameter& parameter(const std::string& key) const {
    return result().statistics.parameters.at(key);
  }

  json as_computed() const { return json::parse(run("json")).at("walks").at(0).at("as_computed"); }

  static constexpr float settings_value = 40.1F;

private:
  tool_tests::temporary_folder folder_;
  gait_walk::walk walk_;
  gait_walk::analysis analysis_;
};

INSTANTIATE_TEST_SUITE_P(Modes, ProgramOutput,
                         testing::Values(std::pair("", analysed_cycles::feet),
                                         std::pair("--foot left", analysed_cycles::left),
                                         std::pair("--foot right", analysed_cycles::right)),
                         [](const auto& mode) {
                           return mode.param.second == analysed_cycles::feet   ? "BothFeet"
                                  : mode.param.second == analysed_cycles::left ? "LeftFoot"
                                                                               : "RightFoot";
                         });

/// JSON has no word for a number that is not finite.
void expect_number(const json& actual, double expected, const std::string& what) {
  if (!std::isfinite(expected)) {
    EXPECT_TRUE(actual.is_null()) << what << " is " << actual;
  } else {
    ASSERT_TRUE(actual.is_number()) << what << " is " << actual;
    EXPECT_THAT(actual.get<double>(), SameBits(expected)) << what;
  }
}

TEST_P(ProgramOutput, CarriesEveryFieldOfTheAccountingAsJsonToTheBit) {
  const json info = as_computed().at("info");
  const gait_statistics_info& expected = result().statistics.info;

  EXPECT_EQ(info.size(), 20U);
  EXPECT_EQ(info.at("cycle_count"), expected.cycle_count);
  EXPECT_EQ(info.at("excluded_count"), expected.excluded_count);
  EXPECT_EQ(info.at("cycles").get<std::list<int>>(), expected.cycles);
  EXPECT_EQ(info.at("excluded_2_fallback_count"), expected.excluded_2_fallback_count);
  EXPECT_EQ(info.at("excluded_2_count"), expected.excluded_2_count);
  EXPECT_EQ(info.at("excluded_1_fallback_count"), expected.excluded_1_fallback_count);
  EXPECT_EQ(info.at("excluded_1_count"), expected.excluded_1_count);
  EXPECT_EQ(info.at("included_count"), expected.included_count);
  const std::map<std::string, double> numbers = {
      {"recording_duration", expected.recording_duration},
      {"duration", expected.duration},
      {"excluded_1_fallback_gct_sum", expected.excluded_1_fallback_gct_sum},
      {"excluded_2_gct_sum", expected.excluded_2_gct_sum},
      {"included_gct_sum", expected.included_gct_sum},
      {"included_distance", expected.included_distance},
      {"total_distance", expected.total_distance},
      {"excluded_2_fallback_duration", expected.excluded_2_fallback_duration},
      {"excluded_2_duration", expected.excluded_2_duration},
      {"excluded_1_fallback_duration", expected.excluded_1_fallback_duration},
      {"excluded_1_duration", expected.excluded_1_duration},
      {"included_duration", expected.included_duration},
  };
  for (const auto& [name, value] : numbers) {
    expect_number(info.at(name), value, name);
  }
}

TEST_P(ProgramOutput, CarriesEveryFieldOfEveryParameterAsJsonToTheBit) {
  const json parameters = as_computed().at("parameters");

  ASSERT_EQ(parameters.size(), result().statistics.parameters.size());
  for (const auto& [key, record] : result().statistics.parameters) {
    const json& actual = parameters.at(key);
    EXPECT_EQ(actual.at("valid"), record.valid) << key;
    EXPECT_EQ(actual.at("description"), record.description) << key;
    EXPECT_EQ(actual.at("unit"), record.unit) << key;
    EXPECT_EQ(actual.at("decimals"), record.decimals) << key;
    EXPECT_EQ(actual.at("asymmetry_enabled"), record.asymmetry_enabled) << key;
    expect_number(actual.at("mean"), record.mean, key + " mean");
    expect_number(actual.at("median"), record.median, key + " median");
    expect_number(actual.at("std"), record.std, key + " std");
    expect_number(actual.at("iqr"), record.iqr, key + " iqr");
    expect_number(actual.at("min"), record.min, key + " min");
    expect_number(actual.at("max"), record.max, key + " max");
    expect_number(actual.at("cv"), record.cv, key + " cv");
    expect_number(actual.at("asymmetry"), record.asymmetry, key + " asymmetry");
  }
}

TEST_P(ProgramOutput, CarriesTheQualityFlagsAsJson) {
  const json walk = json::parse(run("json")).at("walks").at(0);

  ASSERT_NE(result().quality_flags & gait_quality_setting, 0);
  EXPECT_EQ(walk.at("quality_flags"), result().quality_flags);
  std::size_t raised = 0;
  for (int flags = result().quality_flags; flags != 0; flags >>= 1) {
    raised += flags & 1;
  }
  EXPECT_EQ(walk.at("quality_flags_in_words").size(), raised);
  EXPECT_EQ(walk.at("settings_value").get<float>(), settings_value);
}

}  // namespace
