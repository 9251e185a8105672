#include "report_walks.h"

#include "call_cost.h"
#include "output.h"
#include "terminal.h"

#include "check_list.h"
#include "csv_output.h"
#include "finding_text.h"
#include "html_report.h"
#include "json_output.h"
#include "parameter_list.h"
#include "text_report.h"
#include "walk_statistics.h"

#include "analysis.h"
#include "shown_text.h"
#include "walk_folder.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstddef>
#include <exception>
#include <filesystem>
#include <iostream>
#include <new>
#include <optional>
#include <string>
#include <system_error>
#include <unordered_map>
#include <utility>
#include <vector>

namespace gait_program {
namespace {

using gait_report::output_format;
using gait_report::text_style;
using gait_report::walk_statistics;

text_style style_of(const options& options) {
  text_style style = options.output ? pipe_style : standard_output_style();
  style.width = options.width.value_or(style.width);
  return style;
}

/// Writes the walks of a run in one format.
class report_writer {
public:
  report_writer(const options& options, output& out, std::size_t walks)
      : format_(options.format),
        table_(options.table),
        style_(style_of(options)),
        out_(out),
        page_(walks > 1) {}

  void add(const walk_statistics& walk) {
    const bool is_first = !wrote_any_;
    wrote_any_ = true;
    switch (format_) {
      case output_format::table:
        out_.write((is_first ? "" : "\n") + gait_report::text_report(walk, style_));
        break;
      case output_format::csv:
        out_.write((is_first ? gait_report::csv_header(table_) : "") +
                   gait_report::csv_rows(table_, walk));
        break;
      case output_format::json:
        json_walks_.push_back(gait_report::json_walk(walk));
        break;
      case output_format::html:
        page_.add(walk);
        break;
    }
  }

  /// Nothing is written, not even an empty file, when there was no walk.
  void finish() {
    if (!wrote_any_) {
      return;
    }
    if (format_ == output_format::json) {
      out_.write(gait_report::json_document(std::move(json_walks_)));
    } else if (format_ == output_format::html) {
      out_.write(page_.finish());
    }
    out_.finish();
  }

private:
  output_format format_;
  gait_report::csv_table table_;
  text_style style_;
  output& out_;
  bool wrote_any_ = false;
  std::vector<nlohmann::ordered_json> json_walks_;
  gait_report::html_page page_;
};

/// Writes a page of each walk into a folder, and an index of them.
class page_writer {
public:
  explicit page_writer(std::filesystem::path folder) : folder_(std::move(folder)) {}

  void add(const walk_statistics& walk) {
    write(pages_.add(walk));
    wrote_any_ = true;
  }

  /// Nothing is written, not even an empty folder, when there was no walk.
  void finish() {
    if (wrote_any_) {
      write(pages_.index());
    }
  }

private:
  void write(const gait_report::html_folder::file& file) const {
    std::error_code error;
    std::filesystem::create_directories(folder_, error);
    if (error) {
      throw std::system_error(error, "cannot make the folder " + folder_.string());
    }
    output out(folder_ / file.name);
    out.write(file.content);
    out.finish();
  }

  std::filesystem::path folder_;
  gait_report::html_folder pages_;
  bool wrote_any_ = false;
};

void print_message(const std::string& message) {
  std::cerr << gait_walk::printable(message) << "\n";
}

/// Tells people that they will wait, if they will.
void announce(const std::string& walk, const gait_result& result) {
  constexpr double not_worth_a_word = 5.0;
  const double seconds = expected_seconds(result);
  if (seconds <= not_worth_a_word) {
    return;
  }
  std::size_t strides = 0;
  for (const auto& foot : result.foot_results) {
    strides = std::max(strides, foot.cycles.size());
  }
  print_message("note: " + walk + ": the statistics of " + std::to_string(strides) +
                " strides a foot will take about " + rough_duration(seconds) +
                ": their time grows with the square of the strides. Ctrl-C ends the program; "
                "--max-strides refuses such walks.");
}

/// Whether the output would take the place of a table of one of the walks, and with it of the
/// recording.
bool output_is_a_table(const options& options, const std::vector<std::filesystem::path>& folders) {
  return options.output && std::any_of(folders.begin(), folders.end(), [&](const auto& folder) {
           const auto tables = gait_walk::table_files(folder);
           return std::any_of(tables.begin(), tables.end(), [&](const auto& table) {
             std::error_code absent;
             return std::filesystem::equivalent(*options.output, table, absent) ||
                    std::filesystem::weakly_canonical(*options.output, absent) ==
                        std::filesystem::weakly_canonical(table, absent);
           });
         });
}

/// The folders without those that are given again, which would count twice wherever the output is
/// read.
std::vector<std::filesystem::path> each_once(const std::vector<std::filesystem::path>& folders) {
  std::vector<std::filesystem::path> once;
  std::unordered_map<std::string, std::string> given;
  for (const auto& folder : folders) {
    std::error_code error;
    const auto canonical = std::filesystem::canonical(folder, error);
    const auto [same, is_first] =
        given.emplace((error ? folder : canonical).string(), folder.string());
    if (is_first) {
      once.push_back(folder);
    } else {
      print_message("note: " + folder.string() + ": the same walk as " + same->second +
                    ", reported once");
    }
  }
  return once;
}

/// What each walk is called in the report: its folder's name, or, where several folders have the
/// same, its path as given.
std::vector<std::string> reported_names(const std::vector<std::filesystem::path>& folders) {
  std::vector<std::string> names;
  std::unordered_map<std::string, std::size_t> count;
  for (const auto& folder : folders) {
    names.push_back(gait_walk::walk_name(folder));
    ++count[names.back()];
  }
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (count.at(names[i]) > 1) {
      names[i] = folders[i].string();
    }
  }
  return names;
}

/// What is said about a walk whose statistics can be computed all the same. With --strict it keeps
/// the walk out of the output, and is reported as an error.
class remarks {
public:
  explicit remarks(bool strict) : strict_(strict) {}

