#ifndef GAIT_CATALOGUE_H
#define GAIT_CATALOGUE_H

/// \file
/// The gait parameters that the library reports, and everything that is particular to each.
///
/// A parameter is named by a tag, an empty type, and described by its row. A caller adds a
/// parameter of its own without touching this file: declare a tag, give it a row, and build it.
///
///     namespace my {
///     struct HEEL_TO_TOE {};
///     double heel_to_toe(const gait_foot_cycle& cycle) { return cycle.hsp; }
///     }
///     template <>
///     inline constexpr auto gait_catalogue::row_of<my::HEEL_TO_TOE> =
///         gait_catalogue::foot<my::HEEL_TO_TOE>(
///             "heelToToe", "Heel to toe", "deg", 1, gait_catalogue::no_ratio,
///             gait_catalogue::no_cv, my::heel_to_toe);
///
/// Tags of your own go into a namespace of your own: a minor version may add to those below.
/// docs/adding-a-parameter.md shows how to add one to the library.

#include <gait/result.h>

#include <array>
#include <cstddef>
#include <functional>
#include <tuple>
#include <type_traits>

// One tag per parameter, in the order of the table below.
struct GCT {};
struct SWING {};
struct STANCE {};
struct STANCE_MS {};
struct CADENCE {};
struct LDR {};
struct FFR {};
struct PUR {};
struct DS {};
struct SLENGTH {};
struct SWIDTH {};
struct PATHLENGTH {};
struct SPEED {};
struct TA {};
struct PEAKSWING {};
struct TOP {};
struct HSP {};
struct MAXHC {};
struct MINTC {};
struct MAXTC1 {};
struct MAXTC2 {};
struct MTCS {};
struct HS {};
struct STEPTIME {};
struct STEPLENGTH {};
struct STEPLENGTH_ALT {};
struct IMPACT_VERT {};
struct IMPACT_BREAK {};
struct PRONATION {};

namespace gait_catalogue {

/// Whether the ratio of the sides' means is computed. Each of these columns has a type of its own,
/// so that swapped columns do not compile.
enum class asymmetry : bool { no_ratio, ratio };
/// Whether a coefficient of variation is computed.
enum class variation : bool { no_cv, cv };
/// Which sides a parameter is built for: every one, only those of two feet analysed together, or
/// only that of a foot analysed alone.
enum class built { always, with_both_feet, with_one_foot };

inline constexpr asymmetry no_ratio = asymmetry::no_ratio;
inline constexpr asymmetry ratio = asymmetry::ratio;
inline constexpr variation no_cv = variation::no_cv;
inline constexpr variation cv = variation::cv;
inline constexpr built always = built::always;
inline constexpr built with_both_feet = built::with_both_feet;
inline constexpr built with_one_foot = built::with_one_foot;

/// Whether a parameter is built for the sides of two feet, or for the side of a foot alone.
constexpr bool is_built(built when, bool both_feet) {
  return when == always || (when == with_both_feet) == both_feet;
}

/// All that tells one parameter from another.
///
/// `ResultT` is the result whose cycle list is read; `Source` is a pointer to the cycle's field, or
/// a function from the cycle to the value.
template <class ResultT, class Tag, class Source>
struct row {
  using result_type = ResultT;
  using tag_type = Tag;

  const char* key;          ///< key in gait_statistics::parameters, before the side suffix
  const char* description;  ///< name for people
  const char* unit;         ///< unit of the values
  int decimals;             ///< decimal places to show
  asymmetry sides;
  variation spread;
  Source source;
  built when;

