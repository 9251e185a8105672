#include "folder_mistakes.h"

#include "columns.h"
#include "csv_table.h"
#include "find_walks.h"
#include "input_error.h"
#include "shown_text.h"
#include "similar_files.h"
#include "walk_folder.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <system_error>
#include <utility>
#include <vector>

namespace gait_walk {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void refuse(const fs::path& folder, std::string text) {
  throw walk_error({{folder.string(), 0, "", std::move(text)}});
}

/// How a file begins; nothing of a pipe, which would wait for a writer.
std::string beginning_of(const fs::path& file) {
  std::string beginning(8, '\0');
  std::error_code error;
  std::ifstream stream;
  if (fs::is_regular_file(file, error)) {
    stream.open(file, std::ios::binary);
  }
  stream.read(beginning.data(), static_cast<std::streamsize>(beginning.size()));
  beginning.resize(static_cast<std::size_t>(stream.gcount()));
  return beginning;
}

bool is_table_name(const fs::path& name) {
  const std::vector<fs::path> names = table_files({});
  return std::find(names.begin(), names.end(), name) != names.end();
}

[[noreturn]] void refuse_file(const fs::path& file) {
  if (is_workbook(beginning_of(file))) {
    refuse(file,
           "found an Excel workbook, expected a walk folder: save each sheet as CSV (UTF-8) in a "
           "folder, as recording.csv, foot_cycles.csv and feet_cycles.csv");
  }
  if (is_table_name(file.filename())) {
    const fs::path folder = file.has_parent_path() ? file.parent_path() : ".";
    refuse(file, "found a table, expected a walk folder: give the folder that it is in, " +
                     in_quotes(folder.string()));
  }
  refuse(file,
         "found a file, expected a walk folder, with recording.csv and foot_cycles.csv in it");
}

/// The name of a workbook in a folder, or an empty text.
std::string workbook_in(const fs::path& folder) {
  constexpr std::array<std::string_view, 3> endings = {".xlsx", ".xlsm", ".xls"};
  std::vector<std::string> workbooks;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator();
       entry.increment(error)) {
    const fs::path name = entry->path().filename();
    if (std::find(endings.begin(), endings.end(), name.extension()) != endings.end() &&
        is_workbook(beginning_of(entry->path()))) {
      workbooks.push_back(name.string());
    }
  }
  const auto first = std::min_element(workbooks.begin(), workbooks.end());
  return first == workbooks.end() ? "" : *first;
}

[[noreturn]] void refuse_folder_without_tables(const fs::path& folder) {
  std::error_code error;
  const fs::directory_iterator readable(folder, error);
  if (error) {
    refuse(folder,
           "found a folder that cannot be read (" + error.message() + "), expected a walk folder");
  }
  if (const std::string workbook = workbook_in(folder); !workbook.empty()) {
    refuse(folder, "found no tables, but the workbook " + in_quotes(workbook) +
                       ", expected a walk folder: save each sheet as CSV (UTF-8), as "
                       "recording.csv, foot_cycles.csv and feet_cycles.csv");
  }
  const std::vector<fs::path> below = some_walk_folders_below(folder);
  if (!below.empty()) {
    refuse(folder,
           "found no tables, but walk folders below, expected a walk folder: give one, "
           "such as " +
               in_quotes(below.front().string()) + ", or --recursive for all of them");
  }
  refuse(folder,
         "found neither recording.csv nor foot_cycles.csv, expected a walk folder with both");
}

}  // namespace

void require_walk_folder(const fs::path& folder) {
  std::error_code error;
  const fs::file_status status = fs::status(folder, error);
  if (fs::is_directory(status)) {
    if (!is_walk_folder(folder)) {
      refuse_folder_without_tables(folder);
    }
    return;
  }
  if (fs::exists(status)) {
    refuse_file(folder);
  }
  const std::string why =
      status.type() == fs::file_type::not_found ? "" : " (" + error.message() + ")";
  refuse(folder, "found no such folder" + why + ", expected a walk folder");
}

std::string misnamed_table(const fs::path& folder, std::string_view table) {
  const similar_files similar = files_like(folder, table);
  const bool is_text = !similar.text.empty();
  if (!is_text && similar.workbook.empty()) {
    return {};
  }
  const std::string name(table);
  const bool is_optional =
      table != table_name<recording_row> && table != table_name<foot_cycle_row>;
  return "found no such file, but " +
         (is_text ? in_quotes(similar.text) + ", expected a table: rename it to " + name
                  : "the workbook " + in_quotes(similar.workbook) +
                        ", expected a table: save its sheet as CSV (UTF-8), as " + name) +
         (is_optional ? ", or move it out of the folder if it is something else" : "");
}

std::string missing_table(const fs::path& folder, std::string_view table) {
  if (const std::string workbook = workbook_in(folder); !workbook.empty()) {
    return "found no such file, but the workbook " + in_quotes(workbook) +
           ", expected a table: save its sheet as CSV (UTF-8) under this name";
  }
  if (table == table_name<feet_cycle_row>) {
    return "found no such file, expected a table: write it, or analyse one foot with --foot";
  }
  std::string others;
  for (const fs::path& file : table_files(folder)) {
    std::error_code error;
    if (fs::exists(file, error)) {
      others += (others.empty() ? " beside " : ", ") + file.filename().string();
    }
  }
  return "found no such file" + others +
         ", expected a table: is the folder copied or written only in part?";
}

std::string half_written_table(const fs::path& folder, std::string_view table) {
  const fs::path file = folder / table;
  std::error_code error;
  if (!fs::exists(part_of(file), error)) {
    return {};
  }
  std::string text = "found " + part_of(table).string() +
                     ", left by an interrupted write, expected a whole table: write the "
                     "walk again";
  if (fs::exists(file, error)) {
    return text + ", or remove that file if the table is whole";
  }
  return table == table_name<about_row> ? text + ", or remove that file to do without the table"
                                        : text;
}

}  // namespace gait_walk
