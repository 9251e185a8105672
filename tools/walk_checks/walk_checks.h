#ifndef TOOLS_WALK_CHECKS_WALK_CHECKS_H
#define TOOLS_WALK_CHECKS_WALK_CHECKS_H

/// \file
/// Looking for data that cannot be right: what the tables of a walk say against itself, and against
/// what a person can do.
///
/// A finding changes no figure. It says what was compared, how many of the included strides break
/// it, where, and what that usually means.

#include <gait/result.h>

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace gait_checks {

/// What a check looks at.
enum class kind {
  fields_of_a_stride,  ///< values of one stride against each other
  bounds_of_a_stride,  ///< one value against what a person can do
  median_of_a_walk,    ///< the walk's median of one value, where another unit or column shows
  strides_of_a_walk,   ///< strides against other strides
};

inline constexpr std::array kinds = {kind::fields_of_a_stride, kind::bounds_of_a_stride,
                                     kind::median_of_a_walk, kind::strides_of_a_walk};

/// What a kind compares, for people.
std::string_view name_of(kind kind);

/// A check as pages and lists show it: a row of the table of checks.
struct listed_check {
  std::string name;         ///< by which it can be switched off
  kind what;                ///< what it looks at
  std::string compared;     ///< what is compared
  std::string tolerance;    ///< how much may differ
  std::string usual_cause;  ///< what breaking it usually means
  std::string source;       ///< where the tolerance comes from
};

/// Every check, by its kind.
std::vector<listed_check> list_checks();

/// One stride that breaks a check, by its place in its table.
struct place {
  std::string_view foot;     ///< "right" or "left"; empty for a cycle of both feet
  int index = 0;             ///< the stride's index
  std::optional<int> cycle;  ///< the index by which exclusions.csv names it, if it is included
};

/// Of more strides than this, a finding says only how many they are.
inline constexpr std::size_t most_places = 1000;

/// A check that the walk breaks.
struct finding {
  std::string check;          ///< its name
  std::string table;          ///< "foot_cycles.csv" or "feet_cycles.csv"
  std::string column;         ///< the column to look at first
  std::size_t broken = 0;     ///< strides that break it
  std::size_t compared = 0;   ///< strides that have the values it needs
  std::string_view counted;   ///< what these are: "included strides", "strides", "cycles of ..."
  std::string text;           ///< "found ..., expected ..."
  std::string guess;          ///< what a factor gives away, such as "milliseconds?", or empty
  std::string usual_cause;    ///< what breaking the check usually means
  std::string remedy;         ///< what to do about single strides, or empty
  std::vector<place> places;  ///< the first that break it, foot by foot; none for a whole column
};

/// A remark about the figures. Nothing is wrong with the data.
struct note {
  std::string name;
  std::string text;    ///< a sentence or two
  std::string source;  ///< the paper behind it; empty where there is none
};

/// Checks an analysed walk: its statistics say which cycles are included, and only these take part,
/// except where a check is about the order of all strides.
///
/// `right` and `left` are the feet that were analysed, or null. A value that is missing takes no
/// part in any check. `without` names checks to leave out. The time grows with the strides.
std::vector<finding> check_walk(const gait_result& result, const gait_foot_result* right,
                                const gait_foot_result* left,
                                const std::vector<std::string>& without = {});

/// Of fewer included strides than these, a note says what the figures are worth.
inline constexpr std::size_t strides_for_means = 10;
inline constexpr std::size_t strides_for_variability = 30;
inline constexpr std::size_t strides_for_steady_variability = 50;

/// What can be said from few included strides, and which strides of an analysed foot no cycle of
/// both feet links.
std::vector<note> notes_on(const gait_result& result, const gait_foot_result* right,
                           const gait_foot_result* left);

}  // namespace gait_checks

#endif
