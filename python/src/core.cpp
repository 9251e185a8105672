/// \file
/// The extension module: functions that the Python modules beside it are made of. It checks what it
/// is given; it is not meant to be called by others.

#include "analysed_walk.h"
#include "python_values.h"
#include "walk_input.h"
#include "walk_output.h"

#include "finding_text.h"
#include "info_fields.h"
#include "names.h"
#include "nearest_name.h"
#include "output_format.h"
#include "parameter_list.h"
#include "walk_checks.h"
#include "walk_folder.h"

#include <gait/quality_flags.h>
#include <gait/version.h>

#include <nanobind/nanobind.h>
#include <nanobind/stl/filesystem.h>
#include <nanobind/stl/optional.h>
#include <nanobind/stl/string.h>
#include <nanobind/stl/tuple.h>
#include <nanobind/stl/vector.h>

#include <cstddef>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <ios>
#include <list>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace gait_python {

namespace {

/// Computes without the interpreter's lock.
template <class Compute>
auto unlocked(Compute compute) {
  const nb::gil_scoped_release release;
  return compute();
}

template <class Value>
Value value_named(const std::string& name) {
  if (const auto value = gait_walk::value_named<Value>(name)) {
    return *value;
  }
  throw std::invalid_argument("found \"" + name + "\", expected a known name");
}

gait_walk::analysed_cycles asked_for(const std::optional<std::string>& foot) {
  return foot ? value_named<gait_walk::analysed_cycles>(*foot) : gait_walk::analysed_cycles::feet;
}

/// (value or None, errors, warnings): Python raises the errors, in its own words.
template <class Make>
nb::tuple made_by(Make make) {
  try {
    auto [value, warnings] = unlocked(make);
    return nb::make_tuple(nb::cast(std::move(value)), nb::list(), to_python(warnings));
  } catch (const gait_walk::walk_error& error) {
    return nb::make_tuple(nb::none(), to_python(error.errors()), nb::list());
  }
}

using made_walk = std::pair<shared_walk, std::vector<gait_walk::input_error>>;

made_walk shared(gait_walk::read_result read, std::string folder) {
  return {{std::make_shared<const gait_walk::walk>(std::move(read.walk)), std::move(folder)},
          std::move(read.warnings)};
}

nb::tuple read_walk(const std::filesystem::path& folder, const std::optional<std::string>& foot,
                    const std::vector<std::string>& ignored_columns,
                    std::optional<std::size_t> most_strides) {
  gait_walk::read_options options;
  options.words.ignore_column = "ignore_columns";
  options.words.ignore_all = "ignore_columns=[\"all\"]";
  options.analysed = asked_for(foot);
  options.ignored_columns = ignored_columns;
  options.most_strides = most_strides.value_or(options.most_strides);
  return made_by(
      [&] { return shared(gait_walk::read_walk_folder(folder, options), folder.string()); });
}

std::optional<table_in> optional_table(const std::optional<nb::list>& columns) {
  return columns ? std::optional(table_from_python(*columns)) : std::nullopt;
}

nb::tuple make_walk_of_columns(const std::string& name, const std::string& sampling_rate,
                               const nb::list& samples, const nb::list& strides,
                               const std::optional<nb::list>& feet,
                               const std::optional<nb::list>& exclusions,
                               const std::vector<std::string>& ignored_columns) {
  walk_parts parts{name,
                   sampling_rate,
                   {},
                   table_from_python(strides),
                   optional_table(feet),
                   optional_table(exclusions),
                   ignored_columns};
  for (const nb::handle foot : samples) {
    parts.samples.push_back({nb::cast<std::string>(foot[0]), nb::cast<std::string>(foot[1]),
                             nb::cast<std::string>(foot[2])});
  }
  return made_by([&] { return shared(make_walk(parts), ""); });
}

/// A table as it was stored: (columns, lines).
stored_table table_of(const nb::dict& tables, const char* name) {
  const nb::object stored = tables[name];
  return {table_from_python(nb::cast<nb::list>(stored[0])),
          nb::cast<std::vector<std::size_t>>(stored[1])};
}

shared_walk restore(const std::string& name, const std::string& folder, const nb::dict& tables) {
  const stored_walk stored{name,
                           table_of(tables, "recording"),
                           table_of(tables, "strides"),
                           table_of(tables, "feet"),
                           table_of(tables, "exclusions"),
                           table_of(tables, "about")};
  return unlocked([&] {
    return shared_walk{std::make_shared<const gait_walk::walk>(restore_walk(stored)), folder};
  });
}

/// A warning as Python has it: file, line, column, text.
using raw_error = std::tuple<std::string, std::size_t, std::string, std::string>;

std::vector<gait_walk::input_error> input_errors(const std::vector<raw_error>& raw) {
  std::vector<gait_walk::input_error> errors;
  errors.reserve(raw.size());
  for (const auto& [file, line, column, text] : raw) {
    errors.push_back({file, line, column, text});
  }
  return errors;
}

nb::tuple analyse(const shared_walk& walk, const std::optional<std::string>& foot,
                  double settings_value, const std::vector<std::string>& without_checks,
                  const std::vector<raw_error>& of_reading) {
  const auto cycles = asked_for(foot);
  const auto value = static_cast<float>(settings_value);
  return made_by([&] {
    analysed_walk analysed(walk, cycles, value, without_checks, input_errors(of_reading));
    auto warnings = analysed.warnings();
    return std::pair(std::move(analysed), std::move(warnings));
  });
}

/// Every field of the accounting; None where nothing was measured that could be summed.
nb::dict info_of(const analysed_walk& walk) {
  const auto measured = unlocked([&] { return walk.measured_fields(); });
  nb::dict info;
  gait_report::for_each_field(
      walk.statistics().info(), [&](const gait_report::info_field& field, const auto& value) {
        using value_type = std::decay_t<decltype(value)>;
        if constexpr (std::is_same_v<value_type, double>) {
          info[field.name] = nb::cast(measured.at(field.name));
        } else if constexpr (std::is_same_v<value_type, std::list<int>>) {
          info[field.name] = nb::tuple(nb::cast(std::vector<int>(value.begin(), value.end())));
        } else {
          info[field.name] = nb::cast(static_cast<std::int64_t>(value));
        }
      });
  return info;
}

nb::object text_or_none(std::string_view text) {
  return text.empty() ? nb::object(nb::none()) : to_python(text);
}

nb::tuple places_of(const gait_report::walk_statistics& walk, const gait_checks::finding& finding) {
  nb::list places;
  for (const auto& place : finding.places) {
    places.append(nb::make_tuple(text_or_none(place.foot), place.index,
                                 nb::cast(gait_report::line_of(walk, place))));
  }
  return nb::tuple(places);
}

const gait_report::walk_statistics& checked(const analysed_walk& walk) {
  const nb::gil_scoped_release release;
  return walk.checked();
}

nb::list findings_of(const analysed_walk& walk) {
  nb::list findings;
  for (const auto& finding : checked(walk).findings) {
    nb::dict fields;
    fields["check"] = to_python(finding.check);
    fields["table"] = to_python(finding.table);
    fields["column"] = to_python(finding.column);
    fields["broken"] = finding.broken;
    fields["compared"] = finding.compared;
    fields["counted"] = to_python(finding.counted);
    fields["text"] = to_python(finding.text);
    fields["guess"] = text_or_none(finding.guess);
    fields["usual_cause"] = to_python(finding.usual_cause);
    fields["sentence"] = to_python(gait_report::in_words(finding, walk.statistics()));
    fields["places"] = places_of(walk.statistics(), finding);
    findings.append(fields);
  }
  return findings;
}

nb::list notes_of(const analysed_walk& walk) {
  nb::list notes;
  for (const auto& note : checked(walk).notes) {
    const nb::object source = note.source.empty() ? nb::none() : to_python(note.source);
    notes.append(nb::make_tuple(to_python(note.name), to_python(note.text), source));
  }
  return notes;
}

nb::list texts(const std::vector<std::string>& all) {
  nb::list list;
  for (const std::string& text : all) {
    list.append(to_python(text));
  }
  return list;
}

/// The catalogue of parameters as columns.
nb::list parameters() {
  std::vector<column_out> columns;
  for (const char* name :
       {"key", "description", "unit", "decimals", "ratio", "cv", "analysed", "meaning"}) {
    columns.emplace_back(name);
  }
  for (const auto& row : gait_report::list_parameters()) {
    auto column = columns.begin();
    (column++)->add(row.key);
    (column++)->add(row.description);
    (column++)->add(row.unit);
    (column++)->add(std::optional<std::int64_t>(row.decimals));
    (column++)->add(row.has_ratio);
    (column++)->add(row.has_cv);
    (column++)->add(gait_report::in_words(row.when));
    (column++)->add(row.meaning);
  }
  return to_python(columns);
}

/// The table of data checks as columns.
nb::list checks() {
  std::vector<column_out> columns;
  for (const char* name : {"check", "kind", "compared", "tolerance", "usual_cause", "source"}) {
    columns.emplace_back(name);
  }
  for (const auto& check : gait_checks::list_checks()) {
    auto column = columns.begin();
    (column++)->add(check.name);
    (column++)->add(std::string(gait_checks::name_of(check.what)));
    (column++)->add(check.compared);
    (column++)->add(check.tolerance);
    (column++)->add(check.usual_cause);
    (column++)->add(check.source);
  }
  return to_python(columns);
}

std::string nearest_check(const std::string& name) {
  const auto all = gait_checks::list_checks();
  std::vector<std::string_view> known;
  known.reserve(all.size());
  for (const auto& check : all) {
    known.emplace_back(check.name);
  }
  return std::string(gait_walk::nearest_name(name, known));
}

void raise_errors_of_files_as_os_error() {
  nb::register_exception_translator([](const std::exception_ptr& error, void* /*payload*/) {
    try {
      std::rethrow_exception(error);
    } catch (const std::filesystem::filesystem_error& failed) {
      PyErr_SetString(PyExc_OSError, failed.what());
    } catch (const std::ios_base::failure& failed) {
      PyErr_SetString(PyExc_OSError, failed.what());
    } catch (const std::system_error& failed) {
      PyErr_SetString(PyExc_OSError, failed.what());
    }
  });
}

void define_walk(nb::module_& module) {
  nb::class_<shared_walk>(module, "Walk")
      .def_prop_ro("name", [](const shared_walk& self) { return to_python(self.walk->name); })
      .def_prop_ro("folder", [](const shared_walk& self) { return to_python(self.folder); })
      .def("columns",
           [](const shared_walk& self, const std::string& table) {
             return to_python(columns_of(*self.walk, table));
           })
      .def("lines", [](const shared_walk& self, const std::string& table) {
        return lines_of(*self.walk, table);
      });
  module.def("read_walk", read_walk, nb::arg("folder"), nb::arg("foot").none(),
             nb::arg("ignored_columns"), nb::arg("most_strides").none());
  module.def("make_walk", make_walk_of_columns, nb::arg("name"), nb::arg("sampling_rate"),
             nb::arg("samples"), nb::arg("strides"), nb::arg("feet").none(),
             nb::arg("exclusions").none(), nb::arg("ignored_columns"));
  module.def("restore_walk", restore, nb::arg("name"), nb::arg("folder"), nb::arg("tables"));
  module.def(
      "write_walk",
      [](const shared_walk& walk, const std::filesystem::path& folder) {
        unlocked([&] { gait_walk::write_walk_folder(*walk.walk, folder); });
      },
      nb::arg("walk"), nb::arg("folder"));
}

void define_analysis(nb::module_& module) {
  nb::class_<analysed_walk>(module, "Analysis")
      .def_prop_ro("name",
                   [](const analysed_walk& self) { return to_python(self.statistics().name); })
      .def_prop_ro("analysed",
                   [](const analysed_walk& self) {
                     return to_python(gait_walk::words_of(self.statistics().analysed).in_words);
                   })
      .def_prop_ro("quality_flags",
                   [](const analysed_walk& self) {
                     return static_cast<int>(self.statistics().result().quality_flags);
                   })
      .def("quality_flags_in_words",
           [](const analysed_walk& self) {
             return texts(gait_report::quality_flags_in_words(self.statistics()));
           })
      .def("columns",
           [](const analysed_walk& self, const std::string& table) {
             const auto which = value_named<gait_report::csv_table>(table);
             return to_python(unlocked([&] { return self.columns(which); }));
           })
      .def("info", info_of)
      .def("findings", findings_of)
      .def("notes", notes_of)
      .def(
          "summary",
          [](const analysed_walk& self) { return texts(unlocked([&] { return self.summary(); })); })
      .def("json",
           [](const analysed_walk& self) {
             return to_python(unlocked([&] { return self.json(); }));
           })
      .def("html", [](const analysed_walk& self) {
        return to_python(unlocked([&] { return self.html(); }));
      });
  module.def("analyse", analyse, nb::arg("walk"), nb::arg("foot").none(), nb::arg("settings_value"),
             nb::arg("without_checks"), nb::arg("of_reading"));
}

}  // namespace

}  // namespace gait_python

NB_MODULE(_core, module) {
  using namespace gait_python;  // NOLINT(google-build-using-namespace)
  raise_errors_of_files_as_os_error();
  module.attr("version") = GAIT_STATISTICS_VERSION;
  define_walk(module);
  define_analysis(module);
  module.def("parameters", parameters);
  module.def("checks", checks);
  module.def("nearest_check", nearest_check, nb::arg("name"));
  module.def(
      "percentiles",
      [](const array_of_numbers& values, const array_of_numbers& percentages) {
        return array_of(unlocked([&] {
          return percentiles({values.data(), values.data() + values.size()},
                             {percentages.data(), percentages.data() + percentages.size()});
        }));
      },
      nb::arg("values"), nb::arg("percentages"));
}
