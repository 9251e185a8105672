#include "walk_summary.h"

#include "decimals.h"
#include "names.h"
#include "number.h"
#include "parameter_measures.h"

#include <gait/compute_info.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <list>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace gait_report {
namespace {

using gait_walk::exclusion_list;

/// Longer reasons are counted in a label, and named beside it.
constexpr std::size_t longest_label = 15;

/// Adds up what was measured of the analysed cycles' durations.
class durations {
public:
  explicit durations(const walk_statistics& walk) {
    const gait_result& result = walk.result();
    if (walk.both_feet()) {
      note(result.feet_result.cycles);
    } else {
      note(result.foot_results.front().cycles);
    }
  }

  /// The sum over some cycles, which the library has computed.
  measured_sum over(const std::list<int>& indices, double sum) const {
    measured_sum measured;
    for (const int index : indices) {
      const auto place = static_cast<std::size_t>(index);
      if (index >= 0 && place < has_one_.size()) {
        ++measured.cycles;
        measured.without += has_one_[place] ? 0U : 1U;
      }
    }
    if (measured.cycles == 0 || measured.without < measured.cycles) {
      measured.sum = sum;
    }
    return measured;
  }

private:
  template <class Cycles>
  void note(const Cycles& cycles) {
    has_one_.reserve(cycles.size());
    for (const auto& cycle : cycles) {
      has_one_.push_back(!gait_is_missing(cycle.gct));
    }
  }

