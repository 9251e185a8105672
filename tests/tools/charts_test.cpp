// What is drawn is read back from the SVG: places, ticks, points and boxes.

#include "bins.h"
#include "lollipops.h"
#include "scale.h"
#include "strip.h"
#include "svg.h"
#include "time_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <regex>
#include <string>
#include <vector>

namespace {

using namespace gait_charts;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

std::vector<std::smatch::value_type::string_type> all_matches(const std::string& text,
                                                              const std::string& pattern) {
  std::vector<std::string> found;
  const std::regex regex(pattern);
  for (std::sregex_iterator at(text.begin(), text.end(), regex), end; at != end; ++at) {
    found.push_back(at->str(1));
  }
  return found;
}

/// The data of the paths of a class.
std::string path_of(const std::string& svg, const std::string& css_class) {
  const auto found = all_matches(svg, "<path class=\"" + css_class + "\" d=\"([^\"]*)\"");
  return found.empty() ? "" : found.front();
}

struct place {
  double x;  ///< as a share of the width
  double y;  ///< (px)
};

/// Where the strokes of a path begin: of a path of points, the points.
std::vector<place> points_of(const std::string& svg, const std::string& css_class) {
  std::vector<place> points;
  const std::string data = path_of(svg, css_class);
  const std::regex regex("M(-?[0-9.]+) (-?[0-9.]+)");
  for (std::sregex_iterator at(data.begin(), data.end(), regex), end; at != end; ++at) {
    points.push_back({std::stod(at->str(1)) / 1000.0, std::stod(at->str(2))});
  }
  return points;
}

std::vector<std::string> labels_of(const std::vector<tick>& ticks) {
  std::vector<std::string> labels;
  labels.reserve(ticks.size());
  for (const auto& tick : ticks) {
    labels.push_back(tick.label);
  }
  return labels;
}

/// The number at a height of a strip, by the first two labels of its scale.
double number_at(const std::string& svg, double height) {
  const auto heights = all_matches(svg, "<text class=\"y\" x=\"-6\" y=\"([^\"]*)\"");
  const auto numbers = all_matches(svg, "<text class=\"y\" x=\"-6\" y=\"[^\"]*\">([^<]*)<");
  const double first = std::stod(heights.at(0));
  const double second = std::stod(heights.at(1));
  const double slope = (std::stod(numbers.at(1)) - std::stod(numbers.at(0))) / (second - first);
  return std::stod(numbers.at(0)) + (height - first) * slope;
}

// --- Scales

TEST(Scale, MapsTheEndsOfTheDataToThoseOfTheDrawing) {
  const linear_scale heights({10.0, 20.0}, {50.0, 0.0});
  EXPECT_EQ(heights(10.0), 50.0);
  EXPECT_EQ(heights(20.0), 0.0);
  EXPECT_EQ(heights(12.5), 37.5);
  EXPECT_EQ(heights(30.0), -50.0);
}

TEST(Scale, PutsDataWithoutWidthInTheMiddle) {
  EXPECT_EQ(linear_scale({3.0, 3.0}, {0.0, 1.0})(3.0), 0.5);
}

TEST(Scale, DrawsEqualFactorsEquallyFarApart) {
  const log_scale scale({0.8, 1.25}, {0.0, 1.0});
  EXPECT_NEAR(scale(1.0), 0.5, 1e-12);
  EXPECT_NEAR(scale(1.1) - scale(1.0), scale(1.0) - scale(1.0 / 1.1), 1e-12);
}

TEST(Ticks, AreRoundNumbers) {
  EXPECT_THAT(labels_of(ticks({0.0, 10.0}, 2)), ElementsAre("0", "10"));
  EXPECT_THAT(labels_of(ticks({0.0, 10.0}, 3)), ElementsAre("0", "5", "10"));
  EXPECT_THAT(labels_of(ticks({1.14, 1.33}, 2)), ElementsAre("1.2", "1.3"));
  EXPECT_THAT(labels_of(ticks({-0.03, 0.03}, 2)), ElementsAre("-0.025", "0.000", "0.025"));
  EXPECT_THAT(labels_of(ticks({2.0, 49.2}, 3)), ElementsAre("10", "20", "30", "40"));
  EXPECT_THAT(labels_of(ticks({0.0, 3e7}, 2)), ElementsAre("0", "2.5e+07"));
}

TEST(Ticks, AreNeitherTooFewNorTooMany) {
  for (double from = -3.0; from < 3.0; from += 0.37) {
    for (double width = 1e-4; width < 1e5; width *= 1.13) {
      for (const std::size_t least : {std::size_t{2}, std::size_t{3}, std::size_t{5}}) {
        const auto found = ticks({from, from + width}, least);
        EXPECT_GE(found.size(), least) << from << " " << width;
        EXPECT_LE(found.size(), 2 * least + 1) << from << " " << width;
        EXPECT_GE(found.front().value, from - 1e-9 * width);
        EXPECT_LE(found.back().value, from + width * (1.0 + 1e-9));
      }
    }
  }
}

TEST(Ticks, AreNoneWithoutAWidth) {
  EXPECT_THAT(ticks({1.0, 1.0}, 2), IsEmpty());
  EXPECT_THAT(ticks({nan, 1.0}, 2), IsEmpty());
  EXPECT_THAT(ticks({-1e308, 1e308}, 2), IsEmpty());
}

// --- Writing

TEST(Svg, WritesTwoDecimalsAndNoMore) {
  EXPECT_EQ(coordinate(1.0), "1");
  EXPECT_EQ(coordinate(-1.0 / 3.0), "-0.33");
  EXPECT_EQ(coordinate(-0.001), "0");
  EXPECT_EQ(coordinate(1e300), "1e+06");
  EXPECT_EQ(percent(0.12345), "12.35%");
}

TEST(Svg, EscapesEveryText) {
  const std::string hostile = "</svg><script>\"&'";
  const std::string harmless = "&lt;/svg&gt;&lt;script&gt;&quot;&amp;'";
  strip strip;
  strip.label = hostile;
  EXPECT_THAT(draw(strip), HasSubstr("aria-label=\"" + harmless + "\""));
  time_line line;
  line.x = {0.0, 1.0};
  line.rows = {{hostile, "row", {{{0.0, 1.0}, filling::full, false, hostile}}}};
  line.notes = {{{0.0, 1.0}, hostile}};
  lollipops ratios;
  ratios.rows = {{hostile, 1.0, hostile, true}};
  for (const auto& svg : {draw(line), draw(ratios)}) {
    EXPECT_THAT(svg, HasSubstr(harmless));
    EXPECT_THAT(svg, Not(HasSubstr("<script")));
  }
}

TEST(Svg, WritesTheUnitBesideTheLastLabel) {
  const std::string axis = axis_below({0.0, 10.0}, "s");
  EXPECT_THAT(all_matches(axis, ">([^<]+)</text>"), ElementsAre("0", "5", "10 s"));
  EXPECT_THAT(all_matches(axis, "x=\"([^\"]+)\""), ElementsAre("0%", "50%", "100%"));
}

// --- Strips

strip strip_of(std::vector<dot> dots) {
  strip strip;
  strip.x = {0.0, 10.0};
  strip.y = {0.0, 100.0};
  strip.dots = std::move(dots);
  return strip;
}

TEST(Strip, PutsEveryPointWhereItsNumbersAre) {
  const std::string svg = draw(strip_of({{{2.5, 40.0}, true}, {{5.0, 73.0}, true}}));
  const auto points = points_of(svg, "dot");
  ASSERT_EQ(points.size(), 2U);
  EXPECT_NEAR(points[0].x, 0.25, 1e-5);
  EXPECT_NEAR(number_at(svg, points[0].y), 40.0, 0.02);
  EXPECT_NEAR(points[1].x, 0.5, 1e-5);
  EXPECT_NEAR(number_at(svg, points[1].y), 73.0, 0.02);
  EXPECT_LT(points[1].y, points[0].y) << "more is higher";
}

TEST(Strip, DrawsWhatDoesNotCountHollow) {
  const std::string svg = draw(strip_of({{{2.5, 40.0}, false}}));
  EXPECT_EQ(points_of(svg, "ring").size(), 1U);
  EXPECT_EQ(points_of(svg, "hole").size(), 1U);
  EXPECT_EQ(path_of(svg, "dot"), "");
}

TEST(Strip, PointsToWhatIsBeyondItsScale) {
  const std::string svg = draw(strip_of({{{1.0, 100.5}, true},
                                         {{2.0, -0.5}, false},
                                         {{3.0, HUGE_VAL}, true},
                                         {{4.0, 100.0}, true},
                                         {{5.0, 0.0}, true}}));
  EXPECT_THAT(all_matches(svg, "href=\"#up\" x=\"([^\"]+)\""), ElementsAre("10%", "30%"));
  EXPECT_THAT(all_matches(svg, "href=\"#down\" x=\"([^\"]+)\""), ElementsAre("20%"));
  EXPECT_EQ(points_of(svg, "dot").size(), 2U);
}

TEST(Strip, LeavesOutWhatIsNotANumber) {
  const std::string svg = draw(strip_of({{{1.0, nan}, true}}));
  EXPECT_THAT(svg, Not(HasSubstr("nan")));
  EXPECT_THAT(svg, Not(HasSubstr("<use")));
  EXPECT_EQ(path_of(svg, "dot"), "");
}

TEST(Strip, MarksWhereAPointIsMissing) {
  strip strip = strip_of({});
  strip.gaps = {7.0};
  const auto gaps = points_of(draw(strip), "gap");
  ASSERT_EQ(gaps.size(), 1U);
  EXPECT_NEAR(gaps[0].x, 0.7, 1e-5);
  EXPECT_EQ(gaps[0].y, strip.height);
}

TEST(Strip, DrawsBandAndLinesAtTheirNumbers) {
  strip strip = strip_of({});
  strip.band = span{20.0, 60.0};
  strip.line = 50.0;
  strip.other_line = 55.0;
  const std::string svg = draw(strip);
  const auto corner = points_of(svg, "band");
  ASSERT_EQ(corner.size(), 1U);
  EXPECT_NEAR(number_at(svg, corner[0].y), 20.0, 0.02);
  EXPECT_NEAR(number_at(svg, std::stod(all_matches(path_of(svg, "band"), "V([0-9.]+)")[0])), 60.0,
              0.02);
  EXPECT_NEAR(number_at(svg, points_of(svg, "line")[0].y), 50.0, 0.02);
  EXPECT_NEAR(number_at(svg, points_of(svg, "other")[0].y), 55.0, 0.02);
}

TEST(Strip, DrawsNoLineBeyondItsScale) {
  strip strip = strip_of({});
  strip.other_line = 101.0;
  EXPECT_EQ(path_of(draw(strip), "other"), "");
}

TEST(Strip, DrawsStemsFromTheirFootToThePoints) {
  strip strip = strip_of({{{2.0, 70.0}, true}});
  strip.stems_from = 30.0;
  const std::string svg = draw(strip);
  const auto foot = points_of(svg, "stem");
  ASSERT_EQ(foot.size(), 1U);
  EXPECT_NEAR(number_at(svg, foot[0].y), 30.0, 0.02);
  EXPECT_NEAR(number_at(svg, std::stod(all_matches(path_of(svg, "stem"), "V([0-9.]+)")[0])), 70.0,
              0.02);
}

TEST(Strip, ShadesStretchesOverItsWholeHeight) {
  strip strip = strip_of({});
  strip.shaded = {{2.0, 4.0}};
  EXPECT_EQ(path_of(draw(strip), "shade"), "M200 0H400V50H200z");
}

TEST(Strip, ShowsPartsOfTheAxisWhereThereAreManyPoints) {
  strip strip = strip_of({});
  for (std::size_t i = 0; i <= most_dots; ++i) {
    strip.dots.push_back(
        {{10.0 * static_cast<double>(i) / most_dots, 40.0 + (i % 2 ? 20.0 : 0.0)}, true});
  }
  const std::string svg = draw(strip);
  EXPECT_THAT(svg, HasSubstr("class=\"plot strip binned\""));
  EXPECT_EQ(points_of(svg, "range").size(), parts_of_binned_strip);
  EXPECT_EQ(points_of(svg, "dot").size(), parts_of_binned_strip);
  EXPECT_NEAR(number_at(svg, points_of(svg, "range")[7].y), 40.0, 0.2);
  EXPECT_NEAR(number_at(svg, points_of(svg, "dot")[7].y), 50.0, 0.2);
}

TEST(Bins, HoldTheLowestTheMiddleAndTheHighest) {
  const auto bins = binned({{0.5, 3.0}, {0.1, 1.0}, {0.9, 7.0}, {3.5, 2.0}, {3.6, 4.0}, {3.7, nan}},
                           {0.0, 4.0}, 4);
  ASSERT_EQ(bins.size(), 2U);
  EXPECT_EQ(bins[0].x, 0.5);
  EXPECT_EQ(bins[0].lowest, 1.0);
  EXPECT_EQ(bins[0].median, 3.0);
  EXPECT_EQ(bins[0].highest, 7.0);
  EXPECT_EQ(bins[1].median, 3.0);
}

TEST(Bins, TakeThePointsAtBothEndsOfTheAxis) {
  const auto bins = binned({{0.0, 1.0}, {4.0, 2.0}}, {0.0, 4.0}, 4);
  ASSERT_EQ(bins.size(), 2U);
  EXPECT_EQ(bins[1].x, 3.5);
}

// --- Time line

time_line line_of(std::vector<box> boxes, std::vector<time_note> notes = {}) {
  time_line line;
  line.x = {0.0, 100.0};
  line.rows = {{"Right", "right", std::move(boxes)}};
  line.notes = std::move(notes);
  return line;
}

TEST(TimeLine, DrawsEveryBoxWhereItsTimeIs) {
  const std::string svg = draw(line_of(
      {{{10.0, 12.0}, filling::full, false, ""}, {{20.0, 25.0}, filling::hatched, false, "turn"}}));
  EXPECT_THAT(svg, HasSubstr(R"(<rect class="full" x="10%" y="16" width="2%" height="16"/>)"));
  EXPECT_THAT(svg, HasSubstr(R"(<rect class="hatched" x="20%" y="16" width="5%" height="16">)"
                             "<title>turn</title>"));
  EXPECT_EQ(all_matches(svg, "(#hatching)").size(), 1U);
}

TEST(TimeLine, MarksABoxBelowIt) {
  const std::string svg = draw(line_of({{{10.0, 12.0}, filling::full, true, ""}}));
  EXPECT_THAT(svg, HasSubstr(R"(<circle class="mark" cx="11%" cy="36")"));
}

TEST(TimeLine, MakesOneOfManyBoxesThatTouch) {
  std::vector<box> boxes;
  for (std::size_t i = 0; i <= most_boxes; ++i) {
    const double from = 100.0 * static_cast<double>(i) / (most_boxes + 1);
    const auto look = i == 500 ? filling::hatched : filling::full;
    boxes.push_back({{from, from + 100.0 / (most_boxes + 1)}, look, false, ""});
  }
  const std::string svg = draw(line_of(boxes));
  EXPECT_EQ(all_matches(svg, "<rect class=\"(full)\"").size(), 2U);
  EXPECT_EQ(all_matches(svg, "<rect class=\"(hatched)\"").size(), 1U);
}

TEST(TimeLine, LeavesOutNotesThatHaveNoRoom) {
  const std::string svg = draw(line_of({}, {{{0.0, 20.0}, "first"},
                                            {{12.0, 14.0}, "crowded"},
                                            {{24.0, 26.0}, "later"},
                                            {{80.0, 82.0}, "last"}}));
  EXPECT_THAT(all_matches(svg, "<text class=\"note[^>]*>([^<]*)<"),
              ElementsAre("first", "later", "last"));
  EXPECT_THAT(all_matches(svg, "<text class=\"note wide[^>]*>([^<]*)<"), ElementsAre("later"));
}

// --- Lollipops

TEST(Lollipops, DrawRatiosOnALogarithmicAxis) {
  lollipops ratios;
  ratios.rows = {{"a", 1.0, "1.000", true}, {"b", 1.1, "1.100", true}, {"c", 0.9, "0.900", true}};
  const std::string svg = draw(ratios);
  const auto points = points_of(svg, "dot");
  ASSERT_EQ(points.size(), 3U);
  EXPECT_NEAR(points[0].x, 0.5, 1e-5);
  EXPECT_NEAR(points[1].x, 0.5 + std::log(1.1) / std::log(1.25 / 0.8), 1e-5);
  EXPECT_NEAR(points[2].x, 0.5 + std::log(0.9) / std::log(1.25 / 0.8), 1e-5);
  EXPECT_LT(points[0].y, points[1].y);
}

TEST(Lollipops, PointToRatiosBeyondTheAxis) {
  lollipops ratios;
  ratios.rows = {{"a", 3.0, "3.000", true}, {"b", 0.1, "0.100", true}};
  const std::string svg = draw(ratios);
  EXPECT_THAT(svg, HasSubstr(R"(href="#right" x="100%")"));
  EXPECT_THAT(svg, HasSubstr(R"(href="#left" x="0%")"));
}

TEST(Lollipops, OnlyWriteWhatSaysNothing) {
  lollipops ratios;
  ratios.rows = {{"a", 3.0, "*", false}, {"b", -1.0, "-1.000", true}};
  const std::string svg = draw(ratios);
  EXPECT_THAT(svg, Not(HasSubstr("<use")));
  EXPECT_EQ(path_of(svg, "dot"), "");
  EXPECT_THAT(svg, HasSubstr(">*<"));
}

}  // namespace
