// What the four exclusion lists do to the accounting of one walk: ten cycles of 1.0, 1.1, ..., 1.9
// s.

#include <gait/generate_statistics.h>

#include <cstdio>
#include <list>
#include <vector>

namespace {

struct exclusions {
  const char* lists;
  std::list<int> kind_1;
  std::list<int> kind_1_fallback;
  std::list<int> kind_2;
  std::list<int> kind_2_fallback;
};

gait_statistics_info account(const exclusions& lists) {
  sensor_recording recording{100, {{1, {1450}}, {2, {1450}}}};
  gait_result walk;
  walk.foot_results.resize(1);
  walk.foot_results[0].recording = &recording;
  int sample = 0;
  for (int i = 0; i < 10; ++i) {
    gait_foot_cycle cycle;
    cycle.first_sample = sample;
    sample += 100 + 10 * i;
    cycle.last_sample = sample - 1;
    cycle.gct = 1.0 + 0.1 * i;
    walk.foot_results[0].cycles.push_back(cycle);
  }
  walk.excluded_1 = lists.kind_1;
  walk.excluded_1_fallback = lists.kind_1_fallback;
  walk.excluded_2 = lists.kind_2;
  walk.excluded_2_fallback = lists.kind_2_fallback;
  gait_generate_statistics(walk, {});
  return walk.statistics.info;
}

}  // namespace

int main() {
  const std::vector<exclusions> cases = {
      {"nothing listed", {}, {}, {}, {}},
      {"1 {4,5}  2 {0,9}", {4, 5}, {}, {0, 9}, {}},
      {"1 fallback {4,5,6}", {}, {4, 5, 6}, {}, {}},
      {"2 fallback {0,1,9}", {}, {}, {}, {0, 1, 9}},
      {"2 {0}  2 fallback {1,9}", {}, {}, {0}, {1, 9}},
      {"1 {4,4}  2 {0}", {4, 4}, {}, {0}, {}},
      {"1 {-1,10}  2 {0}", {-1, 10}, {}, {0}, {}},
      {"1 {4}  2 {4}  2 fallback {0}", {4}, {}, {4}, {0}},
  };
  std::puts(
      "                              selection  kind 1     kind 2     accounting      excluded_2");
  std::puts(
      "lists                         cycles s   count s    count s    cycles s        _gct_sum s");
  for (const exclusions& lists : cases) {
    const gait_statistics_info info = account(lists);
    std::printf("%-30s%3zu %6.1f %4u %6.1f %4u %6.1f %4d %6.1f %12.1f\n", lists.lists,
                info.cycles.size(), info.included_gct_sum, info.excluded_1_count,
                info.excluded_1_duration, info.excluded_2_count, info.excluded_2_duration,
                info.included_count, info.included_duration, info.excluded_2_gct_sum);
  }
}
