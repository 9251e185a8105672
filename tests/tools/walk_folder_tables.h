#ifndef TESTS_TOOLS_WALK_FOLDER_TABLES_H
#define TESTS_TOOLS_WALK_FOLDER_TABLES_H

/// \file
/// A small walk as the text of its tables, to be spoilt in one place by each test.

#include "columns.h"
#include "temporary_folder.h"
#include "walk_folder.h"

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace walk_folder_tests {

using tool_tests::temporary_folder;
using messages = std::vector<std::string>;

inline constexpr std::size_t foot_cycles_columns =
    gait_walk::columns<gait_walk::foot_cycle_row>.size();

// An exception while these are made ends the tests, as it should.
// NOLINTBEGIN(cert-err58-cpp)
inline const std::string recording_header = "foot,sampling_rate,signal_1_samples,signal_2_samples";
inline const std::string foot_cycles_header = [] {
  std::string names;
  for (const auto& column : gait_walk::columns<gait_walk::foot_cycle_row>) {
    names += (names.empty() ? "" : ",") + std::string(column.name);
  }
  return names;
}();
inline const std::string feet_cycles_header = "index,gct,ds,right_index,left_index";
inline const std::string exclusions_header = "cycles,list,index,reason";
inline const std::string about_header = "name,value";

/// The cells from gct on of a cycle of which nothing else was measured.
inline const std::string only_gct = ",1.25" + std::string(foot_cycles_columns - 6, ',') + "\n";
// NOLINTEND(cert-err58-cpp)

/// Two cycles of each foot and two of both, lines 2 to 5 and 2 to 3 of their tables.
struct tables {
  std::string recording = recording_header + "\nleft,100,1000,1000\nright,100,1000,1000\n";
  std::string foot_cycles = foot_cycles_header + "\nleft,0,0,99,0.5" + only_gct +
                            "left,1,100,199,1.5" + only_gct + "right,0,50,149,1.0" + only_gct +
                            "right,1,150,249,2.0" + only_gct;
  std::string feet_cycles = feet_cycles_header + "\n0,1.25,25.5,0,0\n1,1.5,26.5,1,1\n";
  std::string exclusions = exclusions_header + "\nfeet,excluded_1,1,turn\n";
  std::string about = "";  ///< no table where it is empty
};

/// The same walk with the left foot only.
inline tables left_foot_only() {
  tables walk;
  walk.recording = recording_header + "\nleft,100,1000,1000\n";
  walk.foot_cycles =
      foot_cycles_header + "\nleft,0,0,99,0.5" + only_gct + "left,1,100,199,1.5" + only_gct;
  walk.feet_cycles = feet_cycles_header + "\n";
  walk.exclusions = exclusions_header + "\n";
  return walk;
}

/// Replaces the first `from` in a table.
inline void change(std::string& table, const std::string& from, const std::string& to) {
  const std::size_t at = table.find(from);
  if (at == std::string::npos) {
    throw std::logic_error("the table has no \"" + from + "\"");
  }
  table.replace(at, from.size(), to);
}

inline std::string replaced(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t at = text.find(from); at != std::string::npos;
       at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
  return text;
}

inline gait_walk::read_result read(const tables& walk,
                                   const gait_walk::read_options& options = {}) {
  std::istringstream recording(walk.recording);
  std::istringstream foot_cycles(walk.foot_cycles);
  std::istringstream feet_cycles(walk.feet_cycles);
  std::istringstream exclusions(walk.exclusions);
  std::istringstream about(walk.about);
  return gait_walk::read_walk_tables({"w", &recording, &foot_cycles, &feet_cycles, &exclusions,
                                      walk.about.empty() ? nullptr : &about},
                                     options);
}

inline messages messages_of(const std::vector<gait_walk::input_error>& errors) {
  messages all;
  for (const auto& error : errors) {
    all.push_back(error.message());
  }
  return all;
}

/// The messages of what `call` throws; none if it throws nothing.
template <class Call>
messages errors_thrown_by(Call call) {
  try {
    call();
  } catch (const gait_walk::walk_error& error) {
    return messages_of(error.errors());
  }
  return {};
}

inline messages errors_of(const tables& walk, const gait_walk::read_options& options = {}) {
  return errors_thrown_by([&] { read(walk, options); });
}

/// The warnings about a walk that can be read.
inline messages warnings_of(const tables& walk) { return messages_of(read(walk).warnings); }

/// The errors of a walk, without what they begin with.
inline messages errors_after(const std::string& beginning, const tables& walk) {
  messages errors = errors_of(walk);
  for (std::string& error : errors) {
    error = replaced(error, beginning, "");
  }
  return errors;
}

/// What is wrong with a walk with this text as its exclusions, without the file's name.
inline messages errors_of_exclusions(const std::string& text) {
  tables walk;
  walk.exclusions = text;
  return errors_after("w/exclusions.csv", walk);
}

/// How workbooks begin: .xlsx and .xls.
// NOLINTNEXTLINE(cert-err58-cpp)
inline const std::vector<std::string> workbooks = {"PK\x03\x04\x14", "\xD0\xCF\x11\xE0\xA1"};

inline void write_text(const std::filesystem::path& file, const std::string& text) {
  std::ofstream stream(file, std::ios::binary);
  stream << text;
}

inline std::string text_of(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream text;
  text << stream.rdbuf();
  return text.str();
}

inline void write_tables(const tables& walk, const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  write_text(folder / "recording.csv", walk.recording);
  write_text(folder / "foot_cycles.csv", walk.foot_cycles);
  write_text(folder / "feet_cycles.csv", walk.feet_cycles);
  write_text(folder / "exclusions.csv", walk.exclusions);
  if (!walk.about.empty()) {
    write_text(folder / "about.csv", walk.about);
  }
}

}  // namespace walk_folder_tests

#endif
