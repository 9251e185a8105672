// Computes a parameter itself, by the same functions that the compiled library uses inside.

#include <gait/gait.h>

#include <cstdio>
#include <list>

double mean_speed_by_the_entry(gait_foot_result foot);  // in the file without Eigen

int main() {
  gait_foot_result foot;
  std::list<int> cycles;
  for (const double speed : {1.25, 1.5, 1.0}) {
    cycles.push_back(static_cast<int>(foot.cycles.size()));
    foot.cycles.emplace_back().speed = speed;
  }
  gait_statistics statistics;
  gait_statistics_build_parameter(statistics, foot, cycles, "", SPEED{});

  const double by_hand = statistics.parameters.at("speed").mean;
  const double by_the_entry = mean_speed_by_the_entry(foot);
  std::printf("mean speed %g m/s by hand, %g m/s by the entry\n", by_hand, by_the_entry);
  return by_hand == 1.25 && by_the_entry == 1.25 ? 0 : 1;
}
