#include "row_indices.h"

#include "shown_text.h"

#include <algorithm>
#include <utility>

namespace gait_walk {

namespace {

std::string repeated(int index, std::size_t first_line, const wording& words) {
  return found(std::to_string(index)) + " " + words.again(first_line);
}

std::string out_of_sequence(int index, int next, const std::string& whose) {
  std::string text = found(std::to_string(index));
  text += " where ";
  text += in_quotes(std::to_string(next));
  text += " comes next, expected the indices";
  text += whose;
  text += " from 0 without gaps: ";
  text += next == 0 ? "begin with 0" : "give a missing cycle a row without measured values";
  text += ", or leave the column out";
  return text;
}

}  // namespace

bool row_indices::check(table_report& report, const std::string& whose) {
  std::sort(places_.begin(), places_.end(), [](const place& a, const place& b) {
    return std::pair(a.index, a.line) < std::pair(b.index, b.line);
  });
  bool without_gaps = true;
  const place* last = nullptr;
  for (const place& next : places_) {
    if (last != nullptr && next.index == last->index) {
      report.errors.add(next.line, "index",
                        repeated(next.index, last->line, report.words) + ", expected each index" +
                            whose + " once");
      continue;
    }
    const int expected = last == nullptr ? 0 : last->index + 1;
    without_gaps = without_gaps && next.index == expected;
    if (next.index != expected && report.is_complete()) {
      report.errors.add(next.line, "index", out_of_sequence(next.index, expected, whose));
    }
    last = &next;
  }
  return without_gaps;
}

std::vector<std::size_t> row_indices::lines() const {
  std::vector<std::size_t> lines;
  lines.reserve(places_.size());
  for (const place& row : places_) {
    lines.push_back(row.line);
  }
  return lines;
}

bool row_indices::contains(int index) const {
  return std::binary_search(places_.begin(), places_.end(), place{index, 0},
                            [](const place& a, const place& b) { return a.index < b.index; });
}

}  // namespace gait_walk
