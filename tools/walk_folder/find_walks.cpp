#include "find_walks.h"

#include "columns.h"
#include "similar_files.h"
#include "walk_folder.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <limits>
#include <system_error>

namespace gait_walk {

namespace {

namespace fs = std::filesystem;

/// A search for walk folders.
struct search {
  std::size_t levels = std::numeric_limits<std::size_t>::max();   ///< how deep it may go
  std::size_t entries = std::numeric_limits<std::size_t>::max();  ///< how many it may look at
  bool takes_unreadable = true;  ///< a folder that cannot be looked into: reading it says why
  std::vector<fs::path> found = {};
};

void look_into(const fs::path& folder, std::size_t level, search& search) {
  std::error_code error;
  for (fs::directory_iterator entry(folder, error);
       !error && entry != fs::directory_iterator() && search.entries != 0; entry.increment(error)) {
    --search.entries;
    std::error_code ignored;
    if (level < search.levels && fs::is_directory(entry->symlink_status(ignored))) {
      look_into(entry->path(), level + 1, search);
    }
  }
  if (error ? search.takes_unreadable : is_walk_folder(folder)) {
    search.found.push_back(folder);
  }
}

std::vector<fs::path> found_by(search search, const fs::path& folder) {
  look_into(folder, 0, search);
  std::sort(search.found.begin(), search.found.end());
  return std::move(search.found);
}

}  // namespace

fs::path part_of(const fs::path& table) { return fs::path(table) += ".part"; }

bool is_walk_folder(const fs::path& folder) {
  for (const auto table : {table_name<recording_row>, table_name<foot_cycle_row>}) {
    std::error_code error;
    for (const fs::path& file : {folder / table, part_of(folder / table)}) {
      // A link that leads nowhere is there, too: reading says what is wrong with it.
      if (fs::exists(fs::symlink_status(file, error))) {
        return true;
      }
    }
  }
  return !files_like(folder, table_name<foot_cycle_row>).text.empty();
}

std::vector<fs::path> walk_folders_from(const fs::path& folder) { return found_by({}, folder); }

std::vector<fs::path> some_walk_folders_below(const fs::path& folder) {
  constexpr std::size_t levels = 3;
  constexpr std::size_t entries = 10000;
  return found_by({levels, entries, false}, folder);
}

std::vector<fs::path> expand(const std::vector<fs::path>& folders, bool recursive) {
  if (!recursive) {
    return folders;
  }
  std::vector<fs::path> all;
  for (const fs::path& folder : folders) {
    std::vector<fs::path> found = walk_folders_from(folder);
    if (found.empty()) {
      found.push_back(folder);
    }
    std::move(found.begin(), found.end(), std::back_inserter(all));
  }
  return all;
}

}  // namespace gait_walk
