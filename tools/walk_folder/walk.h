#ifndef TOOLS_WALK_FOLDER_WALK_H
#define TOOLS_WALK_FOLDER_WALK_H

/// \file
/// The content of a walk folder, and the gait_result that is analysed of it.

#include <gait/result.h>

#include <cstddef>
#include <cstdint>
#include <list>
#include <optional>
#include <string>
#include <vector>

namespace gait_walk {

enum class side { left, right };

/// Which cycle list an exclusion counts in: that of the two feet together, or that of one foot
/// analysed alone.
enum class analysed_cycles { feet, left, right };

/// Which of the four exclusion lists of gait_result an entry belongs to.
enum class exclusion_list { excluded_1, excluded_1_fallback, excluded_2, excluded_2_fallback };

/// One row of exclusions.csv.
struct exclusion {
  analysed_cycles cycles = analysed_cycles::feet;
  exclusion_list list = exclusion_list::excluded_1;
  int index = 0;
  std::string reason;
};

/// One foot: its row of recording.csv and its rows of foot_cycles.csv.
struct foot {
  int sampling_rate = 0;               ///< (Hz)
  std::uint64_t signal_1_samples = 0;  ///< number of samples of signal 1
  std::uint64_t signal_2_samples = 0;  ///< number of samples of signal 2
  /// In index order; a value that was not measured is gait_missing.
  std::list<gait_foot_cycle> cycles;
};

/// One row of feet_cycles.csv.
struct feet_cycle {
  double gct = gait_missing;       ///< (s)
  double ds = gait_missing;        ///< (% of cycle duration)
  std::optional<int> right_index;  ///< index of the right foot's cycle, where there is one
  std::optional<int> left_index;   ///< index of the left foot's cycle, where there is one
};

/// The content of a walk folder.
struct walk {
  std::string name;  ///< the folder's name
  std::optional<foot> left;
  std::optional<foot> right;
  std::vector<feet_cycle> feet;  ///< in index order
  std::vector<exclusion> exclusions;
};

/// A gait_result made of a walk, together with the recordings that it points to. May be moved, not
/// copied.
struct analysis {
  gait_result result;
  std::list<sensor_recording> recordings;

  analysis() = default;
  ~analysis() = default;
  analysis(const analysis&) = delete;
  analysis& operator=(const analysis&) = delete;
  analysis(analysis&&) = default;
  analysis& operator=(analysis&&) = default;
};

/// The cycles that are analysed: those of the foot `only`; without it (nullopt), those of both feet
/// together, or of the only foot that the walk has.
analysed_cycles cycles_of(const walk& walk, std::optional<side> only);

/// Makes the gait_result of the analysis of those cycles. Its `foot_results` hold left before
/// right, or the single foot.
///
/// Throws std::invalid_argument when the walk does not have the foot that is asked for. A walk that
/// is moved in gives its strides away, so that a long one is not held twice.
analysis make_analysis(walk walk, std::optional<side> only = std::nullopt);

}  // namespace gait_walk

#endif
