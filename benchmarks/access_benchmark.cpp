// Reaching the cycles of a list by their indices: the library's function beside one std::next after
// another.

#include "access_sums.h"
#include "scatter.h"
#include "walks.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <list>
#include <numeric>

namespace {

template <double (*Sum)(const std::list<gait_foot_cycle>&, const std::list<int>&), nodes Nodes>
void access(benchmark::State& state) {
  std::list<gait_foot_cycle> cycles = modelled_walk(state.range(0)).left->cycles;
  std::list<int> indices(cycles.size());
  std::iota(indices.begin(), indices.end(), 0);
  if (Nodes == nodes::scattered) {
    scatter(cycles);
  }
  for (auto _ : state) {
    benchmark::DoNotOptimize(Sum(cycles, indices));
  }
  const auto passed =
      static_cast<double>(state.range(0)) * static_cast<double>(state.range(0) - 1) / 2.0;
  state.counters["nodes"] =
      benchmark::Counter(passed, benchmark::Counter::kIsIterationInvariantRate);
  state.SetComplexityN(state.range(0));
}

void sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("cycles")->ArgsProduct({cycle_counts})->Complexity(benchmark::oNSquared);
}

BENCHMARK_TEMPLATE(access, sum_with_std_next, nodes::in_order)
    ->Name("access/std_next/in_order")
    ->Apply(sizes);
BENCHMARK_TEMPLATE(access, sum_with_library, nodes::in_order)
    ->Name("access/library/in_order")
    ->Apply(sizes);
BENCHMARK_TEMPLATE(access, sum_with_std_next, nodes::scattered)
    ->Name("access/std_next/scattered")
    ->Apply(sizes);
BENCHMARK_TEMPLATE(access, sum_with_library, nodes::scattered)
    ->Name("access/library/scattered")
    ->Apply(sizes);

}  // namespace
