#ifndef TOOLS_PROGRAM_PROGRESS_H
#define TOOLS_PROGRAM_PROGRESS_H

/// \file
/// What is said on the standard error while walks are reported.

#include <chrono>
#include <cstddef>
#include <mutex>
#include <string>

namespace gait_program {

/// Says messages, and, on a terminal, how far the program is: a line that stands below them while
/// walks are reported, and is gone afterwards. Any thread may call any of it.
class progress {
public:
  /// `width` is that of the line, in characters; 0 for none.
  progress(std::size_t walks, std::size_t width);
  progress(const progress&) = delete;
  progress(progress&&) = delete;
  progress& operator=(const progress&) = delete;
  progress& operator=(progress&&) = delete;
  ~progress() { remove(); }

  /// Says some lines, each with its line break; none for an empty text.
  void say(const std::string& lines);

  /// Counts a walk that is done, reported or left out.
  void count_walk();

  /// Takes the line away.
  void remove();

private:
  using clock = std::chrono::steady_clock;

  void remove_line();
  void show_line(clock::time_point now);

  std::mutex mutex_;
  std::size_t walks_;
  std::size_t width_;
  std::size_t done_ = 0;
  bool is_shown_ = false;
  clock::time_point start_ = clock::now();
  clock::time_point last_shown_ = start_;
};

/// "12 of 40 walks, 3.2 a second, 9 seconds left", where `done` of them took some seconds; as much
/// of it as the width takes.
std::string progress_in_words(std::size_t done, std::size_t walks, double seconds,
                              std::size_t width);

}  // namespace gait_program

#endif
