#ifndef GAIT_BUILD_PARAMETERS_H
#define GAIT_BUILD_PARAMETERS_H

/// \file
/// The parameters of one side, and the order in which they are built.

#include <gait/eigen.h>

#include <gait/build_parameter.h>
#include <gait/catalogue.h>
#include <gait/result.h>
#include <gait/statistics.h>

#include <list>
#include <string>
#include <type_traits>

namespace gait_detail {

/// Builds the parameters of the given tags, in their order.
template <class... Tags, class ResultT>
void build_in_order(gait_statistics& stats, const ResultT& result, const std::list<int>& cycles,
                    const std::string& suffix) {
  (gait_statistics_build_parameter<ResultT, Tags>(stats, result, cycles, suffix, Tags{}), ...);
}

}  // namespace gait_detail

namespace gait_catalogue {

/// Which calls of gait_statistics_build_parameters() build a row of the table: all of them, or only
/// those with a two-feet result, or those without.
enum class built { always, with_both_feet, with_one_foot };

template <class Row>
constexpr built when_built() {
  if constexpr (std::is_same_v<typename Row::tag_type, STEPLENGTH_ALT>) {
    return built::with_one_foot;
  } else if constexpr (std::is_same_v<typename Row::tag_type, STEPLENGTH> ||
                       std::is_same_v<typename Row::result_type, gait_feet_result>) {
    return built::with_both_feet;
  } else {
    return built::always;
  }
}

}  // namespace gait_catalogue

/// Computes every parameter of one side into `stats`: 28 with a two-feet result, 27 ("DS" is left
/// out) without.
///
/// The two-feet result also decides the step length: with it, each cycle's own `step_length`;
/// without it, half of the stride length, where a missing stride length counts as -0.5 m.
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
  using gait_detail::build_in_order;

  build_in_order<GCT, SWING, STANCE, STANCE_MS, CADENCE, LDR, FFR, PUR>(stats, foot, cycles,
                                                                        suffix);
  if (feet != nullptr) {
    build_in_order<DS>(stats, *feet, *feet_cycles, suffix);
  }
  build_in_order<SLENGTH, SWIDTH, PATHLENGTH, SPEED, TA, PEAKSWING, TOP, HSP>(stats, foot, cycles,
                                                                              suffix);
  build_in_order<MAXHC, MINTC, MAXTC1, MAXTC2, MTCS, HS, STEPTIME>(stats, foot, cycles, suffix);
  if (feet != nullptr) {
    build_in_order<STEPLENGTH>(stats, foot, cycles, suffix);
  } else {
    build_in_order<STEPLENGTH_ALT>(stats, foot, cycles, suffix);
  }
  build_in_order<IMPACT_VERT, IMPACT_BREAK, PRONATION>(stats, foot, cycles, suffix);
}

#endif
