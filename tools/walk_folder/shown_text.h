#ifndef TOOLS_WALK_FOLDER_SHOWN_TEXT_H
#define TOOLS_WALK_FOLDER_SHOWN_TEXT_H

/// \file
/// Texts of unknown content made fit to be shown: nothing in them acts on a terminal.

#include <string>
#include <string_view>

namespace gait_walk {

/// Text with each control character replaced by a question mark.
std::string printable(std::string_view text);

/// Text as it is quoted in a message: shortened, with control characters and quotation marks
/// escaped.
std::string shown(std::string_view text);

/// A cell for a message, in quotation marks.
std::string in_quotes(std::string_view cell);

/// How a message about a cell begins.
std::string found(std::string_view cell);

}  // namespace gait_walk

#endif
