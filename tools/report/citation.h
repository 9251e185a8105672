#ifndef TOOLS_REPORT_CITATION_H
#define TOOLS_REPORT_CITATION_H

/// \file
/// How to cite what computed the figures.

#include <string>

namespace gait_report {

/// Who, what, which version, as in a list of references. CITATION.cff and README.md say the same.
std::string citation();

}  // namespace gait_report

#endif
