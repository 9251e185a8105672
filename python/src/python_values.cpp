#include "python_values.h"

#include <nanobind/stl/optional.h>
#include <nanobind/stl/string.h>
#include <nanobind/stl/variant.h>
#include <nanobind/stl/vector.h>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <type_traits>

namespace gait_python {

namespace {

/// A copy of the values as an array of numpy, which owns them.
template <class Element, class Value>
nb::object owned_array(const std::vector<Value>& values) {
  auto copy = std::make_unique<Element[]>(values.size());  // NOLINT(modernize-avoid-c-arrays)
  std::transform(values.begin(), values.end(), copy.get(),
                 [](Value value) { return static_cast<Element>(value); });
  Element* const data = copy.release();
  const nb::capsule owner(data, [](void* memory) noexcept {
    delete[] static_cast<Element*>(memory);  // NOLINT(cppcoreguidelines-owning-memory)
  });
  return nb::cast(nb::ndarray<nb::numpy, Element, nb::ndim<1>>(data, {values.size()}, owner));
}

std::size_t size_of(const column_values& values) {
  return std::visit(
      [](const auto& column) {
        if constexpr (std::is_same_v<std::decay_t<decltype(column)>, std::vector<std::string>>) {
          return column.size();
        } else {
          return column.shape(0);
        }
      },
      values);
}

}  // namespace

nb::object to_python(std::string_view text) {
  PyObject* const decoded =
      PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "replace");
  if (decoded == nullptr) {
    throw nb::python_error();
  }
  return nb::steal(decoded);
}

nb::object array_of(const std::vector<double>& values) { return owned_array<double>(values); }

nb::list to_python(const std::vector<gait_walk::input_error>& errors) {
  nb::list list;
  for (const auto& error : errors) {
    list.append(nb::make_tuple(to_python(error.file), error.line, to_python(error.column),
                               to_python(error.text)));
  }
  return list;
}

void column_out::add(const std::optional<double>& value) { add_number(value); }
void column_out::add(const std::optional<std::int64_t>& value) { add_number(value); }
void column_out::add(bool value) { as<truths>().values.push_back(value ? 1 : 0); }
void column_out::add(std::string value) {
  as<std::vector<std::string>>().push_back(std::move(value));
}

nb::tuple column_out::to_python() const {
  const nb::object name = gait_python::to_python(name_);
  if (const auto* decimals = std::get_if<numbers<double>>(&cells_)) {
    return nb::make_tuple(name, "number", owned_array<double>(decimals->values),
                          owned_array<bool>(decimals->are_there));
  }
  if (const auto* whole = std::get_if<numbers<std::int64_t>>(&cells_)) {
    return nb::make_tuple(name, "whole", owned_array<std::int64_t>(whole->values),
                          owned_array<bool>(whole->are_there));
  }
  if (const auto* truth = std::get_if<truths>(&cells_)) {
    return nb::make_tuple(name, "truth", owned_array<bool>(truth->values), nb::none());
  }
  nb::list texts;
  if (const auto* cells = std::get_if<std::vector<std::string>>(&cells_)) {
    for (const std::string& text : *cells) {
      texts.append(text.empty() ? nb::object(nb::none()) : gait_python::to_python(text));
    }
  }
  return nb::make_tuple(name, "text", texts, nb::none());
}

nb::list to_python(const std::vector<column_out>& columns) {
  nb::list list;
  for (const column_out& column : columns) {
    list.append(column.to_python());
  }
  return list;
}

table_in table_from_python(const nb::list& columns) {
  table_in table;
  table.reserve(columns.size());
  for (const nb::handle column : columns) {
    table.push_back({nb::cast<std::string>(column[0]), nb::cast<column_values>(column[1], false)});
    if (size_of(table.back().values) != rows_of(table)) {
      throw std::invalid_argument("the columns of a table differ in length");
    }
  }
  return table;
}

std::size_t rows_of(const table_in& table) {
  return table.empty() ? 0 : size_of(table.front().values);
}

}  // namespace gait_python
