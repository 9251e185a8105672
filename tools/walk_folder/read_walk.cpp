#include "columns.h"
#include "fault.h"
#include "read_table.h"
#include "walk_folder.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <functional>
#include <istream>
#include <iterator>
#include <map>
#include <memory>
#include <system_error>
#include <utility>

namespace gait_walk {

namespace {

namespace fs = std::filesystem;

using table_opener = std::function<opened_table(std::string_view table)>;

// ---- Indices

std::string repeated(int index, std::size_t first_line) {
  return found(std::to_string(index)) + " again (as on line " + std::to_string(first_line) + ")";
}

std::string out_of_sequence(int index, int expected, const std::string& whose) {
  std::string text = found(std::to_string(index));
  text += " as the next index";
  text += whose;
  text += ", expected ";
  text += in_quotes(std::to_string(expected));
  text += ": indices run from 0 without gaps";
  return text;
}

/// Where each index of a cycle list stands.
class index_lines {
public:
  void add(int index, std::size_t line) { lines_.push_back({index, line}); }
  std::size_t size() const { return lines_.size(); }
  bool empty() const { return lines_.empty(); }

  /// Reports indices that occur twice and, if every row is known, those that are left out.
  void check(table_report& report, const std::string& whose);

  /// Whether a row has this index; check() must have been called.
  bool contains(int index) const {
    return std::binary_search(lines_.begin(), lines_.end(), place{index, 0},
                              [](const auto& a, const auto& b) { return a.index < b.index; });
  }

private:
  struct place {
    int index;
    std::size_t line;
  };
  std::vector<place> lines_;
};

void index_lines::check(table_report& report, const std::string& whose) {
  std::sort(lines_.begin(), lines_.end(), [](const place& a, const place& b) {
    return std::pair(a.index, a.line) < std::pair(b.index, b.line);
  });
  const place* last = nullptr;
  for (const place& next : lines_) {
    if (last != nullptr && next.index == last->index) {
      report.faults.add(
          next.line, "index",
          repeated(next.index, last->line) + ", expected each index" + whose + " once");
      continue;
    }
    const int expected = last == nullptr ? 0 : last->index + 1;
    if (next.index != expected && report.every_row_known) {
      report.faults.add(next.line, "index", out_of_sequence(next.index, expected, whose));
    }
    last = &next;
  }
}

// ---- The walk

/// What the tables say of one foot.
struct foot_tables {
  std::optional<foot> recorded;  ///< its row of recording.csv
  std::size_t recorded_line = 0;
  std::size_t strides = 0;  ///< more than `cycles` when there are more than the caller takes
  std::list<gait_foot_cycle> cycles;
  index_lines indices;
  std::size_t first_line = 0;  ///< of its rows of foot_cycles.csv
};

/// A row of feet_cycles.csv, until the links are checked.
struct feet_cycle_place {
  feet_cycle_row row;
  std::size_t line;
};

class walk_reader {
public:
  walk_reader(std::string folder, table_opener open, const read_options& options)
      : folder_(std::move(folder)),
        open_(std::move(open)),
        most_strides_(options.most_strides),
        recording_(report<recording_row>(options)),
        foot_cycles_(report<foot_cycle_row>(options)),
        feet_cycles_(report<feet_cycle_row>(options)),
        exclusions_(report<exclusion_row>(options)) {}

  /// Every table is read, whatever is wrong with those before it.
  read_result read(std::string name) {
    read_recording();
    read_foot_cycles();
    read_feet_cycles();
    read_exclusions();
    return result(std::move(name));
  }

private:
  template <class Row>
  table_report report(const read_options& options) const {
    const std::string file = table_file<Row>(folder_);
    return {{file, options.faults_per_file}, {file, options.faults_per_file}, true};
  }

  foot_tables& of(side side) { return side == side::left ? left_ : right_; }

  void read_recording();
  void add_recording(const checked_row<recording_row>& checked);
  void read_foot_cycles();
  void add_foot_cycle(const checked_row<foot_cycle_row>& checked);
  void check_samples(const checked_row<foot_cycle_row>& checked);
  void check_count(table_report& report, std::size_t count, const std::string& what) const;
  void check_foot(side side);
  void read_feet_cycles();
  void check_feet_cycles();
  void check_links(side side, std::optional<int> feet_cycle_row::*link, std::string_view column);
  void read_exclusions();
  void check_exclusion(const checked_row<exclusion_row>& checked);
  void check_excluded_index(int index, std::size_t line, std::size_t count);
  read_result result(std::string name);
  std::optional<foot> take_foot(side side);

