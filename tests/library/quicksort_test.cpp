#include <eigen_plugins/quicksort.h>

#include "bits.h"
#include "by_definition.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <random>
#include <vector>

namespace {

using gait_test::infinity;
using gait_test::nan;

using index_type = std::ptrdiff_t;

template <class T>
std::vector<T> sorted(std::vector<T> values) {
  _kalvio_eigen_quicksort(values.data(), index_type{0}, static_cast<index_type>(values.size()) - 1);
  return values;
}

/// Visits every sequence of `length` elements out of `letters`.
template <class Visit>
void for_each_sequence(std::size_t length, const std::vector<double>& letters, Visit visit) {
  std::vector<std::size_t> digits(length, 0);
  std::vector<double> sequence(length, letters.front());
  for (;;) {
    visit(sequence);
    std::size_t position = 0;
    while (position < length && digits[position] + 1 == letters.size()) {
      digits[position] = 0;
      sequence[position] = letters[0];
      ++position;
    }
    if (position == length) {
      return;
    }
    ++digits[position];
    sequence[position] = letters[digits[position]];
  }
}

/// An element that shows where it came from: only `key` is compared, and only by strict < and >.
struct labelled {
  int key;
  int label;
};
bool operator<(const labelled& a, const labelled& b) { return a.key < b.key; }
bool operator>(const labelled& a, const labelled& b) { return a.key > b.key; }
bool operator==(const labelled& a, const labelled& b) {
  return a.key == b.key && a.label == b.label;
}

std::vector<labelled> random_labelled(std::mt19937_64& random, int size, int highest_key) {
  std::uniform_int_distribution<int> key(0, highest_key);
  std::vector<labelled> values;
  values.reserve(static_cast<std::size_t>(size));
  for (int label = 0; label < size; ++label) {
    values.push_back({key(random), label});
  }
  return values;
}

TEST(Quicksort, SortsEverySequenceOfUpToSixValuesWithRepetitions) {
  for (std::size_t size = 1; size <= 6; ++size) {
    for_each_sequence(size, {-infinity, -1.0, 0.0, 1.0, infinity},
                      [](const std::vector<double>& values) {
                        std::vector<double> expected = values;
                        std::sort(expected.begin(), expected.end());
                        ASSERT_EQ(sorted(values), expected);
                      });
  }
}

TEST(Quicksort, SortsOnlyTheGivenRangeBothEndsIncluded) {
  std::vector<double> values = {9.0, 8.0, 7.0, 6.0, 5.0, 4.0};
  _kalvio_eigen_quicksort(values.data(), index_type{1}, index_type{4});
  EXPECT_EQ(values, (std::vector<double>{9.0, 5.0, 6.0, 7.0, 8.0, 4.0}));
}

TEST(Quicksort, LeavesAnEmptyRangeAlone) {
  std::vector<double> values = {3.0, 2.0, 1.0};
  const std::vector<double> before = values;
  _kalvio_eigen_quicksort(values.data(), index_type{0}, index_type{-1});
  _kalvio_eigen_quicksort(values.data(), index_type{2}, index_type{1});
  _kalvio_eigen_quicksort(static_cast<double*>(nullptr), index_type{0}, index_type{-1});
  EXPECT_EQ(values, before);
}

TEST(Quicksort, SwapsElementsThatEqualThePivot) {
  // A sort that left equal elements where they are would keep this order.
  EXPECT_EQ(sorted(std::vector<labelled>{{1, 0}, {1, 1}}), (std::vector<labelled>{{1, 1}, {1, 0}}));
  EXPECT_EQ(sorted(std::vector<labelled>{{1, 0}, {1, 1}, {1, 2}}),
            (std::vector<labelled>{{1, 2}, {1, 1}, {1, 0}}));
}

TEST(Quicksort, OrdersEqualElementsAsItsDefinitionDoes) {
  std::mt19937_64 random(31);
  for (int round = 0; round < 5000; ++round) {
    const auto values = random_labelled(random, 1 + round % 60, 1 + round % 9);
    auto expected = values;
    by_definition::quicksort(expected, 0, static_cast<index_type>(values.size()) - 1);
    ASSERT_EQ(sorted(values), expected) << "round " << round;
  }
}

TEST(Quicksort, TruncatesTheMiddleTowardZeroBelowIndexZero) {
  std::mt19937_64 random(32);
  for (int round = 0; round < 2000; ++round) {
    const index_type size = 2 + round % 20;
    const index_type origin = -(round % (size + 1));
    std::vector<labelled> values = random_labelled(random, static_cast<int>(size), 3);
    std::vector<labelled> expected = values;
    by_definition::quicksort(expected, origin, origin + size - 1, origin);
    _kalvio_eigen_quicksort(values.data() - origin, origin, origin + size - 1);
    ASSERT_EQ(values, expected) << "round " << round;
  }
}

/// A value among guards, which notes when a guard is compared: the sort then read outside its
/// range.
struct guarded {
  double value;
  bool is_guard;
  static bool guard_was_read;
};
bool guarded::guard_was_read = false;

void note_guards(const guarded& a, const guarded& b) {
  guarded::guard_was_read |= a.is_guard || b.is_guard;
}
bool operator<(const guarded& a, const guarded& b) {
  note_guards(a, b);
  return a.value < b.value;
}
bool operator>(const guarded& a, const guarded& b) {
  note_guards(a, b);
  return a.value > b.value;
}

/// Sorts `values` between guards that hold `guard_value`, and tells whether a guard was read or
/// moved.
bool stays_within_its_range(const std::vector<double>& values, double guard_value) {
  constexpr std::size_t guards = 3;
  std::vector<guarded> row(guards, {guard_value, true});
  for (const double value : values) {
    row.push_back({value, false});
  }
  row.insert(row.end(), guards, {guard_value, true});

  guarded::guard_was_read = false;
  _kalvio_eigen_quicksort(row.data(), static_cast<index_type>(guards),
                          static_cast<index_type>(guards + values.size()) - 1);
  const auto all_guards = [](auto first, auto last) {
    return std::all_of(first, last, [](const guarded& g) { return g.is_guard; });
  };
  return !guarded::guard_was_read && all_guards(row.begin(), row.begin() + guards) &&
         all_guards(row.end() - guards, row.end());
}

TEST(Quicksort, NeverReadsOutsideItsRangeWhateverTheNaNs) {
  for (std::size_t size = 1; size <= 6; ++size) {
    for_each_sequence(size, {nan, 1.0, 2.0, 3.0}, [](const std::vector<double>& values) {
      ASSERT_TRUE(stays_within_its_range(values, -100.0));
      ASSERT_TRUE(stays_within_its_range(values, 100.0));
    });
  }
}

}  // namespace
