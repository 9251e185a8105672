// Prints the manual page of a program, from the same options and texts as its --help.
// scripts/update-docs puts the pages into docs/man.

#include <command_line.h>
#include <make_walk_arguments.h>

#include <gait/version.h>

#include <CLI/CLI.hpp>

#include <iostream>
#include <regex>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

/// On which the pages were last changed in earnest; a release sets it.
constexpr const char* date = "2026-11-22";

constexpr const char* see_also =
    "Pages named docs/... and examples/... are in the documentation folder, which on Debian is "
    "/usr/share/doc/gait-statistics, of the package gait-statistics-doc.";

/// As roff reads it: every hyphen as a plain one, which can be copied, and no line a request.
std::string escaped(std::string_view text) {
  std::string result;
  for (const char c : text) {
    const bool is_line_start = result.empty() || result.back() == '\n';
    if (is_line_start && (c == '.' || c == '\'')) {
      result += "\\&";
    }
    if (c == '\\' || c == '-') {
      result += '\\';
    }
    result += c == '\\' ? 'e' : c;
  }
  return result;
}

std::string bold(std::string_view text) { return "\\fB" + escaped(text) + "\\fR"; }
std::string italic(std::string_view text) { return "\\fI" + escaped(text) + "\\fR"; }

/// The options and positionals of a program, and what its texts call their values.
class program {
public:
  explicit program(const CLI::App& app) : app_(app) {
    for (const CLI::Option* option : app.get_options()) {
      (option->get_positional() ? positionals_ : options_).push_back(option);
    }
  }

  void print_page() const {
    std::string title = app_.get_name();
    for (char& c : title) {
      c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    }
    std::cout << ".\\\" Printed by tests/docs/print_manual.cpp from what --help prints: run\n"
                 ".\\\" scripts/update-docs after a change of the options.\n"
              << ".TH " << escaped(title) << " 1 " << date
              << " \"gait_statistics " GAIT_STATISTICS_VERSION "\"\n";
    print_name();
    print_synopsis();
    print_description();
    print_options();
    print_section_of_footer("Exit codes:", "EXIT STATUS");
    print_section_of_footer("Examples:", "EXAMPLES");
  }

private:
  /// "Prints it." becomes "prints it".
  void print_name() const {
    std::string what = app_.get_description();
    what.front() = static_cast<char>(what.front() - 'A' + 'a');
    what.pop_back();
    std::cout << ".SH NAME\n" << escaped(app_.get_name() + " - " + what) << "\n";
  }

  void print_synopsis() const {
    std::cout << ".SH SYNOPSIS\n" << bold(app_.get_name()) << " [" << italic("OPTION") << "]...";
    for (const CLI::Option* positional : positionals_) {
      const std::string name = italic(positional->get_name(true));
      const bool is_repeated = positional->get_expected_max() > 1;
      std::cout << " " << (positional->get_required() ? name : "[" + name + "]")
                << (is_repeated ? "..." : "");
    }
    std::cout << "\n";
  }

  /// What each option and value is called stands out.
  std::string marked(const std::string& text) const {
    static const std::regex word("(^|[ (\"])(--?[a-z][a-z-]*|[A-Z]+)");
    std::string result;
    std::size_t from = 0;
    for (std::sregex_iterator at(text.begin(), text.end(), word), end; at != end; ++at) {
      const auto begin = static_cast<std::size_t>(at->position(2));
      const std::string name = (*at)[2];
      result += escaped(text.substr(from, begin - from));
      result += name.front() == '-' ? bold(name) : is_value(name) ? italic(name) : escaped(name);
      from = begin + name.size();
    }
    return result + escaped(text.substr(from));
  }

  bool is_value(const std::string& name) const {
    for (const CLI::Option* option : options_) {
      if (option->get_type_name() == name) {
        return true;
      }
    }
    for (const CLI::Option* positional : positionals_) {
      if (positional->get_name(true) == name) {
        return true;
      }
    }
    return false;
  }

  void print_description() const {
    std::cout << ".SH DESCRIPTION\n" << marked(app_.get_description()) << "\n";
    for (const CLI::Option* positional : positionals_) {
      std::cout << ".TP\n"
                << italic(positional->get_name(true)) << "\n"
                << marked(positional->get_description()) << ".\n";
    }
    for (const std::string& paragraph : footer()) {
      if (paragraph.find(":\n  ") == std::string::npos) {
        std::cout << ".PP\n" << marked(paragraph) << "\n";
      }
    }
  }

  void print_options() const {
    std::cout << ".SH OPTIONS\n";
    for (const CLI::Option* option : options_) {
      std::string names;
      for (const std::string& name : option->get_snames()) {
        names += (names.empty() ? "" : ", ") + bold("-" + name);
      }
      for (const std::string& name : option->get_lnames()) {
        names += (names.empty() ? "" : ", ") + bold("--" + name);
      }
      const std::string value = option->get_type_name();
      const std::string usual = option->get_default_str();
      std::cout << ".TP\n"
                << names << (value.empty() ? "" : " " + italic(value)) << "\n"
                << marked(option->get_description())
                << (usual.empty() ? "" : " (default: " + escaped(usual) + ")") << ".\n";
    }
  }

  /// The paragraphs of the text below the options.
  std::vector<std::string> footer() const {
    std::vector<std::string> paragraphs(1);
    std::istringstream lines(app_.get_footer());
    for (std::string line; std::getline(lines, line);) {
      if (line.empty()) {
        paragraphs.emplace_back();
      } else {
        paragraphs.back() += (paragraphs.back().empty() ? "" : "\n") + line;
      }
    }
    return paragraphs;
  }

  /// A paragraph of indented lines under a heading. Lines that begin with a digit are a list,
  /// others are commands.
  void print_section_of_footer(const std::string& heading, const char* title) const {
    for (const std::string& paragraph : footer()) {
      if (paragraph.rfind(heading, 0) != 0) {
        continue;
      }
      std::cout << ".SH " << title << "\n";
      std::istringstream lines(paragraph.substr(heading.size() + 1));
      bool is_verbatim = false;
      for (std::string line; std::getline(lines, line);) {
        const std::string text = line.substr(2);
        if (text.front() >= '0' && text.front() <= '9') {
          std::cout << ".TP\n" << bold(text.substr(0, 1)) << "\n";
          std::cout << marked(text.substr(3)) << "\n";
        } else {
          std::cout << (is_verbatim ? "" : ".nf\n") << escaped(text) << "\n";
          is_verbatim = true;
        }
      }
      std::cout << (is_verbatim ? ".fi\n" : "");
    }
  }

  const CLI::App& app_;
  std::vector<const CLI::Option*> options_;
  std::vector<const CLI::Option*> positionals_;
};

void print_see_also(const char* other) {
  std::cout << ".SH SEE ALSO\n" << bold(other) << "(1)\n.PP\n" << escaped(see_also) << "\n";
}

}  // namespace

int main(int argc, char** argv) {
  const std::string_view name = argc == 2 ? argv[1] : "";
  CLI::App app;
  if (name == "gait-statistics") {
    gait_program::options options;
    gait_program::add_options(app, options);
    program(app).print_page();
    print_see_also("gait-make-walk");
  } else if (name == "gait-make-walk") {
    gait_make_walk::arguments arguments;
    gait_make_walk::add_options(app, arguments);
    program(app).print_page();
    print_see_also("gait-statistics");
  } else {
    std::cerr << "usage: print_manual gait-statistics | gait-make-walk\n";
    return 2;
  }
  return 0;
}