  void say(const std::string& kind, const std::string& message) {
    print_message(strict_ ? message : kind + ": " + message);
    any_ = true;
  }
  void say(const gait_checks::finding& finding, const walk_statistics& walk,
           const std::filesystem::path& folder) {
    const std::string table = (folder / finding.table).string() + ": ";
    if (const auto width = standard_error_width()) {
      const std::string first = gait_walk::printable((strict_ ? "" : "finding: ") + table);
      std::cerr << gait_report::in_lines(first, finding, walk, {*width, false});
      any_ = true;
    } else {
      say("finding", table + gait_report::in_words(finding, walk));
    }
  }
  void warn(const std::vector<gait_walk::input_error>& warnings) {
    for (const auto& warning : warnings) {
      say("warning", warning.message());
    }
  }
  bool keep_the_walk_out() const { return strict_ && any_; }

private:
  bool strict_;
  bool any_ = false;
};

gait_walk::read_options read_options_of(const options& options) {
  gait_walk::read_options read;
  read.most_strides = options.max_strides.value_or(read.most_strides);
  read.analysed = options.analysed;
  read.ignored_columns = options.ignored_columns;
  return read;
}

/// A walk's statistics; nullopt, with what is wrong on the standard error, when there are none.
std::optional<walk_statistics> read_and_run(const std::filesystem::path& folder,
                                            const std::string& name, const options& options) {
  try {
    remarks remarks(options.strict);
    gait_walk::read_result read = gait_walk::read_walk_folder(folder, read_options_of(options));
    remarks.warn(read.warnings);
    if (auto errors = gait_walk::check_analysis(read.walk, options.analysed, folder.string());
        !errors.empty()) {
      throw gait_walk::walk_error(std::move(errors));
    }
    remarks.warn(gait_walk::analysis_warnings(read.walk, options.analysed, folder.string()));
    read.walk.name = name;
    walk_statistics statistics =
        gait_report::prepare_walk(std::move(read.walk), options.analysed, options.settings_value);
    announce(folder.string(), statistics.result());
    gait_report::compute_statistics(statistics, options.without_checks);
    for (const auto& finding : statistics.findings) {
      remarks.say(finding, statistics, folder);
    }
    if (!remarks.keep_the_walk_out()) {
      return statistics;
    }
  } catch (const gait_walk::walk_error& error) {
    for (const auto& wrong : error.errors()) {
      print_message(wrong.message());
    }
  } catch (const std::bad_alloc&) {
    print_message(folder.string() + ": not enough memory");
  } catch (const std::exception& error) {
    print_message(folder.string() + ": " + error.what());
  }
  return std::nullopt;
}

bool is_too_much_for_a_page(const options& options, std::size_t walks) {
  return options.format == output_format::html && !options.output_is_a_folder &&
         walks > gait_report::most_walks_in_a_page;
}

template <class Writer>
int report_with(Writer& writer, const options& options,
                const std::vector<std::filesystem::path>& folders) {
  int exit_code = exit_fine;
  const std::vector<std::string> names = reported_names(folders);
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (const auto statistics = read_and_run(folders[i], names[i], options)) {
      writer.add(*statistics);
    } else {
      exit_code = exit_failed;
    }
  }
  writer.finish();
  return exit_code;
}

}  // namespace

int report_walks(const options& options) {
  const std::vector<std::filesystem::path> folders =
      each_once(gait_walk::expand(options.walks, options.recursive));
  if (output_is_a_table(options, folders)) {
    print_message("gait-statistics: --output: \"" + options.output->string() +
                  "\" is a table of a walk, expected another file");
    return exit_bad_usage;
  }
  if (is_too_much_for_a_page(options, folders.size())) {
    print_message("gait-statistics: " + std::to_string(folders.size()) +
                  " walks in one page, expected up to " +
                  std::to_string(gait_report::most_walks_in_a_page) +
                  "; -o FOLDER/ writes a page for each");
    return exit_bad_usage;
  }
  if (options.output_is_a_folder) {
    page_writer writer(*options.output);
    return report_with(writer, options, folders);
  }
  output out(options.output);
  report_writer writer(options, out, folders.size());
  return report_with(writer, options, folders);
}

int report_parameter_list(const options& options) {
  output out(options.output);
  out.write(gait_report::print_parameter_list(options.format, style_of(options)));
  out.finish();
  return exit_fine;
}

int report_check_list(const options& options) {
  output out(options.output);
  out.write(gait_report::print_check_list(options.format, style_of(options)));
  out.finish();
  return exit_fine;
}

}  // namespace gait_program
