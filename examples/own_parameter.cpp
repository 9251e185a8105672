#include <gait/gait.h>

#include <cstdio>

namespace lab {

// How much longer the foot is on the ground than in the air.
double stance_to_swing(const gait_foot_cycle& cycle) {
  if (cycle.stance == gait_missing || cycle.swing == gait_missing) {
    return gait_missing;
  }
  return cycle.stance / cycle.swing;
}

struct STANCE_TO_SWING {};

}  // namespace lab

template <>
inline constexpr auto gait_catalogue::row_of<lab::STANCE_TO_SWING> =
    gait_catalogue::foot<lab::STANCE_TO_SWING>("stanceToSwing", "Stance to swing", "", 2,
                                               gait_catalogue::ratio, gait_catalogue::cv,
                                               lab::stance_to_swing);

int main() {
  sensor_recording recording{100, {{1, {500}}, {2, {500}}}};
  gait_result walk;
  walk.foot_results.resize(1);
  gait_foot_result& foot = walk.foot_results[0];
  foot.recording = &recording;
  for (const double swing : {40.0, 37.5, gait_missing, 36.0}) {
    gait_foot_cycle stride;
    stride.swing = swing;
    stride.stance = swing == gait_missing ? gait_missing : 100.0 - swing;
    foot.cycles.push_back(stride);
  }
  gait_generate_statistics(walk, {});

  gait_statistics_build_parameter(walk.statistics, foot, walk.statistics.info.cycles, "",
                                  lab::STANCE_TO_SWING{});

  const gait_statistics_parameter& own = walk.statistics.parameters.at("stanceToSwing");
  std::printf("%s: mean %.2f, from %.2f to %.2f\n", own.description.c_str(), own.mean, own.min,
              own.max);
}
