#ifndef TOOLS_WALK_CHECKS_TALLY_H
#define TOOLS_WALK_CHECKS_TALLY_H

/// \file
/// Counts the strides that break a check, and makes the finding.

#include "walk_checks.h"

#include "columns.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace gait_checks {

/// How many strides must break a check before it is a finding.
enum class alarm {
  any,   ///< one
  many,  ///< some, and more than a share: real walks have single ones
};

/// What `alarm::many` asks for.
inline constexpr std::size_t fewest_of_many = 2;
inline constexpr std::size_t percent_of_many = 5;

/// A tolerance, and how many strides must exceed it, for pages and lists.
std::string with_alarm(const std::string& tolerance, alarm when);

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
    return when == alarm::any
               ? broken() > 0
               : broken() >= fewest_of_many && 100 * broken() > percent_of_many * compared();
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

/// A finding about a column as a whole, without places.
finding of_the_walk(std::string_view table, std::string_view column, std::string_view counted,
                    std::size_t compared, std::string text, std::string_view guess = "");

inline constexpr std::string_view foot_cycles_table =
    gait_walk::table_name<gait_walk::foot_cycle_row>;
inline constexpr std::string_view feet_cycles_table =
    gait_walk::table_name<gait_walk::feet_cycle_row>;

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
