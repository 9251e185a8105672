#include "walk_output.h"

#include "columns.h"
#include "names.h"
#include "number.h"

#include <gait/result.h>

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <variant>

namespace gait_python {

namespace {

/// What has no value is NaN or None on the other side, and -1 is a -1 that was measured.
void add_value(column_out& column, double value) {
  column.add(gait_is_missing(value) ? std::nullopt
                                    : std::optional(gait_report::shown_value(value)));
}

void add_value(column_out& column, int value) { column.add(std::optional<std::int64_t>(value)); }

template <class Whole>
void add_value(column_out& column, const std::optional<Whole>& value) {
  column.add(value ? std::optional(static_cast<std::int64_t>(*value)) : std::nullopt);
}

void add_value(column_out& column, const std::string& value) { column.add(value); }

template <class Name>
void add_value(column_out& column, Name value) {
  column.add(std::string(gait_walk::name_of(value)));
}

/// Columns of the rows that `for_each_row` hands over.
template <class Row, class ForEachRow>
std::vector<column_out> columns_with(ForEachRow for_each_row) {
  std::vector<column_out> columns;
  columns.reserve(gait_walk::columns<Row>.size());
  for (const auto& column : gait_walk::columns<Row>) {
    columns.emplace_back(std::string(column.name));
  }
  for_each_row([&](const Row& row) {
    auto filled = columns.begin();
    for (const auto& column : gait_walk::columns<Row>) {
      std::visit([&](auto member) { add_value(*filled, row.*member); }, column.member);
      ++filled;
    }
  });
  return columns;
}

template <class Use>
void for_each_foot(const gait_walk::walk& walk, Use use) {
  if (walk.left) {
    use(gait_walk::side::left, *walk.left);
  }
  if (walk.right) {
    use(gait_walk::side::right, *walk.right);
  }
}

}  // namespace

std::vector<column_out> columns_of(const gait_walk::walk& walk, std::string_view table) {
  using namespace gait_walk;  // NOLINT(google-build-using-namespace)
  if (table == "strides") {
    return columns_with<foot_cycle_row>([&](auto use) {
      for_each_foot(walk, [&](side side, const foot& foot) {
        for (const gait_foot_cycle& cycle : foot.cycles) {
          use({cycle, side});
        }
      });
    });
  }
  if (table == "feet") {
    return columns_with<feet_cycle_row>([&](auto use) {
      int index = 0;
      for (const feet_cycle& cycle : walk.feet) {
        use({cycle, index});
        ++index;
      }
    });
  }
  if (table == "exclusions") {
    return columns_with<exclusion_row>([&](auto use) {
      for (const exclusion& exclusion : walk.exclusions) {
        use(exclusion);
      }
    });
  }
  if (table == "recording") {
    return columns_with<recording_row>([&](auto use) {
      for_each_foot(walk, [&](side side, const foot& foot) {
        use({side, foot.sampling_rate, foot.signal_1_samples, foot.signal_2_samples});
      });
    });
  }
  if (table == "about") {
    return columns_with<about_row>([&](auto use) {
      for (const about_row& row : walk.about) {
        use(row);
      }
    });
  }
  throw std::invalid_argument("no table of a walk has this name");
}

std::vector<std::size_t> lines_of(const gait_walk::walk& walk, std::string_view table) {
  std::vector<std::size_t> lines;
  if (table == "strides") {
    for_each_foot(walk, [&](gait_walk::side /*side*/, const gait_walk::foot& foot) {
      lines.insert(lines.end(), foot.lines.begin(), foot.lines.end());
    });
  } else if (table == "feet") {
    lines = walk.feet_lines;
  }
  return lines;
}

std::vector<column_out> columns_of(const gait_report::walk_statistics& walk,
                                   gait_report::csv_table table) {
  std::vector<column_out> columns;
  for (const auto& column : gait_report::columns_of(table)) {
    columns.emplace_back(column.name);
  }
  gait_report::for_each_row(table, walk, [&](const std::vector<gait_report::table_cell>& row) {
    auto filled = columns.begin();
    for (const auto& cell : row) {
      std::visit([&](const auto& value) { filled->add(value); }, cell);
      ++filled;
    }
  });
  return columns;
}

}  // namespace gait_python
