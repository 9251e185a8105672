// What the reports say of a walk beside its figures, which outputs_agree.py compares: what somebody
// wrote down about it, an unknown length, a measured -1, what each exclusion does, and the lines on
// which a finding stands.

#include "csv_output.h"
#include "finding_text.h"
#include "json_output.h"
#include "number.h"
#include "text_report.h"
#include "walk_model.h"
#include "walk_statistics.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <cstddef>
#include <functional>
#include <iterator>
#include <numeric>
#include <optional>
#include <string>
#include <vector>

namespace {

using gait_report::csv_table;
using gait_report::walk_statistics;
using gait_walk::analysed_cycles;
using testing::HasSubstr;

/// A sound walk of twenty strides a foot, on lines as the program writes them, after a change.
walk_statistics report_of(const std::function<void(gait_walk::walk&)>& change,
                          analysed_cycles asked_for = analysed_cycles::feet) {
  gait_walk::walk_settings settings;
  settings.strides = 20;
  gait_walk::walk walk = gait_walk::make_walk(settings);
  walk.name = "walk";
  walk.exclusions.clear();
  const auto number_lines = [](std::size_t count, std::size_t first) {
    std::vector<std::size_t> lines(count);
    std::iota(lines.begin(), lines.end(), first);
    return lines;
  };
  walk.left->lines = number_lines(20, 2);
  walk.right->lines = number_lines(20, 22);
  walk.feet_lines = number_lines(walk.feet.size(), 2);
  change(walk);
  walk_statistics statistics = gait_report::prepare_walk(std::move(walk), asked_for, 0.0F);
  gait_report::compute_statistics(statistics);
  return statistics;
}

std::string text_of(const walk_statistics& walk) { return text_report(walk, {400, false}); }

std::string finding_in(const walk_statistics& walk) {
  EXPECT_EQ(walk.findings.size(), 1U);
  return walk.findings.empty() ? "" : in_words(walk.findings.front(), walk);
}

/// Sets the swing of some strides to what no walk has.
void break_swing(gait_walk::foot& foot, std::size_t strides) {
  auto stride = foot.cycles.begin();
  for (std::size_t i = 0; i < strides; ++i, ++stride) {
    stride->swing = 150.0;
  }
}

TEST(Report, ShowsWhatSomebodyWroteDownAboutTheWalk) {
  const walk_statistics walk = report_of([](auto& w) {
    w.about = {{"date", "2024-05-31"}, {"derived", "gct, from \"hs\""}, {"derived", "two\x1b"}};
  });
  EXPECT_THAT(text_of(walk), HasSubstr("\n\n  date: 2024-05-31\n  derived: gct, from \"hs\"\n"
                                       "  derived: two?\n  Both feet, sampled at"));
  EXPECT_THAT(
      csv_rows(csv_table::parameters, walk),
      HasSubstr(",\"date: 2024-05-31; derived: gct, from \"\"hs\"\"; derived: two\x1b\",\n"));
  EXPECT_EQ(
      json_walk(walk)["about"].dump(),
      R"([{"name":"date","value":"2024-05-31"},)"
      R"({"name":"derived","value":"gct, from \"hs\""},{"name":"derived","value":"two\u001b"}])");
}

TEST(Report, SaysThatALengthIsUnknown) {
  const auto forget_left = [](auto& w) {
    w.left->signal_1_samples.reset();
    w.left->signal_2_samples.reset();
  };
  for (const auto analysed : {analysed_cycles::feet, analysed_cycles::left}) {
    const walk_statistics walk = report_of(forget_left, analysed);
    EXPECT_THAT(text_of(walk), testing::ContainsRegex("\n  Recording +unknown\n"));
    EXPECT_TRUE(json_walk(walk)["accounting"]["recording_duration"].is_null());
  }
  const walk_statistics right = report_of(forget_left, analysed_cycles::right);
  EXPECT_THAT(text_of(right), testing::Not(HasSubstr("unknown")));
  EXPECT_GT(json_walk(right)["accounting"]["recording_duration"], 10.0);
}

TEST(Report, KnowsTheLengthOfASignalAlone) {
  const walk_statistics walk = report_of([](auto& w) { w.left->signal_1_samples.reset(); });
  EXPECT_GT(json_walk(walk)["accounting"]["recording_duration"], 10.0);
}

TEST(Report, ShowsAMeasuredMinusOneAsWhatItIs) {
  const double kept = std::nextafter(-1.0, 0.0);
  const walk_statistics walk =
      report_of([&](auto& w) { w.left->cycles.front().hsp = kept; }, analysed_cycles::left);
  const nlohmann::ordered_json json = json_walk(walk);
  const nlohmann::ordered_json& angle = json["parameters"]["HSP"];
  EXPECT_EQ(angle["n"], 20);
  EXPECT_EQ(angle["min"], -1.0);
  EXPECT_EQ(json["strides"][0]["values"]["HSP"][0], -1.0);
  EXPECT_EQ(json["as_computed"]["parameters"]["HSP"]["min"], kept);
  EXPECT_THAT(csv_rows(csv_table::parameters, walk),
              testing::ContainsRegex("\"Strike angle\",\"degree\",20,.*,-1,2[0-9.]+,"));
  EXPECT_EQ(gait_report::shortest(kept), "-1");
  EXPECT_EQ(gait_report::rounded(kept, 17), "-1.00000000000000000");
  EXPECT_EQ(gait_report::shortest(std::nextafter(kept, 0.0)), "-0.9999999999999998");
}

// --- Exclusions

using gait_walk::exclusion_list;

