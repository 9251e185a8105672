#include "tally.h"

#include <utility>

namespace gait_checks {

std::string with_alarm(const std::string& tolerance, alarm when) {
  return when == alarm::any
             ? tolerance
             : tolerance + "; in " + std::to_string(fewest_of_many) + " or more, and over " +
                   std::to_string(percent_of_many) + " % of them";
}

std::vector<finding> tally::findings(alarm when) const {
  if (!alarms(when)) {
    return {};
  }
  finding found;
  found.table = table_;
  found.column = column_;
  found.broken = broken();
  found.compared = compared_;
  found.counted = counted_;
  found.text = text_;
  found.places = places_;
  return {found};
}

finding of_the_walk(std::string_view table, std::string_view column, std::string_view counted,
                    std::size_t compared, std::string text, std::string_view guess) {
  finding found;
  found.table = table;
  found.column = column;
  found.broken = compared;
  found.compared = compared;
  found.counted = counted;
  found.text = std::move(text);
  found.guess = guess;
  return found;
}

}  // namespace gait_checks
