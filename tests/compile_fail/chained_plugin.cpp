// A caller with a plugin of their own, which includes the library's.

#define EIGEN_DENSEBASE_PLUGIN "plugin_with_ours.h"
#include <gait/gait.h>

#include <cstdio>

int main() {
  const Eigen::VectorXd values = Eigen::Vector4d(4.0, 1.0, 3.0, 2.0);
  const Eigen::Array2d quartiles = values.percentile(Eigen::Array2d(25.0, 75.0));
  const bool both_plugins_work =
      values.first_coefficient() == 4.0 && quartiles[0] == 1.5 && quartiles[1] == 3.5;
  std::puts(both_plugins_work ? "both plugins work" : "a plugin gives a wrong value");
  return both_plugins_work ? 0 : 1;
}