  /// The value of a cycle, which may be gait_missing.
  template <class Cycle>
  double value(const Cycle& cycle) const {
    return std::invoke(source, cycle);
  }
};

/// A row that is read from the cycles of one foot.
///
/// `when` counts in the table below, which gait_statistics_build_parameters() visits. A row of your
/// own leaves it out.
template <class Tag, class Source>
constexpr row<gait_foot_result, Tag, Source> foot(const char* key, const char* description,
                                                  const char* unit, int decimals, asymmetry sides,
                                                  variation spread, Source source,
                                                  built when = always) {
  return {key, description, unit, decimals, sides, spread, source, when};
}

/// A row that is read from the cycles of the two feet together, and built with both feet only.
template <class Tag, class Source>
constexpr row<gait_feet_result, Tag, Source> feet(const char* key, const char* description,
                                                  const char* unit, int decimals, asymmetry sides,
                                                  variation spread, Source source) {
  return {key, description, unit, decimals, sides, spread, source, with_both_feet};
}

/// Step length taken as half the stride length (m), where the other foot is not known.
inline double half_stride(const gait_foot_cycle& cycle) { return cycle.slength * 0.5; }

// The texts are what callers look up and show; their irregularities are part of the interface.
// clang-format off
inline constexpr auto table = std::make_tuple(
    //   tag             key                description           unit                 dec  sides     spread source                            when
    foot<GCT>           ("gct",             "Cycle duration",     "seconds",             3, ratio,    cv,    &gait_foot_cycle::gct,             always),
    foot<SWING>         ("swing",           "Swing",              "% of gait cycle",     2, ratio,    cv,    &gait_foot_cycle::swing,           always),
    foot<STANCE>        ("stance",          "Stance",             "% of cycle duration", 2, ratio,    cv,    &gait_foot_cycle::stance,          always),
    foot<STANCE_MS>     ("contact",         "Contact",            "ms",                  0, ratio,    cv,    &gait_foot_cycle::contact,         always),
    foot<CADENCE>       ("cadence",         "Cadence",            "steps/minute",        2, ratio,    cv,    &gait_foot_cycle::cadence,         always),
    foot<LDR>           ("LDr",             "Loading",            "% of stance",         2, ratio,    cv,    &gait_foot_cycle::ldr,             always),
    foot<FFR>           ("FFr",             "Foot-flat",          "% of stance",         2, ratio,    cv,    &gait_foot_cycle::ffr,             always),
    foot<PUR>           ("PUr",             "Pushing",            "% of stance",         2, ratio,    cv,    &gait_foot_cycle::pur,             always),
    // The one parameter of the two feet together: both sides report the same values, so there is
    // nothing to compare.
    feet<DS>            ("DS",              "Double support",     "% of cycle duration", 2, no_ratio, cv,    &gait_feet_cycle::ds),
    foot<SLENGTH>       ("slength",         "Stride length",      "meters",              3, ratio,    cv,    &gait_foot_cycle::slength,         always),
    foot<SWIDTH>        ("swidth",          "Swing width",        "meters",              3, ratio,    no_cv, &gait_foot_cycle::swidth,          always),
    foot<PATHLENGTH>    ("PathLength",      "3D Path length",     "% of stride length",  2, ratio,    cv,    &gait_foot_cycle::path_length,     always),
    foot<SPEED>         ("speed",           "Stride velocity",    "meters/s",            3, ratio,    cv,    &gait_foot_cycle::speed,           always),
    foot<TA>            ("TA",              "Turning angle",      "degree",              1, ratio,    no_cv, &gait_foot_cycle::ta,              always),
    foot<PEAKSWING>     ("peakswing",       "Peak ang. velocity", "degree/s",            1, ratio,    cv,    &gait_foot_cycle::peakswing,       always),
    foot<TOP>           ("TOP",             "Lift-off Angle",     "degree",              2, ratio,    cv,    &gait_foot_cycle::top,             always),
    foot<HSP>           ("HSP",             "Strike angle",       "degree",              2, ratio,    cv,    &gait_foot_cycle::hsp,             always),
    foot<MAXHC>         ("maxHC",           "Max. heel",          "meters",              3, ratio,    no_cv, &gait_foot_cycle::max_hc,          always),
    foot<MINTC>         ("minTC",           "Min. Toe",           "meters",              3, ratio,    no_cv, &gait_foot_cycle::min_tc,          always),
    foot<MAXTC1>        ("maxTC1",          "Max. toe 1",         "meters",              3, ratio,    no_cv, &gait_foot_cycle::max_tc1,         always),
    // No point after "Max" here.
    foot<MAXTC2>        ("maxTC2",          "Max toe 2",          "meters",              3, ratio,    no_cv, &gait_foot_cycle::max_tc2,         always),
    foot<MTCS>          ("mtcS",            "Swing speed",        "meters/s",            3, ratio,    no_cv, &gait_foot_cycle::mtc_speed,       always),
    // A moment in the recording, not a property of the stride: neither a ratio nor a relative
    // spread says anything.
    foot<HS>            ("HS",              "Heel-strike Time",   "seconds",             3, no_ratio, no_cv, &gait_foot_cycle::hs,              always),
    // The one key with a blank.
    foot<STEPTIME>      ("Step Time",       "Step time",          "seconds",             3, ratio,    cv,    &gait_foot_cycle::step_time,       always),
    // Two ways to the same parameter: a side has one of them.
    foot<STEPLENGTH>    ("StepLength",      "Step length",        "meters",              3, ratio,    cv,    &gait_foot_cycle::step_length,     with_both_feet),
    // A missing stride length is halved too: it becomes -0.5, which counts as measured.
    foot<STEPLENGTH_ALT>("StepLength",      "Step length",        "meters",              3, ratio,    cv,    half_stride,                       with_one_foot),
    foot<IMPACT_VERT>   ("impact_vert",     "Impact vertical",    "g",                   1, ratio,    cv,    &gait_foot_cycle::impact_vert,     always),
    foot<IMPACT_BREAK>  ("impact_hor",      "Impact breaking",    "g",                   1, ratio,    cv,    &gait_foot_cycle::impact_hor,      always),
    // "deg" here, "degree" for the other angles.
    foot<PRONATION>     ("strike_eversion", "Strike eversion",    "deg",                 1, ratio,    no_cv, &gait_foot_cycle::strike_eversion, always));
// clang-format on

/// The row of a tag in a table of rows; a tag without exactly one row does not compile.
template <class Tag, class... Rows>
constexpr auto find_row(const std::tuple<Rows...>& rows) {
  constexpr std::array<bool, sizeof...(Rows)> matches = {
      std::is_same_v<Tag, typename Rows::tag_type>...};
  constexpr std::size_t count = (std::size_t{std::is_same_v<Tag, typename Rows::tag_type>} + ...);
  static_assert(count == 1,
                "gait_catalogue: this tag has no row, or two; add one to the table, or specialise "
                "row_of for it");
  constexpr std::size_t position = [&] {
    std::size_t at = 0;
    while (at + 1 < matches.size() && !matches[at]) {
      ++at;
    }
    return at;
  }();
  return std::get<position>(rows);
}

/// The row of a tag. Specialise it to give a tag of your own a row.
template <class Tag>
inline constexpr auto row_of = find_row<Tag>(table);

/// Calls `visit(row)` for every row of the table, in its order.
template <class Visit>
constexpr void for_each_row(Visit visit) {
  std::apply([&](const auto&... rows) { (visit(rows), ...); }, table);
}

}  // namespace gait_catalogue

#endif
