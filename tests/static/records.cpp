// The records' members: their types, their order, and what they hold by default.

#include <gait/generate_statistics.h>
#include <gait/result.h>
#include <gait/statistics.h>

#include <cstddef>
#include <cstdint>
#include <list>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

#if defined(__GNUC__)
// The order of members is asked of records with standard containers in them, too.
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
#endif

namespace {

static_assert(sizeof(int) == 4 && sizeof(float) == 4 && sizeof(double) == 8 && sizeof(void*) == 8);

/// Where a member lies: offsets of members that are declared in this order rise strictly.
template <std::size_t N>
constexpr bool rising(const std::size_t (&offsets)[N]) {
  for (std::size_t k = 1; k < N; ++k) {
    if (offsets[k - 1] >= offsets[k]) {
      return false;
    }
  }
  return true;
}

template <class Record, class... Members>
constexpr bool all_are_doubles(Members Record::*... /*members*/) {
  return (std::is_same_v<Members, double> && ...);
}

/// Converts to anything: how many of them initialise an aggregate tells how many members it has.
struct anything {
  template <class T>
  operator T() const;
};
template <std::size_t>
using anything_at = anything;

template <class Record, class Positions, class = void>
struct takes : std::false_type {};
template <class Record, std::size_t... Positions>
struct takes<Record, std::index_sequence<Positions...>,
             std::void_t<decltype(Record{anything_at<Positions>{}...})>> : std::true_type {};

template <class Record, std::size_t Count>
constexpr bool has_exactly = takes<Record, std::make_index_sequence<Count>>::value &&
                             !takes<Record, std::make_index_sequence<Count + 1>>::value;

// Plain records, copied and moved as values.

template <class Record>
constexpr bool is_plain = std::is_aggregate_v<Record>&& std::is_default_constructible_v<Record>&&
    std::is_copy_constructible_v<Record>&& std::is_copy_assignable_v<Record>&&
        std::is_nothrow_move_constructible_v<Record>&& std::is_move_assignable_v<Record>;

static_assert(is_plain<gait_statistics_parameter>);
static_assert(is_plain<gait_statistics_info>);
static_assert(is_plain<gait_statistics>);
static_assert(is_plain<gait_foot_cycle>);
static_assert(is_plain<gait_feet_cycle>);
static_assert(is_plain<sensor_signal>);
static_assert(is_plain<sensor_recording>);
static_assert(is_plain<gait_foot_result>);
static_assert(is_plain<gait_feet_result>);
static_assert(is_plain<gait_result>);
static_assert(is_plain<gait_generate_statistics_settings>);

// The missing value

static_assert(std::is_same_v<decltype(gait_missing), const double>);
static_assert(gait_missing == -1.0);
static_assert(gait_is_missing(-1.0) && !gait_is_missing(-0.999) && !gait_is_missing(0.0));

// gait_statistics_parameter

static_assert(has_exactly<gait_statistics_parameter, 14>);
static_assert(std::is_same_v<decltype(gait_statistics_parameter::valid), bool>);
static_assert(std::is_same_v<decltype(gait_statistics_parameter::description), std::string>);
static_assert(std::is_same_v<decltype(gait_statistics_parameter::unit), std::string>);
static_assert(std::is_same_v<decltype(gait_statistics_parameter::decimals), std::int32_t>);
static_assert(std::is_same_v<decltype(gait_statistics_parameter::values), std::vector<double>>);
static_assert(std::is_same_v<decltype(gait_statistics_parameter::asymmetry_enabled), bool>);
static_assert(all_are_doubles(&gait_statistics_parameter::mean, &gait_statistics_parameter::median,
                              &gait_statistics_parameter::std, &gait_statistics_parameter::iqr,
                              &gait_statistics_parameter::min, &gait_statistics_parameter::max,
                              &gait_statistics_parameter::cv,
                              &gait_statistics_parameter::asymmetry));

static_assert(offsetof(gait_statistics_parameter, valid) == 0);
static_assert(rising(
    {offsetof(gait_statistics_parameter, valid), offsetof(gait_statistics_parameter, description),
     offsetof(gait_statistics_parameter, unit), offsetof(gait_statistics_parameter, decimals),
     offsetof(gait_statistics_parameter, values), offsetof(gait_statistics_parameter, mean),
     offsetof(gait_statistics_parameter, median), offsetof(gait_statistics_parameter, std),
     offsetof(gait_statistics_parameter, iqr), offsetof(gait_statistics_parameter, min),
     offsetof(gait_statistics_parameter, max), offsetof(gait_statistics_parameter, cv),
     offsetof(gait_statistics_parameter, asymmetry_enabled),
     offsetof(gait_statistics_parameter, asymmetry)}));

// gait_statistics_info

static_assert(has_exactly<gait_statistics_info, 20>);
static_assert(all_are_doubles(
    &gait_statistics_info::recording_duration, &gait_statistics_info::duration,
    &gait_statistics_info::excluded_1_fallback_gct_sum, &gait_statistics_info::excluded_2_gct_sum,
    &gait_statistics_info::included_gct_sum, &gait_statistics_info::included_distance,
    &gait_statistics_info::total_distance, &gait_statistics_info::excluded_2_fallback_duration,
    &gait_statistics_info::excluded_2_duration, &gait_statistics_info::excluded_1_fallback_duration,
    &gait_statistics_info::excluded_1_duration, &gait_statistics_info::included_duration));
static_assert(std::is_same_v<decltype(gait_statistics_info::cycle_count), std::int32_t>);
static_assert(std::is_same_v<decltype(gait_statistics_info::excluded_count), std::int32_t>);
static_assert(std::is_same_v<decltype(gait_statistics_info::cycles), std::list<int>>);
static_assert(
    std::is_same_v<decltype(gait_statistics_info::excluded_2_fallback_count), std::uint32_t>);
static_assert(std::is_same_v<decltype(gait_statistics_info::excluded_2_count), std::uint32_t>);
static_assert(
    std::is_same_v<decltype(gait_statistics_info::excluded_1_fallback_count), std::uint32_t>);
static_assert(std::is_same_v<decltype(gait_statistics_info::excluded_1_count), std::uint32_t>);
static_assert(std::is_same_v<decltype(gait_statistics_info::included_count), std::int32_t>);

static_assert(offsetof(gait_statistics_info, recording_duration) == 0);
static_assert(rising({offsetof(gait_statistics_info, recording_duration),
                      offsetof(gait_statistics_info, duration),
                      offsetof(gait_statistics_info, excluded_1_fallback_gct_sum),
                      offsetof(gait_statistics_info, excluded_2_gct_sum),
                      offsetof(gait_statistics_info, included_gct_sum),
                      offsetof(gait_statistics_info, included_distance),
                      offsetof(gait_statistics_info, total_distance),
                      offsetof(gait_statistics_info, cycle_count),
                      offsetof(gait_statistics_info, excluded_count),
                      offsetof(gait_statistics_info, cycles),
                      offsetof(gait_statistics_info, excluded_2_fallback_count),
                      offsetof(gait_statistics_info, excluded_2_count),
                      offsetof(gait_statistics_info, excluded_1_fallback_count),
                      offsetof(gait_statistics_info, excluded_1_count),
                      offsetof(gait_statistics_info, included_count),
                      offsetof(gait_statistics_info, excluded_2_fallback_duration),
                      offsetof(gait_statistics_info, excluded_2_duration),
                      offsetof(gait_statistics_info, excluded_1_fallback_duration),
                      offsetof(gait_statistics_info, excluded_1_duration),
                      offsetof(gait_statistics_info, included_duration)}));

// gait_statistics

static_assert(has_exactly<gait_statistics, 2>);
static_assert(std::is_same_v<decltype(gait_statistics::info), gait_statistics_info>);
static_assert(std::is_same_v<decltype(gait_statistics::parameters),
                             std::unordered_map<std::string, gait_statistics_parameter>>);
static_assert(offsetof(gait_statistics, info) == 0);
static_assert(rising({offsetof(gait_statistics, info), offsetof(gait_statistics, parameters)}));

// gait_foot_cycle: the measured fields follow one another with nothing between.

static_assert(has_exactly<gait_foot_cycle, 30>);
static_assert(std::is_same_v<decltype(gait_foot_cycle::first_sample), std::int32_t>);
static_assert(std::is_same_v<decltype(gait_foot_cycle::last_sample), std::int32_t>);
static_assert(std::is_same_v<decltype(gait_foot_cycle::index), std::int32_t>);
static_assert(all_are_doubles(
    &gait_foot_cycle::hs, &gait_foot_cycle::gct, &gait_foot_cycle::swing, &gait_foot_cycle::stance,
    &gait_foot_cycle::contact, &gait_foot_cycle::cadence, &gait_foot_cycle::ldr,
    &gait_foot_cycle::ffr, &gait_foot_cycle::pur, &gait_foot_cycle::slength,
    &gait_foot_cycle::swidth, &gait_foot_cycle::path_length, &gait_foot_cycle::speed,
    &gait_foot_cycle::ta, &gait_foot_cycle::peakswing, &gait_foot_cycle::top, &gait_foot_cycle::hsp,
    &gait_foot_cycle::step_time, &gait_foot_cycle::step_length, &gait_foot_cycle::strike_eversion,
    &gait_foot_cycle::max_hc, &gait_foot_cycle::min_tc, &gait_foot_cycle::max_tc1,
    &gait_foot_cycle::max_tc2, &gait_foot_cycle::mtc_speed, &gait_foot_cycle::impact_vert,
    &gait_foot_cycle::impact_hor));

static_assert(offsetof(gait_foot_cycle, first_sample) == 0);
static_assert(rising({offsetof(gait_foot_cycle, first_sample),
                      offsetof(gait_foot_cycle, last_sample), offsetof(gait_foot_cycle, hs)}));

/// The place of a measured field, counted from `hs`.
constexpr std::size_t place(std::size_t offset) {
  return (offset - offsetof(gait_foot_cycle, hs)) / sizeof(double);
}

static_assert(place(offsetof(gait_foot_cycle, hs)) == 0);
static_assert(place(offsetof(gait_foot_cycle, gct)) == 1);
static_assert(place(offsetof(gait_foot_cycle, swing)) == 2);
static_assert(place(offsetof(gait_foot_cycle, stance)) == 3);
static_assert(place(offsetof(gait_foot_cycle, contact)) == 4);
static_assert(place(offsetof(gait_foot_cycle, cadence)) == 5);
static_assert(place(offsetof(gait_foot_cycle, ldr)) == 6);
static_assert(place(offsetof(gait_foot_cycle, ffr)) == 7);
static_assert(place(offsetof(gait_foot_cycle, pur)) == 8);
static_assert(place(offsetof(gait_foot_cycle, slength)) == 9);
static_assert(place(offsetof(gait_foot_cycle, swidth)) == 10);
static_assert(place(offsetof(gait_foot_cycle, path_length)) == 11);
static_assert(place(offsetof(gait_foot_cycle, speed)) == 12);
static_assert(place(offsetof(gait_foot_cycle, ta)) == 13);
static_assert(place(offsetof(gait_foot_cycle, peakswing)) == 14);
static_assert(place(offsetof(gait_foot_cycle, top)) == 15);
static_assert(place(offsetof(gait_foot_cycle, hsp)) == 16);
static_assert(place(offsetof(gait_foot_cycle, step_time)) == 17);
static_assert(place(offsetof(gait_foot_cycle, step_length)) == 18);
static_assert(place(offsetof(gait_foot_cycle, strike_eversion)) == 19);
static_assert(place(offsetof(gait_foot_cycle, max_hc)) == 20);
static_assert(place(offsetof(gait_foot_cycle, min_tc)) == 21);
static_assert(place(offsetof(gait_foot_cycle, max_tc1)) == 22);
static_assert(place(offsetof(gait_foot_cycle, max_tc2)) == 23);
static_assert(place(offsetof(gait_foot_cycle, mtc_speed)) == 24);
static_assert(place(offsetof(gait_foot_cycle, impact_vert)) == 25);
static_assert(place(offsetof(gait_foot_cycle, impact_hor)) == 26);
static_assert(place(offsetof(gait_foot_cycle, index)) == 27);

// gait_feet_cycle

static_assert(has_exactly<gait_feet_cycle, 4>);
static_assert(all_are_doubles(&gait_feet_cycle::gct, &gait_feet_cycle::ds));
static_assert(std::is_same_v<decltype(gait_feet_cycle::right_cycle), gait_foot_cycle*>);
static_assert(std::is_same_v<decltype(gait_feet_cycle::left_cycle), gait_foot_cycle*>);
static_assert(rising({offsetof(gait_feet_cycle, gct), offsetof(gait_feet_cycle, ds)}));
static_assert(offsetof(gait_feet_cycle, right_cycle) ==
              offsetof(gait_feet_cycle, ds) + sizeof(double));
static_assert(offsetof(gait_feet_cycle, left_cycle) ==
              offsetof(gait_feet_cycle, right_cycle) + sizeof(gait_foot_cycle*));

// sensor_recording

static_assert(std::is_same_v<decltype(sensor_signal::sample_count), std::uint64_t>);
static_assert(std::is_same_v<decltype(sensor_recording::sampling_rate), std::int32_t>);
static_assert(
    std::is_same_v<decltype(sensor_recording::signals), std::unordered_map<int, sensor_signal>>);
static_assert(rising({offsetof(sensor_recording, sampling_rate),
                      offsetof(sensor_recording, signals)}));

// gait_foot_result and gait_feet_result

static_assert(std::is_same_v<decltype(gait_foot_result::cycles), std::list<gait_foot_cycle>>);
static_assert(std::is_same_v<decltype(gait_foot_result::recording), sensor_recording*>);
static_assert(offsetof(gait_foot_result, cycles) == 0);
static_assert(offsetof(gait_foot_result, recording) + sizeof(sensor_recording*) ==
              sizeof(gait_foot_result));

static_assert(has_exactly<gait_feet_result, 1>);
static_assert(std::is_same_v<decltype(gait_feet_result::cycles), std::list<gait_feet_cycle>>);

// gait_result

static_assert(has_exactly<gait_result, 10>);
static_assert(std::is_same_v<decltype(gait_result::foot_results), std::vector<gait_foot_result>>);
static_assert(std::is_same_v<decltype(gait_result::left_foot), gait_foot_result*>);
static_assert(std::is_same_v<decltype(gait_result::right_foot), gait_foot_result*>);
static_assert(std::is_same_v<decltype(gait_result::feet_result), gait_feet_result>);
static_assert(std::is_same_v<decltype(gait_result::statistics), gait_statistics>);
static_assert(std::is_same_v<decltype(gait_result::excluded_1), std::list<int>>);
static_assert(std::is_same_v<decltype(gait_result::excluded_1_fallback), std::list<int>>);
static_assert(std::is_same_v<decltype(gait_result::excluded_2), std::list<int>>);
static_assert(std::is_same_v<decltype(gait_result::excluded_2_fallback), std::list<int>>);
static_assert(std::is_same_v<decltype(gait_result::quality_flags), std::int32_t>);

static_assert(offsetof(gait_result, foot_results) == 0);
static_assert(rising({offsetof(gait_result, foot_results), offsetof(gait_result, left_foot),
                      offsetof(gait_result, right_foot), offsetof(gait_result, feet_result),
                      offsetof(gait_result, statistics), offsetof(gait_result, excluded_1),
                      offsetof(gait_result, excluded_1_fallback), offsetof(gait_result, excluded_2),
                      offsetof(gait_result, excluded_2_fallback),
                      offsetof(gait_result, quality_flags)}));

// The settings and the entry

static_assert(std::is_same_v<decltype(gait_generate_statistics_settings::settings_value), float>);
static_assert(offsetof(gait_generate_statistics_settings, settings_value) == 0);
static_assert(std::is_same_v<decltype(gait_generate_statistics),
                             bool(gait_result&, const gait_generate_statistics_settings&)>);

// Records without containers are constants of the language, so that their defaults show here.

constexpr gait_foot_cycle unmeasured{};
static_assert(unmeasured.hs == gait_missing && unmeasured.gct == gait_missing &&
              unmeasured.swing == gait_missing && unmeasured.slength == gait_missing &&
              unmeasured.impact_hor == gait_missing);
static_assert(unmeasured.first_sample == 0 && unmeasured.last_sample == 0 && unmeasured.index == 0);

constexpr gait_feet_cycle unlinked{};
static_assert(unlinked.gct == gait_missing && unlinked.ds == gait_missing);
static_assert(unlinked.right_cycle == nullptr && unlinked.left_cycle == nullptr);

static_assert(gait_generate_statistics_settings{}.settings_value == 0.0F);
static_assert(sensor_signal{}.sample_count == 0);

}  // namespace
