// A sound walk breaks no check; altered in one way, it breaks that check and only what must follow.

#include "walk_checks.h"

#include "analysis.h"
#include "bounds.h"
#include "stride_checks.h"
#include "tally.h"
#include "values.h"
#include "walk_model.h"

#include <gait/generate_statistics.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>
#include <limits>
#include <list>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

using cycle = gait_foot_cycle;
using gait_checks::alarm;
using gait_checks::finding;
using names = std::set<std::string>;
using testing::ElementsAre;
using testing::HasSubstr;

/// A walk of sixty strides a foot with a turn, of which every value was measured.
class sound_walk {
public:
  explicit sound_walk(int rate = 100, int lost = 0) {
    gait_walk::walk_settings settings;
    settings.strides = 60;
    settings.rate = rate;
    settings.lost = lost;
    analysis_ = gait_walk::make_analysis(gait_walk::make_walk(settings));
  }

  gait_result& result() { return analysis_.result; }
  std::list<cycle>& right() { return result().right_foot->cycles; }
  std::list<cycle>& left() { return result().left_foot->cycles; }
  std::list<gait_feet_cycle>& feet() { return result().feet_result.cycles; }

  /// An included stride of the right foot.
  cycle& right_stride() { return *std::next(right().begin(), 8); }

  template <class Alter>
  void each_stride(Alter alter) {
    for (auto* strides : {&right(), &left()}) {
      for (cycle& stride : *strides) {
        alter(stride);
      }
    }
  }

  void scale(double cycle::*field, double factor) {
    each_stride([&](cycle& stride) {
      if (!gait_is_missing(stride.*field)) {
        stride.*field *= factor;
      }
    });
  }

  /// Links right strides with the left ones that come so many strides later.
  void shift_left_links(int by) {
    for (gait_feet_cycle& c : feet()) {
      const int index = c.left_cycle->index + by;
      const bool is_there = index >= 0 && index < static_cast<int>(left().size());
      c.left_cycle = is_there ? &*std::next(left().begin(), index) : nullptr;
    }
  }

  void exclude_all_but(int first, int count) {
    result().excluded_1.clear();
    result().excluded_2.clear();
    for (int index = 0; index < static_cast<int>(feet().size()); ++index) {
      if (index < first || index >= first + count) {
        result().excluded_1.push_back(index);
      }
    }
  }

  std::vector<gait_checks::note> notes() {
    findings();
    return gait_checks::notes_on(result(), result().right_foot, result().left_foot);
  }

  std::vector<finding> findings(const std::vector<std::string>& without = {}) {
    result().statistics = {};
    gait_generate_statistics(result(), {});
    return gait_checks::check_walk(result(), result().right_foot, result().left_foot, without);
  }

private:
  gait_walk::analysis analysis_;
};

names names_of(const std::vector<finding>& findings) {
  names all;
  for (const finding& found : findings) {
    all.insert(found.check);
  }
  return all;
}

/// One way to spoil a walk, and the checks that it breaks.
struct alteration {
  const char* what;
  std::function<void(sound_walk&)> alter;
  names broken;
};

