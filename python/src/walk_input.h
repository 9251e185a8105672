#ifndef PYTHON_WALK_INPUT_H
#define PYTHON_WALK_INPUT_H

/// \file
/// Walks made of columns in memory, checked as the reader of walk folders checks its tables.

#include "python_values.h"

#include "walk_folder.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace gait_python {

/// What is known of a foot's recording: cells, as recording.csv would hold them.
struct recording_cells {
  std::string foot;  ///< empty where the same holds for every foot
  std::string signal_1_samples;
  std::string signal_2_samples;
};

/// A walk as a caller of Python gives it.
struct walk_parts {
  std::string name;
  std::string sampling_rate;  ///< as a cell
  std::vector<recording_cells> samples;
  table_in strides;
  std::optional<table_in> feet;
  std::optional<table_in> exclusions;
  std::vector<std::string> ignored_columns;
};

/// Makes the walk. Its feet are those of its strides, and it has no lines of tables. Throws
/// gait_walk::walk_error with everything that is wrong; the rows of an error are its lines less 1.
gait_walk::read_result make_walk(const walk_parts& parts);

/// A walk taken apart for storage: its tables, and the line of each row.
struct stored_table {
  table_in table;
  std::vector<std::size_t> lines;
};
struct stored_walk {
  std::string name;
  stored_table recording, strides, feet, exclusions, about;
};

/// Puts a walk together again, with the same checks.
gait_walk::walk restore_walk(const stored_walk& stored);

}  // namespace gait_python

#endif
