#include "shown_text.h"

#include <cstddef>

namespace gait_walk {

namespace {

bool continues_character(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

/// The text with each control character replaced by what `replacement` makes of its code.
template <class Replacement>
std::string with_controls_replaced(std::string_view text, Replacement replacement) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const auto next = static_cast<unsigned char>(i + 1 < text.size() ? text[i + 1] : '\0');
    // U+0080 to U+009F are control characters as well; terminals obey some of them.
    if (byte == 0xC2 && next >= 0x80 && next < 0xA0) {
      result += replacement(next);
      ++i;
    } else if (byte < 0x20 || byte == 0x7F) {
      result += replacement(byte);
    } else {
      result += text[i];
    }
  }
  return result;
}

std::string escaped(unsigned char code) {
  switch (code) {
    case '\n':
      return "\\n";
    case '\r':
      return "\\r";
    case '\t':
      return "\\t";
    default:
      break;
  }
  constexpr std::string_view digits = "0123456789abcdef";
  return {'\\', 'x', digits[code >> 4U], digits[code & 0xFU]};
}

std::string with_escaped_quotation_marks(std::string_view text) {
  std::string result;
  for (const char c : text) {
    result.append(c == '"' ? "\\" : "").push_back(c);
  }
  return result;
}

}  // namespace

std::string printable(std::string_view text) {
  return with_controls_replaced(text, [](unsigned char) { return "?"; });
}

std::string shown(std::string_view text) {
  constexpr std::size_t longest = 40;
  const bool too_long = text.size() > longest;
  if (too_long) {
    std::size_t end = longest;
    while (end > 0 && continues_character(text[end])) {
      --end;
    }
    text = text.substr(0, end);
  }
  const std::string result = with_controls_replaced(with_escaped_quotation_marks(text), escaped);
  return too_long ? result + "..." : result;
}

std::string in_quotes(std::string_view cell) { return '"' + shown(cell) + '"'; }

std::string found(std::string_view cell) {
  return cell.empty() ? "found an empty cell" : "found " + in_quotes(cell);
}

}  // namespace gait_walk
