#include "open_table.h"

#include "input_error.h"

#include <cerrno>
#include <fstream>
#include <system_error>
#include <utility>

namespace gait_walk {

namespace {

namespace fs = std::filesystem;

opened_table unreadable(std::string complaint, bool missing = false) {
  return {nullptr, nullptr, std::move(complaint), missing};
}

}  // namespace

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

}  // namespace gait_walk
