// The HTML report as a document: that its templates are filled, that no text breaks out of its
// place, and that it shows the figures of the walk.

#include "html_report.h"
#include "json_output.h"
#include "page_data.h"
#include "page_figures.h"
#include "page_files.h"
#include "panels.h"
#include "walk_model.h"
#include "walk_statistics.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <kainjow/mustache.hpp>
#include <nlohmann/json.hpp>

#include <cstddef>
#include <iterator>
#include <optional>
#include <regex>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using gait_report::page_data;
using gait_report::walk_statistics;
using gait_walk::analysed_cycles;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

walk_statistics statistics_of(gait_walk::walk walk,
                              analysed_cycles asked_for = analysed_cycles::feet) {
  walk_statistics statistics = gait_report::prepare_walk(std::move(walk), asked_for, 0.0F);
  gait_report::compute_statistics(statistics);
  return statistics;
}

gait_walk::walk modelled(int strides = 40) {
  gait_walk::walk_settings settings;
  settings.strides = strides;
  settings.turns = strides > 20 ? 1 : 0;
  settings.lost = strides > 20 ? 2 : 0;
  return gait_walk::make_walk(settings);
}

std::string page_of(const walk_statistics& walk) {
  return gait_report::html_page({gait_report::html_walk_of(walk, 0, true)});
}

// --- Templates

/// A tag of a template, such as {{name}} or {{#section}}.
struct tag {
  char kind;  ///< '#', '^', '/', or ' ' for a value
  std::string name;
};

std::vector<tag> tags_of(std::string_view source) {
  const std::string text(source);
  const std::regex regex(R"(\{\{\{?([#^/]?)([\w.]+)\}?\}\})");
  std::vector<tag> tags;
  for (std::sregex_iterator at(text.begin(), text.end(), regex), end; at != end; ++at) {
    tags.push_back({at->length(1) > 0 ? at->str(1).front() : ' ', at->str(2)});
  }
  return tags;
}

/// Traverses a template with its data as the engine does, and notes tags without a value. The
/// engine would render them as nothing.
class template_walk {
public:
  explicit template_walk(std::string_view source) : tags_(tags_of(source)) {}

  void fill(const page_data& data) { fill(0, tags_.size(), {&data}); }

  const std::set<std::string>& without_value() const { return without_value_; }
  /// Tags that no data has reached.
  std::set<std::string> never_filled() const {
    std::set<std::string> names;
    for (std::size_t i = 0; i < tags_.size(); ++i) {
      if (tags_[i].kind != '/' && reached_.count(i) == 0) {
        names.insert(tags_[i].name);
      }
    }
    return names;
  }

private:
  using contexts = std::vector<const page_data*>;

  static const page_data* find(const contexts& all, const std::string& name) {
    for (auto at = all.rbegin(); at != all.rend(); ++at) {
      if (const page_data* value = (*at)->get(name)) {
        return value;
      }
    }
    return name == "." ? all.back() : nullptr;
  }

  std::size_t end_of_section(std::size_t begin) const {
    std::size_t depth = 0;
    for (std::size_t i = begin;; ++i) {
      depth += tags_.at(i).kind == '#' || tags_[i].kind == '^' ? 1 : 0;
      depth -= tags_[i].kind == '/' ? 1 : 0;
      if (depth == 0) {
        return i;
      }
    }
  }

  void fill(std::size_t begin, std::size_t end, const contexts& all) {
    for (std::size_t i = begin; i < end; ++i) {
      const page_data* value = find(all, tags_[i].name);
      reached_.insert(i);
      if (value == nullptr) {
        without_value_.insert(tags_[i].name);
      }
      if (tags_[i].kind == ' ') {
        continue;
      }
      const std::size_t end_of_this = end_of_section(i);
      if (value != nullptr) {
        fill_section(tags_[i].kind, *value, i + 1, end_of_this, all);
      }
      i = end_of_this;
    }
  }

  void fill_section(char kind, const page_data& value, std::size_t begin, std::size_t end,
                    contexts all) {
    const bool is_nothing = value.is_false() || value.is_empty_list();
    if ((kind == '^') != is_nothing) {
      return;
    }
    if (kind == '^' || !value.is_list()) {
      fill(begin, end, all);
      return;
    }
    for (const page_data& item : value.list_value()) {
      all.push_back(&item);
      fill(begin, end, all);
      all.pop_back();
    }
  }

  std::vector<tag> tags_;
  std::set<std::string> without_value_;
  std::set<std::size_t> reached_;
};

