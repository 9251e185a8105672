#include "similar_files.h"

#include "cell.h"
#include "nearest_name.h"
#include "walk_folder.h"

#include <algorithm>
#include <array>
#include <system_error>

namespace gait_walk {

namespace {

namespace fs = std::filesystem;

struct known_ending {
  std::string_view ending;
  bool is_workbook;
};

constexpr std::array<known_ending, 10> endings = {{{"", false},
                                                   {".csv", false},
                                                   {".csv.csv", false},
                                                   {".csv.txt", false},
                                                   {".txt", false},
                                                   {".tsv", false},
                                                   {".xlsx", true},
                                                   {".xlsm", true},
                                                   {".xls", true},
                                                   {".ods", true}}};

/// How many letters make one name of the other; many where they begin differently: left_cycles is
/// not meant as feet_cycles.
std::size_t letters_between(const std::string& name, const std::string& table) {
  return name.substr(0, 1) == table.substr(0, 1) ? edit_distance(name, table) : table.size();
}

}  // namespace

similar_name similar_to(const fs::path& name) {
  const std::vector<fs::path> tables = table_files({});
  if (std::find(tables.begin(), tables.end(), name) != tables.end()) {
    return {name.string(), false};
  }
  const std::string file = lower(name.string());
  const std::size_t stem_end = std::min(file.find('.'), file.size());
  const std::string stem = bare_name(std::string_view(file).substr(0, stem_end));
  const auto* const ending = std::find_if(endings.begin(), endings.end(), [&](const auto& known) {
    return known.ending == std::string_view(file).substr(stem_end);
  });
  if (stem.empty() || ending == endings.end() || file == "about.txt") {
    return {};
  }
  similar_name nearest{"", ending->is_workbook};
  std::size_t smallest = 3;  // three other letters make another name
  for (const fs::path& table : tables) {
    const std::size_t letters = letters_between(stem, bare_name(table.stem().string()));
    if (letters < smallest) {
      smallest = letters;
      nearest.table = table.string();
    }
  }
  return nearest;
}

similar_files files_like(const fs::path& folder, std::string_view table) {
  similar_files found;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator();
       entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    const similar_name similar = similar_to(name);
    std::string& first = similar.is_workbook ? found.workbook : found.text;
    std::error_code unknown;
    // The table itself is not another file, nor is one that is the same where capitals make no
    // difference to the system.
    if (similar.table == table && (first.empty() || name < first) &&
        entry->is_regular_file(unknown) &&
        !fs::equivalent(entry->path(), folder / table, unknown)) {
      first = name;
    }
  }
  return found;
}

}  // namespace gait_walk
