#include "output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace gait_program {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const std::string& destination) {
  throw std::system_error(errno, std::generic_category(), "cannot write " + destination);
}

void write_all(int descriptor, std::string_view text, const std::string& destination) {
  while (!text.empty()) {
    const ssize_t written = ::write(descriptor, text.data(), text.size());
    if (written < 0 && errno != EINTR) {
      fail(destination);
    }
    text.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
  }
}

/// An open file, closed at the end.
class open_file {
public:
  open_file(int descriptor, std::string destination)
      : descriptor_(descriptor), destination_(std::move(destination)) {
    if (descriptor_ < 0) {
      fail(destination_);
    }
  }
  open_file(const open_file&) = delete;
  open_file(open_file&&) = delete;
  open_file& operator=(const open_file&) = delete;
  open_file& operator=(open_file&&) = delete;
  ~open_file() {
    if (descriptor_ >= 0) {
      ::close(descriptor_);
    }
  }

  int descriptor() const { return descriptor_; }
  void write(std::string_view text) const { write_all(descriptor_, text, destination_); }

  /// Closes the file; a network file system reports a full disk no earlier.
  void close() {
    if (::close(std::exchange(descriptor_, -1)) != 0) {
      fail(destination_);
    }
  }

private:
  int descriptor_;
  std::string destination_;
};

/// The permissions that the new file is to have: those of the file it replaces, or those of any new
/// file.
mode_t mode_of(const fs::path& file) {
  struct stat status {};
  if (::stat(file.c_str(), &status) == 0) {
    return status.st_mode & 07777U;
  }
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return 0666U & ~mask;
}

/// Puts off the signals that end the program, so that none comes between a file and its removal or
/// renaming. What arrives meanwhile ends the program afterwards.
class signals_put_off {
public:
  signals_put_off() {
    sigset_t ends{};
    sigemptyset(&ends);
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
      sigaddset(&ends, signal);
    }
    ::pthread_sigmask(SIG_BLOCK, &ends, &before_);
  }
  signals_put_off(const signals_put_off&) = delete;
  signals_put_off(signals_put_off&&) = delete;
  signals_put_off& operator=(const signals_put_off&) = delete;
  signals_put_off& operator=(signals_put_off&&) = delete;
  ~signals_put_off() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

private:
  sigset_t before_{};
};

void replace(const fs::path& file, std::string_view text) {
  const signals_put_off while_there_is_a_temporary_file;
  std::string temporary = file.string() + ".XXXXXX";
  open_file part(::mkstemp(temporary.data()), file.string());
  try {
    part.write(text);
    if (::fchmod(part.descriptor(), mode_of(file)) != 0 || ::fsync(part.descriptor()) != 0) {
      fail(file.string());
    }
    part.close();
    if (::rename(temporary.c_str(), file.c_str()) != 0) {
      fail(file.string());
    }
  } catch (...) {
    ::unlink(temporary.c_str());
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

int end_by_broken_pipe() {
  static_cast<void>(std::signal(SIGPIPE, SIG_DFL));
  static_cast<void>(std::raise(SIGPIPE));
  constexpr int shells_status_of_the_signal = 128 + SIGPIPE;
  return shells_status_of_the_signal;
}

output::output(std::optional<fs::path> file) : file_(std::move(file)) {
  if (!file_) {
    return;
  }
  std::error_code none;
  // A symbolic link keeps its place; what it points to is replaced.
  if (const fs::path target = fs::canonical(*file_, none); !none) {
    file_ = target;
  } else if (fs::is_symlink(*file_, none)) {
    // As cp does: who made the link wants the file elsewhere.
    errno = ENOENT;
    fail(file_->string() + ", a link that leads nowhere");
  }
  if (fs::is_directory(*file_, none)) {
    errno = EISDIR;
    fail(file_->string());
  }
  const bool exists = fs::exists(*file_, none);
  if (exists && ::access(file_->c_str(), W_OK) != 0) {
    fail(file_->string());
  }
  can_be_replaced_ = !exists || fs::is_regular_file(*file_, none);
  // What takes hours to compute is not to end in a folder that takes no file.
  if (can_be_replaced_) {
    const fs::path folder = file_->has_parent_path() ? file_->parent_path() : fs::path(".");
    if (::access(folder.c_str(), W_OK | X_OK) != 0) {
      fail(file_->string());
    }
  }
}

void output::write(std::string_view text) {
  if (!file_) {
    try {
      write_all(STDOUT_FILENO, text, "the standard output");
    } catch (const std::system_error& error) {
      if (error.code() == std::errc::broken_pipe) {
        throw reader_is_gone();
      }
      throw;
    }
  } else {
    held_.append(text);
  }
}

void output::finish() {
  if (!file_) {
    return;
  }
  if (can_be_replaced_) {
    replace(*file_, held_);
  } else {
    open_file device(::open(file_->c_str(), O_WRONLY | O_CLOEXEC), file_->string());
    device.write(held_);
    device.close();
  }
}

}  // namespace gait_program
