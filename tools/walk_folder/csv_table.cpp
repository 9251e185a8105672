#include "csv_table.h"

#include <csv.h>
#include <utf8.h>

#include <algorithm>
#include <exception>
#include <istream>
#include <new>
#include <utility>

namespace gait_walk {

std::string_view csv_row::operator[](std::size_t cell) const {
  const std::size_t begin = cell == 0 ? 0 : ends_[cell - 1];
  return std::string_view(text_).substr(begin, ends_[cell] - begin);
}

bool csv_row::is_ascii() const {
  // Without a way out of the loop, many bytes are looked at together.
  unsigned char bits = 0;
  for (const char c : text_) {
    bits |= static_cast<unsigned char>(c);
  }
  return bits < 0x80;
}

void csv_row::clear() {
  text_.clear();
  ends_.clear();
}

void csv_row::append(std::string_view cell) {
  text_.append(cell);
  ends_.push_back(text_.size());
}

namespace {

constexpr std::size_t chunk_bytes = std::size_t{1} << 14U;

bool begins_with(std::string_view text, std::string_view beginning) {
  return text.substr(0, beginning.size()) == beginning;
}

/// "UTF-16" or "UTF-32" if the text is that, else nothing.
///
/// Without a byte-order mark, the zero bytes around the first letter tell.
const char* wide_encoding(std::string_view text) {
  using namespace std::string_view_literals;
  const std::string_view start = text.substr(0, 4);
  const auto zero = [&](std::size_t at) { return at < start.size() && start[at] == '\0'; };
  const auto letter = [&](std::size_t at) { return at < start.size() && start[at] != '\0'; };
  if (start == "\xFF\xFE\0\0"sv || start == "\0\0\xFE\xFF"sv) {
    return "UTF-32";
  }
  if (begins_with(start, "\xFF\xFE"sv) || begins_with(start, "\xFE\xFF"sv)) {
    return "UTF-16";
  }
  if ((letter(0) && zero(1) && zero(2) && zero(3)) ||
      (zero(0) && zero(1) && zero(2) && letter(3))) {
    return "UTF-32";
  }
  if ((letter(0) && zero(1) && letter(2) && zero(3)) ||
      (zero(0) && letter(1) && zero(2) && letter(3))) {
    return "UTF-16";
  }
  return nullptr;
}

/// What separates the columns of a header line that has no comma, if it is one of the usual others:
/// with its name, or '\0'.
std::pair<char, const char*> foreign_separator(std::string_view text) {
  const std::size_t begin = std::min(text.find_first_not_of("\r\n"), text.size());
  const std::string_view header = text.substr(begin, text.find_first_of("\r\n", begin) - begin);
  if (header.find(',') != std::string_view::npos) {
    return {};
  }
  for (const auto& [separator, name] : {std::pair(';', "semicolon"), std::pair('\t', "tab")}) {
    if (header.find(separator) != std::string_view::npos) {
      return {separator, name};
    }
  }
  return {};
}

/// Whether a number with a decimal comma stands in a text.
bool has_decimal_commas(std::string_view text) {
  const auto digit = [&](std::size_t at) {
    return at < text.size() && text[at] >= '0' && text[at] <= '9';
  };
  for (std::size_t at = text.find(','); at != std::string_view::npos; at = text.find(',', at + 1)) {
    if (at != 0 && digit(at - 1) && digit(at + 1)) {
      return true;
    }
  }
  return false;
}

}  // namespace

/// libcsv, fed line by line so that the line of each row is known.
class csv_table::parser {
public:
  explicit parser(std::istream& text) : text_(text) {
    // Every line break is reported, that of a blank line too: the next row begins after it.
    if (csv_init(&csv_, CSV_STRICT | CSV_STRICT_FINI | CSV_REPALL_NL) != 0) {
      throw std::bad_alloc();
    }
    csv_set_blk_size(&csv_, 4096);
  }
  ~parser() { csv_free(&csv_); }
  parser(const parser&) = delete;
  parser& operator=(const parser&) = delete;
  parser(parser&&) = delete;
  parser& operator=(parser&&) = delete;

