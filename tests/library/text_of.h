#ifndef GAIT_TESTS_LIBRARY_TEXT_OF_H
#define GAIT_TESTS_LIBRARY_TEXT_OF_H

/// \file
/// Records written out member by member and to the bit, so that two of them are compared as texts
/// and a difference shows which member it is in.

#include "bits.h"
#include "builders.h"

#include <gait/result.h>
#include <gait/statistics.h>

#include <algorithm>
#include <cstddef>
#include <list>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace gait_test {

inline std::vector<std::string> lines_of(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) {
    lines.push_back(line);
  }
  return lines;
}

/// The lines in which two texts differ, under the record that they are in; "" if the texts are
/// equal.
inline std::string difference(const std::string& text_a, const std::string& text_b) {
  auto a = lines_of(text_a);
  auto b = lines_of(text_b);
  a.resize(std::max(a.size(), b.size()));
  b.resize(a.size());
  std::string record;
  std::string found;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i] != b[i]) {
      found += record + "\n  " + a[i] + "\n  " + b[i] + '\n';
    } else if (a[i].rfind(' ', 0) != 0) {
      record = a[i];
    }
  }
  return found;
}

inline std::string text_of(const std::list<int>& indices) {
  std::ostringstream text;
  for (const int index : indices) {
    text << index << ' ';
  }
  return text.str();
}

inline std::string text_of(const std::vector<double>& values) {
  std::string text;
  for (const double value : values) {
    text += exact(value) + ' ';
  }
  return text;
}

inline std::string text_of(const gait_statistics_parameter& parameter) {
  std::ostringstream text;
  text << "  valid " << parameter.valid << "\n  description " << parameter.description
       << "\n  unit " << parameter.unit << "\n  decimals " << parameter.decimals << "\n  values "
       << text_of(parameter.values) << "\n  mean " << exact(parameter.mean) << "\n  median "
       << exact(parameter.median) << "\n  std " << exact(parameter.std) << "\n  iqr "
       << exact(parameter.iqr) << "\n  min " << exact(parameter.min) << "\n  max "
       << exact(parameter.max) << "\n  cv " << exact(parameter.cv) << "\n  asymmetry_enabled "
       << parameter.asymmetry_enabled << "\n  asymmetry " << exact(parameter.asymmetry) << '\n';
  return text.str();
}

/// The fields that the walk is described by, before the accounting of exclusions.
inline std::string text_of_walk(const gait_statistics_info& info) {
  std::ostringstream text;
  text << "recording_duration " << exact(info.recording_duration) << "\nduration "
       << exact(info.duration) << "\nexcluded_1_fallback_gct_sum "
       << exact(info.excluded_1_fallback_gct_sum) << "\nexcluded_2_gct_sum "
       << exact(info.excluded_2_gct_sum) << "\nincluded_gct_sum " << exact(info.included_gct_sum)
       << "\nincluded_distance " << exact(info.included_distance) << "\ntotal_distance "
       << exact(info.total_distance) << "\ncycle_count " << info.cycle_count << "\nexcluded_count "
       << info.excluded_count << "\ncycles " << text_of(info.cycles) << '\n';
  return text.str();
}

inline std::string text_of(const gait_statistics_info& info) {
  std::ostringstream text;
  text << text_of_walk(info) << "excluded_2_fallback_count " << info.excluded_2_fallback_count
       << "\nexcluded_2_count " << info.excluded_2_count << "\nexcluded_1_fallback_count "
       << info.excluded_1_fallback_count << "\nexcluded_1_count " << info.excluded_1_count
       << "\nincluded_count " << info.included_count << "\nexcluded_2_fallback_duration "
       << exact(info.excluded_2_fallback_duration) << "\nexcluded_2_duration "
       << exact(info.excluded_2_duration) << "\nexcluded_1_fallback_duration "
       << exact(info.excluded_1_fallback_duration) << "\nexcluded_1_duration "
       << exact(info.excluded_1_duration) << "\nincluded_duration " << exact(info.included_duration)
       << '\n';
  return text.str();
}

inline std::string text_of(const gait_statistics& statistics) {
  std::string text = text_of(statistics.info);
  for (const auto& [key, parameter] :
       std::map(statistics.parameters.begin(), statistics.parameters.end())) {
    text += key + '\n' + text_of(parameter);
  }
  return text;
}

/// What the library writes.
inline std::string text_of_output(const gait_result& result) {
  return text_of(result.statistics) + "quality_flags " + std::to_string(result.quality_flags) +
         '\n';
}

inline std::string text_of(const sensor_recording& recording) {
  std::ostringstream text;
  text << "recording " << &recording << " sampling_rate " << recording.sampling_rate << '\n';
  for (const auto& [identifier, signal] :
       std::map(recording.signals.begin(), recording.signals.end())) {
    text << "  signal " << identifier << " sample_count " << signal.sample_count << '\n';
  }
  return text.str();
}

inline std::string text_of(const gait_foot_cycle& cycle) {
  std::ostringstream text;
  text << cycle.first_sample << ' ' << cycle.last_sample << ' ' << cycle.index;
  for (const auto field : foot::measured_fields) {
    text << ' ' << exact(cycle.*field);
  }
  return text.str() + '\n';
}

inline std::string text_of(const gait_foot_result& foot_result) {
  std::string text =
      foot_result.recording != nullptr ? text_of(*foot_result.recording) : "no recording\n";
  for (const gait_foot_cycle& cycle : foot_result.cycles) {
    text += "  cycle " + text_of(cycle);
  }
  return text;
}

/// What the library only reads, down to the addresses of what is pointed to.
inline std::string text_of_input(const gait_result& result) {
  std::ostringstream text;
  for (const gait_foot_result& entry : result.foot_results) {
    text << "foot " << text_of(entry);
  }
  text << "left_foot " << result.left_foot << "\nright_foot " << result.right_foot << '\n';
  for (const gait_feet_cycle& cycle : result.feet_result.cycles) {
    text << "feet cycle " << &cycle << ' ' << exact(cycle.gct) << ' ' << exact(cycle.ds) << ' '
         << cycle.right_cycle << ' ' << cycle.left_cycle << '\n';
  }
  text << "excluded_1 " << text_of(result.excluded_1) << "\nexcluded_1_fallback "
       << text_of(result.excluded_1_fallback) << "\nexcluded_2 " << text_of(result.excluded_2)
       << "\nexcluded_2_fallback " << text_of(result.excluded_2_fallback) << '\n';
  return text.str();
}

}  // namespace gait_test

#endif
