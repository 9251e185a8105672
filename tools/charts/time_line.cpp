#include "time_line.h"

#include "svg.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace gait_charts {
namespace {

// All in pixels.
constexpr double note_height = 16.0;
constexpr double box_height = 16.0;
constexpr double foot_height = 24.0;
constexpr double narrow_plot = 240.0;
constexpr double wide_plot = 680.0;
constexpr double letter = 6.5;
constexpr double between_notes = 10.0;

constexpr const char* use_of_hatching = R"(<use class="hatching" href="#hatching"/>)";

const char* name_of(filling look) {
  switch (look) {
    case filling::full:
      return "full";
    case filling::hatched:
      return "hatched";
    case filling::dashed:
      return "dashed";
    case filling::empty:
      break;
  }
  return "empty";
}

std::size_t characters_of(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
  }));
}

/// The boxes with those of one look that touch made one. `nearest` is the gap that still counts as
/// touching.
std::vector<box> merged(const std::vector<box>& boxes, double nearest) {
  std::vector<box> result;
  for (const auto& box : boxes) {
    const bool touches = !result.empty() && result.back().look == box.look &&
                         box.x.from - result.back().x.to <= nearest && !box.is_marked &&
                         !result.back().is_marked;
    if (touches) {
      result.back().x.to = std::max(result.back().x.to, box.x.to);
      result.back().title.clear();
    } else {
      result.push_back(box);
    }
  }
  return result;
}

std::string draw_box(const box& box, const linear_scale& x, double top) {
  const double left = x(box.x.from);
  const double width = x(box.x.to) - left;
  std::string text = std::string("<rect class=\"") + name_of(box.look) + "\" x=\"" + percent(left) +
                     "\" y=\"" + coordinate(top) + "\" width=\"" + percent(width) + "\" height=\"" +
                     coordinate(box_height) + "\"";
  const std::string lines = box.look == filling::hatched
                                ? "<svg x=\"" + percent(left) + "\" y=\"" + coordinate(top) +
                                      "\" width=\"" + percent(width) + "\" height=\"" +
                                      coordinate(box_height) + "\">" + use_of_hatching + "</svg>"
                                : "";
  text += box.title.empty() ? "/>" : "><title>" + escaped(box.title) + "</title></rect>";
  text += lines;
  if (box.is_marked) {
    text += element("circle", {{"class", "mark"},
                               {"cx", percent(left + width / 2.0)},
                               {"cy", coordinate(top + box_height + 4.0)},
                               {"r", "2.5"}});
  }
  return text;
}

/// Chooses the notes that have room beside each other in a plot of some width.
class note_places {
public:
  explicit note_places(double plot_width) : plot_width_(plot_width) {}

  bool takes(double middle, std::size_t characters) {
    const double half = letter * static_cast<double>(characters) / 2.0;
    const double place = middle * plot_width_;
    if (place - half < end_) {
      return false;
    }
    end_ = place + half + between_notes;
    return true;
  }

private:
  double plot_width_;
  double end_ = -1e9;
};

std::string draw_notes(const std::vector<time_note>& notes, const linear_scale& x) {
  note_places narrow(narrow_plot);
  note_places wide(wide_plot);
  std::string text;
  for (const auto& note : notes) {
    const double middle = x((note.x.from + note.x.to) / 2.0);
    const std::size_t characters = characters_of(note.text);
    // What fits a narrow plot has its place in a wide one too.
    const bool fits_wide = wide.takes(middle, characters);
    const bool fits_narrow = fits_wide && narrow.takes(middle, characters);
    if (fits_wide) {
      const char* anchor = middle < 0.1 ? "start" : middle > 0.9 ? "end" : "middle";
      text += text_at((std::string(fits_narrow ? "note " : "note wide ") + anchor).c_str(),
                      percent(middle), note_height - 5.0, note.text);
    }
  }
  return text;
}

}  // namespace

std::string draw(const time_line& time_line) {
  const linear_scale x(time_line.x, {0.0, 1.0});
  const double pixel = (time_line.x.to - time_line.x.from) / wide_plot;
  std::string around = draw_notes(time_line.notes, x);
  double top = note_height;
  for (const auto& row : time_line.rows) {
    around += "<g class=\"" + escaped(row.css_class) + "\">" +
              text_at("y", "-6", top + box_height / 2.0, row.label);
    for (const auto& box : row.boxes.size() > most_boxes ? merged(row.boxes, pixel) : row.boxes) {
      around += draw_box(box, x, top);
    }
    around += "</g>";
    top += foot_height;
  }
  return plot("time_line", top, time_line.label, "", around);
}

std::string sample_box(filling look) {
  return std::string(
             "<svg class=\"sample\" width=\"22\" height=\"12\" aria-hidden=\"true\">"
             "<rect class=\"") +
         name_of(look) + R"(" x="1" y="1" width="20" height="10"/>)" +
         (look == filling::hatched ? std::string(R"(<svg x="1" y="1" width="20" height="10">)") +
                                         use_of_hatching + "</svg>"
                                   : "") +
         "</svg>";
}

}  // namespace gait_charts
