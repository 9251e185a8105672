#ifndef TOOLS_REPORT_TEXT_REPORT_H
#define TOOLS_REPORT_TEXT_REPORT_H

/// \file
/// The statistics of a walk as a report for people.

#include "text_layout.h"
#include "walk_statistics.h"

#include <string>

namespace gait_report {

/// What the walk is, the cycle accounting, the parameters, the swing asymmetry, the quality flags
/// and the data checks.
std::string text_report(const walk_statistics& walk, const text_style& style);

/// What follows the last report: the version, and how to cite it.
std::string end_of_text_reports(const text_style& style);

}  // namespace gait_report

#endif
