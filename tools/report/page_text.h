#ifndef TOOLS_REPORT_PAGE_TEXT_H
#define TOOLS_REPORT_PAGE_TEXT_H

/// \file
/// Words and numbers as the HTML report shows them.

#include "walk_statistics.h"

#include <optional>
#include <string>
#include <string_view>

namespace gait_report {

/// What stands where nothing could be computed.
inline constexpr std::string_view nothing_shown = "–";

/// Whether HTML may hold a character: no control characters, and none that Unicode keeps for
/// internal use.
bool may_stand_in_a_page(char32_t character);

/// Text of unknown content for a page: UTF-8, without control characters. It still has to be
/// escaped.
std::string page_text(std::string_view text);

/// A rounded number, or the dash.
std::string shown_number(const std::optional<double>& value, int decimals);

/// "R" or "L".
std::string letter_of(const reported_side& side);

}  // namespace gait_report

#endif
