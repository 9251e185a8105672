// Runs cases that stand on standard input, and prints every output of every call.
//
// A line is a word and what belongs to it, separated by tabs. Doubles are 16 hexadecimal digits,
// their bits; -1 stands for null where a position is expected. What model.py and walks.py call a
// case is
//
//     case        number, quality_flags                   outputs as constructed but for the flags
//     parameter   the members of an entry, as printed     one that the caller put into the map
//     walk        foot_results, feet                      a fresh input; the outputs are kept
//     recording   sampling_rate, identifier and sample_count of each signal
//     foot        recording, and a line for each cycle:
//     cycle       first_sample, last_sample, index, the measured fields in declaration order
//     sides       left_foot, right_foot
//     feet_cycle  gct, ds, foot and cycle of right_cycle, foot and cycle of left_cycle
//     excluded    excluded_1 and so on; four lines, in declaration order
//     call        settings_value as a double, how many times
//     end
//
// Every call prints "called" with what it returned or threw, and, if the input is not what it was,
// a line that says so; then "info", "parameter" for every entry, and "quality_flags". The end of a
// case is printed too.

#include "text_of.h"

#include <gait/generate_statistics.h>

#include <array>
#include <charconv>
#include <cinttypes>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <deque>
#include <exception>
#include <iostream>
#include <limits>
#include <list>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

/// A line, from left to right.
class words {
public:
  explicit words(std::string_view line) : rest_(line) {}

  bool at_end() const { return at_end_; }

  std::string_view word() {
    if (at_end_) {
      throw std::runtime_error("a line is too short");
    }
    const std::size_t tab = rest_.find('\t');
    const std::string_view result = rest_.substr(0, tab);
    at_end_ = tab == std::string_view::npos;
    rest_.remove_prefix(at_end_ ? rest_.size() : tab + 1);
    return result;
  }

  template <class T>
  void read(T& value) {
    if constexpr (std::is_same_v<T, double>) {
      value = double_of(word());
    } else if constexpr (std::is_same_v<T, std::string>) {
      value = word();
    } else if constexpr (std::is_same_v<T, std::vector<double>>) {
      const std::string_view digits = word();
      for (std::size_t i = 0; i < digits.size(); i += 16) {
        value.push_back(double_of(digits.substr(i, 16)));
      }
    } else if constexpr (std::is_same_v<T, bool>) {
      value = number<int>(word(), 10) != 0;
    } else {
      value = number<T>(word(), 10);
    }
  }
  template <class T>
  T get() {
    T value{};
    read(value);
    return value;
  }

private:
  template <class T>
  static T number(std::string_view text, int base) {
    T value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (error != std::errc() || end != text.data() + text.size()) {
      throw std::runtime_error("not a number: " + std::string(text));
    }
    return value;
  }
  static double double_of(std::string_view digits) {
    const auto bits = number<std::uint64_t>(digits, 16);
    double value = 0.0;
    std::memcpy(&value, &bits, sizeof(value));
    return value;
  }

  std::string_view rest_;
  bool at_end_ = false;
};

/// A line to be printed; the words follow the name of the line.
class line {
public:
  explicit line(std::string_view name) : text_(name) {}

  template <class T>
  line& add(const T& value) {
    text_ += '\t';
    append(value);
    return *this;
  }
  void print() {
    text_ += '\n';
    std::fwrite(text_.data(), 1, text_.size(), stdout);
  }

private:
  void append(const std::string& text) { text_ += text; }
  /// All NaNs are one: which of them an operation gives is the processor's choice.
  void append(double value) {
    value = value != value ? std::numeric_limits<double>::quiet_NaN() : value;
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof(value));
    std::array<char, 17> digits{};
    std::snprintf(digits.data(), digits.size(), "%016" PRIx64, bits);
    text_ += digits.data();
  }
  void append(bool value) { text_ += value ? '1' : '0'; }
  template <class Integer, class = std::enable_if_t<std::is_integral_v<Integer>>>
  void append(Integer value) {
    text_ += std::to_string(value);
  }
  void append(const std::vector<double>& values) {
    for (const double value : values) {
      append(value);
    }
  }
  void append(const std::list<int>& numbers) {
    for (const int number : numbers) {
      text_ += std::to_string(number) + ' ';
    }
  }

  std::string text_;
};

/// A line of every member of a record, in declaration order.
template <class Record>
line& add_members(line& text, const Record& record) {
  gait_test::for_each_field(
      record, [&text](const char* /*name*/, const auto& member) { text.add(member); });
  return text;
}

void print_outputs(const gait_result& result) {
  line info("info");
  add_members(info, result.statistics.info).print();
  for (const auto& [key, parameter] : result.statistics.parameters) {
    line text("parameter");
    add_members(text.add(key), parameter).print();
  }
  line("quality_flags").add(result.quality_flags).print();
}

/// One walk; the records point at each other, so that it stays where it is.
class walk {
public:
  walk(std::size_t entries, std::size_t feet) {
    result.foot_results.resize(entries);
    for (gait_foot_result& foot : result.foot_results) {
      feet_.push_back(&foot);
    }
    while (feet_.size() < feet) {
      feet_.push_back(&elsewhere_.emplace_back());
    }
    cycles_.resize(feet_.size());
  }
  walk(const walk&) = delete;
  walk& operator=(const walk&) = delete;

