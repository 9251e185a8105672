#ifndef TOOLS_REPORT_NUMBER_H
#define TOOLS_REPORT_NUMBER_H

/// \file
/// Numbers as text, the same in every locale.

#include <cstddef>
#include <string>

namespace gait_report {

/// The value that people are shown. A measured -1 is kept as the next number towards zero, because
/// -1 itself means that nothing was measured; it is shown as the -1 that it is.
double shown_value(double value);

/// The shortest text that reads back as the same number; "NaN", "inf" or "-inf" where it is not
/// finite.
std::string shortest(double value);
std::string shortest(float value);

/// A number with so many decimals, 0 to 20; in scientific notation from 1e12 on, where the digits
/// would fill a line.
std::string rounded(double value, int decimals);

/// "1 stride", "2 strides".
std::string counted(std::size_t count, const std::string& noun);

}  // namespace gait_report

#endif
