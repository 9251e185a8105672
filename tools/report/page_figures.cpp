#include "page_figures.h"

#include "decimals.h"
#include "lollipops.h"
#include "names.h"
#include "number.h"
#include "page_text.h"
#include "strip.h"
#include "svg.h"
#include "time_line.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace gait_report {
namespace {

using gait_charts::span;
using gait_charts::strip;

span time_of(const walk_strides& strides) {
  span time = {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};
  for (const auto& side : strides.sides) {
    for (const auto& stride : side.strides) {
      time.from = std::min(time.from, stride.start);
      time.to = std::max(time.to, stride.end);
    }
  }
  return time.from <= time.to ? time : span{};
}

double middle(const walk_stride& stride) { return 0.5 * (stride.start + stride.end); }

/// A value of a strip: of a stride, or of a two-feet cycle, which is shown where its right stride
/// is, or else its left one.
struct placed_value {
  const walk_stride* stride;
  stride_status status;
  std::optional<double> value;
};

std::vector<placed_value> values_of_side(const shown_walk& shown, std::size_t side,
                                         std::size_t parameter) {
  const auto& strides = shown.strides.sides[side].strides;
  std::vector<placed_value> values;
  values.reserve(strides.size());
  for (std::size_t i = 0; i < strides.size(); ++i) {
    values.push_back({&strides[i], strides[i].status, shown.values[side][i][parameter]});
  }
  return values;
}

const walk_stride* stride_of(const walk_strides& strides, const two_feet_cycle& cycle) {
  if (cycle.right) {
    return &strides.sides.front().strides[static_cast<std::size_t>(*cycle.right)];
  }
  return cycle.left ? &strides.sides.back().strides[static_cast<std::size_t>(*cycle.left)]
                    : nullptr;
}

template <class ValueOf>
std::vector<placed_value> values_of_cycles(const walk_strides& strides, ValueOf value_of) {
  std::vector<placed_value> values;
  values.reserve(strides.cycles.size());
  for (const auto& cycle : strides.cycles) {
    if (const walk_stride* stride = stride_of(strides, cycle)) {
      values.push_back({stride, cycle.status, value_of(cycle)});
    }
  }
  return values;
}

/// Puts values into a strip: dots, ticks where one that counts is missing, and stretches of time
/// that do not count.
void place(strip& strip, const std::vector<placed_value>& values) {
  for (const auto& [stride, status, value] : values) {
    const bool counts = status == stride_status::included;
    if (value) {
      strip.dots.push_back({{middle(*stride), shown_value(*value)}, counts});
    } else if (counts) {
      strip.gaps.push_back(middle(*stride));
    }
    if (counts) {
      continue;
    }
    auto& shaded = strip.shaded;
    if (!shaded.empty() && stride->start <= shaded.back().to) {
      shaded.back().to = std::max(shaded.back().to, stride->end);
    } else {
      shaded.push_back({stride->start, stride->end});
    }
  }
}

std::size_t place_of(const shown_walk& shown, const computed_parameter& parameter) {
  return static_cast<std::size_t>(&parameter - shown.parameters.data());
}

std::string label_of(const computed_parameter& parameter, const side_of_parameter& side,
                     const std::string& whose, const parameter_measures& measures) {
  const int decimals = parameter.row.decimals;
  std::string label = parameter.row.description + ", " + whose + ": ";
  if (!side.statistics.median) {
    return label + "no value in the statistics";
  }
  label += counted(side.statistics.n, "value") + " in the statistics, median " +
           rounded(*side.statistics.median, decimals);
  if (measures.q1 && measures.q3) {
    label +=
        ", quartiles " + rounded(*measures.q1, decimals) + " to " + rounded(*measures.q3, decimals);
  }
  return label + " " + parameter.row.unit;
}

/// The strip of one side; `other` is the other one's median.
std::string draw_side(const shown_walk& shown, const computed_parameter& parameter,
                      std::size_t side, const std::vector<placed_value>& values,
                      const std::string& whose, span scale, std::optional<double> other) {
  const auto& of_side = parameter.sides[side];
  const auto measures = shown.measures.at(of_side.key);
  strip strip;
  strip.label = label_of(parameter, of_side, whose, measures);
  strip.x = shown.time;
  strip.y = scale;
  strip.line = of_side.statistics.median;
  strip.other_line = other;
  if (measures.q1 && measures.q3) {
    strip.band = span{*measures.q1, *measures.q3};
  }
  place(strip, values);
  return draw(strip);
}

constexpr double space_beside_values = 0.08;  // of the scale's width
constexpr double shown_quartile_ranges = 3.0;

/// What a side's values want of the scale: all from smallest to largest, unless they are far beyond
/// the quartiles.
void widen_by(span& scale, const computed_statistics& statistics,
              const parameter_measures& measures) {
  if (!statistics.min || !std::isfinite(*statistics.min) || !std::isfinite(*statistics.max)) {
    return;
  }
  span wanted = {shown_value(*statistics.min), shown_value(*statistics.max)};
  if (measures.q1 && measures.q3 && *measures.q3 > *measures.q1) {
    const double far = shown_quartile_ranges * (*measures.q3 - *measures.q1);
    wanted.from = std::max(wanted.from, *measures.q1 - far);
    wanted.to = std::min(wanted.to, *measures.q3 + far);
  }
  scale.from = std::min(scale.from, wanted.from);
  scale.to = std::max(scale.to, wanted.to);
}

gait_charts::filling look_of(const walk_strides& strides, const walk_stride& stride) {
  using gait_charts::filling;
  if (const auto* exclusion = left_out_by(strides, stride)) {
    return exclusion->list == gait_walk::exclusion_list::excluded_1 ? filling::hatched
                                                                    : filling::dashed;
  }
  return stride.status == stride_status::included ? filling::full : filling::empty;
}

std::string title_of(const walk_strides& strides, const side_strides& side,
                     const walk_stride& stride) {
  if (stride.status == stride_status::included) {
    return "";
  }
  const auto* exclusion = left_out_by(strides, stride);
  return std::string(name_of(side.side.foot)) + " stride " + std::to_string(stride.index) + ", " +
         std::string(gait_walk::words_of(stride.status).in_words) +
         (exclusion != nullptr ? ": " + shown_reason(*exclusion) : "");
}

bool lacks_partner(const shown_walk& shown, const walk_stride& stride) {
  return shown.walk.both_feet() && !stride.partner;
}

std::string shortened(const std::string& reason) {
  constexpr std::size_t longest = 18;
  std::size_t end = std::min(reason.size(), longest);
  while (end < reason.size() && (static_cast<unsigned char>(reason[end]) & 0xC0U) == 0x80U) {
    --end;
  }
  return end < reason.size() ? reason.substr(0, end) + "…" : reason;
}

/// The reasons above the time line: each once over strides that follow one another.
std::vector<gait_charts::time_note> reasons_over_time(const shown_walk& shown) {
  std::vector<gait_charts::time_note> notes;
  for (const auto& side : shown.strides.sides) {
    const listed_exclusion* before = nullptr;
    for (const auto& stride : side.strides) {
      const auto* exclusion = left_out_by(shown.strides, stride);
      if (exclusion != nullptr) {
        const std::string text = shortened(shown_reason(*exclusion));
        const bool goes_on = before != nullptr && before->reason == exclusion->reason &&
                             stride.start <= notes.back().x.to;
        if (goes_on) {
          notes.back().x.to = stride.end;
        } else {
          notes.push_back({{stride.start, stride.end}, text});
        }
      }
      before = exclusion;
    }
  }
  std::stable_sort(notes.begin(), notes.end(),
                   [](const auto& a, const auto& b) { return a.x.from < b.x.from; });
  // The other foot's strides are left out for the same reason at the same time.
  std::vector<gait_charts::time_note> merged;
  for (const auto& note : notes) {
    if (!merged.empty() && merged.back().text == note.text && note.x.from <= merged.back().x.to) {
      merged.back().x.to = std::max(merged.back().x.to, note.x.to);
    } else {
      merged.push_back(note);
    }
  }
  return merged;
}

std::string sample(const std::string& content) {
  return R"(<svg class="sample" width="22" height="12" aria-hidden="true">)" + content + "</svg>";
}

std::string path_sample(const char* css_class, const char* data) {
  return std::string("<path class=\"") + css_class + "\" d=\"" + data + "\"/>";
}

/// The reasons that have one look in the time line.
std::string reasons_in_words(const shown_walk& shown, gait_charts::filling look) {
  std::vector<std::string> reasons;
  for (const auto& side : shown.strides.sides) {
    for (const auto& stride : side.strides) {
      if (look_of(shown.strides, stride) == look) {
        const std::string reason = shown_reason(*left_out_by(shown.strides, stride));
        if (std::find(reasons.begin(), reasons.end(), reason) == reasons.end()) {
          reasons.push_back(reason);
        }
      }
    }
  }
  constexpr std::size_t most = 6;
  std::string words;
  for (std::size_t i = 0; i < reasons.size() && i < most; ++i) {
    words += (i == 0 ? "" : ", ") + shortened(reasons[i]);
  }
  return reasons.size() > most ? words + " and " + std::to_string(reasons.size() - most) + " more"
                               : words;
}

std::vector<std::vector<std::vector<std::optional<double>>>> all_values(const walk_strides& strides,
                                                                        bool both_feet) {
  std::vector<std::vector<std::vector<std::optional<double>>>> values(strides.sides.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    for (const auto& stride : strides.sides[i].strides) {
      values[i].push_back(values_of(stride, both_feet));
    }
  }
  return values;
}

bool any_stride(const shown_walk& shown, const std::function<bool(const walk_stride&)>& is_so) {
  return std::any_of(shown.strides.sides.begin(), shown.strides.sides.end(), [&](const auto& side) {
    return std::any_of(side.strides.begin(), side.strides.end(), is_so);
  });
}

}  // namespace

