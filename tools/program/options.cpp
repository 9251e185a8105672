#include "options.h"

#include "names.h"
#include "number.h"
#include "number_text.h"

#include <gait/quality_flags.h>
#include <gait/version.h>

#include <CLI/CLI.hpp>

#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <system_error>
#include <variant>
#include <vector>

namespace gait_program {
namespace {

constexpr const char* description =
    "Prints the statistics of recorded walks: cycle accounting, gait parameters, asymmetry.";

constexpr const char* footer =
    "Each WALK is a folder of four CSV tables; docs/walk-folder.md describes them, docs/output.md "
    "what is written."
    R"(
A table shows rounded values. CSV holds the parameters, unrounded; JSON holds everything, unrounded:
the accounting, the quality flags, the parameters and their value in every cycle.

Example:
  gait-statistics --foot left --format csv --output left.csv monday/ tuesday/

Exit codes:
  0  every walk was read and its statistics were written
  1  a walk could not be read, or the output could not be written
  2  the command line is wrong
)";

/// The number that a text stands for; nullopt if it is not a finite float.
std::optional<float> finite_float(const std::string& text) {
  float value = 0.0F;
  if (gait_walk::read_number(text, value) != std::errc() || !std::isfinite(value)) {
    return std::nullopt;
  }
  return value;
}

std::string refuse_other_than_finite_float(const std::string& text) {
  return finite_float(text) ? "" : "\"" + text + "\" is not a finite number with a decimal point";
}

std::string refuse_empty_name(const std::string& file) {
  return file.empty() ? "the name of the file is empty" : "";
}

/// CLI11's check that a text is a name of an enumeration.
template <class Value>
CLI::Validator is_name_of() {
  std::vector<std::string> known;
  for (const auto& entry : gait_walk::names<Value>) {
    known.emplace_back(entry.name);
  }
  return CLI::IsMember(known).description("");
}

/// Sets an enumeration to the value of a name that was checked.
template <class Value>
auto set_by_name(Value& value) {
  return [&value](const std::string& name) {
    value = gait_walk::value_named<Value>(name).value_or(value);
  };
}

void add_options(CLI::App& app, options& options) {
  app.footer(footer);
  app.set_help_flag("-h,--help", "Print this help");
  app.set_version_flag("--version", "gait-statistics " GAIT_STATISTICS_VERSION,
                       "Print the version");
  app.add_option("WALK", options.walks, "Folders of walks, reported one after the other")
      ->type_name("");
  app.add_option_function<std::string>(
         "--foot", set_by_name(options.analysed),
         "Analyse this foot alone: left or right (default: both feet, if the walk has both)")
      ->check(is_name_of<gait_walk::side>())
      ->type_name("FOOT");
  app.add_option_function<std::string>(
         "--settings-value",
         [&options](const std::string& text) {
           options.settings_value = finite_float(text).value_or(0.0F);
         },
         "Setting of the analysis that made the walk; above 0 and outside " +
             gait_report::shortest(gait_quality_setting_min) + " to " +
             gait_report::shortest(gait_quality_setting_max) + " it raises a quality flag")
      ->check(CLI::Validator(refuse_other_than_finite_float, ""))
      ->type_name("V");
  app.add_option_function<std::string>("--format", set_by_name(options.format),
                                       "Form of the output: table, csv or json (default: table)")
      ->check(is_name_of<gait_report::output_format>())
      ->type_name("FORMAT");
  app.add_option("--output", options.output,
                 "Write to this file, which is replaced when the new one is whole")
      ->check(CLI::Validator(refuse_empty_name, ""))
      ->type_name("FILE");
  app.add_option("--width", options.width,
                 "Width of the table in characters (default: the terminal's, or 100)")
      ->check(CLI::Range(20, 10000).description(""))
      ->type_name("N");
  app.add_option("--max-strides", options.max_strides,
                 "Refuse a walk with more strides in a foot than N (default: no limit); the time "
                 "grows with their square")
      ->check(CLI::Range(1, std::numeric_limits<int>::max()).description(""))
      ->type_name("N");
  app.add_flag("--list-parameters", options.list_parameters,
               "Print the catalogue of gait parameters, instead of walks");
}

reply usage_error(const std::string& what) {
  return {exit_bad_usage, "gait-statistics: " + what + "\nTry gait-statistics --help.\n"};
}

}  // namespace

std::variant<options, reply> parse_command_line(int argc, const char* const* argv) {
  CLI::App app(description, "gait-statistics");
  options options;
  add_options(app, options);
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    return reply{exit_fine, app.help()};
  } catch (const CLI::CallForVersion& version) {
    return reply{exit_fine, std::string(version.what()) + "\n"};
  } catch (const CLI::ParseError& error) {
    // CLI11 has a code of its own for each kind of error.
    return usage_error(error.what());
  }
  if (options.walks.empty() != options.list_parameters) {
    return usage_error(options.list_parameters ? "--list-parameters takes no WALK"
                                               : "no WALK given");
  }
  return options;
}

}  // namespace gait_program