const std::vector<alteration>& alterations() {
  static const std::vector<alteration> all = {
      {"nothing", [](sound_walk&) {}, {}},
      {"a swing of two points more",
       [](sound_walk& w) { w.right_stride().swing += 2.0; },
       {"swing_and_stance"}},
      {"one step over a pause",
       [](sound_walk& w) { w.right_stride().step_time = 1.2 * w.right_stride().gct; },
       {}},
      {"swing and stance swapped",
       [](sound_walk& w) { w.each_stride([](cycle& c) { std::swap(c.swing, c.stance); }); },
       {"contact_and_stance", "double_support_and_stances"}},
      {"a duration that its samples do not have",
       [](sound_walk& w) { w.right_stride().gct += 0.02; },
       {"duration_and_samples"}},
      {"another sampling rate",
       [](sound_walk& w) {
         for (auto& foot : w.result().foot_results) {
           foot.recording->sampling_rate = 128;
         }
       },
       {"duration_and_samples", "heel_strike_and_sample"}},
      {"the heel strike that ends the stride",
       [](sound_walk& w) { w.each_stride([](cycle& c) { c.hs += c.gct; }); },
       {"heel_strike_and_sample"}},
      {"hs in milliseconds",
       [](sound_walk& w) { w.scale(&cycle::hs, 1000.0); },
       {"heel_strike_and_sample"}},
      {"cadence of the step time",
       [](sound_walk& w) { w.scale(&cycle::cadence, 1.05); },
       {"cadence_and_duration"}},
      {"strides as steps",
       [](sound_walk& w) { w.scale(&cycle::slength, 0.5); },
       {"speed_and_stride_length", "step_lengths_of_a_stride"}},
      {"one speed of another stretch",
       [](sound_walk& w) { w.right_stride().speed *= 1.1; },
       {"speed_and_stride_length"}},
      {"one swing time as contact",
       [](sound_walk& w) { w.right_stride().contact *= 0.6; },
       {"contact_and_stance"}},
      {"a phase of the gait cycle",
       [](sound_walk& w) { w.scale(&cycle::ldr, 0.6); },
       {"phases_of_stance"}},
      {"one path shorter than its stride",
       [](sound_walk& w) { w.right_stride().path_length = 90.0; },
       {"path_and_stride_length"}},
      {"three steps as long as their strides",
       [](sound_walk& w) {
         for (cycle& c : w.right()) {
           c.step_time = 1.2 * c.gct;
         }
       },
       {"step_and_stride_time", "step_times_of_a_stride"}},
      {"a foot that swings slower than its stride",
       [](sound_walk& w) { w.right_stride().mtc_speed = 0.9 * w.right_stride().speed; },
       {"swing_speed_and_velocity"}},
      {"toe clearances swapped",
       [](sound_walk& w) { std::swap(w.right_stride().min_tc, w.right_stride().max_tc2); },
       {"toe_clearances"}},
      {"a toe that rises less than it was lifted",
       [](sound_walk& w) { w.right_stride().min_tc = w.right_stride().max_tc1 + 0.01; },
       {"toe_clearances"}},
      {"rows in reverse",
       [](sound_walk& w) {
         w.right().reverse();
         int index = 0;
         for (cycle& c : w.right()) {
           c.index = index++;
         }
         for (gait_feet_cycle& c : w.feet()) {
           const int same_index = 59 - c.right_cycle->index;
           c.right_cycle = &*std::next(w.right().begin(), same_index);
         }
       },
       {"strides_in_time_order", "linked_strides_overlap", "feet_cycle_duration"}},
      {"a heel strike before the one before",
       [](sound_walk& w) { w.right_stride().hs -= 1.5; },
       {"strides_in_time_order", "heel_strike_and_sample"}},
      {"an excluded stride that opens after the next one",
       [](sound_walk& w) { w.right().front().first_sample += 1000; },
       {"strides_in_time_order"}},
      {"two links exchanged",
       [](sound_walk& w) {
         auto first = std::next(w.feet().begin(), 8);
         std::swap(first->right_cycle, std::next(first)->right_cycle);
         std::swap(first->left_cycle, std::next(first)->left_cycle);
         std::swap(first->gct, std::next(first)->gct);
       },
       {"links_in_order"}},
      {"left links late by a row",
       [](sound_walk& w) { w.shift_left_links(1); },
       {"linked_strides_overlap", "step_times_of_a_stride"}},
      {"left links early by a row",
       [](sound_walk& w) { w.shift_left_links(-1); },
       {"left_opens_within_right", "step_times_of_a_stride"}},
      {"a link taken away",
       [](sound_walk& w) { std::next(w.feet().begin(), 8)->left_cycle = nullptr; },
       {"unlinked_strides"}},
      {"a two-feet cycle of another duration",
       [](sound_walk& w) { std::next(w.feet().begin(), 8)->gct += 0.2; },
       {"feet_cycle_duration"}},
      {"the feet swapped",
       [](sound_walk& w) {
         w.right().swap(w.left());
         for (gait_feet_cycle& c : w.feet()) {
           std::swap(c.right_cycle, c.left_cycle);
         }
       },
       {"left_opens_within_right", "feet_cycle_duration", "step_times_of_a_stride"}},
      {"double support of one phase",
       [](sound_walk& w) {
         for (gait_feet_cycle& c : w.feet()) {
           c.ds *= gait_is_missing(c.ds) ? 1.0 : 0.5;
         }
       },
       {"double_support_and_stances"}},
      {"step times of the step that follows",
       [](sound_walk& w) {
         for (auto* strides : {&w.right(), &w.left()}) {
           for (cycle& c : *strides) {
             c.step_time = std::round(100.0 * (c.gct - c.step_time) * 0.9) / 100.0;
           }
         }
       },
       {"step_times_of_a_stride"}},
      {"step lengths of the other way of measuring",
       [](sound_walk& w) { w.scale(&cycle::step_length, 1.3); },
       {"step_lengths_of_a_stride"}},
      {"a foot whose strides take longer",
       [](sound_walk& w) {
         for (cycle& c : w.left()) {
           c.gct *= 1.2;
         }
       },
       {"durations_of_both_feet", "duration_and_samples", "cadence_and_duration",
        "speed_and_stride_length", "contact_and_stance"}},
      {"a column filled down",
       [](sound_walk& w) { w.each_stride([](cycle& c) { c.peakswing = 400.0; }); },
       {"stuck_column"}},
      {"bounds one sample too long",
       [](sound_walk& w) { w.each_stride([](cycle& c) { ++c.last_sample; }); },
       {"one_sample_too_many"}},
      {"strike angles in radians",
       [](sound_walk& w) { w.scale(&cycle::hsp, 0.0174533); },
       {"angles_in_radians"}},
      {"turning angles in radians",
       [](sound_walk& w) { w.scale(&cycle::ta, 0.0174533); },
       {"angles_in_radians"}},
  };
  return all;
}

TEST(WalkChecks, FindTheOneThingThatWasAltered) {
  for (const alteration& alteration : alterations()) {
    sound_walk walk;
    alteration.alter(walk);
    EXPECT_EQ(names_of(walk.findings()), alteration.broken) << alteration.what;
  }
}

/// Brings a value of one stride, or of the two-feet cycles, somewhere.
void set_one(sound_walk& walk, const gait_checks::bounds& row, double value) {
  if (row.field == nullptr) {
    std::next(walk.feet().begin(), 8)->ds = value;
  } else {
    walk.right_stride().*row.field = value;
  }
}

TEST(WalkChecks, FindEachValueBeyondItsBoundsAndNothingElse) {
  for (const gait_checks::bounds& row : gait_checks::bounds_table()) {
    const std::string name = std::string(row.column) + "_bounds";
    for (const double beyond : {row.of_stride.lowest - 0.5, row.of_stride.highest + 0.5}) {
      sound_walk walk;
      set_one(walk, row, beyond);
      EXPECT_EQ(names_of(walk.findings()), names{name}) << name << " " << beyond;
      EXPECT_EQ(names_of(walk.findings({name})).count(name), 0U);
    }
  }
}

