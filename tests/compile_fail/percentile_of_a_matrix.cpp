#include <gait/eigen.h>

#ifdef FAULT
using receiver = Eigen::MatrixXd;
#else
using receiver = Eigen::VectorXd;
#endif

Eigen::Array2d quartiles(const receiver& values) {
  return values.percentile(Eigen::Array2d(25.0, 75.0));
}
