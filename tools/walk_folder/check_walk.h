#ifndef TOOLS_WALK_FOLDER_CHECK_WALK_H
#define TOOLS_WALK_FOLDER_CHECK_WALK_H

/// \file
/// Whether the rows of the tables make a walk, and the walk that they make.

#include "read_table.h"
#include "row_indices.h"
#include "walk_folder.h"

#include <cstddef>
#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace gait_walk {

/// What is said about each table.
struct table_reports {
  table_report recording;
  table_report foot_cycles;
  table_report feet_cycles;
  table_report exclusions;
  table_report about;
};

/// Takes the rows of the tables, one table after the other in the order of table_reports, and
/// checks what takes more than one row to see.
class walk_check {
public:
  walk_check(const std::string& folder, const read_options& options);

  table_reports reports;

  void add(const checked_row<recording_row>& checked);
  void add(const checked_row<foot_cycle_row>& checked);
  void add(const checked_row<feet_cycle_row>& checked);
  void add(const checked_row<exclusion_row>& checked);
  void add(const checked_row<about_row>& checked);

  // Each to be called after the last row of its table.
  void end_recording();
  void end_foot_cycles();
  void end_feet_cycles();
  void end_about();

  /// Whether the walk cannot be analysed without feet_cycles.csv.
  bool needs_both_feet() const;

  /// The walk, with the warnings. Throws walk_error when anything is wrong.
  read_result result(std::string name);

private:
  /// What the tables say of one foot.
  struct foot_tables {
    std::optional<foot> recorded;  ///< its row of recording.csv
    std::size_t recorded_line = 0;
    std::size_t strides = 0;  ///< more than `cycles` when there are more than the caller takes
    std::list<gait_foot_cycle> cycles;
    row_indices indices;
    std::size_t first_line = 0;  ///< of its rows of foot_cycles.csv
  };

  /// A row of feet_cycles.csv, until the links are checked.
  struct feet_cycle_place {
    feet_cycle_row row;
    std::size_t line;
  };

  foot_tables& of(side side) { return side == side::left ? left_ : right_; }
  /// Whether recording.csv names one foot, beyond doubt.
  bool has_one_foot() const;
  void check_rates(const checked_row<recording_row>& checked);
  void check_samples(const checked_row<foot_cycle_row>& checked);
  void check_count(table_report& report, std::size_t count, const std::string& what) const;
  template <class Row, class ForEachRow>
  void settle_minus_ones_of(table_report& report, ForEachRow for_each_row);
  /// Returns whether the foot's indices are without gaps.
  bool check_foot(side side);
  void check_links(side side, std::optional<int> feet_cycle_row::*link, std::string_view column);
  void check_exclusion(const checked_row<exclusion_row>& checked);
  void check_excluded_index(int index, std::size_t line, std::size_t count);
  std::optional<foot> take_foot(side side);

  std::size_t most_strides_;
  analysed_cycles analysed_;
  std::size_t recording_rows_ = 0;
  foot_tables left_;
  foot_tables right_;
  std::size_t feet_count_ = 0;  ///< more than `feet_` when there are more than the caller takes
  std::vector<feet_cycle_place> feet_;
  row_indices feet_indices_;
  std::vector<exclusion> excluded_;
  std::size_t about_count_ = 0;  ///< more than `about_` when there are more than are taken
  std::vector<about_row> about_;
};

}  // namespace gait_walk

#endif
