// The records' members: how many they are, of which types, and what they hold by default.

#include "fields.h"

#include <gait/generate_statistics.h>
#include <gait/result.h>
#include <gait/statistics.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <list>
#include <string>
#include <tuple>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

namespace {

using gait_test::field_count;
using gait_test::fields_of;

static_assert(sizeof(int) == 4 && sizeof(float) == 4 && sizeof(double) == 8 && sizeof(void*) == 8);

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

// The missing value is what compares equal to -1.0, and nothing beside it.

static_assert(std::is_same_v<decltype(gait_missing), const double>);
static_assert(gait_missing == -1.0);

template <class... Values>
constexpr bool all_measured(Values... values) {
  return !(gait_is_missing(values) || ...);
}
static_assert(gait_is_missing(-1.0));
static_assert(all_measured(-0x1.fffffffffffffp-1, -0x1.0000000000001p+0, 0.0, -0.0, 1.0, -2.0));
static_assert(all_measured(std::numeric_limits<double>::quiet_NaN(),
                           std::numeric_limits<double>::infinity(),
                           -std::numeric_limits<double>::infinity()));

// The members, in declaration order.

/// Whether a record holds members of exactly these types, and fields.h lists all of them.
template <class Record, class... Types>
constexpr bool holds = has_exactly<Record, sizeof...(Types)>&& std::is_same_v<
    decltype(fields_of<Record>), const std::tuple<gait_test::field<Types Record::*>...>>;

using doubles = std::vector<double>;
using indices = std::list<int>;
using int32 = std::int32_t;
using uint32 = std::uint32_t;

static_assert(holds<gait_statistics_parameter, bool, std::string, std::string, int32, doubles,
                    double, double, double, double, double, double, double, bool, double>);
static_assert(holds<gait_statistics_info, double, double, double, double, double, double, double,
                    int32, int32, indices, uint32, uint32, uint32, uint32, int32, double, double,
                    double, double, double>);
static_assert(holds<gait_feet_cycle, double, double, gait_foot_cycle*, gait_foot_cycle*>);
static_assert(
    holds<gait_result, std::vector<gait_foot_result>, gait_foot_result*, gait_foot_result*,
          gait_feet_result, gait_statistics, indices, indices, indices, indices, int32>);

static_assert(has_exactly<gait_foot_cycle, field_count<gait_foot_cycle>>);
static_assert(gait_test::measured_fields.back() != nullptr);
static_assert(std::is_same_v<decltype(gait_foot_cycle::first_sample), int32>);
static_assert(std::is_same_v<decltype(gait_foot_cycle::last_sample), int32>);
static_assert(std::is_same_v<decltype(gait_foot_cycle::index), int32>);

static_assert(has_exactly<gait_statistics, 2>);
static_assert(std::is_same_v<decltype(gait_statistics::info), gait_statistics_info>);
static_assert(std::is_same_v<decltype(gait_statistics::parameters),
                             std::unordered_map<std::string, gait_statistics_parameter>>);

static_assert(std::is_same_v<decltype(sensor_signal::sample_count), std::uint64_t>);
static_assert(std::is_same_v<decltype(sensor_recording::sampling_rate), int32>);
static_assert(
    std::is_same_v<decltype(sensor_recording::signals), std::unordered_map<int, sensor_signal>>);

static_assert(std::is_same_v<decltype(gait_foot_result::cycles), std::list<gait_foot_cycle>>);
static_assert(std::is_same_v<decltype(gait_foot_result::recording), sensor_recording*>);
static_assert(has_exactly<gait_feet_result, 1>);
static_assert(std::is_same_v<decltype(gait_feet_result::cycles), std::list<gait_feet_cycle>>);

static_assert(std::is_same_v<decltype(gait_generate_statistics_settings::settings_value), float>);
static_assert(std::is_same_v<decltype(gait_generate_statistics),
                             bool(gait_result&, const gait_generate_statistics_settings&)>);

// Records without containers are constants of the language, so that their defaults show here.

constexpr bool is_unmeasured(const gait_foot_cycle& cycle) {
  for (const auto field : gait_test::measured_fields) {
    if (cycle.*field != gait_missing) {
      return false;
    }
  }
  return cycle.first_sample == 0 && cycle.last_sample == 0 && cycle.index == 0;
}
static_assert(is_unmeasured({}));

constexpr gait_feet_cycle unlinked{};
static_assert(unlinked.gct == gait_missing && unlinked.ds == gait_missing);
static_assert(unlinked.right_cycle == nullptr && unlinked.left_cycle == nullptr);

static_assert(gait_generate_statistics_settings{}.settings_value == 0.0F);
static_assert(sensor_signal{}.sample_count == 0);

}  // namespace
