#include "bits.h"
#include "builders.h"
#include "text_of.h"

#include <gait/catalogue.h>
#include <gait/generate_statistics.h>
#include <gait/result.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <list>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace gait_test;
using gait_test::nan;
using testing::ElementsAre;

gait_statistics_info info_of(walk w) { return w.analyse().statistics.info; }

/// Marks in every output, to see whether they stay.
void mark(gait_result& result) {
  gait_statistics_parameter parameter;
  parameter.description = "left by the caller";
  parameter.values = {1.0, -0.0, nan};
  parameter.mean = 3.5;
  result.statistics.parameters["gct"] = parameter;
  result.statistics.parameters["kept"] = parameter;
  for_each_field(result.statistics.info, [mark = 101](const char* /*name*/, auto& member) mutable {
    if constexpr (std::is_arithmetic_v<std::decay_t<decltype(member)>>) {
      member = static_cast<std::decay_t<decltype(member)>>(mark++);
    } else {
      member = {3, 1, 4};
    }
  });
  result.quality_flags = 0x7F;
}

// Modes

TEST(GenerateStatistics, WithoutAnyFootTouchesNothing) {
  gait_result result;
  mark(result);
  const std::string output = text_of_output(result);
  EXPECT_TRUE(gait_generate_statistics(result, {40.0F}));
  EXPECT_EQ(difference(text_of_output(result), output), "");
}

std::set<std::string> keys_of(walk w) {
  std::set<std::string> keys;
  for (const auto& entry : w.analyse().statistics.parameters) {
    keys.insert(entry.first);
  }
  return keys;
}

TEST(GenerateStatistics, GivesOneFootKeysWithoutSuffixAndTwoFeetThoseOfEitherSide) {
  std::set<std::string> one_foot_keys;
  std::set<std::string> two_feet_keys = {"asymmetry"};
  gait_catalogue::for_each_row([&](const auto& row) {
    const std::string key = row.key;
    two_feet_keys.insert({key + "_R", key + "_L"});
    if (key != "DS") {
      one_foot_keys.insert(key);
    }
  });
  EXPECT_EQ(keys_of(one_foot(foot().cycles(2))), one_foot_keys);
  EXPECT_EQ(keys_of(two_feet(foot().cycles(2))), two_feet_keys);
}

TEST(GenerateStatistics, ReadsEachSideFromItsFoot) {
  walk w = two_feet(foot().gct({1.0, 2.0}), foot().gct({10.0, 20.0}))
               .gct({100.0, 200.0})
               .ds({20.0, 22.0});
  const auto& parameters = w.analyse().statistics.parameters;
  EXPECT_THAT(parameters.at("gct_L").values, SameBitsEach({1.0, 2.0}));
  EXPECT_THAT(parameters.at("gct_R").values, SameBitsEach({10.0, 20.0}));
  EXPECT_THAT(parameters.at("DS_R").values, SameBitsEach({20.0, 22.0}));
  EXPECT_TRUE(are_the_same(parameters.at("DS_L"), parameters.at("DS_R")));
}

TEST(GenerateStatistics, TakesTheStepLengthOfTwoFeetAsMeasuredAndOfOneAsHalfAStride) {
  const foot f = foot().slength({1.5, -1.0}).with(&gait_foot_cycle::step_length, {0.625, -1.0});
  walk one = one_foot(f);
  EXPECT_THAT(one.analyse().statistics.parameters.at("StepLength").values,
              SameBitsEach({0.75, -0.5}));
  walk two = two_feet(f);
  EXPECT_THAT(two.analyse().statistics.parameters.at("StepLength_L").values,
              SameBitsEach({0.625, -1.0}));
}

/// The walk's feet, reached from a result whose entries hold nothing but the first one's sampling
/// rate.
struct feet_elsewhere {
  feet_elsewhere(walk& w, std::size_t entries)
      : result(w.result()),
        left(*result.left_foot),
        right(*result.right_foot),
        only_a_rate{left.recording->sampling_rate, {}} {
    result.left_foot = &left;
    result.right_foot = &right;
    result.foot_results.assign(entries, gait_foot_result());
    result.foot_results.front().recording = &only_a_rate;
  }

  gait_result result;
  gait_foot_result left;
  gait_foot_result right;
  sensor_recording only_a_rate;
};