TEST(WalkChecks, FindAStrideOf999Seconds) {
  sound_walk walk;
  walk.right_stride().gct = 999.0;
  EXPECT_EQ(names_of(walk.findings()), names{"gct_bounds"});
}

TEST(WalkChecks, BoundAMedianWithinTheBoundsOfAStride) {
  for (const gait_checks::bounds& row : gait_checks::bounds_table()) {
    EXPECT_TRUE(row.of_stride.holds(row.of_median.lowest)) << row.column;
    EXPECT_TRUE(row.of_stride.holds(row.of_median.highest)) << row.column;
  }
}

TEST(WalkChecks, AcceptTheBoundsThemselves) {
  for (const gait_checks::bounds& row : gait_checks::bounds_table()) {
    for (const double bound : {row.of_stride.lowest, row.of_stride.highest}) {
      sound_walk walk;
      set_one(walk, row, bound);
      EXPECT_EQ(names_of(walk.findings()).count(std::string(row.column) + "_bounds"), 0U)
          << row.column << " " << bound;
    }
  }
}

/// What the finding of a check guesses; "no finding" where it is not broken.
std::string guess_of(sound_walk& walk, const std::string& check) {
  for (const finding& found : walk.findings()) {
    if (found.check == check) {
      return found.guess;
    }
  }
  return "no finding";
}

/// A column that is off by a factor, and what is said of it.
struct slip {
  double cycle::*field;
  double factor;
  const char* check;
  const char* guess;
};

TEST(WalkChecks, CallAColumnInAnotherUnitByItsName) {
  for (const slip& slip : {slip{&cycle::gct, 1000.0, "gct_median", "milliseconds?"},
                           slip{&cycle::swing, 0.01, "swing_median", "a fraction?"},
                           slip{&cycle::stance, 0.01, "stance_median", "a fraction?"},
                           slip{&cycle::contact, 0.001, "contact_median", "seconds?"},
                           slip{&cycle::cadence, 1.0 / 60.0, "cadence_median", "Hz?"},
                           slip{&cycle::slength, 100.0, "slength_median", "centimetres?"},
                           slip{&cycle::slength, 1000.0, "slength_median", "millimetres?"},
                           slip{&cycle::speed, 3.6, "speed_median", "km/h?"},
                           slip{&cycle::peakswing, 0.0174533, "peakswing_median", "radians?"},
                           slip{&cycle::step_time, 1000.0, "step_time_median", "milliseconds?"},
                           slip{&cycle::min_tc, 1000.0, "min_tc_median", "millimetres?"},
                           slip{&cycle::swidth, 1000.0, "swidth_median", "millimetres?"},
                           slip{&cycle::swidth, 100.0, "swidth_median", "centimetres?"},
                           slip{&cycle::step_length, 100.0, "step_length_median", "centimetres?"},
                           slip{&cycle::impact_vert, 9.80665, "impact_vert_median", "m/s2?"}}) {
    sound_walk walk;
    walk.scale(slip.field, slip.factor);
    const std::vector<finding> findings = walk.findings();
    ASSERT_EQ(names_of(findings), names{slip.check});
    EXPECT_THAT(findings.front().guess, HasSubstr(slip.guess)) << slip.check;
  }
}

TEST(WalkChecks, EachHasAnAlterationThatBreaksIt) {
  names broken;
  for (const alteration& alteration : alterations()) {
    broken.insert(alteration.broken.begin(), alteration.broken.end());
  }
  names unique;
  for (const gait_checks::listed_check& check : gait_checks::list_checks()) {
    EXPECT_TRUE(unique.insert(check.name).second) << check.name << " is there twice";
    for (const std::string* text :
         {&check.compared, &check.tolerance, &check.usual_cause, &check.source}) {
      EXPECT_FALSE(text->empty()) << check.name;
    }
    if (check.what == gait_checks::kind::fields_of_a_stride ||
        check.what == gait_checks::kind::strides_of_a_walk) {
      EXPECT_EQ(broken.count(check.name), 1U) << check.name;
    }
  }
}

TEST(WalkChecks, SayHowManyStridesWhichAndWhatWasExpected) {
  sound_walk walk;
  walk.right_stride().swing = 150.0;
  const std::vector<finding> findings = walk.findings();
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings[0].table, "foot_cycles.csv");
  EXPECT_EQ(findings[0].column, "swing");
  EXPECT_EQ(findings[0].broken, 1U);
  EXPECT_EQ(findings[0].text, "found 150, expected 0 to 100 %");
  ASSERT_EQ(findings[0].places.size(), 1U);
  EXPECT_EQ(findings[0].places[0].foot, "right");
  EXPECT_EQ(findings[0].places[0].index, 8);
  EXPECT_EQ(findings[0].places[0].cycle, 8);
  EXPECT_THAT(findings[0].remedy, HasSubstr("leave the stride out"));
}

TEST(WalkChecks, LeaveOutWhatIsNotMeasuredOrNotIncluded) {
  sound_walk walk;
  walk.each_stride([](cycle& c) { c.stance = gait_missing; });
  walk.right_stride().swing = 150.0;
  walk.result().excluded_1.push_back(8);
  EXPECT_EQ(names_of(walk.findings()), names{});
}

