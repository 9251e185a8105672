#ifndef TOOLS_CHARTS_SCALE_H
#define TOOLS_CHARTS_SCALE_H

/// \file
/// From numbers to places in a drawing and back, and the round numbers that label an axis.

#include <cstddef>
#include <string>
#include <vector>

namespace gait_charts {

/// A stretch of an axis.
struct span {
  double from = 0.0;
  double to = 0.0;

  /// Whether a number lies in it, its ends included; false for NaN.
  bool holds(double value) const { return value >= from && value <= to; }
};

/// Maps the numbers of `data` linearly to the places of `drawn`. The drawn stretch may run
/// backwards, as heights do.
class linear_scale {
public:
  linear_scale(span data, span drawn) : data_(data), drawn_(drawn) {}

  /// The place of a number; numbers outside of the data have places too. Data without width lies in
  /// the middle.
  double operator()(double value) const;

  const span& data() const { return data_; }

private:
  span data_;
  span drawn_;
};

/// The same for ratios: equal factors are equally far apart. The data must be above 0.
class log_scale {
public:
  log_scale(span data, span drawn);

  double operator()(double value) const;

  const span& data() const { return data_; }

private:
  span data_;
  linear_scale of_logarithms_;
};

/// A number on an axis, as it is drawn and as it is written.
struct tick {
  double value = 0.0;
  std::string label;
};

/// The multiples of the largest 1, 2, 2.5 or 5 times a power of ten of which at least `least` lie
/// in the stretch: no more than twice as many do, and one. None where the stretch has no width, or
/// one that numbers cannot hold.
std::vector<tick> ticks(span data, std::size_t least);

/// A stretch made wider by this share of its width at each end.
span widened(span data, double share);

}  // namespace gait_charts

#endif
