#include "report_walks.h"

#include "call_cost.h"
#include "ending.h"
#include "in_order.h"
#include "output.h"
#include "progress.h"
#include "terminal.h"
#include "walk_writers.h"

#include "check_list.h"
#include "finding_text.h"
#include "html_report.h"
#include "parameter_list.h"
#include "walk_statistics.h"

#include "analysis.h"
#include "shown_text.h"
#include "walk_folder.h"

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
using gait_report::walk_statistics;

void print_message(const std::string& message) {
  std::cerr << gait_walk::printable(message) << "\n";
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

/// What is said about a walk, held until its turn comes. With --strict, what is said about a walk
/// whose statistics can be computed all the same keeps it out of the output, and is an error.
class remarks {
public:
  explicit remarks(bool strict) : strict_(strict) {}

  void error(const std::string& message) { lines_ += gait_walk::printable(message) + "\n"; }
  void say(const std::string& kind, const std::string& message) {
    error(strict_ ? message : kind + ": " + message);
    any_ = true;
  }
  void say(const gait_checks::finding& finding, const walk_statistics& walk,
           const std::filesystem::path& folder) {
    const std::string table = (folder / finding.table).string() + ": ";
    if (const auto width = standard_error_width()) {
      const std::string first = gait_walk::printable((strict_ ? "" : "finding: ") + table);
      lines_ += gait_report::in_lines(first, finding, walk, {*width, false});
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
  const std::string& lines() const { return lines_; }

private:
  bool strict_;
  bool any_ = false;
  std::string lines_;
};

/// Tells people that they will wait, if they will.
void announce(const std::string& walk, const gait_result& result, progress& progress) {
  constexpr double not_worth_a_word = 5.0;
  const double seconds = expected_seconds(result);
  if (seconds <= not_worth_a_word) {
    return;
  }
  std::size_t strides = 0;
  for (const auto& foot : result.foot_results) {
    strides = std::max(strides, foot.cycles.size());
  }
  const std::string note =
      "note: " + walk + ": the statistics of " + std::to_string(strides) +
      " strides a foot will take about " + rough_duration(seconds) +
      ": their time grows with the square of the strides. Ctrl-C ends the program; "
      "--max-strides refuses such walks.";
  progress.say(gait_walk::printable(note) + "\n");
}

gait_walk::read_options read_options_of(const options& options) {
  gait_walk::read_options read;
  read.most_strides = options.max_strides.value_or(read.most_strides);
  read.analysed = options.analysed;
  read.ignored_columns = options.ignored_columns;
  return read;
}

/// Reads, checks and computes a walk. Throws walk_error when that cannot be done.
walk_statistics read_and_compute(const std::filesystem::path& folder, const std::string& name,
                                 const options& options, remarks& remarks, progress& progress) {
  gait_walk::read_result read = gait_walk::read_walk_folder(folder, read_options_of(options));
  remarks.warn(read.warnings);
  if (auto errors = gait_walk::check_analysis(read.walk, options.analysed, folder.string());
      !errors.empty()) {
    throw gait_walk::walk_error(std::move(errors));
  }
  const auto of_analysis =
      gait_walk::analysis_warnings(read.walk, options.analysed, folder.string());
  remarks.warn(of_analysis);
  read.walk.name = name;
  walk_statistics statistics =
      gait_report::prepare_walk(std::move(read.walk), options.analysed, options.settings_value);
  announce(folder.string(), statistics.result(), progress);
  gait_report::compute_statistics(statistics, options.without_checks);
  gait_report::add_warnings(statistics, of_analysis);
  gait_report::add_warnings(statistics, read.warnings);
  for (const auto& finding : statistics.findings) {
    remarks.say(finding, statistics, folder);
  }
  return statistics;
}

/// What became of a walk: its part of the output, if it has one, and what is to be said about it.
template <class Part>
struct outcome {
  std::optional<Part> part;
  std::string messages;
};

/// Turns one folder into what is written of it. What is wrong with it costs this walk alone.
template <class Writer>
outcome<typename Writer::part> process(const Writer& writer, const options& options,
                                       const std::filesystem::path& folder, const std::string& name,
                                       std::size_t place, progress& progress) {
  remarks remarks(options.strict);
  std::optional<typename Writer::part> part;
  try {
    const walk_statistics statistics = read_and_compute(folder, name, options, remarks, progress);
    if (!remarks.keep_the_walk_out()) {
      part = writer.render(statistics, place);
    }
  } catch (const gait_walk::walk_error& error) {
    for (const auto& wrong : error.errors()) {
      remarks.error(wrong.message());
    }
  } catch (const std::bad_alloc&) {
    remarks.error(folder.string() + ": not enough memory");
  } catch (const std::exception& error) {
    remarks.error(folder.string() + ": " + error.what());
  }
  return {std::move(part), remarks.lines()};
}

/// The walks that were left out.
class left_out_walks {
public:
  void add(const std::filesystem::path& folder) {
    constexpr std::size_t most_named = 10;
    ++count_;
    if (count_ <= most_named) {
      names_ += (names_.empty() ? "" : ", ") + folder.string();
    } else if (count_ == most_named + 1) {
      names_ += ", ...";
    }
  }
  std::size_t count() const { return count_; }

  /// "37 of 40 walks reported, 3 left out: ...".
  std::string in_words(std::size_t of_walks) const {
    const std::string reported =
        std::to_string(of_walks - count_) + " of " + std::to_string(of_walks) + " walks reported";
    return count_ == 0 ? reported
                       : reported + ", " + std::to_string(count_) + " left out: " + names_;
  }

private:
  std::size_t count_ = 0;
  std::string names_;
};

bool is_too_much_for_a_page(const options& options, std::size_t walks) {
  return options.format == output_format::html && !options.output_is_a_folder &&
         walks > gait_report::most_walks_in_a_page;
}

/// How wide a line of progress may be; 0 where nobody would see it, or it would stand among the
/// reports.
std::size_t width_of_progress(const options& options, std::size_t walks) {
  const bool reports_fill_the_terminal = !options.output && standard_output_is_a_terminal();
  return walks > 1 && !reports_fill_the_terminal && can_move_the_cursor()
             ? standard_error_width().value_or(0)
             : 0;
}

template <class Writer>
int report_with(Writer& writer, const options& options,
                const std::vector<std::filesystem::path>& folders,
                const std::vector<std::string>& names) {
  left_out_walks left_out;
  {
    progress progress(folders.size(), width_of_progress(options, folders.size()));
    const auto make = [&](std::size_t i) {
      return process(writer, options, folders[i], names[i], i, progress);
    };
    std::size_t place = 0;
    const auto use = [&](outcome<typename Writer::part> walk) {
      progress.say(walk.messages);
      if (!walk.part) {
        left_out.add(folders[place]);
      } else {
        try {
          writer.add(std::move(*walk.part));
        } catch (...) {
          // Walks that other threads compute are of no use any more.
          progress.remove();
          end_at_once();
        }
      }
      ++place;
      progress.count_walk();
    };
    make_and_use_in_order(folders.size(), options.jobs, make, use);
    writer.finish();
  }
  if (folders.size() > 1 && (left_out.count() > 0 || standard_error_width())) {
    print_message("gait-statistics: " + left_out.in_words(folders.size()));
  }
  return left_out.count() == 0 ? exit_fine : exit_failed;
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
  const std::vector<std::string> names = reported_names(folders);
  if (options.output_is_a_folder) {
    folder_writer writer(*options.output, names);
    return report_with(writer, options, folders, names);
  }
  output out(options.output);
  if (options.format == output_format::html) {
    page_writer writer(out, folders.size());
    return report_with(writer, options, folders, names);
  }
  text_writer writer(options, out);
  return report_with(writer, options, folders, names);
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
