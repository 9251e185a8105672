#include "progress.h"

#include "call_cost.h"

#include "number.h"

#include <array>
#include <iostream>

namespace gait_program {
namespace {

/// "3.2 a second", "48.0 a minute", "1.5 an hour".
std::string rate_in_words(double per_second) {
  struct unit {
    double seconds;
    const char* name;
  };
  constexpr std::array<unit, 2> units = {{{1.0, " a second"}, {60.0, " a minute"}}};
  for (const unit& unit : units) {
    if (per_second * unit.seconds >= 1.0) {
      return gait_report::rounded(per_second * unit.seconds, 1) + unit.name;
    }
  }
  return gait_report::rounded(per_second * 3600.0, 1) + " an hour";
}

}  // namespace

std::string progress_in_words(std::size_t done, std::size_t walks, double seconds,
                              std::size_t width) {
  std::string words = std::to_string(done) + " of " + std::to_string(walks) + " walks";
  if (done > 0 && seconds > 0.0) {
    const double per_second = static_cast<double>(done) / seconds;
    words += ", " + rate_in_words(per_second) + ", " +
             rough_duration(static_cast<double>(walks - done) / per_second) + " left";
  }
  return words.substr(0, width);
}

progress::progress(std::size_t walks, std::size_t width) : walks_(walks), width_(width) {}

void progress::remove() {
  const std::lock_guard lock(mutex_);
  remove_line();
}

void progress::say(const std::string& lines) {
  if (lines.empty()) {
    return;
  }
  const std::lock_guard lock(mutex_);
  const bool was_shown = is_shown_;
  remove_line();
  std::cerr << lines;
  if (was_shown) {
    show_line(clock::now());
  }
}

void progress::count_walk() {
  using namespace std::chrono_literals;
  const std::lock_guard lock(mutex_);
  ++done_;
  const auto now = clock::now();
  // What is over in a moment needs no line, and nobody reads faster.
  const auto since = is_shown_ ? now - last_shown_ : now - start_;
  if (width_ > 0 && since >= (is_shown_ ? 200ms : 1000ms)) {
    remove_line();
    show_line(now);
  }
}

void progress::remove_line() {
  if (is_shown_) {
    std::cerr << "\r\x1b[K";
    is_shown_ = false;
  }
}

void progress::show_line(clock::time_point now) {
  const double seconds = std::chrono::duration<double>(now - start_).count();
  // In the last column, some terminals would begin a new line.
  std::cerr << progress_in_words(done_, walks_, seconds, width_ - 1);
  is_shown_ = true;
  last_shown_ = now;
}

}  // namespace gait_program
