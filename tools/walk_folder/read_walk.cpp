#include "check_walk.h"
#include "columns.h"
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

template <class Row>
void check_rows(const opened_table& opened, table_report& report, walk_check& check) {
  read_table<Row>(opened, report, [&](const auto& row) { check.add(row); });
}

/// Every table is read, whatever is wrong with those before it.
read_result read_walk(std::string name, const table_opener& open, walk_check check) {
  check_rows<recording_row>(open(table_name<recording_row>), check.reports.recording, check);
  check.end_recording();
  check_rows<foot_cycle_row>(open(table_name<foot_cycle_row>), check.reports.foot_cycles, check);
  check.end_foot_cycles();
  const opened_table feet = open(table_name<feet_cycle_row>);
  if (!feet.missing || !check.has_one_foot()) {
    check_rows<feet_cycle_row>(feet, check.reports.feet_cycles, check);
    check.end_feet_cycles();
  }
  check_rows<exclusion_row>(open(table_name<exclusion_row>), check.reports.exclusions, check);
  return check.result(std::move(name));
}

}  // namespace

std::vector<fs::path> table_files(const fs::path& folder) {
  return {folder / table_name<recording_row>, folder / table_name<foot_cycle_row>,
          folder / table_name<feet_cycle_row>, folder / table_name<exclusion_row>};
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
  require_folder(folder);
  // Each table is opened when its turn comes: whoever writes them into pipes may do so one after
  // the other.
  const auto open = [&](std::string_view table) { return open_file(folder / table); };
  return read_walk(walk_name(folder), open, walk_check(folder.string(), options));
}

read_result read_walk_tables(const walk_tables& tables, const read_options& options) {
  const auto open = [&](std::string_view table) {
    return open_stream(table == table_name<recording_row>    ? tables.recording
                       : table == table_name<foot_cycle_row> ? tables.foot_cycles
                       : table == table_name<feet_cycle_row> ? tables.feet_cycles
                                                             : tables.exclusions);
  };
  return read_walk(tables.name, open, walk_check(tables.name, options));
}

}  // namespace gait_walk