  void add_recording(words& from) {
    sensor_recording& recording = recordings_.emplace_back();
    from.read(recording.sampling_rate);
    while (!from.at_end()) {
      const int identifier = from.get<int>();
      from.read(recording.signals[identifier].sample_count);
    }
  }
  void add_foot(words& from) {
    const int recording = from.get<int>();
    feet_.at(next_foot_++)->recording =
        recording < 0 ? nullptr : &recordings_.at(static_cast<std::size_t>(recording));
  }
  void add_cycle(words& from) {
    gait_foot_cycle& cycle = feet_.at(next_foot_ - 1)->cycles.emplace_back();
    cycles_[next_foot_ - 1].push_back(&cycle);
    from.read(cycle.first_sample);
    from.read(cycle.last_sample);
    from.read(cycle.index);
    for (const auto field : gait_test::measured_fields) {
      from.read(cycle.*field);
    }
  }
  void set_sides(words& from) {
    for (gait_foot_result** side : {&result.left_foot, &result.right_foot}) {
      const int foot = from.get<int>();
      *side = foot < 0 ? nullptr : feet_.at(static_cast<std::size_t>(foot));
    }
  }
  void add_feet_cycle(words& from) {
    gait_feet_cycle& cycle = result.feet_result.cycles.emplace_back();
    from.read(cycle.gct);
    from.read(cycle.ds);
    for (gait_foot_cycle** link : {&cycle.right_cycle, &cycle.left_cycle}) {
      const int foot = from.get<int>();
      const int position = from.get<int>();
      *link =
          foot < 0
              ? nullptr
              : cycles_.at(static_cast<std::size_t>(foot)).at(static_cast<std::size_t>(position));
    }
  }
  void add_exclusions(words& from) {
    const std::array<std::list<int>*, 4> lists = {&result.excluded_1, &result.excluded_1_fallback,
                                                  &result.excluded_2, &result.excluded_2_fallback};
    std::list<int>& indices = *lists.at(next_list_++);
    while (!from.at_end()) {
      indices.push_back(from.get<int>());
    }
  }

  gait_result result;

private:
  std::deque<sensor_recording> recordings_;
  std::list<gait_foot_result> elsewhere_;
  std::vector<gait_foot_result*> feet_;
  std::vector<std::vector<gait_foot_cycle*>> cycles_;
  std::size_t next_foot_ = 0;
  std::size_t next_list_ = 0;
};

constexpr std::array<std::pair<std::string_view, void (walk::*)(words&)>, 6> parts_of_a_walk = {{
    {"recording", &walk::add_recording},
    {"foot", &walk::add_foot},
    {"cycle", &walk::add_cycle},
    {"sides", &walk::set_sides},
    {"feet_cycle", &walk::add_feet_cycle},
    {"excluded", &walk::add_exclusions},
}};

/// Reads line after line, and does what each says.
class runner {
public:
  void run(words from) {
    const std::string_view name = from.word();
    if (name == "case") {
      from.read(number_);
      outputs_ = {};
      from.read(outputs_.quality_flags);
    } else if (name == "parameter") {
      gait_statistics_parameter& parameter =
          outputs_.statistics.parameters[from.get<std::string>()];
      gait_test::for_each_field(parameter,
                                [&from](const char* /*name*/, auto& member) { from.read(member); });
    } else if (name == "walk") {
      const auto entries = from.get<std::size_t>();
      walks_.emplace_back(entries, from.get<std::size_t>());
    } else if (name == "call") {
      const auto settings_value = static_cast<float>(from.get<double>());
      call({settings_value}, from.get<int>());
    } else if (name == "end") {
      walks_.clear();
      line("end").add(number_).print();
      std::fflush(stdout);
    } else {
      add_to_walk(name, from);
    }
  }

private:
  void add_to_walk(std::string_view name, words& from) {
    for (const auto& [part, add] : parts_of_a_walk) {
      if (name == part) {
        return (walks_.back().*add)(from);
      }
    }
    throw std::runtime_error("not a line: " + std::string(name));
  }

  void call(const gait_generate_statistics_settings& settings, int times) {
    walk& input = walks_.back();
    gait_result& result = input.result;
    result.statistics = std::move(outputs_.statistics);
    result.quality_flags = outputs_.quality_flags;
    const std::string before = gait_test::bytes_of_input(result);
    for (int i = 0; i < times; ++i) {
      line called("called");
      try {
        called.add(gait_generate_statistics(result, settings));
      } catch (const std::out_of_range& error) {
        called.add(std::string(error.what()));
      }
      called.print();
      if (gait_test::bytes_of_input(result) != before) {
        line("the call changed its input").print();
      }
      print_outputs(result);
    }
    outputs_.statistics = std::move(result.statistics);
    outputs_.quality_flags = result.quality_flags;
  }

  int number_ = 0;
  gait_result outputs_;
  std::list<walk> walks_;
};

}  // namespace

int main() {
  try {
    std::ios::sync_with_stdio(false);
    runner cases;
    for (std::string text; std::getline(std::cin, text);) {
      cases.run(words(text));
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
  return 0;
}
