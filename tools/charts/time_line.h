#ifndef TOOLS_CHARTS_TIME_LINE_H
#define TOOLS_CHARTS_TIME_LINE_H

/// \file
/// A time line: rows of boxes, one for each stretch of time, above one axis.

#include "scale.h"

#include <cstddef>
#include <string>
#include <vector>

namespace gait_charts {

enum class filling { full, hatched, dashed, empty };

/// A stretch of time of one row.
struct box {
  span x;
  filling look = filling::full;
  bool is_marked = false;  ///< a mark below the box
  std::string title;       ///< shown when somebody points to the box; may be empty
};

struct time_row {
  std::string label;
  std::string css_class;
  std::vector<box> boxes;  ///< in order of time
};

/// Words above the rows, in the middle of a stretch.
struct time_note {
  span x;
  std::string text;
};

struct time_line {
  std::string label;  ///< what it shows, for those who cannot see it
  span x;
  std::vector<time_row> rows;
  std::vector<time_note> notes;  ///< in order of time; one that has no room is left out
};

/// With more boxes than this in a row, boxes of one look that touch are drawn as one.
inline constexpr std::size_t most_boxes = 1000;

/// The plot of a time line, without the axis below it.
///
/// How wide the plot will be is not known. A note that has room in a narrow one is drawn for any
/// width; one that has room in a wide one only, with the class "wide".
std::string draw(const time_line& time_line);

/// The look of a box on its own, for a legend.
std::string sample_box(filling look);

}  // namespace gait_charts

#endif
