#ifndef GAIT_TESTS_LIBRARY_BYTES_OF_H
#define GAIT_TESTS_LIBRARY_BYTES_OF_H

/// \file
/// Records as bytes, to see whether two are the same to the last bit where text_of() would take too
/// long.

#include <gait/result.h>
#include <gait/statistics.h>

#include <list>
#include <map>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace gait_test {

/// Numbers and pointers, and plain records of both.
template <class Value>
std::enable_if_t<std::is_trivially_copyable_v<Value>> append_bytes(std::string& bytes,
                                                                   const Value& value) {
  bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
}

inline void append_bytes(std::string& bytes, const std::string& text) {
  append_bytes(bytes, text.size());
  bytes += text;
}

inline void append_bytes(std::string& bytes, const std::vector<double>& values) {
  append_bytes(bytes, values.size());
  bytes.append(reinterpret_cast<const char*>(values.data()), values.size() * sizeof(double));
}

template <class Element>
void append_bytes(std::string& bytes, const std::list<Element>& elements) {
  append_bytes(bytes, elements.size());
  for (const Element& element : elements) {
    append_bytes(bytes, element);
  }
}

template <class... Members>
std::string bytes_of_all(const Members&... members) {
  std::string bytes;
  (append_bytes(bytes, members), ...);
  return bytes;
}

// A member that is added to one of these records does not compile until it is compared.

/// All of a parameter but its ratio to the other side.
inline std::string bytes_without_ratio(const gait_statistics_parameter& parameter) {
  const auto& [valid, description, unit, decimals, values, mean, median, std, iqr, min, max, cv,
               asymmetry_enabled, ratio] = parameter;
  static_cast<void>(ratio);
  return bytes_of_all(valid, description, unit, decimals, values, mean, median, std, iqr, min, max,
                      cv, asymmetry_enabled);
}

inline std::string bytes_of(const gait_statistics_parameter& parameter) {
  return bytes_without_ratio(parameter) + bytes_of_all(parameter.asymmetry);
}

inline std::string bytes_of(const gait_statistics_info& info) {
  const auto& [recording_duration, duration, excluded_1_fallback_gct_sum, excluded_2_gct_sum,
               included_gct_sum, included_distance, total_distance, cycle_count, excluded_count,
               cycles, excluded_2_fallback_count, excluded_2_count, excluded_1_fallback_count,
               excluded_1_count, included_count, excluded_2_fallback_duration, excluded_2_duration,
               excluded_1_fallback_duration, excluded_1_duration, included_duration] = info;
  return bytes_of_all(recording_duration, duration, excluded_1_fallback_gct_sum, excluded_2_gct_sum,
                      included_gct_sum, included_distance, total_distance, cycle_count,
                      excluded_count, cycles, excluded_2_fallback_count, excluded_2_count,
                      excluded_1_fallback_count, excluded_1_count, included_count,
                      excluded_2_fallback_duration, excluded_2_duration,
                      excluded_1_fallback_duration, excluded_1_duration, included_duration);
}

inline std::string bytes_of(const gait_statistics& statistics) {
  std::map<std::string_view, const gait_statistics_parameter*> by_key;
  for (const auto& [key, parameter] : statistics.parameters) {
    by_key.emplace(key, &parameter);
  }
  std::string bytes = bytes_of(statistics.info);
  for (const auto& [key, parameter] : by_key) {
    bytes += bytes_of_all(std::string(key), bytes_of(*parameter));
  }
  return bytes;
}

/// Whether two records are the same.
template <class Record>
bool same_bytes(const Record& a, const Record& b) {
  return bytes_of(a) == bytes_of(b);
}

/// What the library writes.
inline std::string bytes_of_output(const gait_result& result) {
  return bytes_of(result.statistics) + bytes_of_all(result.quality_flags);
}

inline std::string bytes_of(const gait_foot_result& foot) {
  std::string bytes = bytes_of_all(foot.cycles, foot.recording);
  if (foot.recording != nullptr) {
    bytes += bytes_of_all(foot.recording->sampling_rate, foot.recording->signals.size());
    for (const auto& [identifier, signal] :
         std::map(foot.recording->signals.begin(), foot.recording->signals.end())) {
      bytes += bytes_of_all(identifier, signal);
    }
  }
  return bytes;
}

/// What the library only reads, the recordings among it. The left and the right foot may lie
/// anywhere, or be null.
inline std::string bytes_of_input(const gait_result& result) {
  std::string bytes = bytes_of_all(
      result.foot_results.size(), result.left_foot, result.right_foot, result.feet_result.cycles,
      result.excluded_1, result.excluded_1_fallback, result.excluded_2, result.excluded_2_fallback);
  for (const gait_foot_result& foot : result.foot_results) {
    bytes += bytes_of(foot);
  }
  for (const gait_foot_result* foot : {result.left_foot, result.right_foot}) {
    bytes += foot != nullptr ? bytes_of(*foot) : "";
  }
  return bytes;
}

}  // namespace gait_test

#endif
