#include "walk_writers.h"

#include "terminal.h"

#include "csv_output.h"
#include "json_output.h"
#include "text_report.h"

#include <nlohmann/json.hpp>

#include <system_error>
#include <utility>

namespace gait_program {

using gait_report::output_format;
using gait_report::walk_statistics;

gait_report::text_style style_of(const options& options) {
  gait_report::text_style style = options.output ? pipe_style : standard_output_style();
  style.width = options.width.value_or(style.width);
  return style;
}

// --- Text

text_writer::text_writer(const options& options, output& out)
    : format_(options.format), table_(options.table), style_(style_of(options)), out_(out) {
  switch (format_) {
    case output_format::csv:
      before_next_ = gait_report::csv_header(table_);
      break;
    case output_format::json: {
      const gait_report::json_frame frame = gait_report::frame_of_json();
      before_next_ = frame.beginning;
      between_ = frame.between;
      end_ = frame.end;
      break;
    }
    case output_format::table:
    case output_format::html:
      between_ = "\n";
      end_ = gait_report::end_of_text_reports(style_);
      break;
  }
}

text_writer::part text_writer::render(const walk_statistics& walk, std::size_t /*place*/) const {
  switch (format_) {
    case output_format::csv:
      return gait_report::csv_rows(table_, walk);
    case output_format::json:
      return gait_report::json_in_document(gait_report::json_walk(walk));
    case output_format::table:
    case output_format::html:
      break;
  }
  return gait_report::text_report(walk, style_);
}

void text_writer::add(const part& walk) {
  out_.write(before_next_);
  out_.write(walk);
  before_next_ = between_;
  wrote_any_ = true;
}

void text_writer::finish() {
  if (wrote_any_) {
    out_.write(end_);
    out_.finish();
  }
}

// --- A page

page_writer::part page_writer::render(const walk_statistics& walk, std::size_t place) const {
  return gait_report::html_walk_of(walk, place, is_alone_);
}

void page_writer::add(part walk) { walks_.push_back(std::move(walk)); }

void page_writer::finish() {
  if (!walks_.empty()) {
    out_.write(gait_report::html_page(walks_));
    out_.finish();
  }
}

// --- A folder of pages

folder_writer::folder_writer(std::filesystem::path folder, const std::vector<std::string>& walks)
    : folder_(std::move(folder)), files_(gait_report::page_names(walks)) {}

folder_writer::part folder_writer::render(const walk_statistics& walk, std::size_t place) const {
  const std::string& file = files_[place];
  return {file, gait_report::html_page({gait_report::html_walk_of(walk, 0, true)}),
          gait_report::html_index_rows(walk, file)};
}

void folder_writer::add(const part& walk) {
  write(walk.file, walk.page);
  index_rows_ += walk.index_rows;
  ++added_;
}

void folder_writer::finish() {
  if (added_ > 0) {
    write("index.html", gait_report::html_index(added_, index_rows_));
  }
}

void folder_writer::write(const std::string& file, const std::string& content) const {
  std::error_code error;
  std::filesystem::create_directories(folder_, error);
  if (error) {
    throw std::system_error(error, "cannot make the folder " + folder_.string());
  }
  output out(folder_ / file);
  out.write(content);
  out.finish();
}

}  // namespace gait_program
