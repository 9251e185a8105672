#ifndef GAIT_TESTS_LIBRARY_BUILDERS_H
#define GAIT_TESTS_LIBRARY_BUILDERS_H

/// \file
/// Walks to analyse, of which a test states only what it is about.
///
///     walk alone = one_foot(foot().gct({1.0, 1.1, 1.2})).excluded_1({1});
///     const gait_statistics_info& info = alone.analyse().statistics.info;
///
///     walk w = two_feet(foot().swing({40.0}), foot().swing({60.0})).gct({1.0}).rate(200);
///     const gait_result& result = w.analyse();
///
/// Builders are plain values: copy them, change the copy, analyse both. What a test does not give
/// is missing (gait_missing); cycle i starts at sample 100 * i and ends at 100 * i + 99, at 100 Hz,
/// and its `index` is i.

#include "fields.h"

#include <gait/generate_statistics.h>
#include <gait/result.h>
#include <gait/statistics.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <list>
#include <optional>
#include <utility>
#include <vector>

namespace gait_test {

/// Stands in the lists of links for a two-feet cycle without a cycle of that foot.
inline constexpr int no_cycle = -1;

/// The cycle at a position, which must be there.
template <class Cycle>
Cycle& cycle_at(std::list<Cycle>& cycles, std::size_t position) {
  return *std::next(cycles.begin(), static_cast<std::ptrdiff_t>(position));
}

/// The list's first `values.size()` cycles get the values, and it grows to that many cycles if it
/// holds fewer.
template <class Cycle>
void fill(std::list<Cycle>& cycles, double Cycle::*field, const std::vector<double>& values) {
  cycles.resize(std::max(cycles.size(), values.size()));
  auto cycle = cycles.begin();
  for (const double value : values) {
    (*cycle++).*field = value;
  }
}

/// One foot: its cycles and its recording.
class foot {
public:
  /// At least so many cycles.
  foot& cycles(std::size_t count) {
    while (cycles_.size() < count) {
      const int i = static_cast<int>(cycles_.size());
      gait_foot_cycle cycle;
      cycle.first_sample = 100 * i;
      cycle.last_sample = 100 * i + 99;
      cycle.index = i;
      cycles_.push_back(cycle);
    }
    return *this;
  }

  /// The first cycles get these values; the foot has at least as many cycles.
  foot& with(double gait_foot_cycle::*field, const std::vector<double>& values) {
    cycles(values.size());
    fill(cycles_, field, values);
    return *this;
  }
  foot& gct(const std::vector<double>& values) { return with(&gait_foot_cycle::gct, values); }
  foot& swing(const std::vector<double>& values) { return with(&gait_foot_cycle::swing, values); }
  foot& slength(const std::vector<double>& values) {
    return with(&gait_foot_cycle::slength, values);
  }
  foot& speed(const std::vector<double>& values) { return with(&gait_foot_cycle::speed, values); }

  /// Every measured field of cycle i holds `first + difference * i`.
  foot& ramp(std::size_t count, double first, double difference) {
    cycles(count);
    double value = first;
    for (gait_foot_cycle& cycle : cycles_) {
      for (auto field : measured_fields) {
        cycle.*field = value;
      }
      value += difference;
    }
    return *this;
  }

  /// The samples at which the first cycle starts and the last one ends.
  foot& samples(int first, int last) {
    cycles(1);
    cycles_.front().first_sample = first;
    cycles_.back().last_sample = last;
    return *this;
  }

  foot& rate(int hz) {
    recording_.sampling_rate = hz;
    return *this;
  }
  foot& sample_counts(std::uint64_t signal_1, std::uint64_t signal_2) {
    recording_.signals[1].sample_count = signal_1;
    recording_.signals[2].sample_count = signal_2;
    return *this;
  }
  foot& without_signal(int identifier) {
    recording_.signals.erase(identifier);
    return *this;
  }

  const std::list<gait_foot_cycle>& cycle_list() const { return cycles_; }
  const sensor_recording& recording() const { return recording_; }

  /// Without a recording.
  gait_foot_result result() const { return {cycles_, nullptr}; }

  static constexpr auto& measured_fields = gait_test::measured_fields;

private:
  std::list<gait_foot_cycle> cycles_;
  sensor_recording recording_{100, {{1, {1000}}, {2, {1000}}}};
};

/// A whole recording, ready to be analysed: everything that its gait_result points to lives in it.
class walk {
public:
  /// One foot alone.
  explicit walk(foot only) : feet_{std::move(only)} {}

