#ifndef TOOLS_WALK_FOLDER_WALK_H
#define TOOLS_WALK_FOLDER_WALK_H

/// \file
/// The content of a walk folder.

#include <gait/result.h>

#include <algorithm>
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
  int sampling_rate = 0;                          ///< (Hz)
  std::optional<std::uint64_t> signal_1_samples;  ///< number of samples of signal 1, if known
  std::optional<std::uint64_t> signal_2_samples;  ///< number of samples of signal 2, if known
  /// In index order; a value that was not measured is gait_missing.
  std::list<gait_foot_cycle> cycles;
  /// The line of foot_cycles.csv on which each cycle stands, in index order; empty where the walk
  /// was not read from tables.
  std::vector<std::size_t> lines;
};

/// The length of a foot's recording: the shorter of its signals whose length is known, in samples;
/// nullopt where neither is.
inline std::optional<std::uint64_t> recorded_samples(const foot& foot) {
  if (foot.signal_1_samples && foot.signal_2_samples) {
    return std::min(foot.signal_1_samples, foot.signal_2_samples);
  }
  return foot.signal_1_samples ? foot.signal_1_samples : foot.signal_2_samples;
}

/// One row of feet_cycles.csv.
struct feet_cycle {
  double gct = gait_missing;       ///< (s)
  double ds = gait_missing;        ///< (% of cycle duration)
  std::optional<int> right_index;  ///< index of the right foot's cycle, where there is one
  std::optional<int> left_index;   ///< index of the left foot's cycle, where there is one
};

/// One row of about.csv: something that somebody says about the walk. It is shown, never
/// interpreted.
struct about_row {
  std::string name;  ///< "date", "condition", ...; a name may occur more than once
  std::string value;
};

/// The content of a walk folder.
struct walk {
  std::string name;  ///< the folder's name
  std::optional<foot> left;
  std::optional<foot> right;
  std::vector<feet_cycle> feet;         ///< in index order
  std::vector<std::size_t> feet_lines;  ///< as foot::lines, of feet_cycles.csv
  std::vector<exclusion> exclusions;
  std::vector<about_row> about;  ///< in the order of the table
};

}  // namespace gait_walk

#endif
