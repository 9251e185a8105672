// A program outside the project: it must compile with nothing but what the package hands on, and
// get its figures right.
#include <gait/gait.h>

#include <cstdio>

int main() {
  sensor_recording recording;
  recording.sampling_rate = 100;
  recording.signals = {{1, {400}}, {2, {400}}};

  gait_result result;
  result.foot_results.resize(1);
  gait_foot_result& foot = result.foot_results.front();
  foot.recording = &recording;
  for (const double duration : {1.0, 1.25, 9.0, 1.5}) {
    gait_foot_cycle cycle;
    cycle.index = static_cast<int>(foot.cycles.size());
    cycle.gct = duration;
    foot.cycles.push_back(cycle);
  }
  result.excluded_1 = {2};

  gait_generate_statistics(result, {});
  const double from_library = result.statistics.parameters.at("gct").median;

  const Eigen::Array3d included(1.0, 1.25, 1.5);
  const double from_headers = included.percentile(Eigen::Array<double, 1, 1>(50.0)).value();

  std::printf("median cycle duration: %g s by the library, %g s by the headers\n", from_library,
              from_headers);
  return from_library == 1.25 && from_headers == 1.25 ? 0 : 1;
}
