#ifndef TOOLS_REPORT_FINDING_TEXT_H
#define TOOLS_REPORT_FINDING_TEXT_H

/// \file
/// What a data check found, in words, with the lines of the table: every output says it with these.

#include "text_layout.h"
#include "walk_checks.h"
#include "walk_statistics.h"

#include <cstddef>
#include <optional>
#include <string>

namespace gait_report {

/// The line of its table on which a stride stands; nullopt where the walk was not read from tables.
std::optional<std::size_t> line_of(const walk_statistics& walk, const gait_checks::place& place);

/// The finding without its table, in one line: "column swing: swing_bounds: found 150, expected 0
/// to 100 %, in 1 of 57 included strides (line 12). Usually: ...".
std::string in_words(const gait_checks::finding& finding, const walk_statistics& walk);

/// The note with its source.
std::string in_words(const gait_checks::note& note);

/// The finding for people who read it on a page: what and where in the first line, after `first`;
/// below it, indented, what was found, what that usually means, and what to do.
std::string in_lines(const std::string& first, const gait_checks::finding& finding,
                     const walk_statistics& walk, const text_style& style);

}  // namespace gait_report

#endif
