#include "walk_rules.h"

#include "values.h"

#include <gait/statistics.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <utility>
#include <vector>

namespace gait_checks {
namespace {

using cycle = gait_foot_cycle;

constexpr double least_overlap = 25.0;  // (% of the shorter stride)

void append(std::vector<finding>& all, const std::vector<finding>& more) {
  all.insert(all.end(), more.begin(), more.end());
}

std::vector<finding> strides_in_time_order(const checked_walk& walk, const value_filter& /*usable*/,
                                           alarm when) {
  std::vector<finding> all;
  for (const checked_foot& foot : walk.feet) {
    tally tally(foot_cycles_table, "first_sample", strides_of(foot.name));
    for (std::size_t i = 1; i < foot.strides.size(); ++i) {
      const cycle& before = *foot.strides[i - 1];
      const cycle& stride = *foot.strides[i];
      const bool rises = stride.first_sample > before.first_sample;
      const bool hs_rises =
          gait_is_missing(stride.hs) || gait_is_missing(before.hs) || stride.hs > before.hs;
      tally.add(rises && hs_rises, {foot.name, stride.index, {}}, [&] {
        return rises ? "found a heel strike (hs) at " + number(stride.hs) +
                           " s, expected later than the one before, " + number(before.hs) + " s"
                     : "found first_sample " + std::to_string(stride.first_sample) +
                           ", expected more than that of the stride before, " +
                           std::to_string(before.first_sample);
      });
    }
    std::vector<finding> findings = tally.findings(when);
    if (!findings.empty() && tally.broken() == tally.compared() && tally.compared() > 1) {
      findings.front().guess = "rows or index in reverse?";
    }
    append(all, findings);
  }
  return all;
}

std::vector<finding> links_in_order(const checked_walk& walk, const value_filter& /*usable*/,
                                    alarm when) {
  std::vector<finding> all;
  for (const bool is_right : {true, false}) {
    tally tally(feet_cycles_table, is_right ? "right_index" : "left_index", all_pairs);
    const cycle* before = nullptr;
    for (const checked_pair& pair : walk.links) {
      const cycle* stride = is_right ? pair.right : pair.left;
      if (stride == nullptr) {
        continue;
      }
      if (before != nullptr) {
        tally.add(stride->index > before->index, {"", pair.index, {}}, [&] {
          return "found " + std::to_string(stride->index) +
                 ", expected more than the link before, " + std::to_string(before->index);
        });
      }
      before = stride;
    }
    append(all, tally.findings(when));
  }
  return all;
}

/// What the strides that a cycle of both feet links have in common (% of the shorter one).
double overlap_of(const checked_pair& pair) {
  const double shorter = std::min(samples_of(*pair.right), samples_of(*pair.left));
  const double common =
      static_cast<double>(std::min(pair.right->last_sample, pair.left->last_sample)) -
      std::max(pair.right->first_sample, pair.left->first_sample) + 1.0;
  return 100.0 * common / shorter;
}

std::string strides_in_words(const checked_pair& pair) {
  return "found right stride " + std::to_string(pair.right->index) + " and left stride " +
         std::to_string(pair.left->index);
}

std::vector<finding> linked_strides_overlap(const checked_walk& walk,
                                            const value_filter& /*usable*/, alarm when) {
  tally tally(feet_cycles_table, "right_index", included_pairs);
  for (const checked_pair& pair : walk.pairs) {
    if (pair.right == nullptr || pair.left == nullptr) {
      continue;
    }
    const double overlap = overlap_of(pair);
    tally.add(overlap >= least_overlap, {"", pair.index, pair.index}, [&] {
      return strides_in_words(pair) + " with " + number(std::max(0.0, overlap)) +
             " % of the shorter in common, expected at least " + number(least_overlap) + " %";
    });
  }
  return tally.findings(when);
}

/// Whether two strides open or close together. The feet of a walk never do: the times of one foot
/// were made from those of the other, and say nothing about their order.
bool share_times(const cycle& right, const cycle& left, double rate) {
  const double tolerance = tolerance_of_samples{}.at(rate);
  return !differs(right.first_sample, left.first_sample, tolerance) ||
         !differs(right.last_sample, left.last_sample, tolerance);
}

std::vector<finding> left_opens_within_right(const checked_walk& walk,
                                             const value_filter& /*usable*/, alarm when) {
  tally tally(feet_cycles_table, "left_index", included_pairs);
  for (const checked_pair& pair : walk.pairs) {
    // Strides that are made at different times are another check's.
    if (pair.right == nullptr || pair.left == nullptr || overlap_of(pair) < least_overlap ||
        share_times(*pair.right, *pair.left, walk.feet.front().rate)) {
      continue;
    }
    tally.add(pair.left->first_sample >= pair.right->first_sample, {"", pair.index, pair.index},
              [&] {
                return strides_in_words(pair) + ", which opens first, at sample " +
                       std::to_string(pair.left->first_sample) +
                       ", expected it to open within the right one, from sample " +
                       std::to_string(pair.right->first_sample) + " on";
              });
  }
  std::vector<finding> findings = tally.findings(when);
  const bool nearly_all_break_it = 10 * tally.broken() >= 9 * tally.compared();
  if (!findings.empty() && nearly_all_break_it) {
    finding& found = findings.front();
    found.table = foot_cycles_table;
    found.column = "foot";
    found.guess = feet_swapped;
    found.places.clear();
  }
  return findings;
}

/// The strides of a foot that have a partner of the other one.
stride_set partnered(const checked_walk& walk) {
  std::vector<const cycle*> strides;
  strides.reserve(2 * walk.links.size());
  for (const checked_pair& pair : walk.links) {
    if (pair.right != nullptr && pair.left != nullptr) {
      strides.push_back(pair.right);
      strides.push_back(pair.left);
    }
  }
  return stride_set(std::move(strides));
}

/// The stride during which a sample was taken, or null. The strides are in order of time.
const cycle* stride_during(const std::vector<const cycle*>& strides, std::int64_t sample) {
  const auto after =
      std::upper_bound(strides.begin(), strides.end(), sample,
                       [](std::int64_t one, const cycle* c) { return one < c->first_sample; });
  if (after == strides.begin()) {
    return nullptr;
  }
  const cycle* stride = *std::prev(after);
  return sample <= stride->last_sample ? stride : nullptr;
}

/// The right stride that a left one belongs to: within which it opens, or which shares its times.
const cycle* right_stride_of(const cycle& left, const checked_foot& right_foot) {
  const std::int64_t middle = (std::int64_t{left.first_sample} + left.last_sample) / 2;
  const cycle* beside = stride_during(right_foot.strides, middle);
  return beside != nullptr && share_times(*beside, left, right_foot.rate)
             ? beside
             : stride_during(right_foot.strides, left.first_sample);
}

/// A stride without a partner is nothing unusual: its partner may not have been found. But where
/// the two that belong together are both there, their link is missing.
std::vector<finding> unlinked_strides(const checked_walk& walk, const value_filter& /*usable*/,
                                      alarm when) {
  if (walk.feet.size() < 2) {
    return {};
  }
  const std::vector<const cycle*>& rights = walk.feet[0].strides;
  const auto opens_earlier = [](const cycle* one, const cycle* other) {
    return one->first_sample < other->first_sample;
  };
  // Strides out of order are another check's.
  if (!std::is_sorted(rights.begin(), rights.end(), opens_earlier)) {
    return {};
  }
  const stride_set with_partner = partnered(walk);
  tally tally(foot_cycles_table, "index", strides_of(walk.feet[1].name));
  for (const cycle* left : walk.feet[1].strides) {
    const cycle* right = right_stride_of(*left, walk.feet[0]);
    const bool is_sound = right == nullptr || with_partner.has(left) || with_partner.has(right);
    tally.add(is_sound, {"left", left->index, {}}, [&] {
      return "found left stride " + std::to_string(left->index) + " and right stride " +
             std::to_string(right->index) + " at the same time, both without a partner, " +
             "expected a row of " + std::string(feet_cycles_table) + " that links them";
    });
  }
  return tally.findings(when);
}

}  // namespace

std::vector<walk_rule> order_and_link_rules() {
  constexpr std::string_view of_170_walks = "170 measured walks, none of which breaks it";
  // clang-format off
  return {
      {"strides_in_time_order", "first_sample and hs rise from stride to stride of a foot", "none", alarm::any, strides_in_time_order,
       "unsorted or reversed rows, an index by another key, or rows of two walks joined",
       "170 measured walks: 18 of 32,070 strides break it, whose times were made up"},
      {"links_in_order", "right_index and left_index rise from one cycle of both feet to the next", "none", alarm::any, links_in_order,
       "cycles sorted by another key", of_170_walks},
      {"linked_strides_overlap", "strides that one cycle of both feet links are made at the same time", number(least_overlap) + " % of the shorter", alarm::any, linked_strides_overlap,
       "links that are late by a row or more, feet with different clocks, or feet swapped: column foot", of_170_walks},
      {"left_opens_within_right", "a left stride opens within the right one that it is linked with; those that open or close together with it are not compared", "none", alarm::many, left_opens_within_right,
       "feet swapped: column foot; or links that are early by a row: left_index too small by 1; --without-check left_opens_within_right where the left foot leads", "the way in which cycles of both feet are paired; 7 measured walks, none of which breaks it"},
      {"unlinked_strides", "a left stride and the right one within which it opens are linked, unless either has another partner", "none", alarm::any, unlinked_strides,
       "links or rows that are missing: strides without a link enter no statistic of both feet", "the way in which cycles of both feet are paired; 7 measured walks, none of which breaks it"},
  };
  // clang-format on
}

}  // namespace gait_checks
