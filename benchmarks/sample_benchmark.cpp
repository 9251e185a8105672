// What is done with a sample once it is gathered: the percentiles, and the sort behind them.

#include <gait/eigen.h>

#include "walks.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace {

std::vector<double> sample_of(std::int64_t size) {
  const gait_walk::walk walk = modelled_walk(size);
  std::vector<double> sample;
  for (const gait_foot_cycle& cycle : walk.left->cycles) {
    sample.push_back(cycle.speed);
  }
  return sample;
}

void quartiles(benchmark::State& state) {
  const std::vector<double> values = sample_of(state.range(0));
  const Eigen::VectorXd sample =
      Eigen::Map<const Eigen::VectorXd>(values.data(), static_cast<Eigen::Index>(values.size()));
  for (auto _ : state) {
    benchmark::DoNotOptimize(sample.percentile(Eigen::Array2d(25.0, 75.0)));
  }
  state.SetComplexityN(state.range(0));
}

template <class Sort>
void sort_sample(benchmark::State& state, Sort sort) {
  const std::vector<double> values = sample_of(state.range(0));
  std::vector<double> copy(values.size());
  for (auto _ : state) {
    std::copy(values.begin(), values.end(), copy.begin());
    sort(copy);
    benchmark::ClobberMemory();
  }
  state.SetComplexityN(state.range(0));
}

void quicksort(std::vector<double>& values) {
  _kalvio_eigen_quicksort(values.data(), Eigen::Index{0},
                          static_cast<Eigen::Index>(values.size()) - 1);
}
void std_sort(std::vector<double>& values) { std::sort(values.begin(), values.end()); }
void std_nth_element(std::vector<double>& values) {
  std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2),
                   values.end());
}

void sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("values")->ArgsProduct({cycle_counts})->Complexity(benchmark::oNLogN);
}

BENCHMARK(quartiles)->Name("percentile/quartiles")->Apply(sizes);
BENCHMARK_CAPTURE(sort_sample, quicksort, quicksort)->Name("sort/quicksort")->Apply(sizes);
BENCHMARK_CAPTURE(sort_sample, std_sort, std_sort)->Name("sort/std_sort")->Apply(sizes);
BENCHMARK_CAPTURE(sort_sample, std_nth_element, std_nth_element)
    ->Name("sort/std_nth_element")
    ->Apply(sizes);

}  // namespace
