// Every statistic of one parameter, the cycle duration of ten strides.

#include <gait/generate_statistics.h>

#include <cstdio>

int main() {
  sensor_recording recording{100, {{1, {1100}}, {2, {1100}}}};
  gait_result walk;
  walk.foot_results.resize(1);
  walk.foot_results[0].recording = &recording;
  for (const double duration : {1.08, 1.11, 1.05, 1.13, 1.09, 1.02, 1.10, 1.16, 1.07, 1.12}) {
    gait_foot_cycle stride;
    stride.gct = duration;
    walk.foot_results[0].cycles.push_back(stride);
  }
  gait_generate_statistics(walk, {});

  const gait_statistics_parameter& gct = walk.statistics.parameters.at("gct");
  std::printf("mean %.4f  std %.4f  cv %.2f %%\n", gct.mean, gct.std, gct.cv);
  std::printf("min %.2f  median %.3f  max %.2f  iqr %.4f\n", gct.min, gct.median, gct.max, gct.iqr);
}
