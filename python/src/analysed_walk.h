#ifndef PYTHON_ANALYSED_WALK_H
#define PYTHON_ANALYSED_WALK_H

/// \file
/// A walk with its statistics, kept for the outputs that Python asks for later.

#include "walk_output.h"

#include "walk.h"
#include "walk_statistics.h"

#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace gait_python {

/// A walk that Python holds; nothing changes it.
struct shared_walk {
  std::shared_ptr<const gait_walk::walk> walk;
  std::string folder;  ///< as it was given; empty where the walk does not come from one
};

/// The statistics of a walk. Everything here is for any thread, and for several at once.
class analysed_walk {
public:
  /// Computes them. What was worth a warning when the walk was read stands in the notes. Throws
  /// gait_walk::walk_error for a walk that cannot be analysed so.
  analysed_walk(const shared_walk& walk, gait_walk::analysed_cycles asked_for, float settings_value,
                const std::vector<std::string>& without_checks,
                std::vector<gait_walk::input_error> of_reading);

  /// The statistics, without findings and notes.
  const gait_report::walk_statistics& statistics() const { return *statistics_; }
  /// The statistics with findings and notes, which are looked for when they are first asked for:
  /// that takes as long as the statistics. To be called without the interpreter's lock.
  const gait_report::walk_statistics& checked() const;
  const std::vector<gait_walk::input_error>& warnings() const { return warnings_; }

  std::vector<column_out> columns(gait_report::csv_table table) const;
  std::string json() const;
  std::string html() const;
  /// The sentences of the summary, those that are not empty.
  std::vector<std::string> summary() const;
  /// The times and distances of the accounting; nullopt where nothing was measured.
  std::unordered_map<std::string, std::optional<double>> measured_fields() const;

private:
  std::unique_ptr<gait_report::walk_statistics> statistics_;
  std::unique_ptr<std::once_flag> is_checked_ = std::make_unique<std::once_flag>();
  std::vector<std::string> without_checks_;
  std::vector<gait_walk::input_error> warnings_;  ///< about the analysis
  std::vector<gait_walk::input_error> of_reading_;
  std::size_t strides_ = 0;  ///< of both feet
};

/// Percentiles by the library's definition. There must be a value, and all must be finite.
std::vector<double> percentiles(const std::vector<double>& values,
                                const std::vector<double>& percentages);

}  // namespace gait_python

#endif
