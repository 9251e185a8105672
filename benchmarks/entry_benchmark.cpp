// A whole call in both modes, and one parameter of it.

#include "count_allocations.h"
#include "scatter.h"
#include "walks.h"

#include <gait/build_parameter.h>
#include <gait/generate_statistics.h>

#include <benchmark/benchmark.h>

#include <list>
#include <numeric>
#include <optional>

namespace {

void empty_results(gait_result& result) { result.statistics = gait_statistics{}; }

gait_walk::analysis make_analysis(std::int64_t cycles, nodes where,
                                  std::optional<gait_walk::side> only) {
  gait_walk::analysis analysis = gait_walk::make_analysis(modelled_walk(cycles), only);
  if (where == nodes::scattered) {
    for (gait_foot_result& foot : analysis.result.foot_results) {
      scatter(foot.cycles);
    }
    scatter(analysis.result.feet_result.cycles);
  }
  return analysis;
}

void entry(benchmark::State& state, nodes where, std::optional<gait_walk::side> only) {
  gait_walk::analysis analysis = make_analysis(state.range(0), where, only);
  gait_result& result = analysis.result;
  const auto call = [&] { gait_generate_statistics(result, {}); };
  for (auto _ : state) {
    call();
    state.PauseTiming();
    empty_results(result);
    state.ResumeTiming();
  }
  const auto allocations = static_cast<double>(count_allocations(call));
  const auto nodes_of_selections = static_cast<double>(result.statistics.info.cycles.size());
  state.counters["allocations"] = allocations;
  state.counters["parameters"] = static_cast<double>(result.statistics.parameters.size());
  state.counters["allocations_per_cycle"] = allocations / nodes_of_selections;
  state.SetComplexityN(state.range(0));
}

void one_parameter(benchmark::State& state) {
  const gait_walk::analysis analysis =
      make_analysis(state.range(0), nodes::in_order, gait_walk::side::left);
  const gait_foot_result& foot = analysis.result.foot_results.front();
  std::list<int> indices(foot.cycles.size());
  std::iota(indices.begin(), indices.end(), 0);
  gait_statistics statistics;
  const auto build = [&] {
    gait_statistics_build_parameter<gait_foot_result, GCT>(statistics, foot, indices, "", GCT{});
  };
  for (auto _ : state) {
    build();
    statistics.parameters.clear();
  }
  state.counters["allocations"] = static_cast<double>(count_allocations(build));
  state.SetComplexityN(state.range(0));
}

void sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("cycles")
      ->ArgsProduct({cycle_counts})
      ->Complexity(benchmark::oNSquared)
      ->Unit(benchmark::kMicrosecond);
}

BENCHMARK_CAPTURE(entry, one_foot_in_order, nodes::in_order, gait_walk::side::left)->Apply(sizes);
BENCHMARK_CAPTURE(entry, two_feet_in_order, nodes::in_order, std::nullopt)->Apply(sizes);
BENCHMARK_CAPTURE(entry, one_foot_scattered, nodes::scattered, gait_walk::side::left)->Apply(sizes);
BENCHMARK_CAPTURE(entry, two_feet_scattered, nodes::scattered, std::nullopt)->Apply(sizes);
BENCHMARK(one_parameter)->Name("parameter")->Apply(sizes);

}  // namespace
