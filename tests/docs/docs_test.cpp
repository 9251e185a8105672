// What the pages say is what the programs print.

#include <gait/version.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

std::filesystem::path project() { return GAIT_PROJECT_FOLDER; }

std::string text_of(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  EXPECT_TRUE(stream) << file;
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

std::string page(const std::string& name) { return text_of(project() / name); }

/// A path as one word of a command.
std::string quoted(const std::string& path) { return "\"" + path + "\""; }

struct run {
  int status;
  std::string output;
};

run run_command(const std::string& command) {
  // The commands are made of paths of this build alone.
  std::FILE* pipe = popen(command.c_str(), "r");  // NOLINT(cert-env33-c)
  if (pipe == nullptr) {
    return {-1, ""};
  }
  std::string output;
  for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) {
    output.push_back(static_cast<char>(c));
  }
  return {pclose(pipe), output};
}

/// What a command prints; it must succeed.
std::string output_of(const std::string& command) {
  const run result = run_command(command);
  EXPECT_EQ(result.status, 0) << command;
  return result.output;
}

std::string output_of_example(const std::string& name) {
  return output_of(quoted(GAIT_EXAMPLES_FOLDER "/" + name));
}

std::string block(const std::string& language, const std::string& text) {
  return "```" + language + "\n" + text + "```\n";
}

/// The first block of that language after a text.
std::string block_after(const std::string& whole, const std::string& before,
                        const std::string& language) {
  const std::string fence = "```" + language + "\n";
  const auto start = whole.find(fence, whole.find(before));
  EXPECT_NE(start, std::string::npos) << "no " << language << " after: " << before;
  if (start == std::string::npos) {
    return "";
  }
  const auto first = start + fence.size();
  return whole.substr(first, whole.find("```", first) - first);
}

std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    lines.push_back(line);
  }
  return lines;
}

/// Whether the lines occur in the text in their order, "..." standing for any number of others.
testing::AssertionResult is_shortened(const std::string& shortened, const std::string& text) {
  std::size_t from = 0;
  for (const std::string& line : lines_of(shortened)) {
    if (line.find_first_not_of(" .") == std::string::npos) {
      continue;
    }
    const auto at = text.find("\n" + line + "\n", from);
    if (at == std::string::npos) {
      return testing::AssertionFailure()
             << "the page has, and the program has not: " << line << "\n"
             << text;
    }
    from = at + line.size();
  }
  return testing::AssertionSuccess();
}

TEST(Readme, ShowsWhatItsProgramPrints) {
  EXPECT_EQ(block_after(page("README.md"), "It prints", "text"), output_of_example("readme"));
}

TEST(Readme, ShowsThePartsOfTheReportThatTheProgramPrints) {
  const std::string command = "cd " + quoted(GAIT_PROJECT_FOLDER) + " && " + quoted(GAIT_PROGRAM) +
                              " examples/walks/two_feet_turn";
  const std::string shown = block_after(page("README.md"), "shortened:", "text");
  ASSERT_GT(lines_of(shown).size(), 10U);
  EXPECT_TRUE(is_shortened(shown, "\n" + output_of(command)));
}

TEST(Output, ShowsTheFirstRowsOfTheTable) {
  const std::string command = "cd " + quoted(GAIT_PROJECT_FOLDER) + " && " + quoted(GAIT_PROGRAM) +
                              " --format csv examples/walks/one_foot_short";
  const std::string shown = block_after(page("docs/output.md"), "## CSV", "text");
  ASSERT_EQ(lines_of(shown).size(), 2U);
  EXPECT_EQ(output_of(command).rfind(shown, 0), 0U) << shown;
}

/// The tables of the page, by the name of their comment, and how each is printed.
/// scripts/update-docs reads the same comments.
TEST(Output, HoldsEveryColumnAndEveryKey) {
  const std::string whole = page("docs/output.md");
  const std::regex comment(
      "<!-- (csv|json) (\\w+): printed by "
      "tests/docs/print_outputs.cpp -->\n");
  std::size_t tables = 0;
  for (std::sregex_iterator at(whole.begin(), whole.end(), comment), end; at != end; ++at) {
    const std::string what = (*at)[1];
    const std::string name = (*at)[2];
    const std::string schema =
        what == "json" ? " " + quoted(GAIT_PROJECT_FOLDER "/docs/output.schema.json") : "";
    std::string command = quoted(GAIT_PRINT_OUTPUTS);
    command += " " + what + " " + name + schema;
    const auto begin = static_cast<std::size_t>(at->position() + at->length());
    EXPECT_EQ(whole.substr(begin).rfind(output_of(command) + "<!-- end of " + name + " -->", 0), 0U)
        << name << ": run scripts/update-docs";
    ++tables;
  }
  EXPECT_EQ(tables, 16U);
}

TEST(Parameters, ArePrintedFromTheCatalogue) {
  EXPECT_EQ(page("docs/parameters.md"), output_of(quoted(GAIT_PRINT_CATALOGUE) + " page"))
      << "run scripts/update-docs";
}