shown_walk::shown_walk(const walk_statistics& statistics)
    : walk(statistics),
      strides(strides_of(statistics)),
      summary(summary_of(statistics, strides)),
      parameters(parameters_of(statistics)),
      values(all_values(strides, statistics.both_feet())),
      measures(measures_of(statistics)),
      swing_asymmetry(swing_asymmetry_in_percent(statistics)),
      time(time_of(strides)) {}

std::string shown_reason(const listed_exclusion& exclusion) {
  return exclusion.reason.empty() ? "no reason given" : page_text(exclusion.reason);
}

bool has_many_strides(const shown_walk& shown) {
  return std::any_of(shown.strides.sides.begin(), shown.strides.sides.end(),
                     [](const auto& side) { return side.strides.size() > gait_charts::most_dots; });
}

std::string draw_time_line(const shown_walk& shown) {
  gait_charts::time_line line;
  line.x = shown.time;
  line.label = "Strides over time. " + shown.summary.in_the_statistics + ". " +
               page_text(shown.summary.left_out) + ".";
  line.notes = reasons_over_time(shown);
  for (const auto& side : shown.strides.sides) {
    const std::string name(name_of(side.side.foot));
    gait_charts::time_row row{name == "right" ? "Right" : "Left", name, {}};
    for (const auto& stride : side.strides) {
      row.boxes.push_back({{stride.start, stride.end},
                           look_of(shown.strides, stride),
                           lacks_partner(shown, stride),
                           title_of(shown.strides, side, stride)});
    }
    line.rows.push_back(std::move(row));
  }
  return draw(line);
}

