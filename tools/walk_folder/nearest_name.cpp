#include "nearest_name.h"

#include "cell.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <utility>

namespace gait_walk {

namespace {

struct other_name {
  std::string_view name;  ///< as bare_name() makes it
  std::string_view column;
};

// clang-format off
constexpr std::array<other_name, 50> other_names = {{
    {"side", "foot"},                      {"leg", "foot"},
    {"stride", "index"},                   {"strideid", "index"},
    {"start", "first_sample"},             {"end", "last_sample"},
    {"samplerate", "sampling_rate"},       {"samplingfrequency", "sampling_rate"},
    {"fs", "sampling_rate"},               {"frequency", "sampling_rate"},
    {"heelstrike", "hs"},                  {"initialcontact", "hs"},
    {"stridetime", "gct"},                 {"strideduration", "gct"},
    {"cycletime", "gct"},                  {"gaitcycletime", "gct"},
    {"swingphase", "swing"},               {"stancephase", "stance"},
    {"contacttime", "contact"},            {"loading", "ldr"},
    {"footflat", "ffr"},                   {"pushing", "pur"},
    {"stridelength", "slength"},           {"swingwidth", "swidth"},
    {"velocity", "speed"},                 {"stridevelocity", "speed"},
    {"stridespeed", "speed"},              {"gaitspeed", "speed"},
    {"gaitvelocity", "speed"},             {"walkingspeed", "speed"},
    {"turningangle", "ta"},                {"peakswingvelocity", "peakswing"},
    {"liftoffangle", "top"},               {"toeoffangle", "top"},
    {"strikeangle", "hsp"},                {"footstrikeangle", "hsp"},
    {"eversion", "strike_eversion"},       {"heelclearance", "max_hc"},
    {"toeclearance", "min_tc"},            {"mintoeclearance", "min_tc"},
    {"doublesupport", "ds"},               {"right", "right_index"},
    {"left", "left_index"},                {"comment", "reason"},
    {"key", "name"},                       {"field", "name"},
    {"property", "name"},                  {"text", "value"},
    {"content", "value"},                  {"entry", "value"},
}};
// clang-format on

}  // namespace

std::string bare_name(std::string_view name) {
  std::string bare = lower(name.substr(0, name.find_first_of("([")));
  const auto joins = [](char c) { return c == ' ' || c == '_' || c == '-' || c == '.'; };
  bare.erase(std::remove_if(bare.begin(), bare.end(), joins), bare.end());
  return bare;
}

std::size_t edit_distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> distances(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) {
    distances[j] = j;
  }
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = std::exchange(distances[0], i);
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
      diagonal = distances[j];
      distances[j] = std::min({replaced, distances[j] + 1, distances[j - 1] + 1});
    }
  }
  return distances[b.size()];
}

std::string_view nearest_name(std::string_view name, const std::vector<std::string_view>& known) {
  constexpr std::size_t longest_name = 40;
  if (name.size() > longest_name) {
    return {};
  }
  const std::string wanted = bare_name(name);
  for (const other_name& other : other_names) {
    if (other.name == wanted &&
        std::find(known.begin(), known.end(), other.column) != known.end()) {
      return other.column;
    }
  }
  std::string_view nearest;
  // More than half of the letters, or more than three of them, make another word.
  std::size_t smallest = std::min<std::size_t>((wanted.size() + 1) / 2, 3) + 1;
  for (const std::string_view candidate : known) {
    const std::size_t distance = edit_distance(wanted, bare_name(candidate));
    if (distance < smallest) {
      smallest = distance;
      nearest = candidate;
    }
  }
  return nearest;
}

}  // namespace gait_walk
