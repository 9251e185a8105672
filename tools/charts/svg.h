#ifndef TOOLS_CHARTS_SVG_H
#define TOOLS_CHARTS_SVG_H

/// \file
/// Writing SVG that is as wide as its place.
///
/// A plot has no width of its own: places along it are shares of it, from 0 to 1, and heights are
/// in pixels. What is drawn with paths lies in a picture within, which is stretched; strokes are
/// not, so that a point is a round one however wide the plot is. Colours and strokes are the style
/// sheet's, by class.

#include "scale.h"

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace gait_charts {

/// A number with so many decimals at most: two are 1/100 of a pixel.
std::string coordinate(double value, int decimals = 2);

/// A share of the width, for an attribute: "12.5%".
std::string percent(double share);

/// Text for the content of an element or for an attribute in quotation marks.
std::string escaped(std::string_view text);

using attributes = std::initializer_list<std::pair<const char*, std::string>>;

/// An element without content. The values are written as they are.
std::string element(const char* name, const attributes& all);

/// A text at a place of the plot; `text` is escaped here.
std::string text_at(const char* css_class, std::string_view place, double height,
                    std::string_view text);

/// The data of a path in the picture within: shares of the width, and pixels of the height.
class path {
public:
  explicit path(int decimals = 2) : decimals_(decimals) {}

  path& point(double x, double y);  ///< a line of no length, drawn as a round dot
  path& line(double x0, double y0, double x1, double y1);
  path& rectangle(span x, span y);

  bool empty() const { return data_.empty(); }
  /// The element, or nothing for an empty path.
  std::string element(const char* css_class) const;

private:
  path& move(double x, double y);
  std::string text_of(double value) const { return coordinate(value, decimals_); }

  int decimals_;
  std::string data_;
};

/// A plot: `stretched` lies in the picture within, `around` beside and above it. `label` says what
/// it shows to those who cannot see it.
std::string plot(const char* css_class, double height, std::string_view label,
                 const std::string& stretched, const std::string& around);

/// What plots refer to, to stand once in a document before them: the arrows for what lies beyond a
/// scale, and the lines of hatched boxes.
std::string definitions();

enum class direction { up, down, left, right };

/// An arrow whose point is at a place of the plot.
std::string arrow(direction direction, double x, double y);

/// The labels of an axis that lies below plots. The unit stands beside the last of them.
std::string axis_below(span data, std::string_view unit);

}  // namespace gait_charts

#endif
