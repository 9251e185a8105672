#ifndef TOOLS_WALK_CHECKS_CHECKED_WALK_H
#define TOOLS_WALK_CHECKS_CHECKED_WALK_H

/// \file
/// A walk as the checks see it: every stride by its index, and which of them are included.

#include <gait/result.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

namespace gait_checks {

/// A stride that enters the statistics.
struct included_stride {
  const gait_foot_cycle* stride = nullptr;
  int cycle =
      0;  ///< the index of the analysed cycle that it belongs to: a two-feet one, or its own
};

/// One foot.
struct checked_foot {
  std::string_view name;                        ///< "right" or "left"
  double rate = 0.0;                            ///< (Hz)
  std::vector<const gait_foot_cycle*> strides;  ///< all, by index
  std::vector<included_stride> included;        ///< in time order
};

/// An included cycle of both feet, with the strides that it links; null where there is none.
struct checked_pair {
  const gait_feet_cycle* cycle = nullptr;
  int index = 0;  ///< of the two-feet cycle
  const gait_foot_cycle* right = nullptr;
  const gait_foot_cycle* left = nullptr;
};

struct checked_walk {
  std::vector<checked_foot> feet;   ///< the analysed ones, right before left
  std::vector<checked_pair> pairs;  ///< of two feet that are analysed together
  std::vector<checked_pair> links;  ///< as pairs, but of all two-feet cycles, excluded ones too
};

/// Some strides, to ask whether one is among them. Null may be one of them.
class stride_set {
public:
  explicit stride_set(std::vector<const gait_foot_cycle*> strides) : strides_(std::move(strides)) {
    std::sort(strides_.begin(), strides_.end(), std::less<>());
  }

  bool has(const gait_foot_cycle* stride) const {
    return std::binary_search(strides_.begin(), strides_.end(), stride, std::less<>());
  }

private:
  std::vector<const gait_foot_cycle*> strides_;
};

/// How many samples a stride has.
inline double samples_of(const gait_foot_cycle& stride) {
  return static_cast<double>(stride.last_sample) - stride.first_sample + 1.0;
}

/// By how many samples a time that an export rounded to 10 ms may differ from its sample.
struct tolerance_of_samples {
  double samples = 1.5;
  double ms = 6.0;

  double at(double rate) const { return std::max(samples, ms * rate / 1000.0); }
};

/// `right` and `left` are the analysed feet, or null.
checked_walk checked_walk_of(const gait_result& result, const gait_foot_result* right,
                             const gait_foot_result* left);

}  // namespace gait_checks

#endif
