#include "fault.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace gait_walk {

std::string fault::message() const {
  std::string message = file;
  if (line != 0) {
    message += ":" + std::to_string(line);
  }
  if (!column.empty()) {
    message += ": column " + column;
  }
  return message + ": " + text;
}

walk_error::walk_error(std::vector<fault> faults)
    : std::runtime_error(faults.empty() ? "walk cannot be read" : faults.front().message()),
      faults_(std::move(faults)) {}

void fault_list::add(std::size_t line, std::string_view column, std::string text) {
  if (faults_.size() < limit_) {
    faults_.push_back({file_, line, std::string(column), std::move(text)});
  } else {
    ++beyond_limit_;
  }
}

void fault_list::append_to(std::vector<fault>& all) && {
  std::stable_sort(faults_.begin(), faults_.end(),
                   [](const fault& a, const fault& b) { return a.line < b.line; });
  std::move(faults_.begin(), faults_.end(), std::back_inserter(all));
  if (beyond_limit_ != 0) {
    all.push_back({file_, 0, "", "and " + std::to_string(beyond_limit_) + " more"});
  }
}

namespace {

bool continues_character(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

std::string escaped(unsigned char byte) {
  switch (byte) {
    case '\n':
      return "\\n";
    case '\r':
      return "\\r";
    case '\t':
      return "\\t";
    case '"':
      return "\\\"";
    default:
      break;
  }
  constexpr std::string_view digits = "0123456789abcdef";
  return {'\\', 'x', digits[byte >> 4U], digits[byte & 0xFU]};
}

}  // namespace

std::string shown(std::string_view text) {
  constexpr std::size_t longest = 40;
  const bool too_long = text.size() > longest;
  if (too_long) {
    std::size_t end = longest;
    while (end > 0 && continues_character(text[end])) {
      --end;
    }
    text = text.substr(0, end);
  }
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const auto next = i + 1 < text.size() ? static_cast<unsigned char>(text[i + 1]) : 0U;
    // U+0080 to U+009F are control characters as well; terminals obey some of them.
    if (byte == 0xC2 && next >= 0x80 && next < 0xA0) {
      result += escaped(static_cast<unsigned char>(next));
      ++i;
    } else if (byte < 0x20 || byte == 0x7F || byte == '"') {
      result += escaped(byte);
    } else {
      result += text[i];
    }
  }
  return too_long ? result + "..." : result;
}

std::string in_quotes(std::string_view cell) { return '"' + shown(cell) + '"'; }

std::string found(std::string_view cell) {
  return cell.empty() ? "found an empty cell" : "found " + in_quotes(cell);
}

}  // namespace gait_walk
