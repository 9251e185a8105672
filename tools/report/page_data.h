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

/// The data of walk.mustache. `number` makes the walk's id, and no other walk of the document has
/// it; with several walks the headings are a level lower.
page_data data_of_walk(const shown_walk& shown, std::size_t number, bool is_alone);

/// A line about a walk in a list of walks: its name, and "In the statistics: ...".
struct listed_walk {
  std::size_t number;
  std::string name;
  std::string summary;
};

/// The data of page.mustache. The walks are rendered ones, `json` the document that the page
/// holds.
page_data data_of_page(const std::vector<listed_walk>& listed, const std::string& walks_in_full,
                       const std::string& json);

/// The id of a walk in the document.
std::string id_of_walk(std::size_t number);

/// The data of index_rows.mustache, a walk's rows in the index, and of the whole index with the
/// rendered rows of so many walks.
page_data data_of_index_rows(const shown_walk& shown, const std::string& file);
page_data data_of_index(std::size_t walks, const std::string& rows);

}  // namespace gait_report

#endif