  std::vector<bool> has_one_;
};

measured_sum distance_of(double sum, std::size_t cycles, std::size_t without) {
  return {without == cycles ? std::nullopt : std::optional(sum), cycles, without};
}

// --- Cycle accounting

std::string name_or_none(const std::string& reason) {
  return reason.empty() ? "no reason given" : reason;
}

std::string in_words(const counted_reasons& reasons) {
  std::string words;
  for (const auto& [reason, count] : reasons) {
    words += (words.empty() ? "" : ", ") + std::to_string(count) + " " + name_or_none(reason);
  }
  return words;
}

std::string names_of(const counted_reasons& reasons) {
  std::string names;
  for (const auto& [reason, count] : reasons) {
    names += (names.empty() ? "" : ", ") + name_or_none(reason);
  }
  return names;
}

bool fits_a_label(const counted_reasons& reasons) {
  return names_of(reasons).size() <= longest_label;
}

std::string label_of(const accounted_kind& kind) {
  if (kind.reasons.empty()) {
    return "Excluded: none listed";
  }
  const std::size_t count = kind.reasons.size();
  return "Excluded: " + (fits_a_label(kind.reasons)
                             ? names_of(kind.reasons)
                             : std::to_string(count) + (count == 1 ? " reason" : " reasons"));
}

std::string note_on(const accounted_kind& kind) {
  const bool label_says_all = kind.reasons.size() < 2 && fits_a_label(kind.reasons);
  std::string note = label_says_all ? "" : in_words(kind.reasons);
  if (kind.is_fallback) {
    note += note.empty() ? "" : ": ";
    note += kind.kind == 2 ? "counted as two cycles" : "counted";
    note += kind.reasons.empty() ? "" : ", but in the statistics";
  }
  return note;
}

counted_reasons reasons_in(const walk_statistics& walk, exclusion_list list) {
  counted_reasons reasons;
  for (const auto& exclusion : walk.exclusions) {
    if (exclusion.list == list) {
      count_reason(reasons, exclusion.reason);
    }
  }
  return reasons;
}

/// One of the two kinds: its lists, and what the accounting made of them.
struct kind_of_exclusion {
  int kind;
  exclusion_list primary_name, fallback_name;
  const std::list<int>& primary;
  const std::list<int>& fallback;
  std::uint32_t count;
  double duration;  ///< (s)
};

accounted_kind account(const kind_of_exclusion& lists, const walk_statistics& walk,
                       const durations& times) {
  accounted_kind kind;
  kind.kind = lists.kind;
  kind.is_fallback = lists.primary.empty();
  kind.cycles = static_cast<int>(lists.count);
  kind.time = times.over(gait_accounted_exclusions(lists.primary, lists.fallback), lists.duration);
  kind.reasons = reasons_in(walk, kind.is_fallback ? lists.fallback_name : lists.primary_name);
  kind.label = label_of(kind);
  kind.note = note_on(kind);
  return kind;
}

void account(walk_summary& summary, const walk_statistics& walk, const durations& times) {
  const gait_result& result = walk.result();
  const gait_statistics_info& info = walk.info();
  summary.accounted_cycles = info.included_count;
  summary.accounted_duration = info.included_duration;
  for (const kind_of_exclusion& lists :
       {kind_of_exclusion{1, exclusion_list::excluded_1, exclusion_list::excluded_1_fallback,
                          result.excluded_1, result.excluded_1_fallback, info.excluded_1_count,
                          info.excluded_1_duration},
        kind_of_exclusion{2, exclusion_list::excluded_2, exclusion_list::excluded_2_fallback,
                          result.excluded_2, result.excluded_2_fallback, info.excluded_2_count,
                          info.excluded_2_duration}}) {
    accounted_kind kind = account(lists, walk, times);
    if (!kind.time.sum) {
      summary.accounted_duration.reset();
    }
    if (kind.cycles > 0) {
      summary.kinds.push_back(std::move(kind));
    }
  }
}

// --- Sentences

/// A sum that lacks some of its cycles is less than the whole.
std::string amount(const measured_sum& sum, const char* unit, const char* what) {
  if (!sum.sum) {
    return std::string(what) + " unknown";
  }
  return (sum.without > 0 ? "at least " : "") + rounded(*sum.sum, decimals_of_sums) + " " + unit;
}

std::string part_of(const side_strides& side) {
  return std::to_string(side.included) + " of " + std::to_string(side.strides.size());
}

std::string foot_name(const side_strides& side) { return std::string(name_of(side.side.foot)); }

std::string strides_in_words(const walk_strides& walk) {
  const side_strides& first = walk.sides.front();
  if (walk.sides.size() == 1) {
    return part_of(first) + " " + foot_name(first) + " strides";
  }
  const side_strides& second = walk.sides.back();
  return part_of(first) == part_of(second)
             ? part_of(first) + " strides of each foot"
             : part_of(first) + " " + foot_name(first) + ", " + part_of(second) + " " +
                   foot_name(second) + " strides";
}

/// The reasons of a side, and the strides that no two-feet cycle links.
counted_reasons reasons_of(const side_strides& side) {
  counted_reasons reasons = side.left_out_reasons;
  if (side.unlinked > 0) {
    reasons.emplace_back(gait_walk::name_of(stride_status::unlinked), side.unlinked);
  }
  return reasons;
}

std::string reasons_in_words(const side_strides& side) {
  const counted_reasons reasons = reasons_of(side);
  return reasons.empty() ? "none" : in_words(reasons);
}

std::string left_out_in_words(const walk_strides& walk) {
  const side_strides& first = walk.sides.front();
  const side_strides& second = walk.sides.back();
  const bool none = reasons_of(first).empty() && reasons_of(second).empty();
  if (walk.sides.size() == 1 || none) {
    return "Left out: " + reasons_in_words(first);
  }
  return reasons_of(first) == reasons_of(second)
             ? "Left out of each foot: " + reasons_in_words(first)
             : "Left out: " + foot_name(first) + " " + reasons_in_words(first) + "; " +
                   foot_name(second) + " " + reasons_in_words(second);
}

/// How many exclusions have this effect. Those of a fallback list of kind 2 do not count one by
/// one.
std::size_t count_of(const walk_strides& strides, exclusion_effect effect) {
  return static_cast<std::size_t>(std::count_if(
      strides.exclusions.begin(), strides.exclusions.end(), [&](const auto& exclusion) {
        return exclusion.effect == effect && exclusion.list != exclusion_list::excluded_2_fallback;
      }));
}

std::string entries(std::size_t count, const std::string& that) {
  return std::to_string(count) + (count == 1 ? " entry that names " : " entries that name ") + that;
}

std::string why_they_differ(const walk_statistics& walk, const walk_strides& strides) {
  const gait_statistics_info& info = walk.info();
  if (static_cast<std::int64_t>(info.cycles.size()) == info.included_count) {
    return "";
  }
  std::vector<std::string> subtracted;
  if (const auto again = count_of(strides, exclusion_effect::already_left_out); again > 0) {
    subtracted.push_back(entries(again, "a cycle again"));
  }
  if (const auto outside = count_of(strides, exclusion_effect::outside); outside > 0) {
    subtracted.push_back(entries(outside, "no cycle of the walk"));
  }
  if (info.excluded_1_fallback_count > 0) {
    subtracted.emplace_back("the cycles of excluded_1_fallback, which stay in the statistics");
  }
  if (info.excluded_2_fallback_count > 0) {
    subtracted.emplace_back("two cycles for excluded_2, which is empty");
  }
  std::string words;
  for (const std::string& what : subtracted) {
    words += (words.empty() ? "" : "; ") + what;
  }
  const std::size_t count = info.cycles.size();
  return "The accounting has " + std::to_string(info.included_count) + " included where " +
         std::to_string(count) + (count == 1 ? " cycle is" : " cycles are") +
         " in the statistics, because it subtracts " + words + ".";
}

}  // namespace