TEST(WalkChecks, AreSwitchedOffByTheirName) {
  for (const alteration& alteration : alterations()) {
    sound_walk walk;
    alteration.alter(walk);
    EXPECT_EQ(names_of(walk.findings({alteration.broken.begin(), alteration.broken.end()})),
              names{})
        << alteration.what;
  }
}

TEST(WalkChecks, ThatAreSwitchedOffLeaveTheOthersOn) {
  sound_walk walk;
  walk.scale(&cycle::gct, 1000.0);
  EXPECT_EQ(names_of(walk.findings()), names{"gct_median"});
  EXPECT_EQ(names_of(walk.findings({"gct_median"})).count("gct_bounds"), 1U);
}

TEST(WalkChecks, OfStepsPassOverAStrideThatIsExcluded) {
  sound_walk walk;
  for (const int index : {12, 16, 20, 40, 44}) {
    std::next(walk.right().begin(), index)->step_time = 0.9;
    walk.result().excluded_1.push_back(index);
  }
  EXPECT_EQ(names_of(walk.findings()), names{});
}

TEST(WalkChecks, OfOneFootAloneNeedNoOther) {
  sound_walk both;
  gait_result one;
  one.foot_results = {*both.result().right_foot};
  one.foot_results[0].cycles.front().swing = 150.0;
  gait_generate_statistics(one, {});
  const auto findings = gait_checks::check_walk(one, &one.foot_results[0], nullptr);
  EXPECT_EQ(names_of(findings), names{"swing_bounds"});
}

TEST(WalkChecks, NameAStrideByTheCycleThatExclusionsName) {
  sound_walk walk;
  walk.feet().pop_front();
  walk.right_stride().swing = 150.0;
  const auto findings = walk.findings();
  ASSERT_EQ(findings.size(), 2U);  // the other one misses the link
  EXPECT_EQ(findings[0].places[0].index, 8);
  EXPECT_EQ(findings[0].places[0].cycle, 7);
}

TEST(WalkChecks, LeaveOutSingleStridesButNotHalfOfThem) {
  for (const int broken : {26, 27}) {
    sound_walk walk;
    walk.exclude_all_but(3, 27);  // 54 strides of both feet
    auto stride = std::next(walk.right().begin(), 3);
    for (int i = 0; i < broken; ++i, ++stride) {
      stride->swing += 2.0;
    }
    const auto findings = walk.findings();
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0].remedy.empty(), broken == 27);
  }
}

TEST(WalkChecks, CallASlipOfAStrideByItsName) {
  for (const slip& slip :
       {slip{&cycle::gct, 0.5, "duration_and_samples", "gct is a step time?"},
        slip{&cycle::hs, 1000.0, "heel_strike_and_sample", "hs in milliseconds?"},
        slip{&cycle::cadence, 0.5, "cadence_and_duration", "cadence in strides/min?"},
        slip{&cycle::speed, 2.236936, "speed_and_stride_length", "speed in miles/h?"},
        slip{&cycle::slength, 0.5, "speed_and_stride_length", "slength is a step length?"},
        slip{&cycle::speed, 0.9, "speed_and_stride_length", ""}}) {
    sound_walk walk;
    walk.scale(slip.field, slip.factor);
    EXPECT_EQ(guess_of(walk, slip.check), slip.guess) << slip.check;
  }
}

TEST(WalkChecks, SayReverseOnlyWhereAllStridesAre) {
  sound_walk walk;
  walk.right_stride().hs -= 1.5;
  EXPECT_EQ(guess_of(walk, "strides_in_time_order"), "");
  walk.each_stride([](cycle& c) { c.hs = -c.first_sample / 100.0 - 2.0; });
  EXPECT_EQ(guess_of(walk, "strides_in_time_order"), "rows or index in reverse?");
}

TEST(WalkChecks, NameTheRateThatWouldMendNearlyAllStrides) {
  for (const int sound_strides : {0, 20}) {
    sound_walk walk;
    for (auto& foot : walk.result().foot_results) {
      foot.recording->sampling_rate = 128;
    }
    int left = sound_strides;
    for (cycle& c : walk.right()) {
      c.gct *= left-- > 0 ? 100.0 / 128.0 : 1.0;
    }
    EXPECT_EQ(guess_of(walk, "duration_and_samples"),
              sound_strides == 0 ? "a sampling rate of 100 Hz?" : "");
  }
}

TEST(WalkChecks, NameNoRateThatMendsHalfOfTheStrides) {
  sound_walk walk;
  walk.each_stride([](cycle& c) { c.gct *= c.index % 2 == 0 ? 1.2 : 1.4; });
  EXPECT_EQ(guess_of(walk, "duration_and_samples"), "");
}

TEST(WalkChecks, NameNoUnitThatMendsNothing) {
  sound_walk walk;
  walk.scale(&cycle::contact, 0.007);
  EXPECT_EQ(guess_of(walk, "contact_median"), "");
}

TEST(WalkChecks, NameNoRateFromTwoStrides) {
  sound_walk walk;
  walk.exclude_all_but(8, 1);
  for (auto& foot : walk.result().foot_results) {
    foot.recording->sampling_rate = 128;
  }
  EXPECT_EQ(guess_of(walk, "duration_and_samples"), "");
}

TEST(WalkChecks, AskForThreeValuesOfAMedian) {
  for (const int cycles : {1, 2}) {  // two strides each
    sound_walk walk;
    walk.exclude_all_but(8, cycles);
    walk.scale(&cycle::swidth, 15.0);
    EXPECT_EQ(names_of(walk.findings()), cycles == 1 ? names{} : names{"swidth_median"});
  }
}

