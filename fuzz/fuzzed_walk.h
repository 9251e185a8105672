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
#include <iterator>
#include <limits>
#include <list>
#include <string>
#include <vector>

namespace fuzz {

/// A gait_result with everything that it points to. Every input makes one; it can be neither copied
/// nor moved.
class fuzzed_walk {
public:
  explicit fuzzed_walk(input from) : input_(from) {
    add_feet(input_.below(5));
    for (std::list<int>* list : {&result.excluded_1, &result.excluded_1_fallback,
                                 &result.excluded_2, &result.excluded_2_fallback}) {
      add_indices(*list);
    }
    add_settings();
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
  /// Longer than what the library needs to walk through a list in groups.
  static constexpr std::size_t most_cycles = 72;

  void add_feet(std::size_t count) {
    result.foot_results.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
      // With two feet, those entries that neither side points to need not hold anything, but the
      // first a rate.
      fill(result.foot_results[i], i < 2);
    }
    if (count > 1) {
      point_to_feet();
      add_feet_cycles();
    }
  }

  void fill(gait_foot_result& foot, bool is_analysed) {
    if (is_analysed) {
      foot.recording = &recordings_.emplace_back();
      fill(*foot.recording);
      fill(foot.cycles);
    }
  }

  void fill(sensor_recording& recording) {
    const int rate = input_.index();
    recording.sampling_rate = rate != 0 ? rate : 100;
    for (const int signal : {1, 2, 3}) {
      const int kind = input_.byte();
      if (kind < 0xF8) {
        recording.signals[signal].sample_count =
            kind < 0xE0 ? 100 * static_cast<std::uint64_t>(kind) : input_.raw<std::uint64_t>();
      }
    }
  }

  /// As many numbers as there are cycles: each by itself, or evenly spaced, so that few bytes make
  /// a long list.
  std::vector<double> numbers(std::size_t count) {
    const bool evenly = input_.below(2) == 0;
    const double first = evenly ? input_.number() : 0.0;
    const double step = evenly ? input_.number() : 0.0;
    std::vector<double> values;
    for (std::size_t i = 0; i < count; ++i) {
      values.push_back(evenly ? first + step * static_cast<double>(i) : input_.number());
    }
    return values;
  }

  /// The fields of a cycle differ by a quarter from one to the next, but for a few cells that hold
  /// anything.
  void fill(std::list<gait_foot_cycle>& cycles) {
    for (const double value : numbers(1 + input_.below(most_cycles))) {
      gait_foot_cycle& cycle = cycles.emplace_back();
      cycle.index = static_cast<int>(cycles.size()) - 1;
      cycle.first_sample = 100 * cycle.index;
      cycle.last_sample = cycle.first_sample + 99;
      double offset = 0.0;
      for (const auto field : gait_test::foot::measured_fields) {
        cycle.*field = value == gait_missing ? value : value + offset;
        offset += 0.25;
      }
    }
    for (std::size_t cells = input_.below(16); cells != 0; --cells) {
      change(gait_test::cycle_at(cycles, input_.below(cycles.size())));
    }
  }

  void change(gait_foot_cycle& cycle) {
    constexpr auto& fields = gait_test::foot::measured_fields;
    constexpr std::array<int gait_foot_cycle::*, 3> places = {
        &gait_foot_cycle::first_sample, &gait_foot_cycle::last_sample, &gait_foot_cycle::index};
    const std::size_t field = input_.below(fields.size() + places.size());
    if (field < fields.size()) {
      cycle.*fields[field] = input_.number();
    } else {
      cycle.*places.at(field - fields.size()) = input_.index();
    }
  }

