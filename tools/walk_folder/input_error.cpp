#include "input_error.h"

#include <algorithm>
#include <string>

namespace gait_walk {

std::string input_error::message() const {
  std::string message = file;
  if (line != 0) {
    message += ":" + std::to_string(line);
  }
  if (!column.empty()) {
    message += ": column " + column;
  }
  return message + ": " + text;
}

walk_error::walk_error(std::vector<input_error> errors)
    : std::runtime_error(errors.empty() ? "walk cannot be read" : errors.front().message()),
      errors_(std::move(errors)) {}

void short_list::add(std::size_t number) {
  constexpr std::size_t most_shown = 5;
  if (count_ != 0 && number == last_) {
    return;
  }
  last_ = number;
  ++count_;
  if (first_.size() < most_shown) {
    first_.push_back(number);
  }
}

std::string short_list::text(std::string_view one, std::string_view several,
                             std::size_t less) const {
  std::vector<std::size_t> sorted = first_;
  std::sort(sorted.begin(), sorted.end());
  std::string text;
  for (const std::size_t number : sorted) {
    text += (text.empty() ? "" : ", ") + std::to_string(number - less);
  }
  return std::string(count_ == 1 ? one : several) + " " + text +
         (count_ > sorted.size() ? ", ..." : "");
}

namespace {

/// What a message says beyond the content of the cell.
std::string_view expectation(std::string_view text) {
  return text.substr(std::min(text.find(", expected"), text.size()));
}

bool is_alike(const input_error& a, const input_error& b) {
  return a.column == b.column && !expectation(a.text).empty() &&
         expectation(a.text) == expectation(b.text);
}

}  // namespace

input_error_list::entry* input_error_list::like(const input_error& error) {
  const auto found = std::find_if(entries_.begin(), entries_.end(),
                                  [&](const entry& other) { return is_alike(other.error, error); });
  return found == entries_.end() ? nullptr : &*found;
}

void input_error_list::add(std::size_t line, std::string_view column, std::string text) {
  input_error error{file_, line, std::string(column), std::move(text)};
  entry* const same = like(error);
  // What is said of a line, or of all of the table, is not said of rows.
  if (same != nullptr && line != 0 && line != same->error.line) {
    same->further.add(line);
  } else if (entries_.size() < limit_) {
    entries_.push_back({std::move(error), {}});
  } else {
    ++beyond_limit_;
  }
}

void input_error_list::append_to(std::vector<input_error>& all) && {
  std::stable_sort(entries_.begin(), entries_.end(),
                   [](const auto& a, const auto& b) { return a.error.line < b.error.line; });
  for (auto& [error, further] : entries_) {
    if (further.count() != 0) {
      error.text += " (and in " + std::to_string(further.count()) +
                    (further.count() == 1 ? " more row: " : " more rows: ") +
                    further.text(words_.line, words_.lines, words_.less()) + ")";
    }
    all.push_back(std::move(error));
  }
  if (beyond_limit_ != 0) {
    all.push_back({file_, 0, "", "and " + std::to_string(beyond_limit_) + " more"});
  }
}

}  // namespace gait_walk