struct allowed_values {
  const char* check;
  double expected;
  double rate;
  double lowest;
  double highest;
};

TEST(StrideChecks, AllowWhatTheirTolerancesSay) {
  constexpr double all = gait_checks::unbounded;
  const std::vector<allowed_values> table = {
      {"swing_and_stance", 100.0, 100.0, 98.5, 101.5},
      {"duration_and_samples", 100.0, 100.0, 98.5, 101.5},
      {"duration_and_samples", 1000.0, 1000.0, 994.0, 1006.0},
      {"heel_strike_and_sample", 50.0, 100.0, 48.5, 51.5},
      {"heel_strike_and_sample", 500.0, 300.0, 498.2, 501.8},
      {"cadence_and_duration", 120.0, 100.0, 116.4, 123.6},
      {"speed_and_stride_length", 2.0, 100.0, 1.94, 2.06},
      {"speed_and_stride_length", 0.1, 100.0, 0.08, 0.12},
      {"contact_and_stance", 800.0, 100.0, 776.0, 824.0},
      {"contact_and_stance", 100.0, 100.0, 85.0, 115.0},
      {"phases_of_stance", 100.0, 100.0, 98.0, 102.0},
      {"path_and_stride_length", 100.0, 100.0, 99.0, all},
      {"step_and_stride_time", 1.0, 100.0, 0.1, 1.0},
      {"swing_speed_and_velocity", 1.2, 100.0, 1.2, all},
      {"toe_clearances", 0.03, 100.0, -all, 0.035},
  };
  names tried;
  for (const auto& row : table) {
    for (const auto& check : gait_checks::stride_checks()) {
      if (check.name == row.check) {
        const auto allowed = gait_checks::allowed(check, row.expected, row.rate);
        EXPECT_DOUBLE_EQ(allowed.lowest, row.lowest) << row.check;
        EXPECT_DOUBLE_EQ(allowed.highest, row.highest) << row.check;
        tried.insert(row.check);
      }
    }
  }
  EXPECT_EQ(tried.size(), gait_checks::stride_checks().size());
}

TEST(StrideChecks, SayWhatWasFoundAndWhetherABoundIsStillSound) {
  struct message {
    const char* check;
    gait_checks::found_and_expected values;
    const char* words;
  };
  for (const message& message :
       {message{"swing_and_stance",
                {97.0, 100.0},
                "found swing + stance = 97, expected 98.5 to 101.5 %"},
        message{"speed_and_stride_length",
                {1.1, 1.0},
                "found speed x gct = 1.1, expected 0.97 to 1.03 m (slength)"},
        message{"step_and_stride_time",
                {1.15, 1.15},
                "found step_time = 1.15, expected 0.115 to less than 1.15 s (0.1 to less than 1 "
                "times gct)"},
        message{"swing_speed_and_velocity",
                {1.2, 1.2},
                "found mtc_speed = 1.2, expected more than 1.2 m/s (speed)"},
        message{"path_and_stride_length",
                {98.0, 100.0},
                "found path_length = 98, expected at least 99 %"},
        message{"toe_clearances",
                {0.1, 0.03},
                "found min_tc = 0.1, expected at most 0.035 m (the lower one of max_tc1 and "
                "max_tc2)"}}) {
    for (const auto& check : gait_checks::stride_checks()) {
      if (check.name == message.check) {
        EXPECT_EQ(gait_checks::found_in_words(check, message.values, 100.0), message.words);
        EXPECT_FALSE(gait_checks::allowed(check, message.values.expected, 100.0)
                         .holds(message.values.found));
      }
    }
  }
}

TEST(StrideChecks, ListTheNumbersThatTheyCompareWith) {
  for (const auto& check : gait_checks::stride_checks()) {
    if (check.name == "speed_and_stride_length") {
      EXPECT_EQ(gait_checks::compared_in_words(check), "speed x gct = slength (m)");
      EXPECT_EQ(gait_checks::tolerance_in_words(check), "3 % or 2 cm");
    } else if (check.name == "step_and_stride_time") {
      EXPECT_EQ(gait_checks::tolerance_in_words(check), "0.1 to less than 1 times gct");
    }
  }
}

TEST(StrideChecks, CompareTheToeClearancesThatAreThere) {
  sound_walk walk;
  walk.each_stride([](cycle& c) { c.min_tc = gait_missing; });
  walk.right_stride().min_tc = 0.15;
  walk.right_stride().max_tc1 = gait_missing;
  const auto findings = walk.findings();
  ASSERT_EQ(names_of(findings), names{"toe_clearances"});
  EXPECT_EQ(findings[0].compared, 1U);
  walk.right_stride().max_tc2 = gait_missing;
  EXPECT_EQ(names_of(walk.findings()), names{});
}

TEST(Interval, HoldsItsEndsUnlessItIsOpen) {
  const gait_checks::interval closed = {1.0, 2.0};
  const gait_checks::interval open = {1.0, 2.0, false, false};
  for (const double end : {1.0, 2.0}) {
    EXPECT_TRUE(closed.holds(end));
    EXPECT_FALSE(open.holds(end));
  }
  EXPECT_TRUE(open.holds(1.5));
  EXPECT_FALSE(closed.holds(0.9));
  EXPECT_FALSE(closed.holds(2.1));
  EXPECT_TRUE(closed.holds(std::numeric_limits<double>::quiet_NaN()));
  EXPECT_EQ(in_words(closed, "s"), "1 to 2 s");
  EXPECT_EQ(in_words(open, ""), "more than 1 to less than 2");
  EXPECT_EQ(gait_checks::in_words({-gait_checks::unbounded, 2.0, true, false}, "m"),
            "less than 2 m");
}

