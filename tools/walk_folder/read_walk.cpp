#include "check_walk.h"
#include "columns.h"
#include "folder_mistakes.h"
#include "open_table.h"
#include "read_table.h"
#include "walk_folder.h"

#include <functional>
#include <string_view>
#include <system_error>
#include <utility>

namespace gait_walk {

namespace {

namespace fs = std::filesystem;

using table_opener = std::function<opened_table(std::string_view table)>;

/// Every table is read, whatever is wrong with those before it.
read_result read_walk(std::string name, const table_opener& open, const read_options& options,
                      walk_check check) {
  const auto read = [&](auto row, const opened_table& table, table_report& report) {
    using row_type = decltype(row);
    read_table<row_type>(table, options.ignored_columns, report,
                         [&](const auto& checked) { check.add(checked); });
  };
  read(recording_row(), open(table_name<recording_row>), check.reports.recording);
  check.end_recording();
  read(foot_cycle_row(), open(table_name<foot_cycle_row>), check.reports.foot_cycles);
  check.end_foot_cycles();
  if (const auto feet = open(table_name<feet_cycle_row>);
      !feet.missing || check.needs_both_feet()) {
    read(feet_cycle_row(), feet, check.reports.feet_cycles);
    check.end_feet_cycles();
  }
  if (const auto exclusions = open(table_name<exclusion_row>); !exclusions.missing) {
    read(exclusion_row(), exclusions, check.reports.exclusions);
  }
  if (const auto about = open(table_name<about_row>); !about.missing) {
    read(about_row(), about, check.reports.about);
    check.end_about();
  }
  return check.result(std::move(name));
}

}  // namespace

std::vector<fs::path> table_files(const fs::path& folder) {
  return {folder / table_name<recording_row>, folder / table_name<foot_cycle_row>,
          folder / table_name<feet_cycle_row>, folder / table_name<exclusion_row>,
          folder / table_name<about_row>};
}

std::string walk_name(const fs::path& folder) {
  std::error_code error;
  const fs::path canonical = fs::weakly_canonical(folder, error);
  // What cannot be resolved, such as a loop of links, cannot be read either, and is named by the
  // message that says so.
  const fs::path& whole = error ? folder : canonical;
  return whole.has_filename() ? whole.filename().string() : whole.string();
}

read_result read_walk_folder(const fs::path& folder, const read_options& options) {
  require_walk_folder(folder);
  // Each table is opened when its turn comes: whoever writes them into pipes may do so one after
  // the other.
  const auto open = [&](std::string_view table) { return open_file(folder, table); };
  return read_walk(walk_name(folder), open, options, walk_check(folder.string(), options));
}

read_result read_walk_tables(const walk_tables& tables, const read_options& options) {
  const auto open = [&](std::string_view table) {
    return open_stream(table == table_name<recording_row>    ? tables.recording
                       : table == table_name<foot_cycle_row> ? tables.foot_cycles
                       : table == table_name<feet_cycle_row> ? tables.feet_cycles
                       : table == table_name<exclusion_row>  ? tables.exclusions
                                                             : tables.about);
  };
  return read_walk(tables.name, open, options, walk_check(tables.name, options));
}

}  // namespace gait_walk
