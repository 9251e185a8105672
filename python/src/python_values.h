#ifndef PYTHON_PYTHON_VALUES_H
#define PYTHON_PYTHON_VALUES_H

/// \file
/// Values of ours as values of Python, and the columns that cross the border.

#include "input_error.h"

#include <nanobind/nanobind.h>
#include <nanobind/ndarray.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace gait_python {

namespace nb = nanobind;

/// A text. Names of files need not be UTF-8: what is not is replaced.
nb::object to_python(std::string_view text);

/// An array of numpy.
nb::object array_of(const std::vector<double>& values);

/// (file, line, column, text) for each.
nb::list to_python(const std::vector<gait_walk::input_error>& errors);

/// A column of a table on its way to Python: texts with None where there is none, or numbers with a
/// mask that says where they are.
class column_out {
public:
  explicit column_out(std::string its_name) : name_(std::move(its_name)) {}

  void add(const std::optional<double>& value);
  void add(const std::optional<std::int64_t>& value);
  void add(bool value);
  void add(std::string value);

  /// (name, kind, values, mask): the kind is "number", "whole", "truth" or "text". A text has no
  /// mask.
  nb::tuple to_python() const;

private:
  template <class Value>
  struct numbers {
    std::vector<Value> values;
    std::vector<std::uint8_t> are_there;
  };
  struct truths {
    std::vector<std::uint8_t> values;
  };

  template <class Kind>
  Kind& as() {
    if (std::holds_alternative<std::monostate>(cells_)) {
      cells_.emplace<Kind>();
    }
    return std::get<Kind>(cells_);
  }

  template <class Value>
  void add_number(const std::optional<Value>& value) {
    auto& cells = as<numbers<Value>>();
    cells.values.push_back(value.value_or(Value{}));
    cells.are_there.push_back(value ? 1 : 0);
  }

  std::string name_;
  std::variant<std::monostate, numbers<double>, numbers<std::int64_t>, truths,
               std::vector<std::string>>
      cells_;
};

nb::list to_python(const std::vector<column_out>& columns);

/// The values of a column that comes from Python. In numbers with decimals, NaN stands for none; in
/// texts, an empty one does.
using array_of_numbers =
    nb::ndarray<const double, nb::ndim<1>, nb::c_contig, nb::device::cpu, nb::ro>;
using array_of_whole =
    nb::ndarray<const std::int64_t, nb::ndim<1>, nb::c_contig, nb::device::cpu, nb::ro>;
using column_values = std::variant<array_of_numbers, array_of_whole, std::vector<std::string>>;

struct column_in {
  std::string name;
  column_values values;
};

using table_in = std::vector<column_in>;

/// Reads a list of (name, values). Throws std::invalid_argument where the columns differ in length.
table_in table_from_python(const nb::list& columns);

std::size_t rows_of(const table_in& table);

}  // namespace gait_python

#endif
