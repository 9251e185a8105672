#ifndef TOOLS_REPORT_PAGE_DATA_H
#define TOOLS_REPORT_PAGE_DATA_H

/// \file
/// What the templates of the HTML report are filled with. A tag of a template that has no value
/// here would be rendered as nothing.

#include "page_figures.h"
#include "walk_statistics.h"

#include <kainjow/mustache.hpp>

#include <cstddef>
#include <string>
#include <vector>

namespace gait_report {

using page_data = kainjow::mustache::data;

/// The data of walk.mustache. `number` is the walk's place in the document, from 0; with several
/// walks the headings are a level lower.
page_data data_of_walk(const shown_walk& shown, std::size_t number, bool is_alone);

/// A line about a walk in a list of walks: its name, and "In the statistics: ...".
struct listed_walk {
  std::string name;
  std::string summary;
};

/// The data of page.mustache. The walks are rendered ones, `json` the document that the page
/// holds.
page_data data_of_page(const std::vector<listed_walk>& listed, const std::string& walks_in_full,
                       const std::string& json);

/// The id of a walk in the document.
std::string id_of_walk(std::size_t number);

/// The data of a walk's rows in index.mustache, and of the whole index.
page_data data_of_index_rows(const shown_walk& shown, const std::string& file);
page_data data_of_index(const std::vector<page_data>& walks);

}  // namespace gait_report

#endif