  /// Whether recording.csv names one foot, beyond doubt.
  bool has_one_foot() const {
    return recording_.every_row_known && left_.recorded.has_value() != right_.recorded.has_value();
  }

  std::string folder_;
  table_opener open_;
  std::size_t most_strides_;
  table_report recording_;
  table_report foot_cycles_;
  table_report feet_cycles_;
  table_report exclusions_;

  foot_tables left_;
  foot_tables right_;
  std::vector<feet_cycle_place> feet_;
  index_lines feet_indices_;
  std::vector<exclusion> excluded_;
};

std::string of_the(side side, const char* what) {
  return "the " + std::string(name_of(side)) + " " + what;
}

void walk_reader::read_recording() {
  std::size_t rows = 0;
  read_table<recording_row>(open_(table_name<recording_row>), recording_, [&](const auto& checked) {
    ++rows;
    add_recording(checked);
  });
  if (rows == 0 && recording_.every_row_known) {
    recording_.every_row_known = false;
    recording_.faults.add(0, "", "found no row, expected one for each foot");
  }
}

void walk_reader::add_recording(const checked_row<recording_row>& checked) {
  const recording_row& row = checked.row;
  if (!checked.has(&recording_row::foot)) {
    recording_.every_row_known = false;
    return;
  }
  foot_tables& foot = of(row.foot);
  if (foot.recorded) {
    recording_.faults.add(checked.line, "foot",
                          found(name_of(row.foot)) + " again (as on line " +
                              std::to_string(foot.recorded_line) + "), expected each foot once");
    return;
  }
  const foot_tables& other = of(row.foot == side::left ? side::right : side::left);
  // A rate of 0 is that of a cell with a fault of its own.
  const int other_rate = other.recorded ? other.recorded->sampling_rate : 0;
  if (checked.has(&recording_row::sampling_rate) && other_rate != 0 &&
      row.sampling_rate != other_rate) {
    recording_.faults.add(checked.line, "sampling_rate",
                          found(std::to_string(row.sampling_rate)) +
                              ", expected the sampling rate of the other foot, " +
                              in_quotes(std::to_string(other_rate)));
  }
  foot.recorded.emplace();
  foot.recorded_line = checked.line;
  foot.recorded->sampling_rate = row.sampling_rate;
  foot.recorded->signal_1_samples = row.signal_1_samples;
  foot.recorded->signal_2_samples = row.signal_2_samples;
}

void walk_reader::read_foot_cycles() {
  read_table<foot_cycle_row>(open_(table_name<foot_cycle_row>), foot_cycles_,
                             [&](const auto& checked) { add_foot_cycle(checked); });
  check_count(foot_cycles_, left_.strides, "strides of the left foot");
  check_count(foot_cycles_, right_.strides, "strides of the right foot");
  check_foot(side::left);
  check_foot(side::right);
}

void walk_reader::add_foot_cycle(const checked_row<foot_cycle_row>& checked) {
  check_samples(checked);
  if (!checked.has(&foot_cycle_row::foot) || !checked.has(&foot_cycle_row::index)) {
    foot_cycles_.every_row_known = false;
    return;
  }
  foot_tables& foot = of(checked.row.foot);
  if (++foot.strides > most_strides_) {
    return;
  }
  if (foot.indices.empty()) {
    foot.first_line = checked.line;
  }
  foot.indices.add(checked.row.index, checked.line);
  foot.cycles.push_back(checked.row);
}

void walk_reader::check_samples(const checked_row<foot_cycle_row>& checked) {
  const foot_cycle_row& row = checked.row;
  if (!checked.has(&foot_cycle_row::last_sample)) {
    return;
  }
  const std::string what = found(std::to_string(row.last_sample));
  if (checked.has(&foot_cycle_row::first_sample) && row.first_sample > row.last_sample) {
    foot_cycles_.faults.add(checked.line, "last_sample",
                            what + ", expected at least the first sample, " +
                                in_quotes(std::to_string(row.first_sample)));
    return;
  }
  const auto& recorded = of(row.foot).recorded;
  if (!checked.has(&foot_cycle_row::foot) || !recorded) {
    return;
  }
  const std::uint64_t samples = std::min(recorded->signal_1_samples, recorded->signal_2_samples);
  if (static_cast<std::uint64_t>(row.last_sample) >= samples) {
    foot_cycles_.warnings.add(
        checked.line, "last_sample",
        what + ", expected less than the number of samples that recording.csv gives, " +
            in_quotes(std::to_string(samples)));
  }
}

void walk_reader::check_count(table_report& report, std::size_t count,
                              const std::string& what) const {
  if (count > most_strides_) {
    report.every_row_known = false;
    report.faults.add(0, "",
                      "found " + std::to_string(count) + " " + what + ", expected at most " +
                          std::to_string(most_strides_) + ", the limit that was set");
  }
}

void walk_reader::check_foot(side side) {
  foot_tables& foot = of(side);
  foot.indices.check(foot_cycles_, " of " + of_the(side, "foot"));
  foot.cycles.sort([](const auto& a, const auto& b) { return a.index < b.index; });
  if (foot.recorded && foot.indices.empty() && foot_cycles_.every_row_known) {
    foot_cycles_.faults.add(0, "",
                            "found no cycle of " + of_the(side, "foot") +
                                ", expected at least one: recording.csv names that foot");
  }
  if (!foot.recorded && !foot.indices.empty() && recording_.every_row_known) {
    foot_cycles_.faults.add(foot.first_line, "foot",
                            found(name_of(side)) +
                                " (rows: " + std::to_string(foot.indices.size()) +
                                "), expected only feet that recording.csv names");
  }
}

void walk_reader::read_feet_cycles() {
  const opened_table opened = open_(table_name<feet_cycle_row>);
  if (opened.missing && has_one_foot()) {
    return;
  }
  std::size_t rows = 0;
  read_table<feet_cycle_row>(opened, feet_cycles_, [&](const auto& checked) {
    if (++rows > most_strides_) {
      return;
    }
    if (checked.has(&feet_cycle_row::index)) {
      feet_indices_.add(checked.row.index, checked.line);
    } else {
      feet_cycles_.every_row_known = false;
    }
    feet_.push_back({checked.row, checked.line});
  });
  check_count(feet_cycles_, rows, "cycles of both feet");
  check_feet_cycles();
}

void walk_reader::check_feet_cycles() {
  if (has_one_foot()) {
    if (!feet_.empty()) {
      feet_cycles_.faults.add(
          feet_.front().line, "",
          "found a cycle of both feet, expected no row: recording.csv names one foot only");
    }
    return;
  }
  if (feet_.empty() && feet_cycles_.every_row_known) {
    feet_cycles_.faults.add(0, "", "found no row, expected at least one cycle of both feet");
  }
  feet_indices_.check(feet_cycles_, "");
  std::stable_sort(feet_.begin(), feet_.end(),
                   [](const auto& a, const auto& b) { return a.row.index < b.row.index; });
  check_links(side::right, &feet_cycle_row::right_index, "right_index");
  check_links(side::left, &feet_cycle_row::left_index, "left_index");
}

void walk_reader::check_links(side side, std::optional<int> feet_cycle_row::*link,
                              std::string_view column) {
  const index_lines& indices = of(side).indices;
  std::map<int, std::size_t> line_of_link;
  for (const auto& [row, line] : feet_) {
    const std::optional<int> index = row.*link;
    if (!index) {
      continue;
    }
    const std::string what = found(std::to_string(*index));
    if (!indices.contains(*index)) {
      if (foot_cycles_.every_row_known) {
        feet_cycles_.faults.add(
            line, column, what + ", expected the index of a cycle of " + of_the(side, "foot"));
      }
      continue;
    }
    const auto [other, is_first] = line_of_link.emplace(*index, line);
    if (!is_first) {
      feet_cycles_.warnings.add(line, column,
                                what + " again (as on line " + std::to_string(other->second) +
                                    "), expected each cycle of " + of_the(side, "foot") + " once");
    }
  }
}

void walk_reader::read_exclusions() {
  read_table<exclusion_row>(open_(table_name<exclusion_row>), exclusions_,
                            [&](const auto& checked) {
                              excluded_.push_back(checked.row);
                              check_exclusion(checked);
                            });
}

void walk_reader::check_exclusion(const checked_row<exclusion_row>& checked) {
  if (!checked.has(&exclusion_row::cycles) || !recording_.every_row_known) {
    return;
  }
  const exclusion& row = checked.row;
  const bool of_both = row.cycles == analysed_cycles::feet;
  const foot_tables& foot = of(row.cycles == analysed_cycles::left ? side::left : side::right);
  if (of_both ? has_one_foot() : !foot.recorded) {
    exclusions_.warnings.add(
        checked.line, "cycles",
        found(name_of(row.cycles)) + ", expected cycles that the walk has: nothing is excluded");
    return;
  }
  if (checked.has(&exclusion_row::index) &&
      (of_both ? feet_cycles_ : foot_cycles_).every_row_known) {
    check_excluded_index(row.index, checked.line, of_both ? feet_.size() : foot.indices.size());
  }
}

void walk_reader::check_excluded_index(int index, std::size_t line, std::size_t count) {
  if (count != 0 && (index < 0 || static_cast<std::size_t>(index) >= count)) {
    exclusions_.warnings.add(line, "index",
                             found(std::to_string(index)) + ", expected an index from 0 to " +
                                 std::to_string(count - 1) +
                                 ": it is counted, but excludes no cycle");
  }
}

read_result walk_reader::result(std::string name) {
  std::vector<fault> faults;
  read_result result;
  for (table_report* report : {&recording_, &foot_cycles_, &feet_cycles_, &exclusions_}) {
    std::move(report->faults).append_to(faults);
    std::move(report->warnings).append_to(result.warnings);
  }
  if (!faults.empty()) {
    throw walk_error(std::move(faults));
  }
  result.walk.name = std::move(name);
  result.walk.left = take_foot(side::left);
  result.walk.right = take_foot(side::right);
  for (const feet_cycle_place& place : feet_) {
    result.walk.feet.push_back(place.row);
  }
  result.walk.exclusions = std::move(excluded_);
  return result;
}

std::optional<foot> walk_reader::take_foot(side side) {
  foot_tables& tables = of(side);
  if (tables.recorded) {
    tables.recorded->cycles = std::move(tables.cycles);
  }
  return std::move(tables.recorded);
}

// ---- Where tables come from

opened_table unreadable(std::string complaint, bool missing = false) {
  return {nullptr, nullptr, std::move(complaint), missing};
}

opened_table open_file(const fs::path& file) {
  std::error_code error;
  const fs::file_status status = fs::status(file, error);
  if (status.type() == fs::file_type::not_found) {
    return unreadable("found no such file, expected a table", true);
  }
  if (fs::is_directory(status)) {
    return unreadable("found a folder, expected a table");
  }
  auto stream = std::make_unique<std::ifstream>();
  // A table may be a pipe; its bytes are taken in chunks already.
  errno = 0;
  stream->open(file, std::ios::binary);
  if (!stream->is_open()) {
    return unreadable("found a file that cannot be read (" +
                      std::generic_category().message(errno) + "), expected a table");
  }
  std::istream* const text = stream.get();
  return {text, std::move(stream), "", false};
}

opened_table open_stream(std::istream* stream) {
  if (stream == nullptr) {
    return unreadable("found no such table, expected one", true);
  }
  return {stream, nullptr, "", false};
}

void require_folder(const fs::path& folder) {
  std::error_code error;
  const fs::file_status status = fs::status(folder, error);
  if (fs::is_directory(status)) {
    return;
  }
  if (fs::exists(status)) {
    throw walk_error({{folder.string(), 0, "", "found a file, expected a walk folder"}});
  }
  const std::string why =
      status.type() == fs::file_type::not_found ? "" : " (" + error.message() + ")";
  throw walk_error(
      {{folder.string(), 0, "", "found no such folder" + why + ", expected a walk folder"}});
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
  // fault that says so.
  const fs::path& whole = error ? folder : canonical;
  return whole.has_filename() ? whole.filename().string() : whole.string();
}

read_result read_walk_folder(const fs::path& folder, const read_options& options) {
  require_folder(folder);
  // Each table is opened when its turn comes: whoever writes them into pipes may do so one after
  // the other.
  const auto open = [&](std::string_view table) { return open_file(folder / table); };
  return walk_reader(folder.string(), open, options).read(walk_name(folder));
}

read_result read_walk_tables(const walk_tables& tables, const read_options& options) {
  const auto open = [&](std::string_view table) {
    return open_stream(table == table_name<recording_row>    ? tables.recording
                       : table == table_name<foot_cycle_row> ? tables.foot_cycles
                       : table == table_name<feet_cycle_row> ? tables.feet_cycles
                                                             : tables.exclusions);
  };
  return walk_reader(tables.name, open, options).read(tables.name);
}

}  // namespace gait_walk
