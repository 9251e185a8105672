#ifndef TOOLS_WALK_FOLDER_CSV_TABLE_H
#define TOOLS_WALK_FOLDER_CSV_TABLE_H

/// \file
/// CSV text as rows with their line numbers, and cells as CSV text.

#include <cstddef>
#include <iosfwd>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace gait_walk {

/// One row of a table.
class csv_row {
public:
  std::size_t line = 0;  ///< line on which the row begins, as an editor counts it

  std::size_t size() const { return ends_.size(); }
  std::string_view operator[](std::size_t cell) const;
  bool is_ascii() const;

  void clear();
  void append(std::string_view cell);

private:
  std::string text_;
  std::vector<std::size_t> ends_;  ///< of each cell, in text_
};

/// A table that cannot be read any further.
class table_error : public std::runtime_error {
public:
  table_error(std::size_t line, const std::string& text) : std::runtime_error(text), line_(line) {}
  std::size_t line() const { return line_; }

private:
  std::size_t line_;
};

/// Reads the rows of a comma-separated table.
///
/// Of the text no more is held than a chunk and one row. Accepts LF, CRLF and CR, a UTF-8
/// byte-order mark, and a last line without a line break; blank lines are no rows. Blanks around a
/// cell that is not quoted are not part of it.
class csv_table {
public:
  /// No row that is meant comes near this size; one quotation mark too few makes a row of the rest
  /// of the file.
  static constexpr std::size_t max_row_bytes = std::size_t{1} << 20U;

  explicit csv_table(std::istream& text);
  ~csv_table();
  csv_table(const csv_table&) = delete;
  csv_table& operator=(const csv_table&) = delete;
  csv_table(csv_table&&) = delete;
  csv_table& operator=(csv_table&&) = delete;

  /// Reads the next row into `row`; false when there is none left. Throws table_error for a text
  /// that is not UTF-8, not separated by commas or wrongly quoted, for a row that is too long, and
  /// for a text that cannot be read.
  bool next(csv_row& row);

private:
  class parser;
  std::unique_ptr<parser> parser_;
};

/// Whether a file begins as the workbooks of spreadsheet programs do.
bool is_workbook(std::string_view beginning);

/// A cell in quotation marks.
std::string quoted_csv_cell(std::string_view cell);

/// A cell as it stands in a table: quoted where a reader would otherwise see something else.
std::string csv_cell(std::string_view cell);

}  // namespace gait_walk

#endif
