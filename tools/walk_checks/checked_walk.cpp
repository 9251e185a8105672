#include "checked_walk.h"

#include <algorithm>

namespace gait_checks {
namespace {

checked_foot foot_of(std::string_view name, const gait_foot_result& result) {
  checked_foot foot;
  foot.name = name;
  foot.rate = static_cast<double>(result.recording->sampling_rate);
  for (const gait_foot_cycle& stride : result.cycles) {
    foot.strides.push_back(&stride);
  }
  return foot;
}

/// The foot's stride with that index, or null.
const gait_foot_cycle* stride_at(const checked_foot& foot, int index) {
  const auto position = static_cast<std::size_t>(index);
  return index >= 0 && position < foot.strides.size() ? foot.strides[position] : nullptr;
}

/// The foot's stride that a two-feet cycle links, or null.
const gait_foot_cycle* linked(const checked_foot& foot, const gait_foot_cycle* link) {
  return link == nullptr ? nullptr : stride_at(foot, link->index);
}

}  // namespace

checked_walk checked_walk_of(const gait_result& result, const gait_foot_result* right,
                             const gait_foot_result* left) {
  checked_walk walk;
  if (right != nullptr) {
    walk.feet.push_back(foot_of("right", *right));
  }
  if (left != nullptr) {
    walk.feet.push_back(foot_of("left", *left));
  }
  const auto& included = result.statistics.info.cycles;
  if (walk.feet.size() < 2) {
    for (const int index : included) {
      walk.feet.front().included.push_back({stride_at(walk.feet.front(), index), index});
    }
    return walk;
  }
  checked_foot& right_foot = walk.feet[0];
  checked_foot& left_foot = walk.feet[1];
  int index = 0;
  for (const gait_feet_cycle& cycle : result.feet_result.cycles) {
    walk.links.push_back({&cycle, index, linked(right_foot, cycle.right_cycle),
                          linked(left_foot, cycle.left_cycle)});
    ++index;
  }
  for (const int position : included) {
    const checked_pair& pair = walk.links[static_cast<std::size_t>(position)];
    walk.pairs.push_back(pair);
    if (pair.right != nullptr) {
      right_foot.included.push_back({pair.right, pair.index});
    }
    if (pair.left != nullptr) {
      left_foot.included.push_back({pair.left, pair.index});
    }
  }
  return walk;
}

}  // namespace gait_checks