  /// The feet need not be entries of the list, nor be two.
  void point_to_feet() {
    gait_foot_result* const first = &result.foot_results[0];
    gait_foot_result* const second = &result.foot_results[1];
    switch (input_.below(5)) {
      case 0:
        result.left_foot = second;
        result.right_foot = first;
        break;
      case 1:
        result.left_foot = result.right_foot = first;
        break;
      case 2:
        foreign_ = *second;
        result.left_foot = first;
        result.right_foot = &foreign_;
        second->recording = nullptr;
        second->cycles.clear();
        break;
      default:
        result.left_foot = first;
        result.right_foot = second;
        break;
    }
  }

  void add_feet_cycles() {
    auto& cycles = result.feet_result.cycles;
    const std::size_t count = input_.below(most_cycles + 1);
    std::size_t position = 0;
    for (const double value : numbers(count)) {
      gait_feet_cycle& cycle = cycles.emplace_back();
      cycle.gct = value;
      cycle.ds = value == gait_missing ? value : value + 20.0;
      cycle.right_cycle = &gait_test::cycle_at(result.right_foot->cycles,
                                               position % result.right_foot->cycles.size());
      cycle.left_cycle = &gait_test::cycle_at(result.left_foot->cycles,
                                              position % result.left_foot->cycles.size());
      ++position;
    }
    for (std::size_t cells = cycles.empty() ? 0 : input_.below(16); cells != 0; --cells) {
      change(gait_test::cycle_at(cycles, input_.below(cycles.size())));
    }
  }

  void change(gait_feet_cycle& cycle) {
    switch (input_.below(4)) {
      case 0:
        cycle.gct = input_.number();
        break;
      case 1:
        cycle.ds = input_.number();
        break;
      case 2:
        cycle.right_cycle = link();
        break;
      default:
        cycle.left_cycle = link();
        break;
    }
  }

  /// No cycle, one of either foot, or one of none.
  gait_foot_cycle* link() {
    const std::size_t kind = input_.below(4);
    if (kind == 0) {
      return nullptr;
    }
    if (kind == 1) {
      gait_foot_cycle& stray = strays_.emplace_back();
      stray.index = input_.index();
      return &stray;
    }
    auto& cycles = (kind == 2 ? result.left_foot : result.right_foot)->cycles;
    return &gait_test::cycle_at(cycles, input_.below(cycles.size()));
  }

  void add_indices(std::list<int>& list) {
    for (std::size_t count = input_.below(24); count != 0; --count) {
      list.push_back(input_.index());
    }
  }

  void add_settings() {
    constexpr std::array<float, 8> values = {
        0.0F, 9.99F, 10.0F, 20.0F, 34.0F, 34.01F, std::numeric_limits<float>::quiet_NaN(), -1.0F};
    const std::size_t kind = input_.below(values.size() + 1);
    settings.settings_value = kind < values.size() ? values[kind] : input_.raw<float>();
  }

  /// What an earlier call, or the caller, left behind. No two keys with "_L" lead to the same one
  /// with "_R".
  void add_earlier_output() {
    constexpr std::array<const char*, 16> keys = {
        "gct",  "gct_R",     "gct_L", "swing_R", "swing_L", "speed",   "speed_R",      "speed_L",
        "DS_R", "asymmetry", "own",   "own_R",   "own_L",   "other_R", "other_Left_L", "_L"};
    for (std::size_t count = input_.below(8); count != 0; --count) {
      gait_statistics_parameter& parameter =
          result.statistics.parameters[keys.at(input_.below(keys.size()))];
      parameter.mean = input_.number();
      parameter.asymmetry = input_.number();
      parameter.asymmetry_enabled = input_.below(2) != 0;
      for (std::size_t values = input_.below(8); values != 0; --values) {
        parameter.values.push_back(input_.number());
      }
    }
    result.statistics.info.cycles.resize(input_.below(3));
    result.statistics.info.included_count = input_.byte();
    result.quality_flags = input_.byte();
  }

  input input_;
  std::list<sensor_recording> recordings_;
  std::list<gait_foot_cycle> strays_;
  gait_foot_result foreign_;
};

}  // namespace fuzz

#endif