/// Exclusions of two-feet cycles that do everything an exclusion may do, in the table's order.
void exclude_in_every_way(gait_walk::walk& walk) {
  const auto exclude = [&](exclusion_list list, int index, const char* reason) {
    walk.exclusions.push_back({analysed_cycles::feet, list, index, reason});
  };
  exclude(exclusion_list::excluded_2, 3, "stop");
  exclude(exclusion_list::excluded_2_fallback, 5, "last");
  exclude(exclusion_list::excluded_1_fallback, 3, "slow");
  exclude(exclusion_list::excluded_2, 4, "");
  exclude(exclusion_list::excluded_2, 99, "stop");
  exclude(exclusion_list::excluded_2, 3, "stop");
  walk.exclusions.push_back({analysed_cycles::left, exclusion_list::excluded_1, 1, "left"});
}

TEST(Exclusions, AreListedWithWhatEachDoes) {
  const nlohmann::ordered_json json = json_walk(report_of(exclude_in_every_way));
  std::string effects;
  for (const auto& exclusion : json["exclusions"]) {
    effects += exclusion["list"].get<std::string>() + " " + exclusion["index"].dump() + " " +
               exclusion["effect"].get<std::string>() + "\n";
  }
  EXPECT_EQ(effects,
            "excluded_1_fallback 3 accounted_for\n"
            "excluded_2 3 left_out\n"
            "excluded_2 4 left_out\n"
            "excluded_2 99 outside\n"
            "excluded_2 3 already_left_out\n"
            "excluded_2_fallback 5 nothing\n");
}

TEST(Exclusions, OfAStrideBeginWithTheOneThatTookItOut) {
  const walk_statistics walk = report_of(exclude_in_every_way);
  const nlohmann::ordered_json cycles = json_walk(walk)["two_feet_cycles"];
  EXPECT_EQ(cycles["exclusions"][3].dump(), "[1,0,4]");
  EXPECT_EQ(cycles["reason"][3], "stop");
  EXPECT_EQ(cycles["status"][4], "left_out");
  EXPECT_TRUE(cycles["reason"][4].is_null());
  EXPECT_EQ(cycles["status"][5], "included");
  EXPECT_THAT(csv_rows(csv_table::strides, walk),
              HasSubstr("\"left_out\",FALSE,\"excluded_2\",\"stop\","
                        "\"excluded_1_fallback: slow; excluded_2: stop\",3,"));
}

TEST(Exclusions, ThatTakeNothingOutLeaveAStrideIn) {
  const walk_statistics walk = report_of(
      [](auto& w) {
        w.exclusions.push_back(
            {analysed_cycles::left, exclusion_list::excluded_1_fallback, 2, "outlier"});
      },
      analysed_cycles::left);
  const nlohmann::ordered_json json = json_walk(walk);
  EXPECT_EQ(json["strides"][0]["status"][2], "included");
  EXPECT_TRUE(json["strides"][0]["reason"][2].is_null());
  EXPECT_EQ(json["strides"][0]["exclusions"][2].dump(), "[0]");
  EXPECT_THAT(csv_rows(csv_table::strides, walk),
              HasSubstr("\"included\",TRUE,,,\"excluded_1_fallback: outlier\","));
}

// --- Findings

TEST(Finding, NamesTheLineOfAStride) {
  const walk_statistics walk = report_of([](auto& w) { break_swing(*w.left, 1); });
  EXPECT_THAT(finding_in(walk), HasSubstr("found 150, expected 0 to 100 %, in 1 of 40 included "
                                          "strides (line 2). Usually: "));
  EXPECT_EQ(json_walk(walk)["findings"][0]["places"].dump(),
            R"([{"foot":"left","index":0,"line":2}])");
  EXPECT_THAT(csv_rows(csv_table::parameters, walk), HasSubstr(",,\"swing_bounds\"\n"));
}

TEST(Finding, NamesFiveLinesAndCountsTheOthers) {
  const walk_statistics five = report_of([](auto& w) { break_swing(*w.left, 5); });
  EXPECT_THAT(finding_in(five), HasSubstr("(lines 2, 3, 4, 5, 6). Usually"));
  const walk_statistics more = report_of([](auto& w) {
    break_swing(*w.left, 5);
    break_swing(*w.right, 2);
  });
  EXPECT_THAT(finding_in(more), HasSubstr("(lines 22, 23, 2, 3, 4 and 2 more). Usually"));
}

TEST(Finding, NamesStridesWhereTheWalkWasNotReadFromTables) {
  const walk_statistics walk = report_of([](auto& w) {
    break_swing(*w.left, 1);
    break_swing(*w.right, 1);
    w.left->lines.clear();
    w.right->lines.clear();
  });
  EXPECT_THAT(finding_in(walk), HasSubstr("in 2 of 40 included strides (right 0, left 0). "));
  EXPECT_TRUE(json_walk(walk)["findings"][0]["places"][0]["line"].is_null());
}

TEST(Finding, NamesTheLineOfACycleOfBothFeet) {
  const walk_statistics walk = report_of([](auto& w) { w.feet[3].ds = 120.0; });
  EXPECT_THAT(finding_in(walk),
              HasSubstr("in 1 of 19 included cycles of both feet (line 5). Usually"));
  EXPECT_EQ(json_walk(walk)["findings"][0]["places"].dump(),
            R"([{"foot":null,"index":3,"line":5}])");
}

TEST(Finding, OfAWholeColumnNamesNoLineAndGuesses) {
  const walk_statistics walk = report_of([](auto& w) {
    for (auto* foot : {&*w.left, &*w.right}) {
      for (auto& stride : foot->cycles) {
        stride.slength *= 100.0;
      }
    }
  });
  EXPECT_THAT(
      finding_in(walk),
      testing::MatchesRegex(
          "column slength: slength_median: found a median of [0-9.]+, expected 0.1 to 2.8 m, in 40 "
          "included strides: centimetres\\? Usually: another unit, or another column\\."));
}

}  // namespace
