#include "page_text.h"

#include "number.h"
#include "shown_text.h"

#include <utf8.h>

#include <iterator>
#include <optional>
#include <string>
#include <string_view>

namespace gait_report {
bool may_stand_in_a_page(char32_t character) {
  const bool is_control =
      (character < 0x20 && character != U'\n') || (character >= 0x7FU && character < 0xA0U);
  const bool is_of_no_use_outside =
      (character & 0xFFFEU) == 0xFFFEU || (character >= 0xFDD0U && character <= 0xFDEFU);
  return !is_control && !is_of_no_use_outside;
}

std::string page_text(std::string_view text) {
  constexpr char32_t replacement = 0xFFFD;
  std::string valid;
  const std::string printable = gait_walk::printable(text);
  utf8::replace_invalid(printable.begin(), printable.end(), std::back_inserter(valid), replacement);
  std::string result;
  for (auto at = valid.begin(); at != valid.end();) {
    const char32_t character = utf8::next(at, valid.end());
    utf8::append(may_stand_in_a_page(character) ? character : replacement,
                 std::back_inserter(result));
  }
  return result;
}

std::string shown_number(const std::optional<double>& value, int decimals) {
  return value ? rounded(*value, decimals) : std::string(nothing_shown);
}

std::string letter_of(const reported_side& side) {
  return side.foot == gait_walk::side::right ? "R" : "L";
}

}  // namespace gait_report
