#ifndef TOOLS_WALK_FOLDER_WALK_H
#define TOOLS_WALK_FOLDER_WALK_H

/// \file
/// The content of a walk folder.

#include <gait/result.h>

#include <cstddef>
#include <cstdint>
#include <list>
#include <optional>
#include <string>
#include <vector>

namespace gait_walk {

enum class side { left, right };

/// Which cycles are analysed, and in which of them an exclusion counts: those of the two feet
/// together, or those of one foot alone.
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

}  // namespace gait_walk

#endif
