// One call of this library in two-feet mode. It accounts for the walk and compares the sides
// besides.

#include "peer.h"

#include "analysis.h"

#include <gait/generate_statistics.h>

int main(int /*count*/, char** arguments) {
  auto analysis = gait_walk::make_analysis(gait_walk::read_walk_folder(arguments[1]).walk);
  print_time_of([&] {
    // A fresh map for every call, whose making and freeing is part of the work.
    analysis.result.statistics = gait_statistics{};
    gait_generate_statistics(analysis.result, {});
  });
}
