#include "cell.h"
#include "columns.h"
#include "find_walks.h"
#include "minus_one.h"
#include "walk_folder.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <ios>
#include <ostream>
#include <stdexcept>
#include <string>
#include <system_error>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace gait_walk {

namespace {

namespace fs = std::filesystem;

/// Tables that replace those of a folder only once all of them are written. Until then each is a
/// part beside its place.
class new_tables {
public:
  explicit new_tables(fs::path folder) : folder_(std::move(folder)) {}
  /// Where some tables are in place and some are not, the folder holds those of two walks: the
  /// parts stay, and tell the reader so.
  ~new_tables() {
    if (any_in_place_) {
      return;
    }
    for (const new_table& table : tables_) {
      std::error_code ignored;
      fs::remove(table.part, ignored);
    }
  }
  new_tables(const new_tables&) = delete;
  new_tables& operator=(const new_tables&) = delete;
  new_tables(new_tables&&) = delete;
  new_tables& operator=(new_tables&&) = delete;

  /// Writes a table beside its place. `write_rows` is given a function that writes one row.
  template <class Row>
  void write(const std::function<void(const std::function<void(const Row&)>&)>& write_rows) {
    std::ofstream text = open_part(folder_ / table_name<Row>, true);
    const char* separator = "";
    for (const auto& column : columns<Row>) {
      text << separator << column.name;
      separator = ",";
    }
    text << '\n';
    write_rows([&](const Row& row) { write_row(text, row); });
    text.close();
  }

  /// Has a table removed that the folder may have of another walk.
  template <class Row>
  void remove() {
    const fs::path table = folder_ / table_name<Row>;
    if (fs::exists(table) || fs::exists(part_of(table))) {
      open_part(table, false);
    }
  }

  void put_in_place() {
    for (const new_table& table : tables_) {
      if (table.is_written) {
        fs::rename(table.part, table.place);
      } else {
        fs::remove(table.place);
        fs::remove(table.part);
      }
      any_in_place_ = true;
    }
  }

private:
  struct new_table {
    fs::path part;
    fs::path place;
    bool is_written;  ///< else the table is removed
  };

  std::ofstream open_part(const fs::path& table, bool is_written) {
    tables_.push_back({part_of(table), table, is_written});
    std::ofstream text;
    text.exceptions(std::ios::failbit | std::ios::badbit);
    text.open(tables_.back().part, std::ios::binary);
    return text;
  }

  template <class Row, class Value>
  static std::string cell_of(const Value& value, const column<Row>& column) {
    if constexpr (std::is_same_v<Value, double>) {
      // It would make -1 the table's word for missing.
      if (value == measured_minus_one && !column.rules.has_sign) {
        throw std::invalid_argument("a walk folder cannot hold -1 in " + std::string(column.name));
      }
    }
    return to_cell(value);
  }

  template <class Row>
  static void write_row(std::ostream& text, const Row& row) {
    const char* separator = "";
    for (const auto& column : columns<Row>) {
      text << separator
           << std::visit([&](auto member) { return cell_of(row.*member, column); }, column.member);
      separator = ",";
    }
    text << '\n';
  }

  fs::path folder_;
  std::vector<new_table> tables_;
  bool any_in_place_ = false;
};

template <class Use>
void for_each_foot(const walk& walk, Use use) {
  if (walk.left) {
    use(side::left, *walk.left);
  }
  if (walk.right) {
    use(side::right, *walk.right);
  }
}

}  // namespace

void write_walk_folder(const walk& walk, const fs::path& folder) {
  fs::create_directories(folder);
  new_tables tables(folder);
  tables.write<recording_row>([&](const auto& write_row) {
    for_each_foot(walk, [&](side side, const foot& foot) {
      write_row({side, foot.sampling_rate, foot.signal_1_samples, foot.signal_2_samples});
    });
  });
  tables.write<foot_cycle_row>([&](const auto& write_row) {
    for_each_foot(walk, [&](side side, const foot& foot) {
      for (const gait_foot_cycle& cycle : foot.cycles) {
        write_row({cycle, side});
      }
    });
  });
  tables.write<feet_cycle_row>([&](const auto& write_row) {
    int index = 0;
    for (const feet_cycle& cycle : walk.feet) {
      write_row({cycle, index});
      ++index;
    }
  });
  tables.write<exclusion_row>([&](const auto& write_row) {
    for (const exclusion& exclusion : walk.exclusions) {
      write_row(exclusion);
    }
  });
  if (walk.about.empty()) {
    tables.remove<about_row>();
  } else {
    tables.write<about_row>([&](const auto& write_row) {
      for (const about_row& row : walk.about) {
        write_row(row);
      }
    });
  }
  tables.put_in_place();
}

}  // namespace gait_walk
