#ifndef GAIT_TESTS_LIBRARY_BYTES_OF_H
#define GAIT_TESTS_LIBRARY_BYTES_OF_H

/// \file
/// Records as bytes, to see whether two are the same to the last bit where text_of() would take too long.

#include <gait/result.h>
#include <gait/statistics.h>

#include <algorithm>
#include <list>
#include <string>
#include <type_traits>
#include <vector>

namespace gait_test {

/// Numbers and pointers, and plain records of both.
template <class Value>
std::enable_if_t<std::is_trivially_copyable_v<Value>> append_bytes(std::string& bytes, const Value& value) {
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

inline std::string bytes_of(const gait_statistics_parameter& parameter) {
  const auto& [valid, description, unit, decimals, values, mean, median, std, iqr, min, max, cv, asymmetry_enabled, asymmetry] =
      parameter;
  return bytes_of_all(valid, description, unit, decimals, values, mean, median, std, iqr, min, max, cv, asymmetry_enabled,
                      asymmetry);
}

inline std::string bytes_of(const gait_statistics_info& info) {
  const auto& [recording_duration, duration, excluded_1_fallback_gct_sum, excluded_2_gct_sum, included_gct_sum,
               included_distance, total_distance, cycle_count, excluded_count, cycles, excluded_2_fallback_count,
               excluded_2_count, excluded_1_fallback_count, excluded_1_count, included_count, excluded_2_fallback_duration,
               excluded_2_duration, excluded_1_fallback_duration, excluded_1_duration, included_duration] = info;
  return bytes_of_all(recording_duration, duration, excluded_1_fallback_gct_sum, excluded_2_gct_sum, included_gct_sum,
                      included_distance, total_distance, cycle_count, excluded_count, cycles, excluded_2_fallback_count,
                      excluded_2_count, excluded_1_fallback_count, excluded_1_count, included_count,
                      excluded_2_fallback_duration, excluded_2_duration, excluded_1_fallback_duration, excluded_1_duration,
                      included_duration);
}

/// Whether two records are the same.
template <class Record>
bool same_bytes(const Record& a, const Record& b) {
  return bytes_of(a) == bytes_of(b);
}

inline bool same_bytes(const gait_statistics& a, const gait_statistics& b) {
  const auto is_in_b = [&](const auto& entry) {
    const auto found = b.parameters.find(entry.first);
    return found != b.parameters.end() && same_bytes(entry.second, found->second);
  };
  return same_bytes(a.info, b.info) && a.parameters.size() == b.parameters.size() &&
         std::all_of(a.parameters.begin(), a.parameters.end(), is_in_b);
}

/// What the library only reads, the recordings among it. The feet must be entries of `foot_results`.
inline std::string bytes_of_input(const gait_result& result) {
  std::string bytes =
      bytes_of_all(result.foot_results.size(), result.left_foot, result.right_foot, result.feet_result.cycles,
                   result.excluded_1, result.excluded_1_fallback, result.excluded_2, result.excluded_2_fallback);
  for (const gait_foot_result& foot : result.foot_results) {
    bytes += bytes_of_all(foot.cycles, foot.recording, foot.recording->sampling_rate, foot.recording->signals.size());
    for (const auto& [identifier, signal] : foot.recording->signals) {
      bytes += bytes_of_all(identifier, signal);
    }
  }
  return bytes;
}

}  // namespace gait_test

#endif
