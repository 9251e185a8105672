// A sound walk breaks no check; altered in one way, it breaks that check and only what must follow.

#include "walk_checks.h"

#include "analysis.h"
#include "check_tables.h"
#include "walk_model.h"

#include <gait/generate_statistics.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
using gait_checks::finding;
using names = std::set<std::string>;
using testing::HasSubstr;

/// A walk of sixty strides a foot with a turn, of which every value was measured.
class sound_walk {
public:
  sound_walk() {
    gait_walk::walk_settings settings;
    settings.strides = 60;
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
      {"two links exchanged",
       [](sound_walk& w) {
         auto first = std::next(w.feet().begin(), 8);
         std::swap(first->right_cycle, std::next(first)->right_cycle);
         std::swap(first->left_cycle, std::next(first)->left_cycle);
         std::swap(first->gct, std::next(first)->gct);
       },
       {"links_in_order"}},
      {"left links shifted by a row",
       [](sound_walk& w) {
         for (gait_feet_cycle& c : w.feet()) {
           const int next = c.left_cycle->index + 1;
           c.left_cycle = next < 60 ? &*std::next(w.left().begin(), next) : nullptr;
         }
       },
       {"linked_strides_overlap", "step_times_of_a_stride", "unlinked_strides"}},
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
       {"feet_swapped", "step_times_of_a_stride"}},
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
    for (const double beyond : {row.lowest - 0.5, row.highest + 0.5}) {
      sound_walk walk;
      set_one(walk, row, beyond);
      EXPECT_EQ(names_of(walk.findings()), names{name}) << name << " " << beyond;
    }
  }
}

TEST(WalkChecks, AcceptTheBoundsThemselves) {
  for (const gait_checks::bounds& row : gait_checks::bounds_table()) {
    for (const double bound : {row.lowest, row.highest}) {
      sound_walk walk;
      set_one(walk, row, bound);
      EXPECT_EQ(names_of(walk.findings()).count(std::string(row.column) + "_bounds"), 0U)
          << row.column << " " << bound;
    }
  }
}

TEST(WalkChecks, CallAColumnInAnotherUnitByItsName) {
  struct slip {
    double cycle::*field;
    double factor;
    const char* check;
    const char* guess;
  };
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
  for (const int index : {20, 30, 40}) {
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

std::string note_of(std::size_t strides) {
  gait_result result;
  result.statistics.info.cycles.resize(strides);
  const auto notes = gait_checks::notes_on(result);
  return notes.empty() ? "" : notes.front().name;
}

TEST(WalkNotes, SayWhatFewStridesAllow) {
  EXPECT_EQ(note_of(9), "few_strides_for_means");
  EXPECT_EQ(note_of(10), "few_strides_for_variability");
  EXPECT_EQ(note_of(29), "few_strides_for_variability");
  EXPECT_EQ(note_of(30), "few_strides_for_steady_variability");
  EXPECT_EQ(note_of(49), "few_strides_for_steady_variability");
  EXPECT_EQ(note_of(50), "");
}

}  // namespace
