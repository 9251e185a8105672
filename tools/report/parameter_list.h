#ifndef TOOLS_REPORT_PARAMETER_LIST_H
#define TOOLS_REPORT_PARAMETER_LIST_H

/// \file
/// The catalogue of gait parameters as a list, and its printing (--list-parameters).

#include "output_format.h"
#include "text_layout.h"

#include <gait/catalogue.h>

#include <string>
#include <vector>

namespace gait_report {

/// A row of the catalogue, without what only the compiler needs.
struct listed_parameter {
  std::string key;
  std::string description;
  std::string unit;
  int decimals = 0;
  bool has_ratio = false;
  bool has_cv = false;
  gait_catalogue::built when = gait_catalogue::always;
  std::string meaning;  ///< a sentence for people
};

/// "always", "both feet" or "one foot".
std::string in_words(gait_catalogue::built when);

/// Every row of the catalogue, in its order.
const std::vector<listed_parameter>& list_parameters();

/// The rows that an analysis of both feet, or of one, gives: in the catalogue's order, each key
/// once.
const std::vector<listed_parameter>& list_parameters_of(bool both_feet);

/// The list as it is printed.
std::string print_parameter_list(output_format format, const text_style& style);

}  // namespace gait_report

#endif
