#include "checked_walk.h"
#include "tally.h"
#include "walk_checks.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace gait_checks {
namespace {

std::optional<note> note_on_few(std::size_t strides) {
  const std::string koenig = "König et al., Gait & Posture 2014;39:615, PMID 23838361";
  const std::string galna = "Galna, Lord and Rochester, Gait & Posture 2013";
  const auto fewer_than = [&](std::size_t wanted) {
    return std::to_string(strides) + (strides == 1 ? " stride" : " strides") + ", fewer than " +
           std::to_string(wanted);
  };
  if (strides < strides_for_means) {
    return note{"few_strides_for_means",
                "Mean from " + fewer_than(strides_for_means) + ": read with care.", koenig};
  }
  if (strides < strides_for_variability) {
    return note{"few_strides_for_variability",
                "Variability from " + fewer_than(strides_for_variability) +
                    ", tends to come out too small; do not compare it with a longer walk.",
                galna};
  }
  if (strides < strides_for_steady_variability) {
    return note{"few_strides_for_steady_variability",
                "Variability from " + fewer_than(strides_for_steady_variability) +
                    ", may change by a third with more strides.",
                koenig};
  }
  return std::nullopt;
}

std::optional<note> note_on_unlinked(const checked_foot& foot, const stride_set& linked) {
  std::size_t unlinked = 0;
  for (const gait_foot_cycle* stride : foot.strides) {
    unlinked += linked.has(stride) ? 0 : 1;
  }
  if (unlinked == 0) {
    return std::nullopt;
  }
  return note{"strides_without_link",
              std::to_string(unlinked) + " of " + std::to_string(foot.strides.size()) + " " +
                  std::string(strides_of(foot.name)) + (unlinked == 1 ? " is" : " are") +
                  " in no two-feet cycle, and therefore not in the statistics. Such strides are "
                  "usual at turns, and at the start and end of a recording.",
              ""};
}

}  // namespace

std::vector<note> notes_on(const gait_result& result, const gait_foot_result* right,
                           const gait_foot_result* left) {
  std::vector<note> notes;
  const bool both_feet = right != nullptr && left != nullptr;
  const checked_walk walk = both_feet ? checked_walk_of(result, right, left) : checked_walk{};
  std::size_t strides = result.statistics.info.cycles.size();
  for (const checked_foot& foot : walk.feet) {
    strides = std::min(strides, foot.included.size());  // a two-feet cycle may lack one
  }
  if (auto few = note_on_few(strides)) {
    notes.push_back(*few);
  }
  std::vector<const gait_foot_cycle*> links;
  links.reserve(2 * walk.links.size());
  for (const checked_pair& pair : walk.links) {
    links.push_back(pair.right);
    links.push_back(pair.left);
  }
  const stride_set linked(std::move(links));
  for (const checked_foot& foot : walk.feet) {
    if (auto unlinked = note_on_unlinked(foot, linked)) {
      notes.push_back(*unlinked);
    }
  }
  return notes;
}

}  // namespace gait_checks
