#ifndef TOOLS_REPORT_NUMBER_H
#define TOOLS_REPORT_NUMBER_H

/// \file
/// Numbers as text, the same in every locale.

#include <string>

namespace gait_report {

/// The shortest text that reads back as the same number; "NaN", "inf" or "-inf" where it is not
/// finite.
std::string shortest(double value);
std::string shortest(float value);

/// A number with so many decimals, 0 to 20; in scientific notation from 1e12 on, where the digits
/// would fill a line.
std::string rounded(double value, int decimals);

}  // namespace gait_report

#endif
