#include "columns.h"
#include "walk_folder.h"

#include <algorithm>
#include <iterator>
#include <system_error>

namespace gait_walk {

namespace {

namespace fs = std::filesystem;

bool is_walk_folder(const fs::path& folder) {
  for (const auto table : {table_name<recording_row>, table_name<foot_cycle_row>}) {
    std::error_code error;
    const fs::path file = folder / table;
    if (fs::exists(file, error) || fs::exists(fs::path(file) += ".part", error)) {
      return true;
    }
  }
  return false;
}

/// Appends a folder, if it is a walk folder, and those below it.
void add_walk_folders(const fs::path& folder, std::vector<fs::path>& found) {
  std::error_code error;
  for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator();
       entry.increment(error)) {
    std::error_code ignored;
    if (fs::is_directory(entry->symlink_status(ignored))) {
      add_walk_folders(entry->path(), found);
    }
  }
  // A folder that cannot be looked into is taken along: reading it says why.
  if (error || is_walk_folder(folder)) {
    found.push_back(folder);
  }
}

}  // namespace

std::vector<fs::path> expand(const std::vector<fs::path>& folders, bool recursive) {
  if (!recursive) {
    return folders;
  }
  std::vector<fs::path> all;
  for (const fs::path& folder : folders) {
    std::vector<fs::path> found;
    add_walk_folders(folder, found);
    if (found.empty()) {
      found.push_back(folder);
    }
    std::sort(found.begin(), found.end());
    std::move(found.begin(), found.end(), std::back_inserter(all));
  }
  return all;
}

}  // namespace gait_walk