  bool next(csv_row& row) {
    row_ = &row;
    row.clear();
    do {
      if (at_ == chunk_.size() && !read_chunk()) {
        return finish();
      }
      row_ended_ = false;
      feed(next_slice());
    } while (!row_ended_ || row.size() == 0);
    check_utf8();
    return true;
  }

private:
  bool read_chunk() {
    buffer_.resize(chunk_bytes);
    text_.read(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
    chunk_ = std::string_view(buffer_).substr(0, static_cast<std::size_t>(text_.gcount()));
    at_ = 0;
    if (text_.bad()) {
      throw table_error(0, "found a file that cannot be read, expected a table");
    }
    if (!begun_) {
      begun_ = true;
      look_at_beginning();
    }
    return at_ < chunk_.size();
  }

  void look_at_beginning() {
    if (is_workbook(chunk_)) {
      throw table_error(
          0, "found an Excel workbook, expected a CSV table: save the sheet as CSV (UTF-8)");
    }
    if (const char* encoding = wide_encoding(chunk_)) {
      throw table_error(
          0, std::string("found ") + encoding + " text, expected UTF-8: save the table as UTF-8");
    }
    if (begins_with(chunk_, "\xEF\xBB\xBF")) {
      at_ = 3;
    }
    if (const auto [separator, name] = foreign_separator(chunk_.substr(at_)); separator != '\0') {
      throw table_error(1, foreign_separators(name));
    }
  }

  std::string foreign_separators(const std::string& name) const {
    const std::string found = "found columns separated by " + name + "s";
    if (has_decimal_commas(chunk_)) {
      return found + " and numbers with decimal commas, expected commas and decimal points: " +
             "replace each comma by a point, then each " + name + " by a comma";
    }
    return found + ", expected commas: replace each " + name + " by a comma";
  }

  /// The rest of the line, with its line break, or as much of it as the chunk holds.
  std::string_view next_slice() {
    // A CRLF is one line break, also where a chunk ends between its two characters.
    if (line_ended_ && !(after_cr_ && chunk_[at_] == '\n')) {
      ++line_;
      line_ended_ = false;
    }
    std::string_view slice = chunk_.substr(at_);
    for (const char line_break : {'\n', '\r'}) {
      if (const std::size_t end = slice.find(line_break); end != std::string_view::npos) {
        slice = slice.substr(0, end + 1);
        line_ended_ = true;
        after_cr_ = line_break == '\r';
      }
    }
    if (slice.find('\0') != std::string_view::npos) {
      throw table_error(line_, "found a NUL byte, expected text");
    }
    at_ += slice.size();
    return slice;
  }

  void feed(std::string_view slice) {
    if (row_bytes_ == 0) {
      row_->line = line_;
    }
    row_bytes_ += slice.size();
    if (row_bytes_ > max_row_bytes) {
      throw table_error(row_->line,
                        "found a row of more than " + std::to_string(max_row_bytes) +
                            " bytes, expected a shorter one: is a quotation mark left open?");
    }
    const std::size_t parsed = csv_parse(&csv_, slice.data(), slice.size(), on_cell, on_row, this);
    rethrow_failure();
    if (parsed != slice.size()) {
      throw_parser_error(
          line_,
          "found a quotation mark inside a cell, expected such marks only around a whole cell");
    }
  }

  bool finish() {
    const int failed = csv_fini(&csv_, on_cell, on_row, this);
    rethrow_failure();
    if (failed != 0) {
      throw_parser_error(row_->line,
                         "found a quotation mark that is never closed, expected another one");
    }
    check_utf8();
    return row_->size() != 0;
  }

  void check_utf8() const {
    if (row_->is_ascii()) {
      return;
    }
    for (std::size_t cell = 0; cell < row_->size(); ++cell) {
      if (!utf8::is_valid((*row_)[cell])) {
        throw table_error(
            row_->line, "found a byte that is not UTF-8, expected UTF-8: save the table as UTF-8");
      }
    }
  }

  [[noreturn]] void throw_parser_error(std::size_t line, const char* broken_quoting) {
    if (csv_error(&csv_) != CSV_EPARSE) {
      throw std::bad_alloc();
    }
    throw table_error(line, broken_quoting);
  }

  /// An exception must not pass through the frames of a C library: it waits until libcsv has
  /// returned.
  void rethrow_failure() {
    if (failure_) {
      std::rethrow_exception(std::exchange(failure_, nullptr));
    }
  }

  static void on_cell(void* cell, std::size_t size, void* self) {
    auto& parser = *static_cast<csv_table::parser*>(self);
    try {
      parser.row_->append({static_cast<const char*>(cell), size});
    } catch (...) {
      parser.failure_ = std::current_exception();
    }
  }

  static void on_row(int /*line_break*/, void* self) {
    auto& parser = *static_cast<csv_table::parser*>(self);
    parser.row_ended_ = true;
    parser.row_bytes_ = 0;
  }

  std::istream& text_;
  csv_parser csv_{};
  std::string buffer_;
  std::string_view chunk_;  ///< what was read into it
  std::size_t at_ = 0;      ///< in chunk_
  bool begun_ = false;

  std::size_t line_ = 1;
  bool line_ended_ = false;
  bool after_cr_ = false;

  csv_row* row_ = nullptr;
  std::size_t row_bytes_ = 0;
  bool row_ended_ = false;
  std::exception_ptr failure_;
};

csv_table::csv_table(std::istream& text) : parser_(std::make_unique<parser>(text)) {}
csv_table::~csv_table() = default;
bool csv_table::next(csv_row& row) { return parser_->next(row); }

bool is_workbook(std::string_view beginning) {
  return begins_with(beginning, "PK\x03\x04") || begins_with(beginning, "\xD0\xCF\x11\xE0");
}

std::string quoted_csv_cell(std::string_view cell) {
  std::string quoted(csv_write(nullptr, 0, cell.data(), cell.size()), '\0');
  csv_write(quoted.data(), quoted.size(), cell.data(), cell.size());
  return quoted;
}

std::string csv_cell(std::string_view cell) {
  const auto is_blank = [](char c) { return c == ' ' || c == '\t'; };
  const bool blank_at_end = !cell.empty() && (is_blank(cell.front()) || is_blank(cell.back()));
  if (!blank_at_end && cell.find_first_of(",\"\r\n") == std::string_view::npos) {
    return std::string(cell);
  }
  return quoted_csv_cell(cell);
}

}  // namespace gait_walk
