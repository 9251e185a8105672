#ifndef TOOLS_WALK_CHECKS_STRIDE_CHECKS_H
#define TOOLS_WALK_CHECKS_STRIDE_CHECKS_H

/// \file
/// Checks of the fields of one stride against each other.
///
/// Tolerances are wide enough for values that were rounded as exports round them: times to 10 ms,
/// percentages to 0.1, lengths to 1 cm.

#include "tally.h"
#include "unit_slips.h"
#include "values.h"

#include <gait/result.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace gait_checks {

/// How much a value may differ from what is expected.
struct tolerance {
  double amount;
  std::string_view unit;  ///< of the amount
  /// The amount in the unit of what is compared. `rate` is the sampling rate (Hz).
  double (*size)(double amount, double expected, double rate);
};

/// How a value is compared with what is expected.
enum class relation { equals, at_least, at_most, more_than, part_of };

/// A relation that is `part_of` holds from this share up to less than the whole.
inline constexpr double smallest_part = 0.1;

/// What a stride has, and what it should have.
struct found_and_expected {
  double found;
  double expected;
};

struct stride_check {
  std::string_view name;
  /// The columns that it reads, the one to look at first in front. A value that breaks a bound of
  /// its own takes no part here: one mistake is to be one finding.
  std::vector<std::string_view> columns;
  std::string_view quantity;  ///< what is found
  relation how;
  std::string_view reference;         ///< what is expected
  std::string_view unit;              ///< of both
  std::vector<tolerance> tolerances;  ///< the largest one holds
  alarm when;
  /// nullopt where a value that it needs is missing. `rate` is the sampling rate (Hz).
  std::optional<found_and_expected> (*values)(const gait_foot_cycle& stride, double rate);
  std::vector<unit_slip> slips;  ///< of what is found against what is expected
  std::string_view usual_cause;
  std::string_view source;
  bool rests_on_rate = false;  ///< whether another sampling rate would mend it
};

const std::vector<stride_check>& stride_checks();

/// Where the found value must lie.
interval allowed(const stride_check& check, double expected, double rate);

/// "swing + stance = 100 (%)".
std::string compared_in_words(const stride_check& check);

/// "3 % or 2 cm".
std::string tolerance_in_words(const stride_check& check);

/// "found swing + stance = 150, expected 98.5 to 101.5 %".
std::string found_in_words(const stride_check& check, const found_and_expected& values,
                           double rate);

}  // namespace gait_checks

#endif
