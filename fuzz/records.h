#ifndef FUZZ_RECORDS_H
#define FUZZ_RECORDS_H

/// \file
/// Records as bytes, to tell whether anything in them changed: a fuzzer has no time for texts.

#include <gait/result.h>
#include <gait/statistics.h>

#include <list>
#include <map>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace fuzz {

/// Appends the bytes of plain objects, and of texts and lists their length as well.
class byte_string {
public:
  template <class... Objects>
  byte_string& add(const Objects&... objects) {
    (add_one(objects), ...);
    return *this;
  }
  const std::string& text() const { return text_; }

private:
  template <class Object>
  void add_one(const Object& object) {
    static_assert(std::is_trivially_copyable_v<Object>);
    text_.append(reinterpret_cast<const char*>(&object), sizeof(object));
  }
  void add_one(const std::string& text) { add(text.size()).text_ += text; }
  template <class Value>
  void add_one(const std::vector<Value>& values) {
    static_assert(std::is_trivially_copyable_v<Value>);
    add(values.size());
    text_.append(reinterpret_cast<const char*>(values.data()), values.size() * sizeof(Value));
  }
  template <class Value>
  void add_one(const std::list<Value>& values) {
    add(values.size());
    for (const Value& value : values) {
      add(value);
    }
  }

  std::string text_;
};

/// All of a parameter but its ratio to the other side.
inline std::string bytes_without_ratio(const gait_statistics_parameter& p) {
  return byte_string()
      .add(p.valid, p.description, p.unit, p.decimals, p.values, p.mean, p.median, p.std, p.iqr, p.min, p.max, p.cv)
      .add(p.asymmetry_enabled)
      .text();
}

inline std::string bytes_of(const gait_statistics_info& i) {
  return byte_string()
      .add(i.recording_duration, i.duration, i.excluded_1_fallback_gct_sum, i.excluded_2_gct_sum, i.included_gct_sum)
      .add(i.included_distance, i.total_distance, i.cycle_count, i.excluded_count, i.cycles, i.excluded_2_fallback_count)
      .add(i.excluded_2_count, i.excluded_1_fallback_count, i.excluded_1_count, i.included_count)
      .add(i.excluded_2_fallback_duration, i.excluded_2_duration, i.excluded_1_fallback_duration, i.excluded_1_duration)
      .add(i.included_duration)
      .text();
}

/// What the library writes.
inline std::string bytes_of_output(const gait_result& result) {
  byte_string bytes;
  bytes.add(bytes_of(result.statistics.info), result.quality_flags);
  std::map<std::string_view, const gait_statistics_parameter*> by_key;
  for (const auto& [key, parameter] : result.statistics.parameters) {
    by_key.emplace(key, &parameter);
  }
  for (const auto& [key, parameter] : by_key) {
    bytes.add(std::string(key), bytes_without_ratio(*parameter), parameter->asymmetry);
  }
  return bytes.text();
}

inline std::string bytes_of(const gait_foot_result& foot) {
  byte_string bytes;
  bytes.add(foot.cycles, foot.recording);
  if (foot.recording != nullptr) {
    bytes.add(foot.recording->sampling_rate);
    for (const auto& [identifier, signal] : std::map(foot.recording->signals.begin(), foot.recording->signals.end())) {
      bytes.add(identifier, signal);
    }
  }
  return bytes.text();
}

/// What the library only reads, of one foot or of two.
inline std::string bytes_of_input(const gait_result& result) {
  byte_string bytes;
  for (const gait_foot_result& foot : result.foot_results) {
    bytes.add(bytes_of(foot));
  }
  bytes.add(result.left_foot, result.right_foot);
  for (const gait_foot_result* foot : {result.left_foot, result.right_foot}) {
    bytes.add(foot != nullptr ? bytes_of(*foot) : std::string("none"));
  }
  for (const gait_feet_cycle& cycle : result.feet_result.cycles) {
    bytes.add(&cycle, cycle);
    for (const gait_foot_cycle* linked : {cycle.right_cycle, cycle.left_cycle}) {
      bytes.add(linked != nullptr ? linked->index : 0);
    }
  }
  bytes.add(result.excluded_1, result.excluded_1_fallback, result.excluded_2, result.excluded_2_fallback);
  return bytes.text();
}

}  // namespace fuzz

#endif
