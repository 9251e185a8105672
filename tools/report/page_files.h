#ifndef TOOLS_REPORT_PAGE_FILES_H
#define TOOLS_REPORT_PAGE_FILES_H

/// \file
/// The files of the HTML report, from the folder `page`, as they were when the program was built.

#include <string_view>

namespace gait_report::page_files {

// Mustache templates: the document, one walk in it, and the index of a folder of pages.
extern const std::string_view page;
extern const std::string_view walk;
extern const std::string_view index;

extern const std::string_view page_css;
extern const std::string_view page_js;

// As a content policy names them: "sha256-...".
extern const std::string_view page_css_hash;
extern const std::string_view page_js_hash;

}  // namespace gait_report::page_files

#endif
