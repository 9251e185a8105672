#include "text_layout.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace gait_report {
namespace {

constexpr std::string_view group_gap = "   ";
constexpr std::string_view column_gap = " ";
constexpr std::string_view row_indent = "  ";

std::string without_trailing_blanks(std::string text) {
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

std::string centred(std::string_view text, std::size_t width) {
  const std::size_t left = width > text.size() ? (width - text.size() + 1) / 2 : 0;
  return pad_right(std::string(left, ' ').append(text), width);
}

std::string aligned(std::string_view text, std::size_t width, alignment align) {
  return align == alignment::left ? pad_right(text, width) : pad_left(text, width);
}

std::size_t widest(const std::vector<std::string>& cells) {
  std::size_t width = 0;
  for (const auto& cell : cells) {
    width = std::max(width, cell.size());
  }
  return width;
}

std::size_t label_width_of(const flowing_table& table) {
  return std::max(widest(table.labels), table.label_heading.size());
}

/// A column group together with the widths of its columns.
class measured_group {
public:
  measured_group(const column_group& group, const std::vector<std::string>& sub_headings)
      : group_(&group) {
    for (std::size_t i = 0; i < group.columns.size(); ++i) {
      const auto& headings = group.sub_headings.empty() ? sub_headings : group.sub_headings;
      sub_headings_.push_back(group.columns.size() > 1 ? headings.at(i) : "");
      widths_.push_back(std::max(widest(group.columns[i]), sub_headings_[i].size()));
    }
    if (group.heading.size() > width()) {
      widths_.front() += group.heading.size() - width();
    }
  }

  std::size_t width() const {
    return std::accumulate(widths_.begin(), widths_.end(),
                           column_gap.size() * (widths_.size() - 1));
  }

  std::string heading_line() const {
    return widths_.size() > 1 ? centred(group_->heading, width())
                              : aligned(group_->heading, width(), group_->align);
  }
  std::string sub_heading_line() const {
    return joined([&](std::size_t column) { return sub_headings_[column]; });
  }
  std::string row(std::size_t index) const {
    return joined([&](std::size_t column) { return group_->columns[column].at(index); });
  }

private:
  template <class Cell>
  std::string joined(Cell cell) const {
    std::string line;
    for (std::size_t i = 0; i < widths_.size(); ++i) {
      line.append(i == 0 ? "" : column_gap).append(aligned(cell(i), widths_[i], group_->align));
    }
    return line;
  }

  const column_group* group_;
  std::vector<std::string> sub_headings_;
  std::vector<std::size_t> widths_;
};

using block = std::vector<measured_group>;

std::vector<block> flow(const flowing_table& table, std::size_t room) {
  std::vector<block> blocks;
  std::size_t used = 0;
  for (const auto& group : table.groups) {
    const measured_group measured(group, table.sub_headings);
    const std::size_t needed = group_gap.size() + measured.width();
    if (blocks.empty() || used + needed > room) {
      blocks.emplace_back();
      used = 0;
    }
    blocks.back().push_back(measured);
    used += needed;
  }
  return blocks;
}

/// One line of a block: a label, and what each group has to say.
template <class Part>
std::string block_line(const std::string& label, const block& groups, Part part) {
  std::string line = std::string(row_indent) + label;
  for (const auto& group : groups) {
    line.append(group_gap).append(part(group));
  }
  return without_trailing_blanks(line);
}

std::string lay_out_block(const flowing_table& table, const block& groups, std::size_t label_width,
                          const text_style& style) {
  const auto titles = block_line(pad_right(table.label_heading, label_width), groups,
                                 [](const auto& g) { return g.heading_line(); });
  std::string text = heading(titles, style) + "\n";
  const auto sub_headings = block_line(std::string(label_width, ' '), groups,
                                       [](const auto& g) { return g.sub_heading_line(); });
  if (!sub_headings.empty()) {
    text += sub_headings + "\n";
  }
  for (std::size_t i = 0; i < table.labels.size(); ++i) {
    text += block_line(pad_right(table.labels[i], label_width), groups,
                       [&](const auto& g) { return g.row(i); }) +
            "\n";
  }
  return text;
}

}  // namespace

std::string heading(std::string_view text, const text_style& style) {
  constexpr std::string_view bold_on = "\x1b[1m";
  constexpr std::string_view bold_off = "\x1b[0m";
  return style.bold ? std::string(bold_on).append(text).append(bold_off) : std::string(text);
}

std::string pad_left(std::string_view text, std::size_t width) {
  return std::string(width - std::min(width, text.size()), ' ').append(text);
}

std::string pad_right(std::string_view text, std::size_t width) {
  return std::string(text).append(width - std::min(width, text.size()), ' ');
}

std::string wrapped(std::string_view first, std::string_view text, std::size_t indent,
                    const text_style& style) {
  std::string lines;
  std::string line(first);
  bool line_has_words = false;
  while (!text.empty()) {
    const std::string_view word = text.substr(0, text.find(' '));
    text.remove_prefix(std::min(text.size(), word.size() + 1));
    const bool fits = line.size() + (line_has_words ? 1 : 0) + word.size() <= style.width;
    // A new line helps only if it has more room.
    if (!fits && line.size() > indent) {
      lines += without_trailing_blanks(std::move(line)) + "\n";
      line = std::string(indent, ' ');
      line_has_words = false;
    }
    line.append(line_has_words ? " " : "").append(word);
    line_has_words = true;
  }
  return lines + without_trailing_blanks(std::move(line)) + "\n";
}

std::size_t width_alone(const flowing_table& table, const column_group& group) {
  return row_indent.size() + label_width_of(table) + group_gap.size() +
         measured_group(group, table.sub_headings).width();
}

std::string lay_out(const flowing_table& table, const text_style& style) {
  const std::size_t label_width = label_width_of(table);
  const std::size_t taken = row_indent.size() + label_width;
  std::string text;
  for (const auto& groups : flow(table, style.width - std::min(style.width, taken))) {
    text += (text.empty() ? "" : "\n") + lay_out_block(table, groups, label_width, style);
  }
  return text;
}

}  // namespace gait_report
