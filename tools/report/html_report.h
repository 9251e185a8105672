#ifndef TOOLS_REPORT_HTML_REPORT_H
#define TOOLS_REPORT_HTML_REPORT_H

/// \file
/// Walks as a page for people: one HTML file that needs no other and no network.
///
/// Every figure is a static SVG. The page's script adds a cursor, and the table of strides where
/// they are many; a content policy lets it and the style run by their hashes, and nothing else. The
/// JSON document of the walks is part of the page.

#include "walk_statistics.h"

#include <cstddef>
#include <string>
#include <vector>

namespace gait_report {

/// More walks than these make a page that no browser likes.
inline constexpr std::size_t most_walks_in_a_page = 100;

/// A walk as a page holds it.
struct html_walk {
  std::size_t number = 0;
  std::string name;
  std::string summary;
  std::string in_full;
  std::string json;
};

/// Draws and writes a walk. No other walk of the page may have its `number`; with several walks the
/// headings are a level lower. Many walks may be written at once.
html_walk html_walk_of(const walk_statistics& walk, std::size_t number, bool is_alone);

/// The page of these walks. With several it begins with contents.
std::string html_page(const std::vector<html_walk>& walks);

/// The name of each walk's page in a folder of pages: made of letters, digits, '.', '-' and '_',
/// and different from all others and from "index.html" also where capitals make no difference.
std::vector<std::string> page_names(const std::vector<std::string>& walks);

/// The rows of a walk in the index of a folder of pages, and the index of all walks with their rows
/// put together.
std::string html_index_rows(const walk_statistics& walk, const std::string& page_name);
std::string html_index(std::size_t walks, const std::string& rows);

}  // namespace gait_report

#endif
