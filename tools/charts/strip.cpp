#include "strip.h"

#include "svg.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <vector>

namespace gait_charts {
namespace {

/// Between the edge of the plot and the scale, so that no point is cut (px).
constexpr double margin = 4.0;
constexpr double gap_tick = 5.0;  // (px)
constexpr span whole_width = {0.0, 1.0};

/// The picture of a strip as it grows.
class strip_picture {
public:
  explicit strip_picture(const strip& strip)
      : strip_(strip), x_(strip.x, whole_width), y_(strip.y, {strip.height - margin, margin}) {}

  std::string draw() {
    draw_background();
    draw_band();
    if (is_binned_) {
      draw_bins();
    } else {
      draw_dots();
    }
    for (const double x : strip_.gaps) {
      gaps_.line(x_(x), strip_.height, x_(x), strip_.height - gap_tick);
    }
    stretched_ += stems_.element("stem") + ranges_out_.element("range out") +
                  ranges_.element("range") + hollow_.element("ring") + hollow_.element("hole") +
                  filled_.element("dot") + gaps_.element("gap");
    return plot(is_binned_ ? "strip binned" : "strip", strip_.height, strip_.label, stretched_,
                around_);
  }

private:
  /// A y that is beyond the scale becomes its end.
  double clamped(double y) const { return std::fmin(std::fmax(y, y_.data().from), y_.data().to); }

  /// Shaded stretches, lines at the ticks, and their labels. A stretch is too narrow to be seen
  /// where the points are many.
  void draw_background() {
    path shade;
    if (!is_binned_) {
      for (const auto& span : strip_.shaded) {
        shade.rectangle({x_(span.from), x_(span.to)}, {0.0, strip_.height});
      }
    }
    path grid;
    for (const auto& tick : ticks(strip_.y, 2)) {
      const double height = y_(tick.value);
      grid.line(0.0, height, 1.0, height);
      around_ += text_at("y", "-6", height, tick.label);
    }
    stretched_ = shade.element("shade") + grid.element("grid");
  }

  void draw_band() {
    if (strip_.band) {
      const span drawn = {y_(clamped(strip_.band->from)), y_(clamped(strip_.band->to))};
      stretched_ += path().rectangle(whole_width, drawn).element("band");
    }
    draw_line(strip_.stems_from, "zero");
    draw_line(strip_.other_line, "other");
    draw_line(strip_.line, "line");
  }

  void draw_line(const std::optional<double>& y, const char* css_class) {
    if (y && strip_.y.holds(*y)) {
      stretched_ += path().line(0.0, y_(*y), 1.0, y_(*y)).element(css_class);
    }
  }

  void draw_arrow(double x, double y) {
    around_ += y > y_.data().to ? arrow(direction::up, x_(x), 1.0)
                                : arrow(direction::down, x_(x), strip_.height - 1.0);
  }

  void draw_dots() {
    for (const auto& [at, counts] : strip_.dots) {
      if (std::isnan(at.y)) {
        continue;
      }
      if (!strip_.y.holds(at.y)) {
        draw_arrow(at.x, at.y);
        continue;
      }
      (counts ? filled_ : hollow_).point(x_(at.x), y_(at.y));
      if (strip_.stems_from) {
        stems_.line(x_(at.x), y_(clamped(*strip_.stems_from)), x_(at.x), y_(at.y));
      }
    }
  }

  std::vector<bin> bins_of(bool counts) const {
    std::vector<point> points;
    for (const auto& dot : strip_.dots) {
      if (dot.counts == counts) {
        points.push_back(dot.at);
      }
    }
    return binned(points, strip_.x, parts_of_binned_strip);
  }

  void draw_range(path& ranges, const bin& bin) {
    const double x = x_(bin.x);
    ranges.line(x, y_(clamped(bin.lowest)), x, y_(clamped(bin.highest)));
  }

  void draw_bins() {
    for (const auto& bin : bins_of(false)) {
      draw_range(ranges_out_, bin);
    }
    for (const auto& bin : bins_of(true)) {
      draw_range(ranges_, bin);
      filled_.point(x_(bin.x), y_(clamped(bin.median)));
      for (const double y : {bin.lowest, bin.highest}) {
        if (!strip_.y.holds(y)) {
          draw_arrow(bin.x, y);
        }
      }
    }
  }

  const strip& strip_;
  linear_scale x_;
  linear_scale y_;
  bool is_binned_ = strip_.dots.size() > most_dots;
  path filled_{is_binned_ ? 1 : 2};  // of many points, a tenth of a pixel is enough
  path hollow_, gaps_, stems_;
  path ranges_{1};
  path ranges_out_{1};
  std::string stretched_;
  std::string around_;
};

}  // namespace

std::string draw(const strip& strip) { return strip_picture(strip).draw(); }

}  // namespace gait_charts
