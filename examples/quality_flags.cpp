// Names the quality flags of a walk that is short and slow.

#include <gait/generate_statistics.h>

#include <cstdio>

int main() {
  sensor_recording recording{100, {{1, {400}}, {2, {400}}}};
  gait_result walk;
  walk.foot_results.resize(1);
  walk.foot_results[0].recording = &recording;
  for (int i = 0; i < 3; ++i) {
    gait_foot_cycle stride;
    stride.speed = 0.25;
    walk.foot_results[0].cycles.push_back(stride);
  }
  gait_generate_statistics_settings settings;
  settings.settings_value = 20.0F;
  gait_generate_statistics(walk, settings);

  std::printf("flags %d\n", walk.quality_flags);
  if ((walk.quality_flags & gait_quality_setting) != 0) {
    std::puts("the setting is out of its range");
  }
  if ((walk.quality_flags & gait_quality_few_cycles) != 0) {
    std::puts("four cycles or fewer");
  }
  if ((walk.quality_flags & gait_quality_speed) != 0) {
    std::puts("the mean speed is not plausible");
  }
}
