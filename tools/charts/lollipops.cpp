#include "lollipops.h"

#include "svg.h"

#include <cstddef>
#include <string>

namespace gait_charts {
namespace {

constexpr double row_height = 18.0;  // (px)
constexpr double axis_height = 18.0;

void draw_row(const lollipop& row, const log_scale& x, double height, path& stems, path& dots,
              std::string& around) {
  around += text_at("y", "-8", height, row.label) + text_at("number", "100%", height, row.text);
  if (!row.is_drawn || !(row.ratio > 0.0)) {
    return;
  }
  const bool is_below = row.ratio < x.data().from;
  const bool is_above = row.ratio > x.data().to;
  const double end = is_below ? 0.0 : is_above ? 1.0 : x(row.ratio);
  stems.line(x(1.0), height, end, height);
  if (is_below || is_above) {
    around += arrow(is_below ? direction::left : direction::right, end, height);
  } else {
    dots.point(end, height);
  }
}

}  // namespace

std::string draw(const lollipops& lollipops) {
  const log_scale x(lollipops.axis, {0.0, 1.0});
  const double bottom = row_height * static_cast<double>(lollipops.rows.size());
  path grid;
  path stems;
  path dots;
  std::string around;
  for (const double mark : lollipops.marks) {
    grid.line(x(mark), 0.0, x(mark), bottom);
    around += text_at("x", percent(x(mark)), bottom + 12.0, coordinate(mark));
  }
  double height = row_height / 2.0;
  for (const auto& row : lollipops.rows) {
    draw_row(row, x, height, stems, dots, around);
    height += row_height;
  }
  const std::string stretched = grid.element("grid") +
                                path().line(x(1.0), 0.0, x(1.0), bottom).element("zero") +
                                stems.element("stem") + dots.element("dot");
  return plot("lollipops", bottom + axis_height, lollipops.label, stretched, around);
}

}  // namespace gait_charts
