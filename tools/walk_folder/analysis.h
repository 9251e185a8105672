#ifndef TOOLS_WALK_FOLDER_ANALYSIS_H
#define TOOLS_WALK_FOLDER_ANALYSIS_H

/// \file
/// The gait_result that is analysed of a walk.
///
/// In all of these `asked_for` says which cycles are to be analysed. Asked for `feet`, a walk of
/// one foot is analysed with that foot.

#include "input_error.h"
#include "walk.h"

#include <gait/result.h>

#include <list>
#include <string>
#include <vector>

namespace gait_walk {

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

/// The cycles that are analysed.
analysed_cycles cycles_of(const walk& walk, analysed_cycles asked_for);

/// Makes the gait_result of the analysis. Its `foot_results` hold left before right, or the single
/// foot.
///
/// A recording of unknown length has 0 samples there.
///
/// Throws std::invalid_argument when the walk does not have the foot that is asked for. A walk that
/// is moved in gives its strides away, so that a long one is not held twice.
analysis make_analysis(walk walk, analysed_cycles asked_for = analysed_cycles::feet);

/// What keeps a walk from being analysed: the foot that is asked for is not there, or no cycle is
/// left to include. What is excluded from other analyses of the walk is of no concern.
///
/// `folder` is the folder in the messages' file names.
std::vector<input_error> check_analysis(const walk& walk, analysed_cycles asked_for,
                                        const std::string& folder);

/// What is worth a warning about the analysis: that all of the walk's exclusions are those of
/// another, or that an analysis of both feet keeps strides that are excluded for one foot.
std::vector<input_error> analysis_warnings(const walk& walk, analysed_cycles asked_for,
                                           const std::string& folder);

}  // namespace gait_walk

#endif
