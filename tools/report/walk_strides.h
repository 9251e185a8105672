#ifndef TOOLS_REPORT_WALK_STRIDES_H
#define TOOLS_REPORT_WALK_STRIDES_H

/// \file
/// Every stride of a walk, whether it is included, and why not: what each output shows of it.

#include "names.h"
#include "parameter_list.h"
#include "walk.h"
#include "walk_statistics.h"

#include <gait/result.h>

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace gait_report {

/// What an entry of an exclusion list does.
enum class exclusion_effect {
  left_out,          ///< takes its cycle out of the statistics
  already_left_out,  ///< names a cycle that an entry before it has taken out
  outside,           ///< names a cycle that the walk does not have
  accounted_for,     ///< stands in a fallback list that the accounting counts; takes nothing out
  nothing            ///< stands in a fallback list beside a primary one that holds anything
};

/// An entry of an exclusion list of the analysed cycles.
struct listed_exclusion {
  gait_walk::exclusion_list list = gait_walk::exclusion_list::excluded_1;
  int index = 0;       ///< of a cycle of the one foot, or of a two-feet cycle
  std::string reason;  ///< empty where none is given
  exclusion_effect effect = exclusion_effect::nothing;
};

/// What became of a stride, or of a two-feet cycle.
enum class stride_status {
  included,  ///< it enters the statistics
  left_out,  ///< an exclusion names it, or the two-feet cycle that links it
  unlinked   ///< no two-feet cycle links it, so that it has no part in an analysis of both feet
};

/// A cycle of the two feet.
struct two_feet_cycle {
  int index = 0;
  const gait_feet_cycle* values = nullptr;  ///< its own duration `gct` (s) and `ds` (%)
  std::optional<int> right, left;           ///< indices of the strides that it links
  std::optional<std::size_t> line;          ///< of feet_cycles.csv
  stride_status status = stride_status::included;
  std::vector<std::size_t> exclusions;  ///< which of walk_strides::exclusions name it, in order
  /// The swing asymmetry of an included cycle whose two swings are above 0: as the library scales
  /// it, and in percent.
  std::optional<double> swing_asymmetry, swing_asymmetry_percent;
};

/// A stride of one foot.
struct walk_stride {
  int index = 0;
  const gait_foot_cycle* values = nullptr;
  /// Beginning of its first sample and end of its last one (s), from the beginning of the
  /// recording.
  double start = 0.0, end = 0.0;
  std::optional<std::size_t> line;  ///< of foot_cycles.csv
  stride_status status = stride_status::included;
  /// Which of walk_strides::exclusions name it, or the two-feet cycle that links it, in order. Of a
  /// stride that is left out, the first is the one that did it.
  std::vector<std::size_t> exclusions;
  const two_feet_cycle* cycle = nullptr;  ///< that links it; null where one foot is analysed
  std::optional<int> partner;             ///< index of the other foot's stride in that cycle
};

/// The strides of one side, by index.
struct side_strides {
  reported_side side;
  std::vector<walk_stride> strides;
  std::size_t included = 0, left_out = 0, unlinked = 0;  ///< add up to all strides
  /// Those left out by the reason of the exclusion that did it, which may be empty. The counts add
  /// up to `left_out`.
  counted_reasons left_out_reasons;
};

/// Every stride of a walk. It refers to the walk's records, which must outlive it; may be moved,
/// not copied.
struct walk_strides {
  std::vector<side_strides> sides;           ///< in the walk's order, right before left
  std::vector<two_feet_cycle> cycles;        ///< by index; none where one foot is analysed
  std::vector<listed_exclusion> exclusions;  ///< list by list, each in its own order

  walk_strides() = default;
  ~walk_strides() = default;
  walk_strides(const walk_strides&) = delete;
  walk_strides& operator=(const walk_strides&) = delete;
  walk_strides(walk_strides&&) = default;
  walk_strides& operator=(walk_strides&&) = default;
};

/// The strides of a walk whose statistics are computed. The time grows with the strides.
walk_strides strides_of(const walk_statistics& walk);

/// The values of a stride, in the order of parameters_of(); nullopt where one was not measured.
/// Double support is that of the two-feet cycle that links the stride. Half of a stride length that
/// was not measured is not measured.
std::vector<std::optional<double>> values_of(const walk_stride& stride, bool both_feet);

/// The value, or nullopt where it is gait_missing.
std::optional<double> if_measured(double value);

/// Whether a parameter is one of the two feet together, with the same values on both sides.
bool is_of_both_feet(const listed_parameter& parameter);

/// Counts a reason once more.
void count_reason(counted_reasons& reasons, const std::string& reason);

/// The exclusion that took a stride or a cycle out of the statistics; null where none did.
template <class Cycle>
const listed_exclusion* left_out_by(const walk_strides& strides, const Cycle& cycle) {
  return cycle.status == stride_status::left_out && !cycle.exclusions.empty()
             ? &strides.exclusions[cycle.exclusions.front()]
             : nullptr;
}

}  // namespace gait_report

template <>
inline constexpr auto gait_walk::names<gait_report::exclusion_effect> =
    std::array<gait_walk::named<gait_report::exclusion_effect>, 5>{
        {{gait_report::exclusion_effect::left_out, "left_out", "takes the cycle out"},
         {gait_report::exclusion_effect::already_left_out, "already_left_out",
          "names a cycle that is already out, and counts once more in the accounting"},
         {gait_report::exclusion_effect::outside, "outside",
          "names no cycle of the walk, and counts in the accounting all the same"},
         {gait_report::exclusion_effect::accounted_for, "accounted_for",
          "counts in the accounting, and takes nothing out"},
         {gait_report::exclusion_effect::nothing, "nothing",
          "does nothing, because another list of its kind holds cycles"}}};

template <>
inline constexpr auto gait_walk::names<gait_report::stride_status> =
    std::array<gait_walk::named<gait_report::stride_status>, 3>{
        {{gait_report::stride_status::included, "included", "in the statistics"},
         {gait_report::stride_status::left_out, "left_out", "left out"},
         {gait_report::stride_status::unlinked, "unlinked", "in no two-feet cycle"}}};

#endif