TEST(Checks, ArePrintedFromTheirTable) {
  EXPECT_EQ(page("docs/checks.md"), output_of(quoted(GAIT_PRINT_CHECKS)))
      << "run scripts/update-docs";
}

TEST(ManualPages, ArePrintedFromTheOptions) {
  for (const std::string name : {"gait-statistics", "gait-make-walk"}) {
    EXPECT_EQ(page("docs/man/" + name + ".1"), output_of(quoted(GAIT_PRINT_MANUAL) + " " + name))
        << "run scripts/update-docs";
  }
}

TEST(Versions, AreThatOfTheHeadersInWhatIsHandedOn) {
  const std::string version = GAIT_STATISTICS_VERSION;
  EXPECT_NE(page("CITATION.cff").find("\nversion: " + version + "\n"), std::string::npos);
  EXPECT_EQ(page("debian/changelog").rfind("gait-statistics (" + version + "-", 0), 0U);
  const std::string readme = page("README.md");
  EXPECT_NE(readme.find("gait_statistics, version " + version + " ["), std::string::npos);
  const std::string major = version.substr(0, version.find('.'));
  EXPECT_NE(readme.find("find_package(gait_statistics " + major + " "), std::string::npos);
  EXPECT_NE(readme.find("`libgait-statistics" + major + "`"), std::string::npos);
}

TEST(Definitions, HoldTheCatalogue) {
  const std::string table = output_of(quoted(GAIT_PRINT_CATALOGUE) + " table");
  EXPECT_NE(page("docs/definitions.md").find("-->\n" + table + "<!--"), std::string::npos)
      << "run scripts/update-docs";
}

TEST(Definitions, ShowTheStatisticsOfTenStrides) {
  EXPECT_EQ(block_after(page("docs/definitions.md"), "ten_strides.cpp", "text"),
            output_of_example("ten_strides"));
}

TEST(Definitions, ShowNumpysQuartilesOfTenStrides) {
  const std::string python = GAIT_PYTHON_WITH_NUMPY;
  if (python.empty()) {
    GTEST_SKIP() << "no Python with numpy (package python3-numpy)";
  }
  const std::string script = quoted(GAIT_PROJECT_FOLDER "/tests/docs/ten_strides.py");
  EXPECT_EQ(block_after(page("docs/definitions.md"), "numpy 1.24", "text"),
            output_of(python + " " + script));
}

TEST(Exclusions, ShowTheAccountingOfTheExample) {
  EXPECT_EQ(block_after(page("docs/exclusions.md"), "exclusions.cpp", "text"),
            output_of_example("exclusions"));
}

TEST(QualityFlags, ShowTheirExampleAndItsOutput) {
  const std::string whole = page("docs/quality-flags.md");
  EXPECT_NE(page("examples/quality_flags.cpp").find(block_after(whole, "quality_flags.cpp", "cpp")),
            std::string::npos);
  EXPECT_EQ(block_after(whole, "quality_flags.cpp", "text"), output_of_example("quality_flags"));
}

TEST(AddingAParameter, ShowsTheWholeExampleAndItsOutput) {
  const std::string whole = page("docs/adding-a-parameter.md");
  EXPECT_NE(whole.find(block("cpp", page("examples/own_parameter.cpp"))), std::string::npos);
  EXPECT_EQ(block_after(whole, "It prints", "text"), output_of_example("own_parameter"));
}

TEST(AddingAParameter, ShowsTheListOfASideAndTheExamplesOutput) {
  const std::string whole = page("docs/adding-a-parameter.md");
  const std::string shown = block_after(whole, "own_parameter_two_feet.cpp", "cpp");
  EXPECT_NE(page("examples/own_parameter_two_feet.cpp").find(shown), std::string::npos);
  EXPECT_EQ(block_after(whole, "own_parameter_two_feet.cpp", "text"),
            output_of_example("own_parameter_two_feet"));
}

TEST(Pages, LinkOnlyToWhatIsThere) {
  std::vector<std::filesystem::path> pages;
  for (const char* folder :
       {"", "docs", "fuzz", "examples/walks/one_foot_short", "examples/walks/two_feet_turn"}) {
    for (const auto& entry : std::filesystem::directory_iterator(project() / folder)) {
      if (entry.path().extension() == ".md") {
        pages.push_back(entry.path());
      }
    }
  }
  const std::regex link(R"(\]\(([^)#]+)[^)]*\))");
  for (const auto& from : pages) {
    const std::string text = text_of(from);
    for (std::sregex_iterator at(text.begin(), text.end(), link), end; at != end; ++at) {
      const std::string target = (*at)[1];
      if (target.rfind("http", 0) != 0) {
        EXPECT_TRUE(std::filesystem::exists(from.parent_path() / target))
            << from << " links to " << target;
      }
    }
  }
}

}  // namespace