TEST(GenerateStatistics, OfTwoFeetReadsNoEntryBeyondTheSamplingRateOfTheFirst) {
  for (const std::size_t entries : {std::size_t{2}, std::size_t{3}, std::size_t{5}}) {
    walk w = two_feet(foot().ramp(4, 1.0, 0.5), foot().ramp(4, 2.0, 0.25))
                 .gct({1.0, 2.0, 3.0, 4.0})
                 .excluded_1({1});
    feet_elsewhere elsewhere(w, entries);
    EXPECT_TRUE(gait_generate_statistics(elsewhere.result, {}));
    EXPECT_EQ(difference(text_of_output(elsewhere.result), text_of_output(w.analyse())), "");
  }
}

// Sampling rate, durations

TEST(GenerateStatistics, TakesTheSamplingRateFromTheFirstEntry) {
  walk w = two_feet(foot().swing({40.0}).rate(50), foot().swing({60.0}).rate(200));
  feet_elsewhere elsewhere(w, 2);
  elsewhere.only_a_rate.sampling_rate = 400;
  gait_generate_statistics(elsewhere.result, {});
  const gait_statistics& statistics = elsewhere.result.statistics;
  EXPECT_THAT(statistics.info.recording_duration, SameBits(1000.0 / 400.0));
  EXPECT_THAT(statistics.info.duration, SameBits(100.0 / 400.0));
  EXPECT_THAT(statistics.parameters.at("asymmetry").mean, SameBits(-80.0));
}

TEST(GenerateStatistics, TakesTheRecordingDurationFromTheShortestSignalOfOneAndTwo) {
  const foot longer = foot().cycles(1).sample_counts(1000, 1000);
  const foot first_short = foot().cycles(1).sample_counts(700, 1000);
  const foot second_short = foot().cycles(1).sample_counts(1000, 600);
  EXPECT_THAT(info_of(one_foot(first_short)).recording_duration, SameBits(7.0));
  EXPECT_THAT(info_of(one_foot(second_short)).recording_duration, SameBits(6.0));
  EXPECT_THAT(info_of(two_feet(first_short, longer)).recording_duration, SameBits(7.0));
  EXPECT_THAT(info_of(two_feet(longer, second_short)).recording_duration, SameBits(6.0));
  EXPECT_THAT(info_of(two_feet(first_short, second_short)).recording_duration, SameBits(6.0));

  walk w = one_foot(longer);
  gait_result& result = w.result();
  result.foot_results.front().recording->signals[3].sample_count = 5;
  gait_generate_statistics(result, {});
  EXPECT_THAT(result.statistics.info.recording_duration, SameBits(10.0));
}

TEST(GenerateStatistics, ComparesAndConvertsSampleCountsWithoutSign) {
  constexpr std::uint64_t above_half = (std::uint64_t{1} << 63U) + 2048;
  constexpr std::uint64_t greatest = std::numeric_limits<std::uint64_t>::max();
  const auto recorded = [](std::uint64_t a, std::uint64_t b) {
    return info_of(one_foot(foot().cycles(1).rate(1).sample_counts(a, b))).recording_duration;
  };
  EXPECT_THAT(recorded(above_half, 5), SameBits(5.0));
  EXPECT_THAT(recorded(above_half, greatest), SameBits(9223372036854777856.0));
  EXPECT_THAT(recorded(greatest, greatest), SameBits(0x1p64));
  EXPECT_THAT(recorded((std::uint64_t{1} << 53U) + 3, greatest), SameBits(0x1p53 + 4.0));
}

TEST(GenerateStatistics, CountsBothOutermostSamplesIntoTheDuration) {
  EXPECT_THAT(info_of(one_foot(foot().cycles(3).samples(0, 99))).duration, SameBits(1.0));
  EXPECT_THAT(info_of(one_foot(foot().cycles(1).samples(50, 50))).duration, SameBits(0.01));
}

TEST(GenerateStatistics, TakesTheDurationFromTheFirstAndTheLastCycleOnly) {
  walk w = one_foot(foot().cycles(3).samples(10, 309));
  gait_result& result = w.result();
  gait_foot_cycle& middle = cycle_at(result.foot_results.front().cycles, 1);
  middle.first_sample = -100000;
  middle.last_sample = 100000;
  gait_generate_statistics(result, {});
  EXPECT_THAT(result.statistics.info.duration, SameBits(3.0));
}

