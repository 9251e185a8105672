#ifndef TOOLS_REPORT_HTML_REPORT_H
#define TOOLS_REPORT_HTML_REPORT_H

/// \file
/// Walks as a page for people: one HTML file that needs no other and no network.
///
/// Every figure is a static SVG. The page's script adds a cursor, and the table of strides where
/// they are many; a content policy lets it and the style run by their hashes, and nothing else. The
/// JSON document of the walks is part of the page.

#include "walk_statistics.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace gait_report {

/// More walks than these make a page that no browser likes.
inline constexpr std::size_t most_walks_in_a_page = 100;

/// A page of one walk or several, which is made as the walks come.
class html_page {
public:
  /// With several walks the page begins with contents.
  explicit html_page(bool of_several_walks);

  void add(const walk_statistics& walk);

  /// The page of all walks that were added.
  std::string finish();

private:
  struct entry {
    std::string name;
    std::string summary;
  };

  bool of_several_walks_;
  std::vector<entry> entries_;
  std::string walks_in_full_;
  std::vector<nlohmann::ordered_json> json_walks_;
};

/// A folder of pages: one a walk, and an index that links to them.
class html_folder {
public:
  html_folder();
  ~html_folder();
  html_folder(const html_folder&) = delete;
  html_folder(html_folder&&) = delete;
  html_folder& operator=(const html_folder&) = delete;
  html_folder& operator=(html_folder&&) = delete;

  /// A file of the folder.
  struct file {
    std::string name;  ///< made of letters, digits, '.', '-' and '_'
    std::string content;
  };

  /// The page of a walk, under a name that no other of the folder has.
  file add(const walk_statistics& walk);

  /// index.html
  file index() const;

private:
  struct rows;
  std::unique_ptr<rows> rows_;
  std::set<std::string> taken_;
};

}  // namespace gait_report

#endif
