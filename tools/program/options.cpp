#include "options.h"

#include "cell.h"
#include "command_line.h"
#include "names.h"
#include "nearest_name.h"
#include "number.h"
#include "number_text.h"
#include "walk_checks.h"

#include <gait/quality_flags.h>
#include <gait/version.h>

#include <tbb/info.h>
#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <filesystem>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <variant>
#include <vector>

namespace gait_program {
namespace {

constexpr const char* description =
    "Prints the statistics of recorded walks: cycle accounting, gait parameters, asymmetry.";

constexpr const char* footer =
    "Each WALK is a folder of CSV tables; docs/walk-folder.md describes them, docs/output.md what "
    "is written."
    R"(
A table shows rounded values. CSV holds parameters, walks or strides, one table each (--table),
unrounded. JSON holds everything, unrounded: the accounting, the quality flags, the findings, the
parameters, and every stride with its values. HTML is a page to look at and to print, with a figure
of every parameter.

A finding says that data cannot be right. It goes to the standard error and into every output; it
changes no figure and no exit code. docs/checks.md says what each check means.

Examples:
  gait-statistics --foot left -o left.csv monday/ tuesday/
  gait-statistics --recursive -o study.json study/
  gait-statistics --recursive --table strides -o strides.csv study/
  gait-statistics -o report.html monday/
  gait-statistics --recursive -o pages/ study/

Exit codes:
  0  every walk was read and its statistics were written
  1  a walk could not be read, --strict left one out, or the output could not be written
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

std::string refuse_unknown_check(const std::string& name) {
  const auto checks = gait_checks::list_checks();
  std::vector<std::string_view> known;
  known.reserve(checks.size());
  for (const auto& check : checks) {
    known.emplace_back(check.name);
  }
  if (std::find(known.begin(), known.end(), name) != known.end()) {
    return "";
  }
  const std::string_view nearest = gait_walk::nearest_name(name, known);
  return "\"" + name + "\" is not a check" +
         (nearest.empty() ? "" : "; did you mean " + std::string(nearest) + "?") +
         (nearest.empty() ? ": " : " ") + "--list-checks prints them all";
}

/// More threads than any machine has processors for.
constexpr int most_jobs = 1024;

struct file_ending {
  std::string_view ending;
  gait_report::output_format format;
};

constexpr std::array<file_ending, 4> file_endings = {{
    {".txt", gait_report::output_format::table},
    {".csv", gait_report::output_format::csv},
    {".json", gait_report::output_format::json},
    {".html", gait_report::output_format::html},
}};

/// Whether a path ends with a slash, as that of a folder does.
bool is_a_folder(const std::filesystem::path& path) { return !path.has_filename(); }

/// The format that the ending of a file stands for; nullopt if it is none of those that are known.
std::optional<gait_report::output_format> format_of(const std::filesystem::path& file) {
  if (is_a_folder(file)) {
    return gait_report::output_format::html;
  }
  const std::string ending = gait_walk::lower(file.extension().string());
  for (const file_ending& known : file_endings) {
    if (known.ending == ending || ending.empty()) {
      return known.format;
    }
  }
  return std::nullopt;
}

/// ".txt, .csv, .json or .html"
std::string known_endings() {
  std::string all;
  for (const file_ending& known : file_endings) {
    const bool is_last = &known == &file_endings.back();
    all += (all.empty() ? "" : is_last ? " or " : ", ") + std::string(known.ending);
  }
  return all;
}

std::string refuse_empty_name(const std::string& file) {
  return file.empty() ? "the name of the file is empty" : "";
}

/// The value of a word, which may be written as in tables: in capitals, a foot by its first letter.
template <class Value>
std::optional<Value> value_of(const std::string& word) {
  return gait_walk::value_named<Value>(gait_walk::full_word<Value>(gait_walk::lower(word)));
}

/// CLI11's check that a text is a name of an enumeration.
template <class Value>
CLI::Validator is_name_of() {
  return {[](const std::string& word) {
            std::string known;
            for (const auto& entry : gait_walk::names<Value>) {
              known += (known.empty() ? "" : ", ") + std::string(entry.name);
            }
            return value_of<Value>(word) ? "" : "\"" + word + "\" is not one of: " + known;
          },
          ""};
}

/// Sets an enumeration to the value of a name that was checked.
template <class Value>
auto set_by_name(Value& value) {
  return [&value](const std::string& name) { value = value_of<Value>(name).value_or(value); };
}

/// An option that takes one text and may be repeated. Expecting one at a time keeps the help from
/// saying "NAME ...".
CLI::Option* add_repeatable(CLI::App& app, const std::string& name,
                            std::vector<std::string>& values, const std::string& help) {
  return app.add_option(name, values, help)
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
      ->allow_extra_args(false)
      ->type_name("NAME");
}

reply usage_error(const std::string& what) {
  return {exit_bad_usage, "gait-statistics: " + what + "\nTry gait-statistics --help.\n"};
}

/// What is wrong with walks and lists, if anything.
std::optional<std::string> error_in_what_is_asked_for(const options& options) {
  const bool is_list = options.list_parameters || options.list_checks;
  if (options.walks.empty() && !is_list) {
    return "no WALK given";
  }
  if (is_list && !options.walks.empty()) {
    return (options.list_checks ? "--list-checks" : "--list-parameters") +
           std::string(" takes no WALK");
  }
  if (options.list_parameters && options.list_checks) {
    return "--list-parameters and --list-checks cannot be given together";
  }
  return std::nullopt;
}

/// Takes the format from the output's name where none is given; what is wrong with it, if anything.
std::optional<std::string> settle_output(options& options, bool has_format) {
  if (options.output == "-") {
    options.output.reset();
  }
  if (options.output && !has_format) {
    const auto format = format_of(*options.output);
    if (!format) {
      return "--output: no format has the ending \"" + options.output->extension().string() +
             "\": use " + known_endings() + ", or add --format";
    }
    options.format = *format;
  }
  options.output_is_a_folder = options.output && is_a_folder(*options.output);
  const bool is_html = options.format == gait_report::output_format::html;
  if (is_html && (options.list_parameters || options.list_checks)) {
    return "a list has no page, expected the format table, csv or json";
  }
  if (options.output_is_a_folder && !is_html) {
    return "--output: \"" + options.output->string() +
           "\" is a folder, which takes pages, expected --format html or a file";
  }
  return std::nullopt;
}

/// --table alone means CSV; what is wrong with another format, if anything.
std::optional<std::string> settle_table(options& options, bool has_format) {
  if (!has_format && options.format == gait_report::output_format::table) {
    options.format = gait_report::output_format::csv;
  }
  if (options.format != gait_report::output_format::csv) {
    return "--table names a table of CSV, and the format is " +
           std::string(gait_walk::name_of(options.format));
  }
  return std::nullopt;
}

}  // namespace

void add_options(CLI::App& app, options& options) {
  app.name("gait-statistics");
  app.description(description);
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
  app.add_flag("--recursive", options.recursive,
               "Take every walk folder below the folders that are given, sorted by path");
  add_repeatable(app, "--ignore-column", options.ignored_columns,
                 "Leave out a column of a table (may be repeated); \"all\": every unknown one");
  app.add_flag("--strict", options.strict,
               "Leave out a walk with a finding or a warning, with exit code 1");
  add_repeatable(app, "--without-check", options.without_checks,
                 "Leave out a data check that does not apply (may be repeated)")
      ->check(CLI::Validator(refuse_unknown_check, ""));
  app.add_option_function<std::string>("--format", set_by_name(options.format),
                                       "Form of the output: table, csv, json or html (default: "
                                       "that of FILE's ending, " +
                                           known_endings() + ", else table)")
      ->check(is_name_of<gait_report::output_format>())
      ->type_name("FORMAT");
  app.add_option_function<std::string>(
         "--table", set_by_name(options.table),
         "Table of CSV: parameters, walks or strides (default: parameters)")
      ->check(is_name_of<gait_report::csv_table>())
      ->type_name("TABLE");
  app.add_option("-o,--output", options.output,
                 "Write to this file, which is replaced when the new one is whole; -: the standard "
                 "output; a folder, its name ending in /: a page of each walk, and index.html")
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
  options.jobs = static_cast<std::size_t>(tbb::info::default_concurrency());
  app.add_option("--jobs", options.jobs,
                 "Read and compute N walks at a time (default: as many as there are processors); "
                 "the output is the same")
      ->check(CLI::Range(1, most_jobs).description(""))
      ->type_name("N");
  app.add_flag("--list-parameters", options.list_parameters,
               "Print the catalogue of gait parameters, and read no walks");
  app.add_flag("--list-checks", options.list_checks,
               "Print the table of data checks, and read no walks");
}

std::variant<options, reply> parse_command_line(int argc, const char* const* argv) {
  CLI::App app;
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
  const bool has_format = app.count("--format") > 0;
  auto error = error_in_what_is_asked_for(options);
  if (!error) {
    error = settle_output(options, has_format);
  }
  if (!error && app.count("--table") > 0) {
    error = settle_table(options, has_format);
  }
  if (error) {
    return usage_error(*error);
  }
  return options;
}

}  // namespace gait_program
