#ifndef GAIT_TESTS_LIBRARY_TEXT_OF_H
#define GAIT_TESTS_LIBRARY_TEXT_OF_H

/// \file
/// Records written out member by member and to the bit: as text, in which a difference shows the
/// member that it is in, or as bytes, where a text would take too long.

#include "bits.h"
#include "fields.h"

#include <gait/result.h>
#include <gait/statistics.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <list>
#include <map>
#include <sstream>
#include <string>
#include <type_traits>
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

/// Every member of a record on a line, doubles to the bit.
class text_writer {
public:
  void title(const std::string& text) { text_ += text + '\n'; }
  template <class Value>
  void add(const char* name, const Value& value) {
    text_ += std::string("  ") + name + ' ';
    append(value);
    text_ += '\n';
  }
  std::string result() const { return text_; }

private:
  void append(double value) { text_ += exact(value); }
  void append(const std::string& value) { text_ += value; }
  template <class Value>
  std::enable_if_t<std::is_integral_v<Value> || std::is_pointer_v<Value>> append(Value value) {
    std::ostringstream text;
    text << value;
    text_ += text.str();
  }
  template <class Values, class = typename Values::value_type, class = decltype(Values().front())>
  std::enable_if_t<!std::is_same_v<Values, std::string>> append(const Values& values) {
    for (const auto value : values) {
      append(value);
      text_ += ' ';
    }
  }

  std::string text_;
};

/// The same as bytes.
class byte_writer {
public:
  void title(const std::string& text) { append(text); }
  template <class Value>
  void add(const char* /*name*/, const Value& value) {
    append(value);
  }
  const std::string& result() const { return bytes_; }

private:
  template <class Value>
  void append(const Value& value) {
    if constexpr (std::is_trivially_copyable_v<Value>) {
      bytes_.append(reinterpret_cast<const char*>(&value), sizeof value);
    } else {
      append(value.size());
      for (const auto element : value) {
        append(element);
      }
    }
  }

  std::string bytes_;
};

template <class Writer, class Record>
void write_fields(Writer& writer, const Record& record) {
  for_each_field(record, [&](const char* name, const auto& member) { writer.add(name, member); });
}

// What a record consists of. The members of a map come in the order of their keys.

template <class Writer>
void write(Writer& writer, const gait_statistics_parameter& parameter) {
  write_fields(writer, parameter);
}

template <class Writer>
void write(Writer& writer, const gait_statistics_info& info) {
  write_fields(writer, info);
}

template <class Writer>
void write(Writer& writer, const gait_statistics& statistics) {
  write(writer, statistics.info);
  std::map<std::string, const gait_statistics_parameter*> by_key;
  for (const auto& [key, parameter] : statistics.parameters) {
    by_key.emplace(key, &parameter);
  }
  for (const auto& [key, parameter] : by_key) {
    writer.title(key);
    write(writer, *parameter);
  }
}

template <class Writer>
void write(Writer& writer, const gait_foot_result& foot) {
  writer.title("foot");
  for (const gait_foot_cycle& cycle : foot.cycles) {
    writer.title("cycle");
    write_fields(writer, cycle);
  }
  writer.add("recording", foot.recording);
  if (foot.recording != nullptr) {
    writer.add("sampling_rate", foot.recording->sampling_rate);
    for (const auto& [identifier, signal] :
         std::map(foot.recording->signals.begin(), foot.recording->signals.end())) {
      writer.add("signal", identifier);
      writer.add("sample_count", signal.sample_count);
    }
  }
}

/// What the library writes.
template <class Writer>
void write_output(Writer& writer, const gait_result& result) {
  write(writer, result.statistics);
  writer.add("quality_flags", result.quality_flags);
}

/// What the library only reads, down to the addresses of what is pointed to. The left and the right
/// foot may lie anywhere, or be null.
template <class Writer>
void write_input(Writer& writer, const gait_result& result) {
  for (const gait_foot_result& foot : result.foot_results) {
    write(writer, foot);
  }
  for (const gait_foot_result* foot : {result.left_foot, result.right_foot}) {
    writer.add("side", foot);
    if (foot != nullptr) {
      write(writer, *foot);
    }
  }
  for (const gait_feet_cycle& cycle : result.feet_result.cycles) {
    writer.title("feet cycle");
    write_fields(writer, cycle);
  }
  for (const auto* list : {&result.excluded_1, &result.excluded_1_fallback, &result.excluded_2,
                           &result.excluded_2_fallback}) {
    writer.add("exclusions", *list);
  }
}

template <class Writer, class Record>
std::string written(const Record& record) {
  Writer writer;
  write(writer, record);
  return writer.result();
}

template <class Record>
std::string text_of(const Record& record) {
  return written<text_writer>(record);
}

/// The fields that the walk is described by, before the accounting of exclusions.
inline std::string text_of_walk(const gait_statistics_info& info) {
  const std::string text = text_of(info);
  return text.substr(0, text.find("  excluded_2_fallback_count"));
}

inline std::string text_of_output(const gait_result& result) {
  text_writer writer;
  write_output(writer, result);
  return writer.result();
}

inline std::string text_of_input(const gait_result& result) {
  text_writer writer;
  write_input(writer, result);
  return writer.result();
}

inline std::string bytes_of_input(const gait_result& result) {
  byte_writer writer;
  write_input(writer, result);
  return writer.result();
}

/// Whether two records are the same to the last bit. What differs is only looked for where
/// something does.
template <class Record>
testing::AssertionResult are_the_same(const Record& a, const Record& b) {
  return written<byte_writer>(a) == written<byte_writer>(b)
             ? testing::AssertionSuccess()
             : testing::AssertionFailure() << difference(text_of(a), text_of(b));
}

}  // namespace gait_test

#endif
