#include "analysis.h"
#include "walk_folder_tables.h"

#include <gait/generate_statistics.h>

#include <gtest/gtest.h>

#include <iterator>
#include <list>
#include <stdexcept>
#include <string>
#include <utility>

namespace {

using namespace walk_folder_tests;
using gait_walk::analysed_cycles;
using gait_walk::analysis;
using gait_walk::check_analysis;
using gait_walk::make_analysis;
using gait_walk::walk;

walk walk_of(const tables& text) { return read(text).walk; }

walk walk_with_exclusions(const std::string& rows) {
  tables text;
  text.exclusions = exclusions_header + "\n" + rows;
  return walk_of(text);
}

TEST(Analysis, OfAWalkOfTwoFeetHoldsLeftBeforeRight) {
  const analysis analysis = make_analysis(walk_of({}));
  const gait_result& result = analysis.result;
  ASSERT_EQ(result.foot_results.size(), 2U);
  EXPECT_EQ(result.left_foot, &result.foot_results.front());
  EXPECT_EQ(result.right_foot, &result.foot_results.back());
  EXPECT_EQ(result.left_foot->cycles.front().first_sample, 0);
  EXPECT_EQ(result.right_foot->cycles.front().first_sample, 50);
}

TEST(Analysis, LinksTheCyclesOfBothFeet) {
  tables text;
  change(text.feet_cycles, "1,1.5,26.5,1,1", "1,1.5,26.5,,0");
  const analysis analysis = make_analysis(walk_of(text));
  const gait_result& result = analysis.result;
  ASSERT_EQ(result.feet_result.cycles.size(), 2U);
  const gait_feet_cycle& first = result.feet_result.cycles.front();
  EXPECT_EQ(first.gct, 1.25);
  EXPECT_EQ(first.ds, 25.5);
  EXPECT_EQ(first.right_cycle, &result.right_foot->cycles.front());
  EXPECT_EQ(first.left_cycle, &result.left_foot->cycles.front());
  const gait_feet_cycle& second = result.feet_result.cycles.back();
  EXPECT_EQ(second.right_cycle, nullptr);
  EXPECT_EQ(second.left_cycle, &result.left_foot->cycles.front());
}

TEST(Analysis, GivesEachFootItsRecording) {
  tables text;
  change(text.recording, "left,100,1000,1000", "left,100,1001,1002");
  const analysis analysis = make_analysis(walk_of(text));
  const sensor_recording& left = *analysis.result.left_foot->recording;
  EXPECT_EQ(left.sampling_rate, 100);
  EXPECT_EQ(left.signals.at(1).sample_count, 1001U);
  EXPECT_EQ(left.signals.at(2).sample_count, 1002U);
  EXPECT_EQ(analysis.result.right_foot->recording->signals.at(1).sample_count, 1000U);
}

TEST(Analysis, TakesTheKnownLengthForTheUnknownOneAndNoneForNone) {
  tables text;
  text.recording = recording_header + "\nleft,100,,1002\nright,100,,\n";
  const analysis analysis = make_analysis(walk_of(text));
  const sensor_recording& left = *analysis.result.left_foot->recording;
  EXPECT_EQ(left.signals.at(1).sample_count, 1002U);
  EXPECT_EQ(left.signals.at(2).sample_count, 1002U);
  EXPECT_EQ(analysis.result.right_foot->recording->signals.at(1).sample_count, 0U);
}

TEST(Analysis, OfOneFootHoldsThatFootAlone) {
  const analysis analysis = make_analysis(walk_of({}), analysed_cycles::right);
  ASSERT_EQ(analysis.result.foot_results.size(), 1U);
  EXPECT_EQ(analysis.result.foot_results[0].cycles.front().first_sample, 50);
  EXPECT_EQ(analysis.result.foot_results[0].recording, &analysis.recordings.front());
  EXPECT_EQ(analysis.result.left_foot, nullptr);
  EXPECT_EQ(analysis.result.right_foot, nullptr);
  EXPECT_TRUE(analysis.result.feet_result.cycles.empty());
}

TEST(Analysis, TakesTheOnlyFootThereIs) {
  const analysis analysis = make_analysis(walk_of(left_foot_only()));
  ASSERT_EQ(analysis.result.foot_results.size(), 1U);
  EXPECT_EQ(analysis.result.foot_results[0].cycles.size(), 2U);
}

TEST(Analysis, RefusesAFootThatTheWalkLacks) {
  const walk walk = walk_of(left_foot_only());
  EXPECT_THROW(make_analysis(walk, analysed_cycles::right), std::invalid_argument);
  EXPECT_THROW(make_analysis({}), std::invalid_argument);
}

const char* const exclusions_of_all_kinds =
    "feet,excluded_2,9,a\nleft,excluded_1,1,b\nfeet,excluded_1,1,c\nfeet,excluded_1,-4,d\nfeet,"
    "excluded_1,1,e\n"
    "feet,excluded_1_fallback,0,f\nfeet,excluded_2_fallback,7,g\nright,excluded_2,0,h\n";

TEST(Analysis, KeepsTheListsOfItsOwnModeInOrder) {
  const analysis analysis = make_analysis(walk_with_exclusions(exclusions_of_all_kinds));
  EXPECT_EQ(analysis.result.excluded_1, (std::list<int>{1, -4, 1}));
  EXPECT_EQ(analysis.result.excluded_1_fallback, (std::list<int>{0}));
  EXPECT_EQ(analysis.result.excluded_2, (std::list<int>{9}));
  EXPECT_EQ(analysis.result.excluded_2_fallback, (std::list<int>{7}));
}

TEST(Analysis, LeavesTheListsOfOtherModesOut) {
  const walk walk = walk_with_exclusions(exclusions_of_all_kinds);
  EXPECT_EQ(make_analysis(walk, analysed_cycles::left).result.excluded_1, (std::list<int>{1}));
  EXPECT_TRUE(make_analysis(walk, analysed_cycles::left).result.excluded_2.empty());
  EXPECT_EQ(make_analysis(walk, analysed_cycles::right).result.excluded_2, (std::list<int>{0}));
}

TEST(Analysis, StaysWholeWhenItIsMoved) {
  analysis first = make_analysis(walk_of({}));
  const analysis moved(std::move(first));
  EXPECT_EQ(moved.result.left_foot, &moved.result.foot_results.front());
  EXPECT_EQ(moved.result.left_foot->recording, &moved.recordings.front());
  analysis assigned;
  assigned = make_analysis(walk_of({}));
  EXPECT_EQ(assigned.result.feet_result.cycles.front().left_cycle,
            &assigned.result.left_foot->cycles.front());
  EXPECT_TRUE(gait_generate_statistics(assigned.result, {}));
  EXPECT_EQ(assigned.result.statistics.parameters.at("gct_L").mean, 1.25);
}

TEST(Analysis, TakesTheStridesOfAWalkThatIsMovedIn) {
  for (const auto asked_for : {analysed_cycles::feet, analysed_cycles::left}) {
    walk walk = walk_of({});
    const gait_foot_cycle* first_stride = &walk.left->cycles.front();
    const analysis analysis = make_analysis(std::move(walk), asked_for);
    EXPECT_EQ(&analysis.result.foot_results.front().cycles.front(), first_stride);
  }
}

TEST(Analysis, LeavesAWalkThatIsNotMovedAsItIs) {
  const walk walk = walk_of({});
  make_analysis(walk);
  EXPECT_EQ(walk.left->cycles.size(), 2U);
}

TEST(CheckAnalysis, HasNothingToSayAboutAWalkWithIncludedCycles) {
  EXPECT_EQ(messages_of(check_analysis(walk_of({}), analysed_cycles::feet, "w")), messages{});
  EXPECT_EQ(messages_of(check_analysis(walk_of(left_foot_only()), analysed_cycles::feet, "w")),
            messages{});
}

TEST(CheckAnalysis, ReportsThatNoCycleIsLeft) {
  const walk walk = walk_with_exclusions("feet,excluded_1,1,\nfeet,excluded_2,0,\n");
  EXPECT_EQ(messages_of(check_analysis(walk, analysed_cycles::feet, "some/w")),
            (messages{"some/w/exclusions.csv: found all 2 cycles of \"feet\" excluded, expected at "
                      "least one to be left"}));
  EXPECT_EQ(messages_of(check_analysis(walk, analysed_cycles::left, "w")), messages{});
}

TEST(CheckAnalysis, ReportsThatNoCycleOfTheOneFootIsLeft) {
  const walk walk = walk_with_exclusions("left,excluded_1,0,\nleft,excluded_1,1,\n");
  EXPECT_EQ(messages_of(check_analysis(walk, analysed_cycles::left, "w/")),
            (messages{"w/exclusions.csv: found all 2 cycles of \"left\" excluded, expected at "
                      "least one to be left"}));
  EXPECT_EQ(messages_of(check_analysis(walk, analysed_cycles::feet, "w")), messages{});
  EXPECT_EQ(messages_of(check_analysis(walk, analysed_cycles::right, "w")), messages{});
}

TEST(CheckAnalysis, DoesNotCountFallbackListsOrIndicesOutOfRange) {
  const walk walk = walk_with_exclusions(
      "feet,excluded_1,0,\nfeet,excluded_1,2,\nfeet,excluded_1,-1,\nfeet,excluded_1_fallback,1,\n"
      "feet,excluded_2_fallback,1,\n");
  EXPECT_EQ(messages_of(check_analysis(walk, analysed_cycles::feet, "w")), messages{});
}

TEST(CheckAnalysis, ReportsAFootThatTheWalkLacks) {
  EXPECT_EQ(messages_of(check_analysis(walk_of(left_foot_only()), analysed_cycles::right, "w")),
            (messages{"w/recording.csv: column foot: found no right foot, expected the foot that "
                      "is to be analysed"}));
}

/// The warnings about an analysis of a walk with two cycles of both feet: 0 links the strides right
/// 0 and left 1, and 1 the two others.
messages warnings_of_exclusions(const std::string& rows, analysed_cycles asked_for) {
  tables text;
  text.feet_cycles = feet_cycles_header + "\n0,1.25,25.5,0,1\n1,1.5,26.5,1,0\n";
  text.exclusions = exclusions_header + "\n" + rows;
  return messages_of(gait_walk::analysis_warnings(walk_of(text), asked_for, "w"));
}

TEST(AnalysisWarnings, NameCyclesOfBothFeetOfWhichOneStrideIsExcluded) {
  EXPECT_EQ(
      warnings_of_exclusions("feet,excluded_1,0,\nleft,excluded_2,0,\nright,excluded_1,0,\n",
                             analysed_cycles::feet),
      (messages{"w/exclusions.csv: column cycles: found strides of \"left\" excluded, but not "
                "their cycles of both feet (index 1), expected rows of \"feet\" for them: "
                "where both feet are analysed, rows of \"left\" exclude nothing"}));
}

TEST(AnalysisWarnings, SayNothingOfStridesWhoseCyclesOfBothFeetAreExcludedOrThatNoneLinks) {
  EXPECT_EQ(warnings_of_exclusions("feet,excluded_1,1,\nleft,excluded_2,0,\nleft,excluded_1,7,\n"
                                   "left,excluded_1_fallback,1,\n",
                                   analysed_cycles::feet),
            messages{});
}

TEST(AnalysisWarnings, SayNothingOfOtherExclusionsWhereOneFootWasAskedFor) {
  EXPECT_EQ(warnings_of_exclusions("feet,excluded_1,1,\nleft,excluded_2,1,\nright,excluded_2,0,\n",
                                   analysed_cycles::left),
            messages{});
}

}  // namespace
