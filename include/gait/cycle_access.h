#ifndef GAIT_CYCLE_ACCESS_H
#define GAIT_CYCLE_ACCESS_H

/// \file
/// Reaching a cycle from its index: the only code that does.

#include <gait/statistics.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <list>
#include <utility>

namespace gait_detail {

/// How many traversals of a list are made at once.
inline constexpr std::size_t traversals_side_by_side = 16;

/// A group of traversals of one list, each from the front to its own index.
///
/// A traversal waits at every node for the address of the next one. Traversals to different indices
/// do not wait for one another: side by side, a group of them takes little longer than its longest
/// one alone.
///
/// Compilers make more of it. Until the nearest member has arrived, all of them stand on the same
/// node; g++ sees that, and loads each node once for all. clang++ loads it once for each, which
/// tells on lists that the first-level cache holds.
template <class Iterator>
class traversal_group {
public:
  explicit traversal_group(Iterator front) : front_(front) {}

  bool is_empty() const { return count_ == 0; }
  bool is_full() const { return count_ == traversals_side_by_side; }

  /// Adds a traversal to `index`, asked for by the element of the index list at `position`.
  void add(std::size_t position, int index) {
    positions_[count_] = position;
    ends_[count_] = {index, count_};
    ++count_;
  }

  /// Makes the traversals, visits what they reached in the order in which they were added, and
  /// starts over. Not for an empty group.
  template <class Visit>
  void traverse_and_visit(Visit& visit) {
    // The members that a last group lacks go along with its last one.
    std::fill(ends_.begin() + count_, ends_.end(), ends_[count_ - 1]);
    const auto nearer = [](const end& a, const end& b) { return a.index < b.index; };
    if (!std::is_sorted(ends_.begin(), ends_.end(), nearer)) {
      std::sort(ends_.begin(), ends_.end(), nearer);
    }
    start(std::make_index_sequence<traversals_side_by_side>{});
    for (std::size_t i = 0; i < count_; ++i) {
      visit(positions_[i], *reached_[i]);
    }
    count_ = 0;
  }

private:
  /// Where a traversal ends.
  struct end {
    int index;
    std::size_t order;  ///< which member of the group it is, as they were added
  };

  template <std::size_t... Member>
  void start(std::index_sequence<Member...> /*members*/) {
    advance(ends_.data(), 0, ((void)Member, front_)...);
  }

  /// Advances traversals that have passed `passed` nodes until the nearest end, and goes on with
  /// the others. They are arguments, so that they may stay in registers.
  template <class... Others>
  void advance(const end* nearest, int passed, Iterator member, Others... others) {
    for (int left = nearest->index - passed; left > 0; --left) {
      ++member;
      (++others, ...);
    }
    reached_[nearest->order] = member;
    if constexpr (sizeof...(others) > 0) {
      advance(nearest + 1, nearest->index, others...);
    }
  }

  Iterator front_;
  std::size_t count_ = 0;
  std::array<end, traversals_side_by_side> ends_;
  std::array<std::size_t, traversals_side_by_side> positions_;
  std::array<Iterator, traversals_side_by_side> reached_;
};

/// Calls `use(position, index)` for every element of `indices` that is an index of a list of
/// `count` cycles.
template <class Use>
void for_each_index_within(std::size_t count, const std::list<int>& indices, Use use) {
  std::size_t position = 0;
  for (const int index : indices) {
    if (index >= 0 && static_cast<std::size_t>(index) < count) {
      use(position, index);
    }
    ++position;
  }
}

/// for_each_cycle on a list that is long enough for groups.
template <class Cycle, class Visit>
Visit for_each_cycle_by_groups(const std::list<Cycle>& cycles, const std::list<int>& indices,
                               Visit visit) {
  traversal_group<typename std::list<Cycle>::const_iterator> group(cycles.begin());
  for_each_index_within(cycles.size(), indices, [&](std::size_t position, int index) {
    group.add(position, index);
    if (group.is_full()) {
      group.traverse_and_visit(visit);
    }
  });
  if (!group.is_empty()) {
    group.traverse_and_visit(visit);
  }
  return visit;
}

/// Calls `visit(position, cycle)` for every index of `indices` that lies within `cycles`, in list
/// order.
///
/// `position` counts the elements of `indices` from 0, those that are skipped included. An index
/// that is negative or not below the number of cycles is skipped; an index that occurs twice is
/// visited twice.
///
/// Every cycle is reached afresh from the front of its list: no table is built and no position is
/// carried from one index to the next, so indices may come in any order. O(n * k) nodes are passed
/// for k indices over n cycles, a group of traversals at a time; no allocation; throws only what
/// `visit` throws. Returns `visit`, with what it has gathered: what it holds itself, and does not
/// refer to, can stay in registers.
template <class Cycle, class Visit>
Visit for_each_cycle(const std::list<Cycle>& cycles, const std::list<int>& indices, Visit visit) {
  // On a shorter list the processor overlaps single traversals by itself.
  constexpr std::size_t shortest_worth_a_group = 32;
  if (cycles.size() >= shortest_worth_a_group) {
    return for_each_cycle_by_groups(cycles, indices, std::move(visit));
  }
  for_each_index_within(cycles.size(), indices, [&](std::size_t position, int index) {
    visit(position, *std::next(cycles.begin(), index));
  });
  return visit;
}

/// Adds up a field as it is visited.
template <class Cycle>
struct field_sum {
  double Cycle::*field;
  double sum = 0.0;

  void operator()(std::size_t /*position*/, const Cycle& cycle) {
    if (!gait_is_missing(cycle.*field)) {
      sum += cycle.*field;
    }
  }
};

/// The sum of a field over the indexed cycles, from 0.0 and in list order: the same bits with every
/// compiler.
///
/// A cycle whose field is missing adds nothing; a NaN makes the sum NaN.
template <class Cycle>
double index_sum(const std::list<Cycle>& cycles, const std::list<int>& indices,
                 double Cycle::*field) {
  return for_each_cycle(cycles, indices, field_sum<Cycle>{field}).sum;
}

}  // namespace gait_detail

#endif
