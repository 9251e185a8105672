#include "open_table.h"

#include "folder_mistakes.h"
#include "shown_text.h"
#include "similar_files.h"

#include <cerrno>
#include <fstream>
#include <system_error>
#include <utility>

namespace gait_walk {

namespace {

namespace fs = std::filesystem;

opened_table unreadable(std::string complaint, bool missing = false) {
  return {nullptr, nullptr, std::move(complaint), missing, ""};
}

/// A table that is not there. Where something is in its place, a walk that could do without it has
/// an error all the same: data that somebody believes is read would be passed over.
opened_table absent(const fs::path& folder, std::string_view table) {
  std::error_code error;
  if (fs::is_symlink(folder / table, error)) {
    return unreadable("found a link that leads nowhere, expected a table");
  }
  if (std::string complaint = misnamed_table(folder, table); !complaint.empty()) {
    return unreadable(std::move(complaint));
  }
  return unreadable(missing_table(folder, table), true);
}

/// What to say of a file beside a table that is easily taken for it. A workbook is what the table
/// was saved from.
std::string file_beside(const fs::path& folder, std::string_view table) {
  const std::string other = files_like(folder, table).text;
  if (other.empty()) {
    return {};
  }
  return "found " + in_quotes(other) + " beside this table, expected one of the two: only " +
         std::string(table) + " is read";
}

}  // namespace

opened_table open_file(const fs::path& folder, std::string_view table) {
  const fs::path file = folder / table;
  std::error_code error;
  if (std::string complaint = half_written_table(folder, table); !complaint.empty()) {
    return unreadable(std::move(complaint));
  }
  const fs::file_status status = fs::status(file, error);
  if (status.type() == fs::file_type::not_found) {
    return absent(folder, table);
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
  return {text, std::move(stream), "", false, file_beside(folder, table)};
}

opened_table open_stream(std::istream* stream) {
  if (stream == nullptr) {
    return unreadable("found no such table, expected one", true);
  }
  return {stream, nullptr, "", false, ""};
}

}  // namespace gait_walk
