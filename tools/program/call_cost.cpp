#include "call_cost.h"

#include "parameter_list.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <ctime>
#include <iterator>
#include <list>
#include <string>

namespace gait_program {
namespace {

/// The processor time of this thread so far (s). Other walks may be computed meanwhile.
double processor_seconds() {
  timespec time{};
  static_cast<void>(::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time));
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

/// The processor time that it takes to reach each cycle of a list once, from the front (s).
///
/// The library reaches sixteen cycles at a time, in little more than the time of the last of them.
template <class Cycle>
double seconds_to_reach_all(const std::list<Cycle>& cycles) {
  if (cycles.empty()) {
    return 0.0;
  }
  constexpr double reached_at_once = 16.0;
  constexpr std::size_t samples = 8;
  const void* volatile reached = nullptr;  // volatile: the way there must not be optimised away
  const auto reach = [&](std::size_t index) {
    reached = &*std::next(cycles.begin(), static_cast<std::ptrdiff_t>(index));
  };
  reach(cycles.size() - 1);  // brings the list into the caches, as far as it fits
  const double start = processor_seconds();
  for (std::size_t i = 0; i < samples; ++i) {
    reach((2 * i + 1) * cycles.size() / (2 * samples));
  }
  const double seconds = processor_seconds() - start;
  static_cast<void>(reached);
  return seconds / samples * static_cast<double>(cycles.size()) / reached_at_once;
}

}  // namespace

double expected_seconds(const gait_result& result) {
  const bool both_feet = result.foot_results.size() > 1;
  const auto parameters = static_cast<double>(gait_report::list_parameters_of(both_feet).size());
  double seconds = 0.0;
  for (const auto& foot : result.foot_results) {
    seconds += parameters * seconds_to_reach_all(foot.cycles);
  }
  return seconds;
}

std::string rough_duration(double seconds) {
  struct unit {
    double seconds;
    const char* name;
  };
  constexpr std::array<unit, 4> units = {
      {{86400.0, "day"}, {3600.0, "hour"}, {60.0, "minute"}, {1.0, "second"}}};
  // Below two of a unit, the next smaller one says more.
  const auto* unit = std::find_if(units.begin(), units.end(),
                                  [&](const auto& u) { return seconds >= 2.0 * u.seconds; });
  if (unit == units.end()) {
    unit = std::prev(units.end());
  }
  const long count = std::lround(seconds / unit->seconds);
  return std::to_string(count) + " " + unit->name + (count == 1 ? "" : "s");
}

}  // namespace gait_program