std::string draw_time_axis(const shown_walk& shown) {
  return gait_charts::axis_below(shown.time, "s");
}

span scale_of(const shown_walk& shown, const computed_parameter& parameter) {
  constexpr double nothing = std::numeric_limits<double>::infinity();
  span scale = {nothing, -nothing};
  for (const auto& side : parameter.sides) {
    widen_by(scale, side.statistics, shown.measures.at(side.key));
  }
  if (!(scale.from <= scale.to)) {
    return {};
  }
  // Values that hardly differ are not to look as if they did.
  const double least = 4.0 * std::pow(10.0, -parameter.row.decimals);
  const double lacks = std::max(0.0, least - (scale.to - scale.from)) / 2.0;
  return gait_charts::widened({scale.from - lacks, scale.to + lacks}, space_beside_values);
}

std::vector<drawn_strip> draw_strips(const shown_walk& shown, const computed_parameter& parameter,
                                     span scale) {
  const std::size_t place = place_of(shown, parameter);
  if (is_of_both_feet(parameter.row)) {
    const auto values = values_of_cycles(shown.strides, [](const two_feet_cycle& cycle) {
      return gait_is_missing(cycle.values->ds) ? std::nullopt : std::optional(cycle.values->ds);
    });
    return {{"cycle", "R, L",
             draw_side(shown, parameter, 0, values, "both feet", scale, std::nullopt)}};
  }
  std::vector<drawn_strip> strips;
  const auto& sides = parameter.sides;
  for (std::size_t i = 0; i < sides.size(); ++i) {
    const std::string name(name_of(sides[i].side->foot));
    const auto other = sides.size() == 2 ? sides[1 - i].statistics.median : std::nullopt;
    const auto values = values_of_side(shown, i, place);
    strips.push_back({name, letter_of(*sides[i].side),
                      draw_side(shown, parameter, i, values, name, scale, other)});
  }
  return strips;
}