TEST(GenerateStatistics, SpansTheDurationOverBothFeet) {
  const auto duration = [](int left_first, int left_last, int right_first, int right_last) {
    return info_of(two_feet(foot().samples(left_first, left_last),
                            foot().samples(right_first, right_last)))
        .duration;
  };
  EXPECT_THAT(duration(0, 499, 50, 599), SameBits(6.0));
  EXPECT_THAT(duration(50, 599, 0, 499), SameBits(6.0));
  EXPECT_THAT(duration(0, 599, 50, 499), SameBits(6.0));
  EXPECT_THAT(duration(50, 499, 0, 599), SameBits(6.0));
  EXPECT_THAT(duration(-100, 499, 0, 399), SameBits(6.0)) << "samples are signed";
}

TEST(GenerateStatistics, WrapsTheSampleSpanAroundAt32Bits) {
  const auto duration = [](int first, int last) {
    return info_of(one_foot(foot().samples(first, last))).duration;
  };
  EXPECT_THAT(duration(int_min, int_max), SameBits(0.0)) << "a span of -1";
  EXPECT_THAT(duration(int_max, int_min), SameBits(0.02)) << "a span of 1";
  EXPECT_THAT(duration(-1, int_max), SameBits(-21474836.47)) << "a span of -2^31";
  EXPECT_THAT(duration(0, int_max), SameBits(21474836.48)) << "a span of 2^31 - 1";
}

TEST(GenerateStatistics, GivesInfiniteOrNanDurationsAtASamplingRateOfZero) {
  const auto info = info_of(one_foot(foot().cycles(1).rate(0).sample_counts(0, 0)));
  EXPECT_THAT(info.recording_duration, SameBits(nan));
  EXPECT_THAT(info.duration, SameBits(infinity));
  EXPECT_THAT(info_of(two_feet(foot().cycles(1).rate(0))).recording_duration, SameBits(infinity));
}

// Distances

TEST(GenerateStatistics, SumsTheDistanceOfOneFootOverAllAndOverTheIncludedCycles) {
  const auto info =
      info_of(one_foot(foot().slength({1.0, 2.0, -1.0, 4.0, 8.0})).excluded_1({0}).excluded_2({3}));
  EXPECT_THAT(info.total_distance, SameBits(15.0));
  EXPECT_THAT(info.included_distance, SameBits(10.0));
}

TEST(GenerateStatistics, MeasuresTwoFeetByTheRightCyclesThatSomeTwoFeetCyclePointsTo) {
  const foot right = foot().slength({1.0, 2.0, 4.0, 8.0, 16.0});
  const auto info = info_of(two_feet(foot().slength({64.0, 64.0, 64.0}), right)
                                .right_links({4, no_cycle, 1, no_cycle, no_cycle})
                                .excluded_1({2}));
  EXPECT_THAT(info.total_distance, SameBits(18.0));
  EXPECT_THAT(info.included_distance, SameBits(16.0));
}

TEST(GenerateStatistics, AddsStrideLengthsInTheOrderOfTheTwoFeetCycles) {
  const foot right = foot().slength({1e16, 1.0, -1e16});
  EXPECT_THAT(info_of(two_feet(foot().cycles(3), right)).total_distance, SameBits(0.0));
  const auto info = info_of(two_feet(foot().cycles(3), right).right_links({0, 2, 1}));
  EXPECT_THAT(info.total_distance, SameBits(1.0));
  EXPECT_THAT(info.included_distance, SameBits(1.0));
}

// Links from two-feet cycles to the cycles of a foot

TEST(GenerateStatistics, MatchesTheFeetAnewAfterTheExclusionsAndLeavesAPlaceWhereACycleIsMissing) {
  walk w = two_feet(foot().gct({1.0, 2.0, 3.0, 4.0}), foot().gct({10.0, 20.0, 30.0, 40.0}))
               .left_links({3, 2, 1, 0})
               .right_links({1, no_cycle, 3, 2})
               .excluded_1({0});
  const auto& parameters = w.analyse().statistics.parameters;
  EXPECT_THAT(parameters.at("gct_L").values, SameBitsEach({3.0, 2.0, 1.0}));
  EXPECT_THAT(parameters.at("gct_R").values, SameBitsEach({-1.0, 40.0, 30.0}));
}

