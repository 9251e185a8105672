// Fills a result, calls the entry and reads the statistics, without Eigen.

#include <gait/generate_statistics.h>

#include <utility>

#if defined(EIGEN_WORLD_VERSION) || __has_include(<Eigen/Core>)
#error "this file must be compiled without Eigen"
#endif

double mean_speed_by_the_entry(gait_foot_result foot);

double mean_speed_by_the_entry(gait_foot_result foot) {
  sensor_recording recording{100, {{1, {1000}}, {2, {1000}}}};
  foot.recording = &recording;
  gait_result result;
  result.foot_results.push_back(std::move(foot));
  gait_generate_statistics(result, {});
  return result.statistics.parameters.at("speed").mean;
}
