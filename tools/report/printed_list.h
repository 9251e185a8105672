#ifndef TOOLS_REPORT_PRINTED_LIST_H
#define TOOLS_REPORT_PRINTED_LIST_H

/// \file
/// A list of things that the program knows, written for other software: as CSV or as JSON.

#include "output_format.h"

#include <string>
#include <variant>
#include <vector>

namespace gait_report {

using list_cell = std::variant<std::string, int, bool>;

struct printed_list {
  std::vector<std::string> columns;
  std::vector<std::vector<list_cell>> rows;  ///< each with a cell for every column
};

/// One line for each row, after a header line. Texts are quoted; a bool is yes or no.
std::string as_csv(const printed_list& list);

/// An array with an object for each row.
std::string as_json(const printed_list& list);

/// The list in the format that was asked for; `as_text` lays it out for people.
template <class Text>
std::string print(const printed_list& list, output_format format, Text as_text) {
  switch (format) {
    case output_format::csv:
      return as_csv(list);
    case output_format::json:
      return as_json(list);
    case output_format::html:  // a page shows walks; the command line refuses one of a list
    case output_format::table:
      break;
  }
  return as_text();
}

}  // namespace gait_report

#endif
