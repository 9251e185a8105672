#ifndef GAIT_TESTS_LIBRARY_FIELDS_H
#define GAIT_TESTS_LIBRARY_FIELDS_H

/// \file
/// The members of the records, listed once for all tests.

#include <gait/result.h>
#include <gait/statistics.h>

#include <array>
#include <cstddef>
#include <tuple>
#include <type_traits>

namespace gait_test {

/// A member of a record, under its name.
template <class Member>
struct field {
  const char* name;
  Member member;
};
template <class Member>
field(const char*, Member) -> field<Member>;

/// Every member of a record, in declaration order: static/records.cpp counts them, and
/// records_test.cpp checks the order.
template <class Record>
inline constexpr auto fields_of = nullptr;

#define FIELD(record, name) \
  field { #name, &record::name }

#define INFO(name) FIELD(gait_statistics_info, name)
template <>
inline constexpr auto fields_of<gait_statistics_info> = std::tuple(
    INFO(recording_duration), INFO(duration), INFO(excluded_1_fallback_gct_sum),
    INFO(excluded_2_gct_sum), INFO(included_gct_sum), INFO(included_distance), INFO(total_distance),
    INFO(cycle_count), INFO(excluded_count), INFO(cycles), INFO(excluded_2_fallback_count),
    INFO(excluded_2_count), INFO(excluded_1_fallback_count), INFO(excluded_1_count),
    INFO(included_count), INFO(excluded_2_fallback_duration), INFO(excluded_2_duration),
    INFO(excluded_1_fallback_duration), INFO(excluded_1_duration), INFO(included_duration));
#undef INFO

#define PARAMETER(name) FIELD(gait_statistics_parameter, name)
template <>
inline constexpr auto fields_of<gait_statistics_parameter> =
    std::tuple(PARAMETER(valid), PARAMETER(description), PARAMETER(unit), PARAMETER(decimals),
               PARAMETER(values), PARAMETER(mean), PARAMETER(median), PARAMETER(std),
               PARAMETER(iqr), PARAMETER(min), PARAMETER(max), PARAMETER(cv),
               PARAMETER(asymmetry_enabled), PARAMETER(asymmetry));
#undef PARAMETER

#define CYCLE(name) FIELD(gait_foot_cycle, name)
template <>
inline constexpr auto fields_of<gait_foot_cycle> =
    std::tuple(CYCLE(first_sample), CYCLE(last_sample), CYCLE(hs), CYCLE(gct), CYCLE(swing),
               CYCLE(stance), CYCLE(contact), CYCLE(cadence), CYCLE(ldr), CYCLE(ffr), CYCLE(pur),
               CYCLE(slength), CYCLE(swidth), CYCLE(path_length), CYCLE(speed), CYCLE(ta),
               CYCLE(peakswing), CYCLE(top), CYCLE(hsp), CYCLE(step_time), CYCLE(step_length),
               CYCLE(strike_eversion), CYCLE(max_hc), CYCLE(min_tc), CYCLE(max_tc1), CYCLE(max_tc2),
               CYCLE(mtc_speed), CYCLE(impact_vert), CYCLE(impact_hor), CYCLE(index));
#undef CYCLE

#define FEET_CYCLE(name) FIELD(gait_feet_cycle, name)
template <>
inline constexpr auto fields_of<gait_feet_cycle> = std::tuple(FEET_CYCLE(gct), FEET_CYCLE(ds),
                                                              FEET_CYCLE(right_cycle),
                                                              FEET_CYCLE(left_cycle));
#undef FEET_CYCLE

#define RESULT(name) FIELD(gait_result, name)
template <>
inline constexpr auto fields_of<gait_result> =
    std::tuple(RESULT(foot_results), RESULT(left_foot), RESULT(right_foot), RESULT(feet_result),
               RESULT(statistics), RESULT(excluded_1), RESULT(excluded_1_fallback),
               RESULT(excluded_2), RESULT(excluded_2_fallback), RESULT(quality_flags));
#undef RESULT
#undef FIELD

/// Calls `visit(name, member)` for every member of a record, in declaration order.
template <class Record, class Visit>
void for_each_field(Record& record, Visit visit) {
  std::apply([&](const auto&... fields) { (visit(fields.name, record.*fields.member), ...); },
             fields_of<std::remove_const_t<Record>>);
}

template <class Record>
inline constexpr std::size_t field_count =
    std::tuple_size_v<std::remove_const_t<decltype(fields_of<Record>)>>;

/// The fields of a cycle that are measured: those that hold a double.
inline constexpr auto measured_fields = [] {
  std::array<double gait_foot_cycle::*, field_count<gait_foot_cycle> - 3> measured{};
  std::size_t count = 0;
  const auto take = [&](auto member) {
    if constexpr (std::is_same_v<decltype(member), double gait_foot_cycle::*>) {
      measured.at(count++) = member;
    }
  };
  std::apply([&](const auto&... fields) { (take(fields.member), ...); },
             fields_of<gait_foot_cycle>);
  return measured;
}();

}  // namespace gait_test

#endif
