#include "html_report.h"

#include "json_output.h"
#include "page_data.h"
#include "page_figures.h"
#include "page_files.h"
#include "page_text.h"

#include <utf8.h>
#include <kainjow/mustache.hpp>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace gait_report {
namespace {

std::string rendered(std::string_view source, const page_data& data) {
  kainjow::mustache::mustache engine{std::string(source)};
  if (!engine.is_valid()) {
    throw std::logic_error("a template of the page is wrong: " + engine.error_message());
  }
  return engine.render(data);
}

/// A character of JSON as an escape sequence.
std::string escape_sequence(char32_t character) {
  constexpr std::string_view digits = "0123456789abcdef";
  const std::string in_utf8 = utf8::utf32to8(std::u32string(1, character));
  const std::u16string units = utf8::utf8to16(in_utf8);
  std::string text;
  for (const char16_t unit : units) {
    text += {'\\',
             'u',
             digits[unit >> 12U],
             digits[(unit >> 8U) & 0xFU],
             digits[(unit >> 4U) & 0xFU],
             digits[unit & 0xFU]};
  }
  return text;
}

/// JSON that may stand between the tags of a script: no text of it can end it, and no character of
/// it is one that HTML must not hold.
std::string for_a_script(const std::string& json) {
  std::string text;
  text.reserve(json.size());
  for (auto at = json.begin(); at != json.end();) {
    const auto begin = at;
    const char32_t character = utf8::next(at, json.end());
    if (character == U'<' || !may_stand_in_a_page(character)) {
      text += escape_sequence(character);
    } else {
      text.append(begin, at);
    }
  }
  return text;
}

/// A walk's name as that of a file, the same on every system.
std::string file_stem(const std::string& name) {
  constexpr std::size_t longest = 80;
  std::string stem;
  for (const char c : name.substr(0, longest)) {
    const bool is_plain = std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '-' || c == '.';
    stem += is_plain ? c : '_';
  }
  // A file whose name begins with a point is hidden.
  return stem.empty() || stem.front() == '.' ? "_" + stem : stem;
}

/// Some systems take Walk.html and walk.html for the same file.
std::string in_lower_case(std::string name) {
  std::transform(name.begin(), name.end(), name.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return name;
}

}  // namespace

html_page::html_page(bool of_several_walks) : of_several_walks_(of_several_walks) {}

void html_page::add(const walk_statistics& walk) {
  const shown_walk shown(walk);
  walks_in_full_ +=
      rendered(page_files::walk, data_of_walk(shown, entries_.size(), !of_several_walks_));
  entries_.push_back({page_text(walk.name), shown.summary.in_the_statistics});
  json_walks_.push_back(json_walk(walk));
}

std::string html_page::finish() {
  std::vector<listed_walk> listed;
  listed.reserve(entries_.size());
  for (const auto& [name, summary] : entries_) {
    listed.push_back({name, summary});
  }
  const std::string json =
      for_a_script(json_document(std::move(json_walks_), json_layout::compact));
  return rendered(page_files::page, data_of_page(listed, walks_in_full_, json));
}

struct html_folder::rows {
  std::vector<page_data> of_walks;
};

html_folder::html_folder() : rows_(std::make_unique<rows>()), taken_{"index.html"} {}
html_folder::~html_folder() = default;

html_folder::file html_folder::add(const walk_statistics& walk) {
  const std::string stem = file_stem(walk.name);
  std::string name = stem + ".html";
  for (std::size_t i = 2; !taken_.insert(in_lower_case(name)).second; ++i) {
    name = stem + "_" + std::to_string(i) + ".html";
  }
  html_page page(false);
  page.add(walk);
  rows_->of_walks.push_back(data_of_index_rows(shown_walk(walk), name));
  return {name, page.finish()};
}

html_folder::file html_folder::index() const {
  return {"index.html", rendered(page_files::index, data_of_index(rows_->of_walks))};
}

}  // namespace gait_report