/// Walks that together show everything that a page may show.
std::vector<walk_statistics> telling_walks() {
  gait_walk::walk remarkable = modelled();
  remarkable.about = {{"date", "2024-05-31"}};
  std::next(remarkable.right->cycles.begin(), 5)->swing = 150.0;
  for (auto* foot : {&*remarkable.right, &*remarkable.left}) {
    for (auto& cycle : foot->cycles) {
      cycle.swidth = gait_missing;
    }
  }
  remarkable.exclusions.push_back(remarkable.exclusions.front());
  gait_walk::walk unpaired = modelled(5);
  for (auto& cycle : unpaired.right->cycles) {
    cycle = {cycle.first_sample, cycle.last_sample};
  }
  int index = 0;
  for (auto& cycle : unpaired.right->cycles) {
    cycle.index = index++;
  }
  std::vector<walk_statistics> walks;
  walks.push_back(statistics_of(std::move(remarkable)));
  walks.push_back(statistics_of(modelled(), analysed_cycles::left));
  walks.push_back(statistics_of(std::move(unpaired)));
  walks.push_back(statistics_of(modelled(1100)));
  return walks;
}

TEST(Templates, HaveAValueForEveryTag) {
  template_walk walk_template(gait_report::page_files::walk);
  template_walk index_template(gait_report::page_files::index);
  template_walk rows_template(gait_report::page_files::index_rows);
  for (const walk_statistics& walk : telling_walks()) {
    const gait_report::shown_walk shown(walk);
    walk_template.fill(gait_report::data_of_walk(shown, 0, true));
    rows_template.fill(gait_report::data_of_index_rows(shown, "walk.html"));
  }
  index_template.fill(gait_report::data_of_index(4, "rows"));
  template_walk page_template(gait_report::page_files::page);
  page_template.fill(gait_report::data_of_page({{0, "a", "b"}, {1, "c", "d"}}, "walks", "{}"));
  for (const auto* source : {&walk_template, &rows_template, &index_template, &page_template}) {
    EXPECT_THAT(source->without_value(), IsEmpty());
    EXPECT_THAT(source->never_filled(), IsEmpty());
  }
}

TEST(Panels, AreThereForEveryParameterButTheMomentOfAStrike) {
  std::multiset<std::string_view> drawn;
  for (const auto& panel : gait_report::panels) {
    drawn.insert(panel.key);
  }
  for (const auto& parameter : gait_report::list_parameters()) {
    const std::size_t panels = parameter.key == "HS" ? 0 : 1;
    EXPECT_EQ(drawn.count(parameter.key), panels) << parameter.key;
  }
}

TEST(Panels, OfOneHeightShowEquallyManyUnits) {
  const walk_statistics walk = statistics_of(modelled());
  const std::string page = page_of(walk);
  // The heights of two labels of a scale, and their numbers: pixels for a unit.
  const auto pixels_of_a_unit = [&](const std::string& description) {
    const std::regex regex("<h4 class=\"small\">" + description +
                           R"re([^]*?<text class="y" x="-6" y="([\d.]+)">([\d.-]+)<[^]*?)re"
                           R"re(<text class="y" x="-6" y="([\d.]+)">([\d.-]+)<)re");
    std::smatch match;
    EXPECT_TRUE(std::regex_search(page, match, regex)) << description;
    return (std::stod(match[1]) - std::stod(match[3])) /
           (std::stod(match[4]) - std::stod(match[2]));
  };
  EXPECT_NEAR(pixels_of_a_unit("Swing"), pixels_of_a_unit("Stance"), 0.02);
  EXPECT_NEAR(pixels_of_a_unit("Loading"), pixels_of_a_unit("Pushing"), 0.02);
}

// --- The document

/// The text of the element that holds the JSON.
std::string held_json(const std::string& page) {
  const std::string begin = R"(<script type="application/json" id="gait-statistics">)";
  const std::size_t at = page.find(begin) + begin.size();
  return page.substr(at, page.find("</script>", at) - at);
}

TEST(HtmlPage, HoldsTheJsonDocumentOfItsWalks) {
  const walk_statistics walk = statistics_of(modelled());
  const auto held = nlohmann::ordered_json::parse(held_json(page_of(walk)));
  EXPECT_EQ(held, nlohmann::ordered_json::parse(
                      gait_report::json_document({gait_report::json_walk(walk)})));
}

TEST(HtmlPage, LetsNoTextOutOfItsPlace) {
  const std::string hostile = "</script><script>alert(1)</script><b>\"'&{{name}}";
  gait_walk::walk walk = modelled();
  walk.name = hostile;
  walk.about = {{hostile, hostile}};
  for (auto& exclusion : walk.exclusions) {
    exclusion.reason = hostile;
  }
  const std::string page = page_of(statistics_of(std::move(walk)));
  EXPECT_THAT(page, Not(HasSubstr("<script>alert")));
  EXPECT_THAT(page, Not(HasSubstr("<b>\"")));
  EXPECT_THAT(held_json(page), Not(HasSubstr("<")));
  EXPECT_THAT(held_json(page), HasSubstr(R"(\u003c/script>\u003cscript>alert(1))"));
  EXPECT_THAT(page, HasSubstr("{{name}}"));
}