  /// Both feet. Two-feet cycle i belongs to cycle i of either foot, where the foot has one.
  walk(foot left, foot right) : feet_{std::move(left), std::move(right)} {
    cycles(std::max(feet_[0].cycle_list().size(), feet_[1].cycle_list().size()));
  }

  /// At least so many two-feet cycles.
  walk& cycles(std::size_t count) {
    feet_cycles_.resize(std::max(feet_cycles_.size(), count));
    return *this;
  }
  /// Values of the two-feet cycles.
  walk& gct(const std::vector<double>& values) { return with(&gait_feet_cycle::gct, values); }
  walk& ds(const std::vector<double>& values) { return with(&gait_feet_cycle::ds, values); }
  /// The position of each two-feet cycle's partner among the foot's cycles, or no_cycle.
  walk& left_links(const std::vector<int>& links) {
    return cycles(links.size()).set(left_links_, {links});
  }
  walk& right_links(const std::vector<int>& links) {
    return cycles(links.size()).set(right_links_, {links});
  }

  walk& excluded_1(std::list<int> indices) { return set(excluded_1_, std::move(indices)); }
  walk& excluded_1_fallback(std::list<int> indices) {
    return set(excluded_1_fallback_, std::move(indices));
  }
  walk& excluded_2(std::list<int> indices) { return set(excluded_2_, std::move(indices)); }
  walk& excluded_2_fallback(std::list<int> indices) {
    return set(excluded_2_fallback_, std::move(indices));
  }
  walk& settings_value(float value) { return set(settings_.settings_value, value); }

  /// The sampling rate (Hz) of the first entry's recording: with two feet, that of the left foot.
  walk& rate(int hz) {
    feet_[0].rate(hz);
    return *this;
  }

  const gait_generate_statistics_settings& settings() const { return settings_; }

  /// The result as a caller would hand it in, rebuilt. Entry 0 is the only foot, or the left one of
  /// two. It points into this walk: valid until the walk is changed, copied over, or destroyed.
  gait_result& result() {
    recordings_.clear();
    result_ = gait_result();
    for (const foot& f : feet_) {
      recordings_.push_back(f.recording());
      result_.foot_results.push_back(f.result());
      result_.foot_results.back().recording = &recordings_.back();
    }
    if (feet_.size() == 2) {
      result_.left_foot = &result_.foot_results.front();
      result_.right_foot = &result_.foot_results.back();
      link();
    }
    result_.excluded_1 = excluded_1_;
    result_.excluded_1_fallback = excluded_1_fallback_;
    result_.excluded_2 = excluded_2_;
    result_.excluded_2_fallback = excluded_2_fallback_;
    return result_;
  }

  /// Rebuilds the result, and runs the entry on it.
  gait_result& analyse() {
    gait_generate_statistics(result(), settings_);
    return result_;
  }

private:
  template <class T>
  walk& set(T& member, T value) {
    member = std::move(value);
    return *this;
  }
  walk& with(double gait_feet_cycle::*field, const std::vector<double>& values) {
    fill(feet_cycles_, field, values);
    return *this;
  }

  void link() {
    result_.feet_result.cycles = feet_cycles_;
    std::size_t i = 0;
    for (gait_feet_cycle& cycle : result_.feet_result.cycles) {
      cycle.left_cycle = partner(*result_.left_foot, left_links_, i);
      cycle.right_cycle = partner(*result_.right_foot, right_links_, i);
      ++i;
    }
  }
  static gait_foot_cycle* partner(gait_foot_result& side,
                                  const std::optional<std::vector<int>>& links, std::size_t i) {
    if (links && (i >= links->size() || (*links)[i] == no_cycle)) {
      return nullptr;
    }
    const std::size_t position = links ? static_cast<std::size_t>((*links)[i]) : i;
    return position < side.cycles.size() ? &cycle_at(side.cycles, position) : nullptr;
  }

  std::vector<foot> feet_;
  std::list<gait_feet_cycle> feet_cycles_;
  std::optional<std::vector<int>> left_links_;
  std::optional<std::vector<int>> right_links_;
  std::list<int> excluded_1_;
  std::list<int> excluded_1_fallback_;
  std::list<int> excluded_2_;
  std::list<int> excluded_2_fallback_;
  gait_generate_statistics_settings settings_;
  std::list<sensor_recording> recordings_;
  gait_result result_;
};

inline walk one_foot(foot only) { return walk(std::move(only)); }
inline walk two_feet(foot left, foot right) { return {std::move(left), std::move(right)}; }
/// Two feet that move alike.
inline walk two_feet(const foot& both) { return {both, both}; }

}  // namespace gait_test

#endif
