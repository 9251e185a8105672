#include "options.h"

#include "number.h"

#include <gait/quality_flags.h>
#include <gait/version.h>

#include <CLI/CLI.hpp>

#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <variant>
#include <vector>

namespace gait_program {
namespace {

constexpr const char* description =
    "Prints the statistics of recorded walks: cycle accounting, gait parameters, asymmetry.";

constexpr const char* footer =
    R"(Each WALK is a folder of four CSV tables; docs/walk-folder.md describes them, docs/output.md what is written.
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
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || rest != end || !std::isfinite(value)) {
    return std::nullopt;
  }
  return value;
}

std::string refuse_other_than_finite_float(const std::string& text) {
  return finite_float(text) ? "" : "\"" + text + "\" is not a finite number with a decimal point";
}

output_format format_of(const std::string& name) {
  return name == "csv"    ? output_format::csv
         : name == "json" ? output_format::json
                          : output_format::table;
}

/// The options as texts, which is how CLI11 checks and shows them best.
struct option_texts {
  std::vector<std::string> walks;
  std::string foot;
  std::string settings_value;
  std::string format = "table";
  std::string output;
  std::size_t width = 0;
  std::int64_t max_strides = 0;  // signed: CLI11 takes -1 for a large unsigned number
  bool list_parameters = false;
};

void declare(CLI::App& app, option_texts& texts) {
  app.footer(footer);
  app.set_help_flag("-h,--help", "Print this help");
  app.set_version_flag("--version", "gait-statistics " GAIT_STATISTICS_VERSION,
                       "Print the version");
  app.add_option("WALK", texts.walks, "Folders of walks, reported one after the other")
      ->type_name("");
  app.add_option(
         "--foot", texts.foot,
         "Analyse this foot alone: left or right (default: both feet, if the walk has both)")
      ->check(CLI::IsMember({"left", "right"}).description(""))
      ->type_name("FOOT");
  app.add_option("--settings-value", texts.settings_value,
                 "Setting of the analysis that made the walk; above 0 and outside " +
                     shortest(gait_quality_setting_min) + " to " +
                     shortest(gait_quality_setting_max) + " it raises a quality flag")
      ->check(CLI::Validator(refuse_other_than_finite_float, ""))
      ->type_name("V");
  app.add_option("--format", texts.format,
                 "Form of the output: table, csv or json (default: table)")
      ->check(CLI::IsMember({"table", "csv", "json"}).description(""))
      ->type_name("FORMAT");
  app.add_option("--output", texts.output,
                 "Write to this file, which is replaced when the new one is whole")
      ->type_name("FILE");
  app.add_option("--width", texts.width,
                 "Width of the table in characters (default: the terminal's, or 100)")
      ->check(CLI::Range(20, 10000).description(""))
      ->type_name("N");
  app.add_option("--max-strides", texts.max_strides,
                 "Refuse a walk with more strides in a foot than N (default: no limit); the time "
                 "grows with their square")
      ->check(CLI::Range(1, std::numeric_limits<int>::max()).description(""))
      ->type_name("N");
  app.add_flag("--list-parameters", texts.list_parameters,
               "Print the catalogue of gait parameters, instead of walks");
}

options options_of(const option_texts& texts) {
  options result;
  result.walks.assign(texts.walks.begin(), texts.walks.end());
  if (!texts.foot.empty()) {
    result.foot = texts.foot == "left" ? gait_walk::side::left : gait_walk::side::right;
  }
  result.settings_value = finite_float(texts.settings_value).value_or(0.0F);
  result.format = format_of(texts.format);
  if (!texts.output.empty()) {
    result.output = texts.output;
  }
  if (texts.width > 0) {
    result.width = texts.width;
  }
  if (texts.max_strides > 0) {
    result.max_strides = static_cast<std::size_t>(texts.max_strides);
  }
  result.list_parameters = texts.list_parameters;
  return result;
}

reply usage_fault(const std::string& what) {
  return {exit_bad_usage, "gait-statistics: " + what + "\nTry gait-statistics --help.\n"};
}

}  // namespace

std::variant<options, reply> parse_command_line(int argc, const char* const* argv) {
  CLI::App app(description, "gait-statistics");
  option_texts texts;
  declare(app, texts);
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    return reply{exit_fine, app.help()};
  } catch (const CLI::CallForVersion& version) {
    return reply{exit_fine, std::string(version.what()) + "\n"};
  } catch (const CLI::ParseError& error) {
    // CLI11 has a code of its own for each kind of fault.
    return usage_fault(error.what());
  }
  if (texts.walks.empty() != texts.list_parameters) {
    return usage_fault(texts.list_parameters ? "--list-parameters takes no WALK" : "no WALK given");
  }
  if (app.count("--output") > 0 && texts.output.empty()) {
    return usage_fault("--output: the name of the file is empty");
  }
  return options_of(texts);
}

}  // namespace gait_program
