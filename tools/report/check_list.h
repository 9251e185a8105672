#ifndef TOOLS_REPORT_CHECK_LIST_H
#define TOOLS_REPORT_CHECK_LIST_H

/// \file
/// The table of data checks as it is printed (--list-checks).

#include "output_format.h"
#include "text_layout.h"

#include <string>

namespace gait_report {

std::string print_check_list(output_format format, const text_style& style);

}  // namespace gait_report

#endif
