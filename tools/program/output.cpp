#include "output.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace gait_program {
namespace {

namespace fs = std::filesystem;

/// The file that a path stands for. Throws where it could not be written, or is none.
fs::path file_behind(const fs::path& path) {
  std::error_code none;
  fs::path file = path;
  // A symbolic link keeps its place; what it points to is replaced.
  if (const fs::path target = fs::canonical(path, none); !none) {
    file = target;
  } else if (fs::is_symlink(path, none)) {
    // As cp does: who made the link wants the file elsewhere.
    errno = ENOENT;
    fail_to_write(path.string() + ", a link that leads nowhere");
  }
  if (fs::is_directory(file, none)) {
    errno = EISDIR;
    fail_to_write(file.string());
  }
  if (fs::exists(file, none) && ::access(file.c_str(), W_OK) != 0) {
    fail_to_write(file.string());
  }
  return file;
}

void write_to_standard_output(std::string_view text) {
  try {
    write_all(STDOUT_FILENO, text, "the standard output");
  } catch (const std::system_error& error) {
    if (error.code() == std::errc::broken_pipe) {
      throw reader_is_gone();
    }
    throw;
  }
}

}  // namespace

void prepare_standard_streams() {
  static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
  static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
  // Opened files take the lowest free number. The standard output is held open for reading only, so
  // that writing to it still fails; messages have nowhere to go.
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(descriptor, F_GETFD) < 0) {
      static_cast<void>(::open("/dev/null", descriptor == STDERR_FILENO ? O_WRONLY : O_RDONLY));
    }
  }
}

output::output(std::optional<fs::path> file) : file_(std::move(file)) {
  if (!file_) {
    return;
  }
  file_ = file_behind(*file_);
  std::error_code none;
  // What takes hours to compute is not to end in a folder that takes no file: it is opened now.
  if (!fs::exists(*file_, none) || fs::is_regular_file(*file_, none)) {
    new_file_ = std::make_unique<new_file>(*file_);
  }
}

void output::write(std::string_view text) {
  if (!file_) {
    write_to_standard_output(text);
  } else if (new_file_) {
    new_file_->write(text);
  } else {
    // Opening a pipe waits for its reader.
    if (!device_) {
      device_ = std::make_unique<open_file>(::open(file_->c_str(), O_WRONLY | O_CLOEXEC),
                                            file_->string());
    }
    device_->write(text);
  }
}

void output::finish() {
  if (new_file_) {
    new_file_->take_place();
    new_file_.reset();
  } else if (device_) {
    device_->close();
    device_.reset();
  }
}

}  // namespace gait_program