TEST(GenerateStatistics, FollowsTheIndexThatALinkedCycleNames) {
  walk w = two_feet(foot().gct({1.0, 2.0, 3.0}),
                    foot().slength({1.0, 2.0, 4.0}).gct({10.0, 20.0, 30.0}));
  gait_result& result = w.result();
  cycle_at(result.right_foot->cycles, 0).index = 2;
  cycle_at(result.right_foot->cycles, 1).index = 3;
  cycle_at(result.right_foot->cycles, 2).index = -5;
  // A record outside the foot's list is read for its index only.
  gait_foot_cycle outside;
  outside.index = 1;
  outside.gct = 99.0;
  cycle_at(result.feet_result.cycles, 0).left_cycle = &outside;
  gait_generate_statistics(result, {});
  EXPECT_THAT(result.statistics.parameters.at("gct_R").values, SameBitsEach({30.0, -1.0, -1.0}));
  EXPECT_THAT(result.statistics.parameters.at("gct_L").values, SameBitsEach({2.0, 2.0, 3.0}));
  EXPECT_THAT(result.statistics.info.total_distance, SameBits(4.0));
}

// Sums of cycle durations, in both modes: the durations of the analysed cycles

walk timed_alone(const std::vector<double>& gct) { return one_foot(foot().gct(gct)); }
/// The feet's own durations would spoil every sum.
walk timed_together(const std::vector<double>& gct) {
  return two_feet(foot().gct(std::vector<double>(gct.size(), 1e6))).gct(gct);
}

class DurationSums : public testing::TestWithParam<walk (*)(const std::vector<double>&)> {
protected:
  static walk of(const std::vector<double>& gct) { return GetParam()(gct); }
  static walk of_powers() { return of({1.0, 2.0, 4.0, 8.0, 16.0}); }
};

INSTANTIATE_TEST_SUITE_P(Modes, DurationSums, testing::Values(timed_alone, timed_together),
                         [](const auto& tested) {
                           return tested.param == timed_alone ? "OneFoot" : "TwoFeet";
                         });

TEST_P(DurationSums, OfTheKind1FallbackAreTakenWhateverKind1Holds) {
  EXPECT_THAT(
      info_of(of_powers().excluded_1_fallback({1, 2, 2, 5, -1})).excluded_1_fallback_gct_sum,
      SameBits(10.0));
  const auto info = info_of(of_powers().excluded_1({0}).excluded_1_fallback({0, 2}));
  EXPECT_THAT(info.excluded_1_fallback_gct_sum, SameBits(5.0));
  EXPECT_THAT(info.excluded_1_fallback_duration, SameBits(0.0))
      << "the accounting of the exclusions has a rule of its own";
}

TEST_P(DurationSums, OfKind2AreThoseOfAllItsIndicesIfItTookAnyCycleOut) {
  const auto info =
      info_of(of_powers().excluded_1({0}).excluded_2({0, 1, 1, 5, -1}).excluded_2_fallback({4}));
  EXPECT_THAT(info.excluded_2_gct_sum, SameBits(5.0));
}

TEST_P(DurationSums, AskTwoDifferentQuestionsAboutKind2) {
  // Kind 1 took both cycles out already: the driver's sum is left to the fallback list, while the
  // accounting sees that the list of kind 2 is not empty.
  const auto info =
      info_of(of_powers().excluded_1({0, 1, 2}).excluded_2({1, 2}).excluded_2_fallback({3}));
  EXPECT_THAT(info.excluded_2_gct_sum, SameBits(8.0));
  EXPECT_EQ(info.excluded_2_fallback_count, 0U);
  EXPECT_EQ(info.excluded_2_count, 2U);
  EXPECT_THAT(info.excluded_2_fallback_duration, SameBits(0.0));
  EXPECT_THAT(info.excluded_2_duration, SameBits(6.0));
  EXPECT_THAT(info.cycles, ElementsAre(3, 4));
}

TEST_P(DurationSums, AskTwoDifferentQuestionsAboutAKind2ThatIsOutOfRange) {
  const auto info = info_of(of_powers().excluded_2({5, -1}).excluded_2_fallback({3}));
  EXPECT_THAT(info.excluded_2_gct_sum, SameBits(8.0));
  EXPECT_EQ(info.excluded_2_count, 2U);
  EXPECT_THAT(info.excluded_2_duration, SameBits(0.0));
  EXPECT_EQ(info.excluded_count, 0);
}

