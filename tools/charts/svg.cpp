#include "svg.h"

#include <array>
#include <charconv>
#include <cmath>
#include <string>
#include <string_view>
#include <vector>

namespace gait_charts {
namespace {

/// The width of the picture within, in its own units: many, so that two decimals do.
constexpr double units = 1000.0;

const char* name_of(direction direction) {
  switch (direction) {
    case direction::up:
      return "up";
    case direction::down:
      return "down";
    case direction::left:
      return "left";
    case direction::right:
      break;
  }
  return "right";
}

/// Slanted lines over the width of any plot and the height of a box. They are lines because a
/// browser prints a pattern as a bitmap.
std::string hatching() {
  constexpr int height = 16;
  constexpr int apart = 5;
  constexpr int width = 2000;
  std::string lines;
  for (int x = -height; x < width; x += apart) {
    lines += "M" + std::to_string(x) + " " + std::to_string(height) + "l" + std::to_string(height) +
             "-" + std::to_string(height);
  }
  return lines;
}

}  // namespace

std::string coordinate(double value, int decimals) {
  std::array<char, 32> buffer{};
  // What is far outside of any drawing need not be there exactly.
  const double within = std::fmin(std::fmax(value, -1e6), 1e6);
  const double parts = std::pow(10.0, decimals);
  const double rounded = std::round(within * parts) / parts + 0.0;
  auto* const end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), rounded).ptr;
  return {buffer.data(), end};
}

std::string percent(double share) { return coordinate(100.0 * share) + "%"; }

std::string escaped(std::string_view text) {
  std::string result;
  for (const char c : text) {
    switch (c) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      case '"':
        result += "&quot;";
        break;
      default:
        result += c;
    }
  }
  return result;
}

std::string element(const char* name, const attributes& all) {
  std::string text = std::string("<") + name;
  for (const auto& [attribute, value] : all) {
    text += std::string(" ") + attribute + "=\"" + value + "\"";
  }
  return text + "/>";
}

std::string text_at(const char* css_class, std::string_view place, double height,
                    std::string_view text) {
  return std::string("<text class=\"") + css_class + "\" x=\"" + std::string(place) + "\" y=\"" +
         coordinate(height) + "\">" + escaped(text) + "</text>";
}

path& path::move(double x, double y) {
  data_ += "M" + text_of(units * x) + " " + text_of(y);
  return *this;
}

path& path::point(double x, double y) {
  move(x, y);
  data_ += "h0";
  return *this;
}

path& path::line(double x0, double y0, double x1, double y1) {
  move(x0, y0);
  if (x0 == x1) {
    data_ += "V" + text_of(y1);
  } else if (y0 == y1) {
    data_ += "H" + text_of(units * x1);
  } else {
    data_ += "L" + text_of(units * x1) + " " + text_of(y1);
  }
  return *this;
}

path& path::rectangle(span x, span y) {
  move(x.from, y.from);
  data_ += "H" + text_of(units * x.to) + "V" + text_of(y.to) + "H" + text_of(units * x.from) + "z";
  return *this;
}

std::string path::element(const char* css_class) const {
  return empty() ? "" : std::string("<path class=\"") + css_class + "\" d=\"" + data_ + "\"/>";
}

std::string plot(const char* css_class, double height, std::string_view label,
                 const std::string& stretched, const std::string& around) {
  const std::string high = coordinate(height);
  std::string text = std::string(R"(<svg class="plot )") + css_class + R"(" height=")" + high +
                     R"(" role="img" aria-label=")" + escaped(label) + R"(">)";
  if (!stretched.empty()) {
    text += R"(<svg width="100%" height=")" + high + R"(" viewBox="0 0 )" + coordinate(units) +
            " " + high + R"(" preserveAspectRatio="none">)" + stretched + "</svg>";
  }
  return text + around + "</svg>";
}

std::string definitions() {
  return R"(<svg class="definitions" width="0" height="0" aria-hidden="true"><defs>)"
         R"(<path id="up" d="M0 0l3 5h-2v4h-2v-4h-2z"/>)"
         R"(<path id="down" d="M0 0l3-5h-2v-4h-2v4h-2z"/>)"
         R"(<path id="left" d="M0 0l7-4v8z"/>)"
         R"(<path id="right" d="M0 0l-7-4v8z"/>)"
         R"(<path id="hatching" d=")" +
         hatching() + R"("/></defs></svg>)";
}

std::string arrow(direction direction, double x, double y) {
  return element(
      "use",
      {{"href", std::string("#") + name_of(direction)}, {"x", percent(x)}, {"y", coordinate(y)}});
}

std::string axis_below(span data, std::string_view unit) {
  constexpr double height = 16.0;
  const linear_scale scale(data, {0.0, 1.0});
  std::string labels;
  std::vector<tick> marks = ticks(data, 3);
  if (!marks.empty()) {
    marks.back().label.append(" ").append(unit);
  }
  for (const auto& [value, label] : marks) {
    labels += text_at("x", percent(scale(value)), 11.0, label);
  }
  return R"(<svg class="plot axis" height=")" + coordinate(height) + R"(" aria-hidden="true">)" +
         labels + "</svg>";
}

}  // namespace gait_charts
