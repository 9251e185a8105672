#include "new_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <random>
#include <system_error>

namespace gait_program {
namespace {

namespace fs = std::filesystem;

/// The temporary name that a signal removes. A signal handler reaches nothing but globals.
// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables)
std::atomic<const char*> to_be_removed = nullptr;
static_assert(std::atomic<const char*>::is_always_lock_free, "a signal handler reads it");

void remove_and_end(int signal) {
  remove_temporary_name();
  // The handler was there for one signal only: now the signal has its usual effect.
  static_cast<void>(std::raise(signal));
}

/// Lets the signals that end the program remove the temporary name first. Those that are ignored,
/// as under nohup, stay so.
void remove_on_signals() {
  for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
    struct sigaction action {};
    if (::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_DFL) {
      action.sa_handler = remove_and_end;
      action.sa_flags = static_cast<int>(SA_RESETHAND);
      ::sigaction(signal, &action, nullptr);
    }
  }
}

/// Sets `name` to one beside a file that no other file has, by trying until `make(name)` makes
/// something of it, and lets signals remove it from then on. Returns what `make` returns: a
/// negative number, with errno, when it fails.
template <class Make>
int make_temporary_name(const fs::path& destination, std::string& name, Make make) {
  constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyz0123456789";
  constexpr int attempts = 100;
  std::random_device random;
  std::uniform_int_distribution<std::size_t> place(0, letters.size() - 1);
  remove_on_signals();
  int made = -1;
  for (int attempt = 0; attempt < attempts; ++attempt) {
    std::string candidate = destination.string() + ".";
    for (int i = 0; i < 6; ++i) {
      candidate += letters[place(random)];
    }
    name = std::move(candidate);
    // A signal may come before `make` returns. That the name is then another file's is as likely
    // as that two programs draw the same one.
    to_be_removed = name.c_str();
    made = make(name.c_str());
    if (made >= 0) {
      return made;
    }
    to_be_removed = nullptr;
    if (errno != EEXIST) {
      break;
    }
  }
  name.clear();
  return made;
}

/// By which a file without a name can be given one.
std::string path_of(int descriptor) { return "/proc/self/fd/" + std::to_string(descriptor); }

/// Opens a new file in the destination's folder: without a name, or else under a temporary one.
int open_beside(const fs::path& destination, std::string& temporary_name) {
  const fs::path folder = destination.has_parent_path() ? destination.parent_path() : ".";
  constexpr mode_t for_the_owner = 0600;
  const int nameless = ::open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, for_the_owner);
  if (nameless >= 0) {
    if (::access(path_of(nameless).c_str(), F_OK) == 0) {
      return nameless;
    }
    ::close(nameless);
  }
  return make_temporary_name(destination, temporary_name, [](const char* name) {
    return ::open(name, O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, for_the_owner);
  });
}

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

}  // namespace

void fail_to_write(const std::string& destination) {
  throw std::system_error(errno, std::generic_category(), "cannot write " + destination);
}

void write_all(int descriptor, std::string_view text, const std::string& destination) {
  while (!text.empty()) {
    const ssize_t written = ::write(descriptor, text.data(), text.size());
    if (written < 0 && errno != EINTR) {
      fail_to_write(destination);
    }
    text.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
  }
}

open_file::open_file(int descriptor, std::string destination)
    : descriptor_(descriptor), destination_(std::move(destination)) {
  if (descriptor_ < 0) {
    fail_to_write(destination_);
  }
}

open_file::~open_file() {
  if (descriptor_ >= 0) {
    ::close(descriptor_);
  }
}

void open_file::close() {
  if (::close(std::exchange(descriptor_, -1)) != 0) {
    fail_to_write(destination_);
  }
}

new_file::new_file(const fs::path& destination)
    : destination_(destination),
      file_(open_beside(destination, temporary_name_), destination.string()) {}

new_file::~new_file() {
  if (!temporary_name_.empty()) {
    remove_temporary_name();
  }
}

void new_file::take_place() {
  const int descriptor = file_.descriptor();
  if (::fchmod(descriptor, mode_of(destination_)) != 0 || ::fsync(descriptor) != 0) {
    fail_to_write(destination_.string());
  }
  // A link cannot replace a file, and a renaming can.
  if (temporary_name_.empty() &&
      make_temporary_name(destination_, temporary_name_, [&](const char* name) {
        return ::linkat(AT_FDCWD, path_of(descriptor).c_str(), AT_FDCWD, name, AT_SYMLINK_FOLLOW);
      }) != 0) {
    fail_to_write(destination_.string());
  }
  file_.close();
  if (::rename(temporary_name_.c_str(), destination_.c_str()) != 0) {
    fail_to_write(destination_.string());
  }
  to_be_removed = nullptr;
  temporary_name_.clear();
}

void remove_temporary_name() {
  if (const char* const name = to_be_removed.exchange(nullptr)) {
    ::unlink(name);
  }
}

}  // namespace gait_program