TEST_P(DurationSums, RunInTheOrderOfTheirLists) {
  const std::vector<double> gct = {1e16, 1.0, -1e16};
  EXPECT_THAT(info_of(of(gct).excluded_1_fallback({0, 2, 1})).excluded_1_fallback_gct_sum,
              SameBits(1.0));
  EXPECT_THAT(info_of(of(gct).excluded_2({0, 1, 2})).excluded_2_gct_sum, SameBits(0.0));
  EXPECT_THAT(info_of(of(gct).excluded_2({2, 0, 1})).excluded_2_gct_sum, SameBits(1.0));
}

TEST_P(DurationSums, StandBesideAnAccountingOfTheSameWalk) {
  const auto info = info_of(of_powers().excluded_1({0}).excluded_2({1, 2}));
  EXPECT_EQ(info.cycle_count, 5);
  EXPECT_EQ(info.included_count, 5 - 2 - 1);
  EXPECT_THAT(info.included_gct_sum, SameBits(24.0));
  EXPECT_THAT(info.excluded_1_duration, SameBits(1.0));
  EXPECT_THAT(info.excluded_2_duration, SameBits(6.0));
  EXPECT_THAT(info.included_duration, SameBits(5.0 - 7.0));
}

// Failures

struct absence {
  const char* name;
  walk (*make)();
};

foot whole() { return foot().ramp(5, 1.0, 0.5); }
foot lacking(int signal) { return whole().without_signal(signal); }

class AbsentSignal : public testing::TestWithParam<absence> {};

TEST_P(AbsentSignal, ThrowsAndLeavesTheResultUntouched) {
  walk w = GetParam().make();
  gait_result& result = w.excluded_1({1}).excluded_2({2}).result();
  mark(result);
  const std::string output = text_of_output(result);
  const std::string input = text_of_input(result);
  try {
    gait_generate_statistics(result, {40.0F});
    FAIL() << "no exception";
  } catch (const std::out_of_range& error) {
    EXPECT_STREQ(error.what(), "unordered_map::at: key not found");
  }
  EXPECT_EQ(difference(text_of_output(result), output), "");
  EXPECT_EQ(difference(text_of_input(result), input), "") << "the lookup adds no signal either";
}

INSTANTIATE_TEST_SUITE_P(
    Recordings, AbsentSignal,
    testing::Values(absence{"OneFoot1", [] { return one_foot(lacking(1)); }},
                    absence{"OneFoot2", [] { return one_foot(lacking(2)); }},
                    absence{"Left1", [] { return two_feet(lacking(1), whole()); }},
                    absence{"Left2", [] { return two_feet(lacking(2), whole()); }},
                    absence{"Right1", [] { return two_feet(whole(), lacking(1)); }},
                    absence{"Right2", [] { return two_feet(whole(), lacking(2)); }}),
    [](const auto& tested) { return std::string(tested.param.name); });

// At once

/// Analyses every result in a thread of its own.
void analyse_at_once(const std::vector<gait_result*>& results) {
  std::vector<std::thread> threads;
  threads.reserve(results.size());
  for (gait_result* result : results) {
    threads.emplace_back([result] { gait_generate_statistics(*result, {}); });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
}

TEST(GenerateStatistics, OfDifferentResultsMayRunAtOnceOnTheSameFeet) {
  walk w = two_feet(foot().ramp(40, 1.0, 0.03), foot().ramp(40, 1.5, 0.02)).excluded_1({3, 7});
  gait_result& shared = w.result();

  // Each has lists and two-feet cycles of its own; the feet, their cycles and recordings are
  // shared.
  std::vector<gait_result> results(8, shared);
  std::vector<gait_result> one_by_one(8, shared);
  for (std::size_t i = 0; i < results.size(); ++i) {
    for (auto* list : {&results, &one_by_one}) {
      gait_result& own = (*list)[i];
      own.left_foot = shared.left_foot;
      own.right_foot = shared.right_foot;
      own.excluded_2 = {static_cast<int>(i), 20};
    }
    gait_generate_statistics(one_by_one[i], {});
  }
  std::vector<gait_result*> at_once;
  for (gait_result& result : results) {
    at_once.push_back(&result);
  }
  analyse_at_once(at_once);
  for (std::size_t i = 0; i < results.size(); ++i) {
    EXPECT_TRUE(are_the_same(results[i].statistics, one_by_one[i].statistics));
  }
}

}  // namespace