std::string analysed_in_words(const walk_statistics& walk) {
  return gait_walk::capitalised(gait_walk::words_of(walk.analysed).in_words) +
         (walk.both_feet() ? "" : " alone") + ", sampled at " + std::to_string(walk.sampling_rate) +
         " Hz";
}

walk_summary summary_of(const walk_statistics& walk, const walk_strides& strides) {
  const gait_statistics_info& info = walk.info();
  const stride_length_gaps& lengths = walk.stride_lengths;
  const durations times(walk);
  walk_summary summary;
  if (walk.recording_length_is_known) {
    summary.recording = info.recording_duration;
  }
  summary.walk = info.duration;
  summary.time = times.over(info.cycles, info.included_gct_sum);
  summary.total_distance = distance_of(info.total_distance, lengths.cycles, lengths.without);
  summary.distance =
      distance_of(info.included_distance, lengths.included, lengths.included_without);
  account(summary, walk, times);
  summary.in_the_statistics = "In the statistics: " + strides_in_words(strides) + "; " +
                              amount(summary.time, "s", "duration") + ", " +
                              amount(summary.distance, "m", "distance");
  summary.left_out = left_out_in_words(strides);
  summary.why_they_differ = why_they_differ(walk, strides);
  return summary;
}

std::unordered_map<std::string, std::optional<double>> measured_fields(
    const walk_statistics& walk, const walk_strides& strides) {
  const gait_result& result = walk.result();
  const gait_statistics_info& info = walk.info();
  const stride_length_gaps& lengths = walk.stride_lengths;
  const durations times(walk);
  const std::list<int> none;
  const bool kind_1_falls_back = result.excluded_1.empty();
  const bool kind_2_falls_back = result.excluded_2.empty();
  const bool kind_2_took_any = std::any_of(strides.exclusions.begin(), strides.exclusions.end(),
                                           [](const listed_exclusion& exclusion) {
                                             return exclusion.list == exclusion_list::excluded_2 &&
                                                    exclusion.effect == exclusion_effect::left_out;
                                           });
  const auto sum = [&](const std::list<int>& indices, double value) {
    return times.over(indices, value).sum;
  };
  const auto& kind_1 = gait_accounted_exclusions(result.excluded_1, result.excluded_1_fallback);
  const auto& kind_2 = gait_accounted_exclusions(result.excluded_2, result.excluded_2_fallback);
  const auto excluded_1 = sum(kind_1, info.excluded_1_duration);
  const auto excluded_2 = sum(kind_2, info.excluded_2_duration);
  return {
      {"recording_duration",
       walk.recording_length_is_known ? std::optional(info.recording_duration) : std::nullopt},
      {"duration", info.duration},
      {"excluded_1_fallback_gct_sum",
       sum(result.excluded_1_fallback, info.excluded_1_fallback_gct_sum)},
      {"excluded_2_gct_sum", sum(kind_2_took_any ? result.excluded_2 : result.excluded_2_fallback,
                                 info.excluded_2_gct_sum)},
      {"included_gct_sum", sum(info.cycles, info.included_gct_sum)},
      {"included_distance",
       distance_of(info.included_distance, lengths.included, lengths.included_without).sum},
      {"total_distance", distance_of(info.total_distance, lengths.cycles, lengths.without).sum},
      {"excluded_2_fallback_duration", sum(kind_2_falls_back ? result.excluded_2_fallback : none,
                                           info.excluded_2_fallback_duration)},
      {"excluded_2_duration", excluded_2},
      {"excluded_1_fallback_duration", sum(kind_1_falls_back ? result.excluded_1_fallback : none,
                                           info.excluded_1_fallback_duration)},
      {"excluded_1_duration", excluded_1},
      {"included_duration",
       excluded_1 && excluded_2 ? std::optional(info.included_duration) : std::nullopt},
  };
}

std::vector<shown_swing_asymmetry> swing_asymmetries_of(const walk_statistics& walk) {
  const auto* record = swing_asymmetry_record(walk);
  const auto percent = swing_asymmetry_in_percent(walk);
  if (record == nullptr || !percent) {
    return {};
  }
  computed_statistics in_percent;
  in_percent.n = percent->n;
  in_percent.mean = percent->mean;
  in_percent.std = percent->sd;
  const std::string direction(percent->mean ? gait_measures::direction_in_words(*percent->mean)
                                            : "");
  return {{swing_asymmetry_key, swing_asymmetry_unit(walk), swing_asymmetry_of(*record), direction},
          {swing_asymmetry_percent_key, "%", in_percent, direction}};
}

}  // namespace gait_report
