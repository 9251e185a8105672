#ifndef TOOLS_PROGRAM_WALK_WRITERS_H
#define TOOLS_PROGRAM_WALK_WRITERS_H

/// \file
/// Walks as they are written: the form of each walk, and the document that they make.
///
/// Each writer has `render(walk, place)`, the walk at that place of those given in the form in
/// which it is written, and `add(part)`, which writes what was rendered. Many threads may render at
/// once. add() is called by one at a time, in the order of the walks that are reported, and
/// finish() after the last one. Where no walk was added, nothing is written, not even an empty file
/// or folder.

#include "options.h"
#include "output.h"

#include "html_report.h"
#include "text_layout.h"
#include "walk_statistics.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace gait_program {

/// The style of the text report that the options and the terminal ask for.
gait_report::text_style style_of(const options& options);

/// Writes the walks as text, CSV or JSON as they come.
class text_writer {
public:
  using part = std::string;

  text_writer(const options& options, output& out);

  part render(const gait_report::walk_statistics& walk, std::size_t place) const;
  void add(const part& walk);
  void finish();

private:
  gait_report::output_format format_;
  gait_report::csv_table table_;
  gait_report::text_style style_;
  std::string before_next_, between_, end_;
  output& out_;
  bool wrote_any_ = false;
};

/// Writes the walks as one page, which is held until its last walk: it begins with contents.
class page_writer {
public:
  using part = gait_report::html_walk;

  page_writer(output& out, std::size_t walks) : out_(out), is_alone_(walks == 1) {}

  part render(const gait_report::walk_statistics& walk, std::size_t place) const;
  void add(part walk);
  void finish();

private:
  output& out_;
  bool is_alone_;
  std::vector<part> walks_;
};

/// Writes a page of each walk into a folder, and an index of them.
class folder_writer {
public:
  struct part {
    std::string file, page, index_rows;
  };

  folder_writer(std::filesystem::path folder, const std::vector<std::string>& walks);

  part render(const gait_report::walk_statistics& walk, std::size_t place) const;
  void add(const part& walk);
  void finish();

private:
  void write(const std::string& file, const std::string& content) const;

  std::filesystem::path folder_;
  std::vector<std::string> files_;  ///< of the walks by place
  std::size_t added_ = 0;
  std::string index_rows_;
};

}  // namespace gait_program

#endif
