#ifndef FUZZ_FUZZED_WALK_H
#define FUZZ_FUZZED_WALK_H

/// \file
/// A walk made of the bytes of a fuzz input: any walk that the entry's contract allows, of short
/// lists.

#include "builders.h"
#include "input.h"

#include <gait/generate_statistics.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <list>
#include <vector>

namespace fuzz {

/// A gait_result with everything that it points to. Every input makes one; it can be neither copied
/// nor moved.
class fuzzed_walk {
public:
  explicit fuzzed_walk(input from) : input_(from) {
    result.foot_results.resize(input_.below(5));
    // With two feet, the entries beyond the first two need not hold anything.
    for (std::size_t i = 0; i < result.foot_results.size() && i < 2; ++i) {
      fill(result.foot_results[i]);
    }
    if (result.foot_results.size() > 1) {
      // The two may be one.
      result.left_foot = &result.foot_results[input_.below(2)];
      result.right_foot = &result.foot_results[input_.below(2)];
      add_feet_cycles();
    }
    for (std::list<int>* list : {&result.excluded_1, &result.excluded_1_fallback,
                                 &result.excluded_2, &result.excluded_2_fallback}) {
      for (std::size_t count = input_.below(24); count != 0; --count) {
        list->push_back(input_.index());
      }
    }
    settings.settings_value = input_.raw<float>();
    add_earlier_output();
  }
  ~fuzzed_walk() = default;
  fuzzed_walk(const fuzzed_walk&) = delete;
  fuzzed_walk& operator=(const fuzzed_walk&) = delete;
  fuzzed_walk(fuzzed_walk&&) = delete;
  fuzzed_walk& operator=(fuzzed_walk&&) = delete;

  gait_result result;
  gait_generate_statistics_settings settings;

private:
  /// Longer than the lists that the library goes along one index at a time.
  static constexpr std::size_t most_cycles = 72;

  void fill(gait_foot_result& foot) {
    foot.recording = &recordings_.emplace_back();
    const int rate = input_.index();
    foot.recording->sampling_rate = rate != 0 ? rate : 100;
    for (const int signal : {1, 2, 3}) {
      const int kind = input_.byte();
      if (kind < 0xF8) {
        foot.recording->signals[signal].sample_count =
            kind < 0xE0 ? 100 * static_cast<std::uint64_t>(kind) : input_.raw<std::uint64_t>();
      }
    }
    add_cycles(foot.cycles);
  }

  /// As many numbers as there are cycles: each by itself, or evenly spaced, so that few bytes make
  /// a long list.
  std::vector<double> numbers(std::size_t count) {
    const bool evenly = input_.below(2) == 0;
    const double first = evenly ? input_.number() : 0.0;
    const double difference = evenly ? input_.number() : 0.0;
    std::vector<double> values;
    for (std::size_t i = 0; i < count; ++i) {
      values.push_back(evenly ? first + difference * static_cast<double>(i) : input_.number());
    }
    return values;
  }

  /// The fields of a cycle differ by a quarter from one to the next, but for a few cells that hold
  /// anything.
  void add_cycles(std::list<gait_foot_cycle>& cycles) {
    for (const double value : numbers(1 + input_.below(most_cycles))) {
      gait_foot_cycle& cycle = cycles.emplace_back();
      cycle.index = static_cast<int>(cycles.size()) - 1;
      cycle.first_sample = 100 * cycle.index;
      cycle.last_sample = cycle.first_sample + 99;
      double offset = 0.0;
      for (const auto field : gait_test::measured_fields) {
        cycle.*field = value == gait_missing ? value : value + offset;
        offset += 0.25;
      }
    }
    for (std::size_t cells = input_.below(16); cells != 0; --cells) {
      change(gait_test::cycle_at(cycles, input_.below(cycles.size())));
    }
  }

  void change(gait_foot_cycle& cycle) {
    std::size_t field = input_.below(gait_test::field_count<gait_foot_cycle>);
    gait_test::for_each_field(cycle, [&](const char* /*name*/, auto& member) {
      if (field-- == 0) {
        set(member);
      }
    });
  }
  void set(double& member) { member = input_.number(); }
  void set(int& member) { member = input_.index(); }

  void add_feet_cycles() {
    for (const double value : numbers(input_.below(most_cycles + 1))) {
      gait_feet_cycle& cycle = result.feet_result.cycles.emplace_back();
      cycle.gct = value;
      cycle.ds = input_.below(8) != 0 ? value + 20.0 : input_.number();
      cycle.right_cycle = link(*result.right_foot);
      cycle.left_cycle = link(*result.left_foot);
    }
  }

  /// The cycle of the foot that stands where the two-feet cycle does, no cycle, any of the foot's,
  /// or one of no foot.
  gait_foot_cycle* link(gait_foot_result& foot) {
    const std::size_t kind = input_.below(16);
    const std::size_t last = result.feet_result.cycles.size() - 1;
    if (kind == 1) {
      return nullptr;
    }
    if (kind == 2) {
      strays_.emplace_back().index = input_.index();
      return &strays_.back();
    }
    return &gait_test::cycle_at(foot.cycles,
                                (kind == 3 ? input_.byte() : last) % foot.cycles.size());
  }

  /// What an earlier call, or the caller, left behind.
  void add_earlier_output() {
    constexpr std::array<const char*, 12> keys = {"gct",   "gct_R",   "gct_L", "swing_R",
                                                  "speed", "speed_L", "DS_R",  "asymmetry",
                                                  "own_R", "own_L",   "_L",    "other_Left_L"};
    for (std::size_t count = input_.below(8); count != 0; --count) {
      gait_statistics_parameter& parameter =
          result.statistics.parameters[keys.at(input_.below(keys.size()))];
      parameter.mean = input_.number();
      parameter.asymmetry_enabled = input_.below(2) != 0;
      parameter.values = numbers(input_.below(8));
    }
    result.statistics.info.included_count = input_.byte();
    result.quality_flags = input_.byte();
  }

  input input_;
  std::list<sensor_recording> recordings_;
  std::list<gait_foot_cycle> strays_;
};

}  // namespace fuzz

#endif