TEST(HtmlPage, ShowsTextThatIsNotUtf8) {
  gait_walk::walk walk = modelled();
  walk.name = "walk \xff\x01\xef\xbf\xbe";
  const std::string page = page_of(statistics_of(std::move(walk)));
  EXPECT_THAT(page, HasSubstr("Walk walk \xef\xbf\xbd?\xef\xbf\xbd<"));
  EXPECT_THAT(held_json(page), HasSubstr(R"(\ufffe)"));
  EXPECT_THAT(page, Not(HasSubstr("\xef\xbf\xbe")));
}

TEST(TimeLine, NamesAReasonOnceOverStridesThatFollowOneAnother) {
  gait_walk::walk walk = modelled(20);
  // The left stride between the two right ones is left out by itself.
  const auto left_alone = static_cast<int>(walk.feet.size());
  walk.feet.push_back({1.0, 25.0, std::nullopt, std::exchange(walk.feet[8].left_index, {})});
  walk.exclusions = {{analysed_cycles::feet, {}, 8, "pain"},
                     {analysed_cycles::feet, {}, 9, "pain"},
                     {analysed_cycles::feet, {}, left_alone, "cough"}};
  const walk_statistics statistics = statistics_of(std::move(walk));
  const std::string drawn = gait_report::draw_time_line(gait_report::shown_walk(statistics));
  const std::size_t first = drawn.find(">pain</text>");
  EXPECT_NE(first, std::string::npos);
  EXPECT_EQ(drawn.find(">pain</text>", first + 1), std::string::npos);
}

TEST(HtmlPage, SaysHowFewValuesATileRestsOn) {
  EXPECT_THAT(page_of(statistics_of(modelled(11))).find(", n 9</span>"), Not(std::string::npos));
  EXPECT_EQ(page_of(statistics_of(modelled(12))).find(", n 10</span>"), std::string::npos);
}

TEST(HtmlPage, ComparesNoSidesOfOneFoot) {
  const std::string page = page_of(statistics_of(modelled(), analysed_cycles::right));
  EXPECT_THAT(page, Not(HasSubstr("Right and left")));
  EXPECT_THAT(page, Not(HasSubstr("median of the other side")));
}

TEST(HtmlPage, LeavesTheTableOfManyStridesToItsScript) {
  EXPECT_THAT(page_of(statistics_of(modelled())), Not(HasSubstr("<p class=\"without-script\">")));
  EXPECT_THAT(page_of(statistics_of(modelled(1100))), HasSubstr("<p class=\"without-script\">"));
}

TEST(HtmlPage, OfSeveralWalksListsEachByItsNumber) {
  const walk_statistics walk = statistics_of(modelled(5));
  const std::string page = gait_report::html_page(
      {gait_report::html_walk_of(walk, 0, false), gait_report::html_walk_of(walk, 7, false)});
  for (const char* id : {"walk-1", "walk-8"}) {
    EXPECT_THAT(page, HasSubstr("<li><a href=\"#" + std::string(id) + "\">"));
    EXPECT_THAT(page, HasSubstr("<article class=\"walk\" id=\"" + std::string(id) + "\""));
    // The title of the page is the only heading of the first level.
    EXPECT_THAT(page, HasSubstr("<h2 class=\"largest\" id=\"" + std::string(id) + "-name\">"));
  }
}

TEST(HtmlFolder, GivesEveryWalkAFileOfItsOwn) {
  EXPECT_THAT(gait_report::page_names({"walk", "Walk", "a/b c", "..", "index", ""}),
              testing::ElementsAre("walk.html", "Walk_2.html", "a_b_c.html", "_...html",
                                   "index_2.html", "_.html"));
}

TEST(HtmlFolder, LinksToEveryWalkInItsIndex) {
  const walk_statistics walk = statistics_of(modelled(5));
  const std::string index =
      gait_report::html_index(2, gait_report::html_index_rows(walk, "a.html") +
                                     gait_report::html_index_rows(walk, "b.html"));
  EXPECT_THAT(index, HasSubstr("Gait statistics of 2 walks"));
  EXPECT_THAT(index, HasSubstr("href=\"a.html\""));
  EXPECT_THAT(index, HasSubstr("href=\"b.html\""));
}

}  // namespace