TEST(Median, IsTheMeanOfTheMiddleTwoOfAnEvenNumber) {
  EXPECT_EQ(gait_checks::median({3.0, 1.0, 20.0}), 3.0);
  EXPECT_EQ(gait_checks::median({10.0, 1.0, 2.0, 3.0}), 2.5);
}

TEST(Tolerance, IsWhatMayStillDiffer) {
  EXPECT_FALSE(gait_checks::differs(1.5, 1.0, 0.5));
  EXPECT_FALSE(gait_checks::differs(0.5, 1.0, 0.5));
  EXPECT_TRUE(gait_checks::differs(1.6, 1.0, 0.5));
}

/// A tally of so many strides, the first of which are broken.
gait_checks::tally tally_of(int broken, int compared) {
  gait_checks::tally tally("table", "column", "strides");
  for (int i = 0; i < compared; ++i) {
    tally.add(i >= broken, {"right", i, {}}, [&] { return std::to_string(i); });
  }
  return tally;
}

TEST(Tally, AlarmsManyFromTwoStridesAndMoreThanOneInTwenty) {
  EXPECT_FALSE(tally_of(1, 2).alarms(alarm::many));
  EXPECT_TRUE(tally_of(2, 2).alarms(alarm::many));
  EXPECT_FALSE(tally_of(2, 40).alarms(alarm::many));
  EXPECT_TRUE(tally_of(2, 39).alarms(alarm::many));
  EXPECT_TRUE(tally_of(1, 1000).alarms(alarm::any));
  EXPECT_FALSE(tally_of(0, 1000).alarms(alarm::any));
  EXPECT_EQ(gait_checks::with_alarm("3 %", alarm::any), "3 %");
  EXPECT_EQ(gait_checks::with_alarm("3 %", alarm::many), "3 %; in 2 or more, and over 5 % of them");
}

TEST(Tally, KeepsTheWordsOfTheFirstStrideAndAThousandPlaces) {
  const auto findings = tally_of(1001, 1200).findings(alarm::any);
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings[0].text, "0");
  EXPECT_EQ(findings[0].broken, 1001U);
  EXPECT_EQ(findings[0].compared, 1200U);
  EXPECT_EQ(findings[0].places.size(), 1000U);
  EXPECT_EQ(findings[0].places.back().index, 999);
}

TEST(LeftOpensWithinRight, PointsAtTheFootColumnWhereNearlyAllBreakIt) {
  sound_walk walk;
  walk.shift_left_links(-1);
  finding first;
  for (const finding& found : walk.findings()) {
    first = found.check == "left_opens_within_right" ? found : first;
  }
  EXPECT_EQ(first.column, "foot");
  EXPECT_EQ(first.table, "foot_cycles.csv");
  EXPECT_EQ(first.guess, "feet swapped?");
  EXPECT_THAT(first.usual_cause, HasSubstr("feet swapped: column foot"));
  EXPECT_THAT(first.places, testing::IsEmpty());
}

/// Links every so many cycles with the left stride before their own.
void link_early(sound_walk& walk, int every) {
  for (gait_feet_cycle& c : walk.feet()) {
    const int left = c.left_cycle->index;
    if (left > 0 && left % every == 0) {
      c.left_cycle = &*std::next(walk.left().begin(), left - 1);
    }
  }
}

TEST(LeftOpensWithinRight, NamesSomeCyclesByTheirLink) {
  sound_walk walk;
  link_early(walk, 4);
  std::vector<finding> findings = walk.findings();
  const auto other = [](const finding& f) { return f.check != "left_opens_within_right"; };
  findings.erase(std::remove_if(findings.begin(), findings.end(), other), findings.end());
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings[0].table, "feet_cycles.csv");
  EXPECT_EQ(findings[0].column, "left_index");
  EXPECT_EQ(findings[0].guess, "");
  EXPECT_EQ(findings[0].places.front().index, 4);
}

TEST(LeftOpensWithinRight, ComparesNoStridesThatOpenOrCloseTogether) {
  for (const bool close : {true, false}) {
    sound_walk walk;
    walk.each_stride([](cycle& c) { c.hs = c.gct = gait_missing; });
    for (gait_feet_cycle& c : walk.feet()) {
      auto& left = *std::next(walk.left().begin(), c.left_cycle->index);
      left.last_sample = close ? c.right_cycle->last_sample + 1 : left.last_sample;
      left.first_sample = c.right_cycle->first_sample - (close ? 30 : 1);
    }
    EXPECT_EQ(names_of(walk.findings()), names{}) << close;
    for (cycle& c : walk.left()) {
      c.last_sample += close ? 1 : 0;
      c.first_sample -= close ? 0 : 1;
    }
    EXPECT_EQ(names_of(walk.findings()), names{"left_opens_within_right"}) << close;
  }
}

TEST(FeetCycleDuration, PointsAtTheFootColumnWhereCyclesFollowLeft) {
  sound_walk walk;
  for (gait_feet_cycle& c : walk.feet()) {
    c.gct = c.left_cycle->gct;
  }
  const auto findings = walk.findings();
  ASSERT_EQ(names_of(findings), names{"feet_cycle_duration"});
  EXPECT_EQ(findings[0].table, "foot_cycles.csv");
  EXPECT_EQ(findings[0].column, "foot");
  EXPECT_EQ(findings[0].guess, "feet swapped?");
  EXPECT_THAT(findings[0].usual_cause, HasSubstr("feet swapped: column foot"));
  EXPECT_LT(findings[0].broken, findings[0].compared);
}

