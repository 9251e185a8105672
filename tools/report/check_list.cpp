#include "check_list.h"

#include "printed_list.h"
#include "walk_checks.h"

#include <string>
#include <string_view>

namespace gait_report {
namespace {

std::string as_text(const text_style& style) {
  std::string text;
  for (const auto kind : gait_checks::kinds) {
    text += (text.empty() ? "" : "\n") + heading("Checks of " + std::string(name_of(kind)), style) +
            "\n";
    for (const auto& check : gait_checks::list_checks()) {
      if (check.what == kind) {
        const std::string words = check.compared + "; tolerance: " + check.tolerance +
                                  ". Usually: " + check.usual_cause + ". Source: " + check.source +
                                  ".";
        text += wrapped("  " + check.name + ": ", words, 6, style);
      }
    }
  }
  return text;
}

}  // namespace

std::string print_check_list(output_format format, const text_style& style) {
  printed_list list;
  list.columns = {"check", "kind", "compared", "tolerance", "usual_cause", "source"};
  for (const auto& check : gait_checks::list_checks()) {
    list.rows.push_back({check.name, std::string(name_of(check.what)), check.compared,
                         check.tolerance, check.usual_cause, check.source});
  }
  return print(list, format, [&] { return as_text(style); });
}

}  // namespace gait_report
