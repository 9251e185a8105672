#ifndef TOOLS_REPORT_TEXT_LAYOUT_H
#define TOOLS_REPORT_TEXT_LAYOUT_H

/// \file
/// Plain text within a width: wrapped sentences, and tables that flow into as many blocks as they
/// need.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace gait_report {

/// How text is shown.
struct text_style {
  std::size_t width = 100;  ///< characters per line
  bool bold = false;        ///< whether headings are set bold with escape codes
};

/// A heading: the text, bold where the style says so.
std::string heading(std::string_view text, const text_style& style);

/// Text padded with blanks to a width; longer text is left as it is.
std::string pad_left(std::string_view text, std::size_t width);
std::string pad_right(std::string_view text, std::size_t width);

/// A paragraph that begins with `first` and is broken at blanks; further lines are indented by
/// `indent`.
std::string wrapped(std::string_view first, std::string_view text, std::size_t indent,
                    const text_style& style);

enum class alignment { left, right };

/// Columns that belong together under one heading and stay together: one for each sub-heading, or a
/// single one.
struct column_group {
  std::string heading;
  alignment align = alignment::right;
  /// The cells of each column, one for each row of the table.
  std::vector<std::vector<std::string>> columns;
  /// Of its columns, in place of the table's; none where these will do.
  std::vector<std::string> sub_headings = {};
};

struct flowing_table {
  std::string label_heading;
  std::vector<std::string> labels;  ///< one for each row
  /// Of a group's columns; none when every group has a single column.
  std::vector<std::string> sub_headings;
  std::vector<column_group> groups;
};

/// The table in as many blocks as its width needs, each with the labels: every group goes into the
/// first block that has room for it, in order. A group that is wider than any block gets one for
/// itself.
std::string lay_out(const flowing_table& table, const text_style& style);

/// The width of a block of the table that holds this group alone.
std::size_t width_alone(const flowing_table& table, const column_group& group);

}  // namespace gait_report

#endif