TEST(FeetCycleDuration, IsNotComparedWhereItIsMissing) {
  sound_walk walk;
  for (gait_feet_cycle& c : walk.feet()) {
    c.gct = gait_missing;
  }
  EXPECT_EQ(names_of(walk.findings()), names{});
}

TEST(FeetCycleDuration, MayBeThatOfSomeLeftStrides) {
  sound_walk walk;
  for (gait_feet_cycle& c : walk.feet()) {
    c.gct = c.left_cycle->index % 3 == 0 ? c.left_cycle->gct : c.gct;
  }
  EXPECT_EQ(names_of(walk.findings()), names{});
}

TEST(FeetCycleDuration, OfItsOwnIsNoSignOfSwappedFeet) {
  sound_walk walk;
  for (gait_feet_cycle& c : walk.feet()) {
    c.gct = c.left_cycle->index % 2 == 0 ? c.left_cycle->gct : c.gct + 0.2;
  }
  EXPECT_EQ(guess_of(walk, "feet_cycle_duration"), "");
}

TEST(UnlinkedStrides, AreANoteWhereThePartnerWasNotFound) {
  EXPECT_EQ(names_of(sound_walk(100, 4).findings()), names{});
  sound_walk walk;
  walk.feet().pop_front();
  walk.left().front().first_sample = 0;  // before the first right stride
  EXPECT_EQ(names_of(walk.findings()), names{});
  const auto notes = walk.notes();
  ASSERT_EQ(notes.size(), 2U);
  EXPECT_EQ(notes[0].name, "strides_without_link");
  EXPECT_THAT(notes[0].text,
              HasSubstr("1 of 60 strides of the right foot is in no two-feet cycle"));
  EXPECT_THAT(notes[1].text, HasSubstr("1 of 60 strides of the left foot is in no two-feet cycle"));
}

TEST(UnlinkedStrides, AreNoFindingWhereLeftOpensAfterRightEnded) {
  sound_walk walk;
  walk.feet().pop_back();
  walk.left().back().first_sample = walk.right().back().last_sample + 1;
  EXPECT_EQ(names_of(walk.findings()), names{});
}

TEST(UnlinkedStrides, AreNotLookedForAmongStridesOutOfOrder) {
  sound_walk walk;
  walk.right().front().first_sample += 1000;
  std::next(walk.feet().begin(), 8)->left_cycle = nullptr;
  EXPECT_EQ(names_of(walk.findings()), names{"strides_in_time_order"});
}

TEST(UnlinkedStrides, AreAFindingWhereTheFeetShareTheirTimes) {
  sound_walk walk;
  walk.each_stride([](cycle& c) { c.hs = c.gct = gait_missing; });
  for (gait_feet_cycle& c : walk.feet()) {
    auto& left = *std::next(walk.left().begin(), c.left_cycle->index);
    left.last_sample = c.right_cycle->last_sample;
    left.first_sample = c.right_cycle->first_sample - 5;
  }
  EXPECT_EQ(names_of(walk.findings()), names{});
  std::next(walk.feet().begin(), 8)->left_cycle = nullptr;
  EXPECT_EQ(names_of(walk.findings()), names{"unlinked_strides"});
}

TEST(UnlinkedStrides, AreAFindingWhereBothAreThere) {
  sound_walk walk;
  walk.feet().erase(std::next(walk.feet().begin(), 20), walk.feet().end());
  const auto findings = walk.findings();
  ASSERT_EQ(names_of(findings), names{"unlinked_strides"});
  EXPECT_EQ(findings[0].places.front().index, 20);
  EXPECT_EQ(findings[0].broken, 40U);
  EXPECT_EQ(findings[0].compared, 60U);
  EXPECT_THAT(findings[0].text, HasSubstr("found left stride 20 and right stride 20"));
}

/// Rounds the durations to so many seconds.
void round_durations(sound_walk& walk, double step) {
  walk.each_stride([&](cycle& c) { c.gct = std::round(c.gct / step) * step; });
}

TEST(OneSampleTooMany, IsSeenBehindRounding) {
  for (const int rate : {60, 100, 128, 200, 300, 700, 1000}) {
    for (const double step : {1e-6, 0.001, rate < 1000 ? 0.01 : 0.001}) {
      for (const int too_many : {0, 1}) {
        sound_walk walk(rate);
        walk.each_stride([&](cycle& c) {
          c.gct = (c.last_sample - c.first_sample + 1.0) / rate;
          c.last_sample += too_many;
        });
        round_durations(walk, step);
        EXPECT_EQ(names_of(walk.findings()).count("one_sample_too_many"), too_many ? 1U : 0U)
            << rate << " Hz, rounded to " << step << " s";
      }
    }
  }
}

TEST(OneSampleTooMany, IsNotSaidOfFourStridesOrOfSome) {
  const auto too_many_in = [](int cycles, int sound_strides) {
    sound_walk walk;
    walk.exclude_all_but(5, cycles);
    int left = sound_strides;
    for (cycle& c : walk.right()) {
      c.last_sample += c.index >= 5 && left-- > 0 ? 0 : 1;
    }
    return names_of(walk.findings()).count("one_sample_too_many");
  };
  EXPECT_EQ(too_many_in(4, 0), 0U);
  EXPECT_EQ(too_many_in(5, 0), 1U);
  EXPECT_EQ(too_many_in(40, 1), 0U);
}

