// The catalogue once more, typed by hand: a slip in either copy shows when this file is compiled.

#include <gait/catalogue.h>
#include <gait/result.h>

#include <string_view>
#include <tuple>
#include <type_traits>

namespace {

/// Whether a row holds exactly this. A source of another type than the row's is another source.
template <class Tag, class ResultT, class Source>
constexpr bool row_is(std::string_view key, std::string_view description, std::string_view unit,
                      int decimals, bool has_ratio, bool has_cv, Source source) {
  using row_type = std::decay_t<decltype(gait_catalogue::row_of<Tag>)>;
  constexpr const row_type& row = gait_catalogue::row_of<Tag>;
  if constexpr (std::is_same_v<decltype(row.source), Source>) {
    return std::is_same_v<typename row_type::result_type, ResultT> &&
           std::is_same_v<typename row_type::tag_type, Tag> && std::is_empty_v<Tag> &&
           row.key == key && row.description == description && row.unit == unit &&
           row.decimals == decimals && (row.sides == gait_catalogue::ratio) == has_ratio &&
           (row.spread == gait_catalogue::cv) == has_cv && row.source == source;
  }
  return false;
}

using F = gait_foot_result;
using B = gait_feet_result;
constexpr bool on = true;
constexpr bool off = false;

// clang-format off
static_assert(row_is<GCT, F>("gct", "Cycle duration", "seconds", 3, true, on, &gait_foot_cycle::gct));
static_assert(row_is<SWING, F>("swing", "Swing", "% of gait cycle", 2, true, on, &gait_foot_cycle::swing));
static_assert(row_is<STANCE, F>("stance", "Stance", "% of cycle duration", 2, true, on, &gait_foot_cycle::stance));
static_assert(row_is<STANCE_MS, F>("contact", "Contact", "ms", 0, true, on, &gait_foot_cycle::contact));
static_assert(row_is<CADENCE, F>("cadence", "Cadence", "steps/minute", 2, true, on, &gait_foot_cycle::cadence));
static_assert(row_is<LDR, F>("LDr", "Loading", "% of stance", 2, true, on, &gait_foot_cycle::ldr));
static_assert(row_is<FFR, F>("FFr", "Foot-flat", "% of stance", 2, true, on, &gait_foot_cycle::ffr));
static_assert(row_is<PUR, F>("PUr", "Pushing", "% of stance", 2, true, on, &gait_foot_cycle::pur));
static_assert(row_is<DS, B>("DS", "Double support", "% of cycle duration", 2, false, on, &gait_feet_cycle::ds));
static_assert(row_is<SLENGTH, F>("slength", "Stride length", "meters", 3, true, on, &gait_foot_cycle::slength));
static_assert(row_is<SWIDTH, F>("swidth", "Swing width", "meters", 3, true, off, &gait_foot_cycle::swidth));
static_assert(row_is<PATHLENGTH, F>("PathLength", "3D Path length", "% of stride length", 2, true, on, &gait_foot_cycle::path_length));
static_assert(row_is<SPEED, F>("speed", "Stride velocity", "meters/s", 3, true, on, &gait_foot_cycle::speed));
static_assert(row_is<TA, F>("TA", "Turning angle", "degree", 1, true, off, &gait_foot_cycle::ta));
static_assert(row_is<PEAKSWING, F>("peakswing", "Peak ang. velocity", "degree/s", 1, true, on, &gait_foot_cycle::peakswing));
static_assert(row_is<TOP, F>("TOP", "Lift-off Angle", "degree", 2, true, on, &gait_foot_cycle::top));
static_assert(row_is<HSP, F>("HSP", "Strike angle", "degree", 2, true, on, &gait_foot_cycle::hsp));
static_assert(row_is<MAXHC, F>("maxHC", "Max. heel", "meters", 3, true, off, &gait_foot_cycle::max_hc));
static_assert(row_is<MINTC, F>("minTC", "Min. Toe", "meters", 3, true, off, &gait_foot_cycle::min_tc));
static_assert(row_is<MAXTC1, F>("maxTC1", "Max. toe 1", "meters", 3, true, off, &gait_foot_cycle::max_tc1));
static_assert(row_is<MAXTC2, F>("maxTC2", "Max toe 2", "meters", 3, true, off, &gait_foot_cycle::max_tc2));
static_assert(row_is<MTCS, F>("mtcS", "Swing speed", "meters/s", 3, true, off, &gait_foot_cycle::mtc_speed));
static_assert(row_is<HS, F>("HS", "Heel-strike Time", "seconds", 3, false, off, &gait_foot_cycle::hs));
static_assert(row_is<STEPTIME, F>("Step Time", "Step time", "seconds", 3, true, on, &gait_foot_cycle::step_time));
static_assert(row_is<STEPLENGTH, F>("StepLength", "Step length", "meters", 3, true, on, &gait_foot_cycle::step_length));
static_assert(row_is<STEPLENGTH_ALT, F>("StepLength", "Step length", "meters", 3, true, on, &gait_catalogue::half_stride));
static_assert(row_is<IMPACT_VERT, F>("impact_vert", "Impact vertical", "g", 1, true, on, &gait_foot_cycle::impact_vert));
static_assert(row_is<IMPACT_BREAK, F>("impact_hor", "Impact breaking", "g", 1, true, on, &gait_foot_cycle::impact_hor));
static_assert(row_is<PRONATION, F>("strike_eversion", "Strike eversion", "deg", 1, true, off, &gait_foot_cycle::strike_eversion));
// clang-format on

/// The tags of the table's rows, in its order.
template <class... Tags>
struct tags {};
template <class... Rows>
tags<typename Rows::tag_type...> tags_of(const std::tuple<Rows...>&);

static_assert(std::is_same_v<decltype(tags_of(gait_catalogue::table)),
                             tags<GCT, SWING, STANCE, STANCE_MS, CADENCE, LDR, FFR, PUR, DS,
                                  SLENGTH, SWIDTH, PATHLENGTH, SPEED, TA, PEAKSWING, TOP, HSP,
                                  MAXHC, MINTC, MAXTC1, MAXTC2, MTCS, HS, STEPTIME, STEPLENGTH,
                                  STEPLENGTH_ALT, IMPACT_VERT, IMPACT_BREAK, PRONATION>>);

constexpr int visited_rows() {
  int count = 0;
  gait_catalogue::for_each_row([&](const auto&) { ++count; });
  return count;
}
static_assert(visited_rows() == 29);

// The two columns of flags are two types, neither of which converts into the other.
static_assert(!std::is_convertible_v<gait_catalogue::asymmetry, gait_catalogue::variation>);
static_assert(!std::is_convertible_v<gait_catalogue::variation, gait_catalogue::asymmetry>);
static_assert(!std::is_convertible_v<bool, gait_catalogue::asymmetry> &&
              !std::is_convertible_v<int, gait_catalogue::variation>);

}  // namespace
