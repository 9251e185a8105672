#include <gait/gait.h>

#include <cstdio>
#include <list>

namespace lab {

struct SWING_TIME {};

// How long the foot is in the air (s).
double swing_time(const gait_foot_cycle& cycle) {
  return cycle.swing == gait_missing || cycle.gct == gait_missing ? gait_missing
                                                                  : cycle.gct * cycle.swing / 100.0;
}

}  // namespace lab

template <>
inline constexpr auto gait_catalogue::row_of<lab::SWING_TIME> =
    gait_catalogue::foot<lab::SWING_TIME>("swingTime", "Swing time", "seconds", 3,
                                          gait_catalogue::ratio, gait_catalogue::cv,
                                          lab::swing_time);

int main() {
  sensor_recording recording{100, {{1, {500}}, {2, {500}}}};
  gait_result walk;
  walk.foot_results.resize(2);
  walk.left_foot = &walk.foot_results.front();
  walk.right_foot = &walk.foot_results.back();
  for (gait_foot_result* foot : {walk.left_foot, walk.right_foot}) {
    foot->recording = &recording;
    for (int i = 0; i < 4; ++i) {
      gait_foot_cycle stride;
      stride.index = i;
      stride.gct = 1.0;
      stride.swing = foot == walk.left_foot ? 40.0 : 36.0 + i;
      foot->cycles.push_back(stride);
    }
  }
  for (auto right = walk.right_foot->cycles.begin(); right != walk.right_foot->cycles.end();
       ++right) {
    walk.feet_result.cycles.push_back({1.0, 25.0, &*right, nullptr});
  }
  gait_generate_statistics(walk, {});

  const std::list<int> right = gait_matching_cycles(walk.feet_result, walk.statistics.info.cycles,
                                                    &gait_feet_cycle::right_cycle);
  gait_statistics_build_parameter(walk.statistics, *walk.right_foot, right, "_R",
                                  lab::SWING_TIME{});

  const gait_statistics_parameter& own = walk.statistics.parameters.at("swingTime_R");
  std::printf("%s, right: mean %.3f %s\n", own.description.c_str(), own.mean, own.unit.c_str());
}
