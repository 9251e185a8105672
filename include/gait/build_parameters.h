#ifndef GAIT_BUILD_PARAMETERS_H
#define GAIT_BUILD_PARAMETERS_H

/// \file
/// The parameters of one side: one visit of the catalogue.

#include <gait/eigen.h>

#include <gait/build_parameter.h>
#include <gait/catalogue.h>
#include <gait/result.h>
#include <gait/statistics.h>

#include <list>
#include <string>
#include <type_traits>

/// Computes the parameters of one side into `stats`: the catalogue's, in its order, without those
/// that are built only with both feet, or only with one.
///
/// A two-feet result decides that the side is one of two feet. It has double support ("DS") then,
/// and each cycle's own `step_length` for its step length. A foot alone has no "DS", and half of
/// the stride length for its step length, where a missing stride length counts as -0.5 m.
///
/// \param foot         the side's foot
/// \param cycles       the foot's cycles that count
/// \param suffix       "_R", "_L", or empty
/// \param feet         the two-feet result, or null
/// \param feet_cycles  the two-feet cycles that count; must not be null unless `feet` is
///
/// Throws, costs and shares as gait_statistics_build_parameter() does, once for each parameter;
/// after an exception the map holds the parameters built so far.
inline void gait_statistics_build_parameters(gait_statistics& stats, const gait_foot_result& foot,
                                             const std::list<int>& cycles,
                                             const std::string& suffix, gait_feet_result* feet,
                                             const std::list<int>* feet_cycles) {
  gait_catalogue::for_each_row([&](const auto& row) {
    using row_type = std::decay_t<decltype(row)>;
    using result_type = typename row_type::result_type;
    const typename row_type::tag_type tag{};
    if (!gait_catalogue::is_built(row.when, feet != nullptr)) {
      return;
    }
    if constexpr (std::is_same_v<result_type, gait_feet_result>) {
      gait_statistics_build_parameter(stats, *feet, *feet_cycles, suffix, tag);
    } else {
      gait_statistics_build_parameter(stats, foot, cycles, suffix, tag);
    }
  });
}

#endif
