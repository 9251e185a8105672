#ifndef TOOLS_WALK_CHECKS_UNIT_SLIPS_H
#define TOOLS_WALK_CHECKS_UNIT_SLIPS_H

/// \file
/// What a factor gives away: the unit in which a column was given by mistake.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace gait_checks {

/// A factor by which a whole column may be off, and the unit that this gives away.
struct unit_slip {
  double factor;
  std::string_view words;
};

/// A quantity's dimension, which decides the units it may have been given in by mistake.
enum class dimension { time_s, time_ms, share, length, speed, cadence, angle, rotation, impact };

std::vector<unit_slip> slips_of(dimension dimension, double sampling_rate);

/// The words of the slip whose factor this is, or nothing. Real walks differ from their expectation
/// by less.
std::string_view guess(double factor, const std::vector<unit_slip>& slips);

/// The sampling rate (Hz) that would mend the strides, where it is the same for nearly all of those
/// compared: "a sampling rate of 100 Hz?". `factors` are those by which strides are off.
std::string guess_rate(const std::vector<double>& factors, std::size_t compared, double rate);

}  // namespace gait_checks

#endif
