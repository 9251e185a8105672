#ifndef GAIT_SRC_CYCLE_SELECTION_H
#define GAIT_SRC_CYCLE_SELECTION_H

/// \file
/// Which cycles enter the statistics: where a stride is left out.

#include "is_included_in.h"

#include <gait/int32_count.h>
#include <gait/result.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <list>
#include <numeric>

namespace gait_detail {

/// The cycles that count: every cycle at first, then those that no exclusion has taken out.
class cycle_selection {
public:
  /// Selects every cycle of a list of `size`, in ascending order.
  explicit cycle_selection(std::size_t size)
      : cycle_count_(to_int32(static_cast<std::int64_t>(size))) {
    cycles_.resize(static_cast<std::size_t>(std::max(cycle_count_, 0)));
    std::iota(cycles_.begin(), cycles_.end(), 0);
  }

  /// Takes out the cycles of both primary exclusion lists; the fallback lists never take anything
  /// out.
  void exclude(const gait_result& result) {
    cycles_.remove_if(IsIncludedIn(result.excluded_1));
    const auto remaining_after_kind_1 = cycles_.size();
    cycles_.remove_if(IsIncludedIn(result.excluded_2));
    kind_2_took_any_ = cycles_.size() != remaining_after_kind_1;
  }

  const std::list<int>& cycles() const { return cycles_; }
  int cycle_count() const { return cycle_count_; }
  int excluded_count() const {
    return to_int32(std::int64_t{cycle_count_} - static_cast<std::int64_t>(cycles_.size()));
  }
  bool kind_2_took_any() const { return kind_2_took_any_; }

private:
  int cycle_count_;
  std::list<int> cycles_;
  bool kind_2_took_any_ = false;
};

}  // namespace gait_detail

#endif
