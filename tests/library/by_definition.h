#ifndef GAIT_TESTS_BY_DEFINITION_H
#define GAIT_TESTS_BY_DEFINITION_H

// The sort and the percentile once more, written from their definition, with bounds
// checked: what the library's own are compared with, bit by bit. It shares no code with them.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace by_definition {

/// a * b, rounded before it becomes part of a sum, on processors that could fuse the two as well.
inline double product(double a, double b) {
  const volatile double rounded = a * b;
  return rounded;
}

/// Sorts the elements of `a` from `left` to `right`, where the index `origin` (0 or below) stands
/// for the first one.
template <class T>
void quicksort(std::vector<T>& a, std::ptrdiff_t left, std::ptrdiff_t right,
               std::ptrdiff_t origin = 0) {
  if (left >= right) {
    return;
  }
  const auto at = [&](std::ptrdiff_t index) -> T& {
    return a.at(static_cast<std::size_t>(index - origin));
  };
  const T pivot = at((left + right) / 2);
  std::ptrdiff_t from_left = left;
  std::ptrdiff_t from_right = right;
  for (;;) {
    for (; at(from_left) < pivot; from_left += 1) {
    }
    for (; at(from_right) > pivot; from_right -= 1) {
    }
    if (from_left <= from_right) {
      const T kept = at(from_left);
      at(from_left) = at(from_right);
      at(from_right) = kept;
      from_left += 1;
      from_right -= 1;
    }
    if (from_left > from_right) {
      break;
    }
  }
  quicksort(a, left, from_right, origin);
  quicksort(a, from_left, right, origin);
}

inline double single_percentile(const std::vector<double>& s, double p, double med, double lo,
                                double hi) {
  const auto n = static_cast<double>(s.size());
  if (std::fabs(p - 50.0) < 1e-12) {
    return med;
  }
  if (p <= lo) {
    return s.front();
  }
  if (p >= hi) {
    return s.back();
  }
  const double r = product(p / 100.0, n) - 0.5;
  const double k0 = std::floor(std::fmax(0.0, r));
  const auto k = static_cast<std::size_t>(k0);
  double v = s.at(k);
  if (std::fabs(r - k0) >= 1e-12) {
    const double f = (p + ((k0 + 0.5) * (-100.0)) / n) * (n / 100.0);
    v = s.at(k) + product(s.at(k + 1) - s.at(k), f);
  }
  return v;
}

/// The percentiles of `values` at every requested percentage.
inline std::vector<double> percentile(const std::vector<double>& values,
                                      const std::vector<double>& request) {
  if (values.size() <= 1) {
    return std::vector<double>(request.size(), values.at(0));
  }
  std::vector<double> s = values;
  quicksort(s, 0, static_cast<std::ptrdiff_t>(s.size()) - 1);

  const auto n = static_cast<double>(s.size());
  const std::size_t half = s.size() / 2;
  const double med = s.size() % 2 == 1 ? s.at(half) : (s.at(half) + s.at(half - 1)) * 0.5;
  const double lo = 50.0 / n;
  const double hi = ((0.5 + n) + (-1.0)) * 100.0 / n;

  const auto every = [&](auto condition) {
    return std::all_of(request.begin(), request.end(), condition);
  };
  if (every(
          [](double p) { return std::fabs(p - 50.0) <= std::fmin(std::fabs(p), 50.0) * 1e-12; })) {
    return std::vector<double>(request.size(), med);
  }
  if (every([&](double p) { return p <= lo; })) {
    return std::vector<double>(request.size(), s.front());
  }
  if (every([&](double p) { return p >= hi; })) {
    return std::vector<double>(request.size(), s.back());
  }
  std::vector<double> result;
  for (const double p : request) {
    result.push_back(single_percentile(s, p, med, lo, hi));
  }
  return result;
}

}  // namespace by_definition

#endif