/// Whether a column of so many strides, of which so many differ, is said to be stuck.
bool is_stuck(double cycle::*field, int strides, int values) {
  sound_walk walk;
  walk.exclude_all_but(3, strides);
  int i = 0;
  walk.each_stride([&](cycle& c) { c.*field = 1.0 + 0.01 * (i++ % values); });
  return names_of(walk.findings()).count("stuck_column") == 1;
}

TEST(StuckColumn, HasOneValueInTenStridesOrFewDurationsInThirty) {
  EXPECT_FALSE(is_stuck(&cycle::impact_vert, 9, 1));
  EXPECT_TRUE(is_stuck(&cycle::impact_vert, 10, 1));
  EXPECT_FALSE(is_stuck(&cycle::impact_vert, 50, 2));
  EXPECT_TRUE(is_stuck(&cycle::gct, 40, 2));
  EXPECT_FALSE(is_stuck(&cycle::gct, 39, 2));
  EXPECT_FALSE(is_stuck(&cycle::gct, 29, 2));
  EXPECT_FALSE(is_stuck(&cycle::pur, 20, 1));
  EXPECT_FALSE(is_stuck(&cycle::slength, 20, 1));
}

TEST(AnglesInRadians, AreNotSaidOfAStraightWalkOrOfZeros) {
  sound_walk walk;
  int i = 0;
  walk.each_stride([&](cycle& c) { c.ta = i++ % 2 == 0 ? 0.4 : -0.3; });
  EXPECT_EQ(names_of(walk.findings()), names{});
  walk.each_stride([&](cycle& c) { c.ta = i++ % 2 == 0 ? 0.04 : -0.03; });
  EXPECT_EQ(names_of(walk.findings()), names{"angles_in_radians"});
  walk.each_stride([](cycle& c) { c.ta = 0.0; });
  EXPECT_EQ(names_of(walk.findings()).count("angles_in_radians"), 0U);
}

TEST(DoubleSupport, SaysWhichOtherQuantityItLooksLike) {
  const auto guess = [](double factor, double plus) {
    sound_walk walk;
    for (gait_feet_cycle& c : walk.feet()) {
      c.ds = gait_is_missing(c.ds) ? c.ds : factor * c.ds + plus;
    }
    return guess_of(walk, "double_support_and_stances");
  };
  EXPECT_EQ(guess(1.0, 4.0), "no finding");
  EXPECT_EQ(guess(1.0, 7.0), "");
  EXPECT_EQ(guess(0.5, 0.0), "one of its two phases?");
  EXPECT_EQ(guess(-1.0, 99.5), "no finding");  // its median breaks a bound of its own
}

TEST(BothFeet, AreComparedFromFiveStridesOn) {
  const auto broken = [](int cycles, auto alter) {
    sound_walk walk;
    walk.exclude_all_but(5, cycles);
    alter(walk);
    return names_of(walk.findings());
  };
  const auto longer_left = [](sound_walk& w) {
    for (cycle& c : w.left()) {
      c.gct *= 1.15;
    }
  };
  const auto more_support = [](sound_walk& w) {
    for (gait_feet_cycle& c : w.feet()) {
      c.ds += 8.0;
    }
  };
  EXPECT_EQ(broken(4, longer_left).count("durations_of_both_feet"), 0U);
  EXPECT_EQ(broken(5, longer_left).count("durations_of_both_feet"), 1U);
  EXPECT_EQ(broken(4, more_support), names{});
  EXPECT_EQ(broken(5, more_support), names{"double_support_and_stances"});
}

std::string note_of(std::size_t strides) {
  gait_result result;
  result.statistics.info.cycles.resize(strides);
  const auto notes = gait_checks::notes_on(result, nullptr, nullptr);
  return notes.empty() ? "" : notes.front().name + ": " + notes.front().text;
}

TEST(WalkNotes, SayWhatFewStridesAllow) {
  EXPECT_EQ(note_of(9),
            "few_strides_for_means: Mean from 9 strides, fewer than 10: read with care.");
  EXPECT_THAT(note_of(1), HasSubstr("Mean from 1 stride, "));
  for (const std::size_t strides : {10U, 29U}) {
    EXPECT_EQ(note_of(strides), "few_strides_for_variability: Variability from " +
                                    std::to_string(strides) +
                                    " strides, fewer than 30, tends to come out too small; do not "
                                    "compare it with a longer walk.");
  }
  for (const std::size_t strides : {30U, 49U}) {
    EXPECT_EQ(note_of(strides), "few_strides_for_steady_variability: Variability from " +
                                    std::to_string(strides) +
                                    " strides, fewer than 50, may change by a third with more "
                                    "strides.");
  }
  EXPECT_EQ(note_of(50), "");
}

TEST(WalkNotes, CountTheStridesOfTheFootThatHasFewer) {
  sound_walk walk;
  std::size_t lost = 0;
  for (gait_feet_cycle& c : walk.feet()) {
    c.left_cycle = lost++ < 20 ? nullptr : c.left_cycle;
  }
  ASSERT_FALSE(walk.notes().empty());
  EXPECT_THAT(walk.notes().front().text, HasSubstr("Variability from 35 strides, fewer than 50"));
}

TEST(WalkNotes, SayNothingOfAWalkWhoseStridesAreAllLinked) {
  EXPECT_THAT(sound_walk().notes(), testing::IsEmpty());
}

}  // namespace
