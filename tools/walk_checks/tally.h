#ifndef TOOLS_WALK_CHECKS_TALLY_H
#define TOOLS_WALK_CHECKS_TALLY_H

/// \file
/// Counts the strides that break a check, and words the finding.

#include "check_tables.h"
#include "walk_checks.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace gait_checks {

/// A number for a message: six digits at most.
std::string number(double value);

/// "expected 98.5 to 101.5", "expected at least 99", "expected at most 4".
std::string expected(double lowest, double highest);

/// The median of some values: the mean of the middle two of an even number. Not for none.
double median(std::vector<double> values);

/// The strides that a check compares, and those that break it.
class tally {
public:
  tally(std::string_view table, std::string_view column, std::string_view counted)
      : table_(table), column_(column), counted_(counted) {}

  /// Counts a stride. `text` says what was found and expected; that of the first one is kept.
  template <class Text>
  void add(bool is_sound, const place& place, Text text) {
    ++compared_;
    if (is_sound) {
      return;
    }
    ++broken_;
    if (places_.empty()) {
      text_ = text();
    }
    if (places_.size() < most_places) {
      places_.push_back(place);
    }
  }

  std::size_t broken() const { return broken_; }
  std::size_t compared() const { return compared_; }

  /// Whether so many strides are a finding.
  bool alarms(alarm when) const {
    return when == alarm::any ? broken() > 0 : broken() >= 2 && 20 * broken() > compared_;
  }

  /// The finding, or none.
  std::vector<finding> findings(alarm when) const;

private:
  std::string_view table_;
  std::string_view column_;
  std::string_view counted_;
  std::size_t broken_ = 0;
  std::size_t compared_ = 0;
  std::vector<place> places_;
  std::string text_;
};

inline constexpr std::string_view foot_cycles_table = "foot_cycles.csv";
inline constexpr std::string_view feet_cycles_table = "feet_cycles.csv";

/// What a check counts.
inline constexpr std::string_view included_strides = "included strides";
inline constexpr std::string_view included_pairs = "included cycles of both feet";
inline constexpr std::string_view all_pairs = "cycles of both feet";

/// All strides of a foot, excluded ones too.
constexpr std::string_view strides_of(std::string_view foot) {
  return foot == "right" ? "strides of the right foot" : "strides of the left foot";
}

}  // namespace gait_checks

#endif
