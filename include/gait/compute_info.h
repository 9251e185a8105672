#ifndef GAIT_COMPUTE_INFO_H
#define GAIT_COMPUTE_INFO_H

/// \file
/// The cycle accounting: how many cycles, and how much time, each kind of exclusion takes out.

#include <gait/catalogue.h>
#include <gait/cycle_access.h>
#include <gait/int32_count.h>
#include <gait/result.h>

#include <cstddef>
#include <cstdint>
#include <list>

/// The exclusions of one kind that the cycle accounting counts: the primary list, or the fallback
/// list where the primary one is empty.
///
/// It says nothing of which cycles are included: only the primary lists take cycles out. Any
/// container will do, such as a list of indices or a vector of reasons. Returns one of its
/// arguments.
template <class List>
const List& gait_accounted_exclusions(const List& primary, const List& fallback) noexcept {
  return primary.empty() ? fallback : primary;
}

namespace gait_detail {

/// The field of a result's cycles that the accounting of a tag sums.
template <class ResultT, class Tag>
inline constexpr std::nullptr_t summed_field = nullptr;
template <>
inline constexpr auto summed_field<gait_foot_result, GCT> = &gait_foot_cycle::gct;
template <>
inline constexpr auto summed_field<gait_feet_result, GCT> = &gait_feet_cycle::gct;

/// What one kind of exclusion takes out.
struct exclusion {
  std::uint32_t fallback_count;
  std::uint32_t count;
  double fallback_duration;  ///< (s)
  double duration;           ///< (s)
};

/// The accounting of one kind: its primary list if that holds anything, else its fallback list.
///
/// `fallback_count` says what an applied fallback list counts as. Counts are lengths: an index out
/// of range or without a duration counts, and adds no time.
template <class ResultT, class Tag>
exclusion account_exclusion(const ResultT& result, const std::list<int>& primary,
                            const std::list<int>& fallback, std::uint32_t fallback_count) {
  const auto& applied = gait_accounted_exclusions(primary, fallback);
  const double duration = index_sum(result.cycles, applied, summed_field<ResultT, Tag>);
  if (primary.empty()) {
    return {fallback_count, fallback_count, duration, duration};
  }
  return {0, static_cast<std::uint32_t>(primary.size()), 0.0, duration};
}

}  // namespace gait_detail

/// Fills `excluded_2_fallback_count` to `included_duration` of `info`; the fields before them are
/// not touched.
///
/// For each kind, the primary list counts if it is not empty, else the fallback list does: that of
/// kind 1 with its length, that of kind 2 as two cycles, however many it holds. A cycle that both
/// kinds list is taken off twice, and an index out of range is counted but adds no time, so that
/// `included_count` may be below the number of included cycles, and negative. It wraps around at 32
/// bits.
///
/// \param result          the analysed result; its cycles' `gct` (s) is summed
/// \param gait            read for its four exclusion lists only
/// \param total_cycles    number of cycles of the walk
/// \param total_duration  duration of the walk (s)
///
/// O(n * k) steps for k listed indices over n cycles. Throws nothing and allocates nothing.
template <class ResultT, class Tag>
void gait_statistics_compute_info(gait_statistics_info& info, const ResultT& result,
                                  const gait_result& gait, Tag /*tag*/, int total_cycles,
                                  double total_duration) noexcept {
  // Where its fallback list applies, kind 2 counts as two cycles however many the list names, or
  // none; callers rely on the constant. Kind 1 has no such rule, and counts its fallback list as it
  // is.
  constexpr std::uint32_t kind_2_fallback_count = 2;
  const auto kind_2 = gait_detail::account_exclusion<ResultT, Tag>(
      result, gait.excluded_2, gait.excluded_2_fallback, kind_2_fallback_count);
  const auto kind_1 = gait_detail::account_exclusion<ResultT, Tag>(
      result, gait.excluded_1, gait.excluded_1_fallback,
      static_cast<std::uint32_t>(gait.excluded_1_fallback.size()));

  info.excluded_2_fallback_count = kind_2.fallback_count;
  info.excluded_2_count = kind_2.count;
  info.excluded_1_fallback_count = kind_1.fallback_count;
  info.excluded_1_count = kind_1.count;
  info.included_count =
      gait_detail::to_int32(std::int64_t{total_cycles} - kind_2.count - kind_1.count);
  info.excluded_2_fallback_duration = kind_2.fallback_duration;
  info.excluded_2_duration = kind_2.duration;
  info.excluded_1_fallback_duration = kind_1.fallback_duration;
  info.excluded_1_duration = kind_1.duration;
  info.included_duration = total_duration - (kind_2.duration + kind_1.duration);
}

#endif
