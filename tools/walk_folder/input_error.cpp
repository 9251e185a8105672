#include "input_error.h"

#include <algorithm>
#include <iterator>

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

void input_error_list::add(std::size_t line, std::string_view column, std::string text) {
  if (errors_.size() < limit_) {
    errors_.push_back({file_, line, std::string(column), std::move(text)});
  } else {
    ++beyond_limit_;
  }
}

void input_error_list::append_to(std::vector<input_error>& all) && {
  std::stable_sort(errors_.begin(), errors_.end(),
                   [](const auto& a, const auto& b) { return a.line < b.line; });
  std::move(errors_.begin(), errors_.end(), std::back_inserter(all));
  if (beyond_limit_ != 0) {
    all.push_back({file_, 0, "", "and " + std::to_string(beyond_limit_) + " more"});
  }
}

}  // namespace gait_walk
