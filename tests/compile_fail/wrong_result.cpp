#include <gait/gait.h>

#if defined(FAULT) && defined(FEET_TAG)
using foot_tag = DS;
#else
using foot_tag = GCT;
#endif

#if defined(FAULT) && defined(FOOT_TAG)
using feet_tag = GCT;
#else
using feet_tag = DS;
#endif

void build(gait_statistics& statistics, const gait_foot_result& foot,
           const gait_feet_result& feet) {
  gait_statistics_build_parameter(statistics, foot, {0}, "", foot_tag{});
  gait_statistics_build_parameter(statistics, feet, {0}, "", feet_tag{});
}
