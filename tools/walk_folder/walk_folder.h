#ifndef TOOLS_WALK_FOLDER_WALK_FOLDER_H
#define TOOLS_WALK_FOLDER_WALK_FOLDER_H

/// \file
/// Reading, checking and writing walk folders: one folder per walk, with CSV tables in it.

#include "input_error.h"
#include "walk.h"
#include "wording.h"

#include <cstddef>
#include <filesystem>
#include <iosfwd>
#include <limits>
#include <string>
#include <vector>

namespace gait_walk {

struct read_options {
  /// Further ones are counted in a last one ("... and 12 more").
  std::size_t errors_per_file = 20;
  /// Strides of a foot, and cycles of both feet; those beyond are counted for the message, and not
  /// kept.
  std::size_t most_strides = std::numeric_limits<std::size_t>::max();
  /// Which cycles the walk is read for. For those of one foot, feet_cycles.csv may be absent.
  analysed_cycles analysed = analysed_cycles::feet;
  /// Names of columns that are left out, in any table; "all" stands for every unknown one.
  std::vector<std::string> ignored_columns = {};
  wording words = {};
};

/// A walk, and what is worth a warning about it.
struct read_result {
  gait_walk::walk walk;
  std::vector<input_error> warnings;
};

/// The tables of a walk as streams, for callers that hold them elsewhere than in a folder.
struct walk_tables {
  std::string name;  ///< the walk's name, and the folder in messages
  std::istream* recording = nullptr;
  std::istream* foot_cycles = nullptr;
  std::istream* feet_cycles = nullptr;  ///< may be null when one foot is recorded or analysed
  std::istream* exclusions = nullptr;   ///< may be null
  std::istream* about = nullptr;        ///< may be null
};

/// The files of a folder's tables, whether they are there or not.
std::vector<std::filesystem::path> table_files(const std::filesystem::path& folder);

/// The name of a folder's walk: the folder's own name, also of one that is given as "walk/" or ".".
std::string walk_name(const std::filesystem::path& folder);

/// The walk folders that are meant by `folders`. Without `recursive` these are the folders
/// themselves. With it, each is replaced by the walk folders in it, itself among them if it is one,
/// sorted by path; a folder without any stays, so that reading it says what is wrong. A walk folder
/// holds recording.csv or foot_cycles.csv, or one of them half written. Links to folders are not
/// followed.
std::vector<std::filesystem::path> expand(const std::vector<std::filesystem::path>& folders,
                                          bool recursive);

/// Reads a walk folder and checks all of it. Throws walk_error with everything that is wrong.
read_result read_walk_folder(const std::filesystem::path& folder, const read_options& options = {});

/// Reads and checks a walk from streams. Throws walk_error with everything that is wrong.
read_result read_walk_tables(const walk_tables& tables, const read_options& options = {});

/// Writes a walk as a folder that read_walk_folder reads back as the same walk, to the bit.
///
/// The folder is made when it is not there, and tables in it are replaced once all of them are
/// written. The walk must be one that could be read: each foot with cycles whose indices run from
/// 0, links to cycles that are there. Throws std::invalid_argument for a walk with a value that no
/// table can hold (infinity, NaN, a reason that is not UTF-8), std::filesystem::filesystem_error or
/// std::ios_base::failure when the folder cannot be written.
void write_walk_folder(const walk& walk, const std::filesystem::path& folder);

}  // namespace gait_walk

#endif
