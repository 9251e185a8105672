// The library's catalogue against the one that is typed by hand: a slip in either shows when this
// file is compiled.

#include <gait/catalogue.h>
#include <gait/result.h>

#include <string_view>
#include <tuple>
#include <type_traits>

namespace {

using namespace gait_catalogue;

/// Whether a row holds exactly this. A source of another type than the row's is another source.
template <class Tag, class ResultT, class Source>
constexpr bool row_is(std::string_view key, std::string_view description, std::string_view unit,
                      int decimals, asymmetry sides, variation spread, built when, Source source) {
  using row_type = std::decay_t<decltype(row_of<Tag>)>;
  constexpr const row_type& row = row_of<Tag>;
  if constexpr (std::is_same_v<decltype(row.source), Source>) {
    return std::is_same_v<typename row_type::result_type, ResultT> &&
           std::is_same_v<typename row_type::tag_type, Tag> && std::is_empty_v<Tag> &&
           row.key == key && row.description == description && row.unit == unit &&
           row.decimals == decimals && row.sides == sides && row.spread == spread &&
           row.when == when && row.source == source;
  }
  return false;
}

/// The tags of the table's rows, in its order.
template <class... Tags>
struct tags {};
struct end_of_table {};
template <class... Rows>
tags<typename Rows::tag_type..., end_of_table> tags_of(const std::tuple<Rows...>&);

// clang-format off
#define ROW(tag, result, ...) static_assert(row_is<tag, gait_##result##_result>(__VA_ARGS__));
#include "catalogue.inc"
#undef ROW

#define ROW(tag, ...) tag,
static_assert(std::is_same_v<decltype(tags_of(gait_catalogue::table)), tags<
#include "catalogue.inc"
    end_of_table>>);
#undef ROW
// clang-format on

static_assert(is_built(always, true) && is_built(always, false));
static_assert(is_built(with_both_feet, true) && !is_built(with_both_feet, false));
static_assert(!is_built(with_one_foot, true) && is_built(with_one_foot, false));

// A row of a caller's own need not say when it is built.
static_assert(foot<GCT>("", "", "", 0, ratio, cv, &gait_foot_cycle::gct).when == always);

// Each column of names is a type of its own, which converts into no other.
template <class From, class... To>
constexpr bool converts_into_any = (std::is_convertible_v<From, To> || ...);
static_assert(!converts_into_any<asymmetry, variation, built>);
static_assert(!converts_into_any<variation, asymmetry, built>);
static_assert(!converts_into_any<built, asymmetry, variation>);
static_assert(!converts_into_any<bool, asymmetry, variation, built>);
static_assert(!converts_into_any<int, asymmetry, variation, built>);

}  // namespace