std::string draw_ratios(const std::vector<const computed_parameter*>& parameters) {
  gait_charts::lollipops ratios;
  ratios.label = "Ratios of the right mean to the left mean";
  for (const auto* parameter : parameters) {
    const auto& ratio = parameter->sides.front().statistics.ratio;
    const bool tells = parameter->has_telling_ratio();
    const std::string number = rounded(*ratio, decimals_of_ratio);
    ratios.rows.push_back({parameter->row.description, *ratio, tells ? number : "*", tells});
    ratios.label += "; " + parameter->row.description + " " + (tells ? number : "near a mean of 0");
  }
  return draw(ratios);
}

std::string draw_swing_asymmetry(const shown_walk& shown) {
  const auto& asymmetry = *shown.swing_asymmetry;
  std::vector<std::optional<double>> of_cycles(shown.strides.cycles.size());
  auto value = asymmetry.values.begin();
  double largest = 1.0;  // (%): less is not to look like much
  for (const int cycle : shown.walk.info().cycles) {
    of_cycles[static_cast<std::size_t>(cycle)] = *value;
    largest = *value ? std::max(largest, std::abs(**value)) : largest;
    ++value;
  }
  const double limit = std::abs(*asymmetry.mean) + 5.0 * asymmetry.sd.value_or(largest);
  largest = std::max(1.0, std::min(largest, limit));
  strip strip;
  strip.label = "Swing asymmetry of every stride in the statistics (%), mean " +
                rounded(*asymmetry.mean, decimals_of_percent);
  strip.x = shown.time;
  strip.y = gait_charts::widened({-largest, largest}, space_beside_values);
  strip.height = 180.0;
  strip.line = asymmetry.mean;
  strip.stems_from = 0.0;
  place(strip, values_of_cycles(shown.strides, [&](const two_feet_cycle& cycle) {
          return of_cycles[static_cast<std::size_t>(cycle.index)];
        }));
  return draw(strip);
}

legend time_line_legend(const shown_walk& shown) {
  using gait_charts::filling;
  using gait_charts::sample_box;
  legend entries = {{sample_box(filling::full), "in the statistics"}};
  for (const filling look : {filling::hatched, filling::dashed}) {
    if (const std::string reasons = reasons_in_words(shown, look); !reasons.empty()) {
      entries.emplace_back(sample_box(look), "left out: " + reasons);
    }
  }
  if (any_stride(shown, [](const auto& s) { return s.status == stride_status::unlinked; })) {
    entries.emplace_back(sample_box(filling::empty),
                         gait_walk::words_of(stride_status::unlinked).in_words);
  }
  if (any_stride(shown, [&](const auto& s) { return lacks_partner(shown, s); })) {
    entries.emplace_back(sample(R"(<circle class="mark" cx="11" cy="7" r="2.5"/>)"),
                         "without a stride of the other foot");
  }
  return entries;
}

legend strip_legend(const shown_walk& shown) {
  const std::string many = std::to_string(gait_charts::parts_of_binned_strip);
  legend entries;
  if (has_many_strides(shown)) {
    entries = {{sample(path_sample("range", "M11 0V12") + path_sample("dot", "M11 6h0")),
                "smallest, middle and largest value in 1/" + many + " of the time"},
               {sample(path_sample("range out", "M11 0V12")), "left out"}};
  } else {
    entries = {{sample(path_sample("dot", "M11 6h0")), "in the statistics"},
               {sample(path_sample("shade", "M0 0h22v12h-22z") + path_sample("ring", "M11 6h0") +
                       path_sample("hole", "M11 6h0")),
                "left out"}};
  }
  entries.emplace_back(sample(path_sample("band", "M0 1h22v10h-22z")), "quartiles");
  entries.emplace_back(sample(path_sample("line", "M0 6h22")), "median");
  if (shown.walk.both_feet()) {
    entries.emplace_back(sample(path_sample("other", "M0 6h22")), "median of the other side");
  }
  entries.emplace_back(sample(path_sample("gap", "M11 12v-6")), "in the statistics, not measured");
  entries.emplace_back(sample(R"(<use href="#up" x="7" y="1"/><use href="#down" x="15" y="11"/>)"),
                       "beyond the scale");
  return entries;
}

}  // namespace gait_report
