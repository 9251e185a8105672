#ifndef TOOLS_REPORT_WALK_STATISTICS_H
#define TOOLS_REPORT_WALK_STATISTICS_H

/// \file
/// A walk with its statistics, in the form in which every output reads them.

#include "analysis.h"
#include "input_error.h"
#include "parameter_list.h"
#include "walk.h"
#include "walk_checks.h"

#include <gait/result.h>
#include <gait/statistics.h>

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace gait_report {

/// One side of the parameters, under keys that end in "_R" or "_L", and its foot.
struct reported_side {
  gait_walk::side foot = gait_walk::side::left;
  std::string suffix;      ///< of the keys; empty when one foot is analysed alone
  std::size_t cycles = 0;  ///< of the foot, as it was recorded
};

/// The cycles whose stride length is summed, and those among them that have none. A two-feet cycle
/// has the stride length of its right foot.
struct stride_length_gaps {
  std::size_t cycles = 0;
  std::size_t without = 0;
  std::size_t included = 0;
  std::size_t included_without = 0;
};

/// Reasons for an exclusion with the number of cycles that give it, in the order of their first
/// one.
using counted_reasons = std::vector<std::pair<std::string, std::size_t>>;

/// The lines of the walk's tables on which its cycles stand, by index; empty where it was not read
/// from tables.
struct table_lines {
  std::vector<std::size_t> right, left, feet;
};

/// A walk with its statistics.
struct walk_statistics {
  std::string name;
  gait_walk::analysed_cycles analysed = gait_walk::analysed_cycles::feet;
  std::vector<reported_side> sides;  ///< right before left
  int sampling_rate = 0;             ///< (Hz); the library takes that of one foot for both
  float settings_value = 0.0F;
  stride_length_gaps stride_lengths;
  std::vector<gait_walk::exclusion> exclusions;  ///< of the analysed cycles, in the table's order
  gait_walk::analysis analysis;
  std::vector<gait_walk::about_row> about;  ///< what somebody wrote down about the walk
  bool recording_length_is_known = true;
  table_lines lines;
  std::vector<gait_checks::finding> findings;
  std::vector<gait_checks::note> notes;

  bool both_feet() const { return analysed == gait_walk::analysed_cycles::feet; }
  const gait_result& result() const { return analysis.result; }
  const gait_statistics_info& info() const { return result().statistics.info; }
};

/// A walk made ready for its statistics, which are still to be computed. Asked for `feet`, a walk
/// of one foot is analysed with that foot.
///
/// Throws std::invalid_argument when the walk does not have the foot that is asked for.
walk_statistics prepare_walk(gait_walk::walk walk, gait_walk::analysed_cycles asked_for,
                             float settings_value);

/// Computes the statistics. Their time grows with the square of the strides.
void compute_figures(walk_statistics& walk);

/// Looks for data that cannot be right, once there are statistics, but for the checks of these
/// names.
void check_data(walk_statistics& walk, const std::vector<std::string>& without_checks);

/// Both of these.
void compute_statistics(walk_statistics& statistics,
                        const std::vector<std::string>& without_checks = {});

/// Puts what was worth a warning when the walk was read before the notes, so that it stands in
/// every output. To be called once the statistics are computed.
void add_warnings(walk_statistics& statistics, const std::vector<gait_walk::input_error>& warnings);

/// The statistics of one parameter on one side; nullopt where one could not be computed, or would
/// say nothing: the spread of a single value.
struct computed_statistics {
  std::size_t n = 0;  ///< number of values that were measured
  std::optional<double> mean, median, std, iqr, min, max;
  std::optional<double> cv;
  std::optional<double> ratio;  ///< this side's mean / the other side's
};

/// One parameter on one side.
struct side_of_parameter {
  const reported_side* side = nullptr;
  std::string key;  ///< with the suffix
  const gait_statistics_parameter* record = nullptr;
  computed_statistics statistics;
};

/// One parameter: its row of the catalogue, and its sides in the walk's order.
struct computed_parameter {
  listed_parameter row;
  std::vector<side_of_parameter> sides;
  /// Why it has no statistics although there are values: a sentence, empty for most.
  std::string why_none;

  bool has_values() const;
  /// Whether the ratio of the sides' means says anything. Near a mean of 0 it does not.
  bool has_telling_ratio() const;
};

/// Every parameter of the walk in the catalogue's order. The records are the walk's.
std::vector<computed_parameter> parameters_of(const walk_statistics& walk);

/// The key of the swing asymmetry, and the name under which it is shown in percent.
inline constexpr const char* swing_asymmetry_key = "asymmetry";
inline constexpr const char* swing_asymmetry_percent_key = "asymmetry_percent";
inline constexpr const char* swing_asymmetry_description = "Swing asymmetry";
/// The side of what belongs to both.
inline constexpr const char* both_sides = "both";

/// The unit of the swing asymmetry as the library scales it: "% x 300 Hz / 100 Hz".
std::string swing_asymmetry_unit(const walk_statistics& walk);

/// The swing asymmetry's record; null when one foot was analysed alone.
const gait_statistics_parameter* swing_asymmetry_record(const walk_statistics& walk);

/// The swing asymmetry's statistics: n, mean and std. Without any value, the record's mean and std
/// mean nothing.
computed_statistics swing_asymmetry_of(const gait_statistics_parameter& record);

/// Each quality flag that is raised, as a sentence.
std::vector<std::string> quality_flags_in_words(const walk_statistics& walk);

/// The number of included cycles whose missing stride length was halved, and entered the library's
/// step length as -0.5 m. The step length has no statistics then.
std::size_t halved_missing_stride_lengths(const walk_statistics& walk);

}  // namespace gait_report

#endif
