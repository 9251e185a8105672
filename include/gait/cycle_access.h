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

/// How many walks along a list are made at once.
inline constexpr std::size_t walks_side_by_side = 16;

/// Tells clang++ what g++ sees by itself.
inline void take_as_given([[maybe_unused]] bool fact) {
#ifdef __clang__
  __builtin_assume(fact);
#endif
}

/// A group of walks along one list, each from the front to its own index.
///
/// A walk waits at every step for the node that it has just asked for. Walks to different indices
/// do not wait for one another: side by side, a group of them takes little longer than its longest
/// walk alone.
template <class Iterator>
class walk_group {
public:
  explicit walk_group(Iterator front) : front_(front) {}

  bool is_empty() const { return count_ == 0; }
  bool is_full() const { return count_ == walks_side_by_side; }

  /// Adds a walk to `index`, asked for by the element of the index list at `position`.
  void add(std::size_t position, int index) {
    positions_[count_] = position;
    ends_[count_] = {index, count_};
    ++count_;
  }

  /// Walks, visits what was reached in the order in which it was added, and starts over. Not for an
  /// empty group.
  // Left to itself, g++ -O3 makes code that is half as fast on nodes that lie in order.
  // clang-format off
  template <class Visit>
#ifndef __clang__
  [[gnu::always_inline]]
#endif
  void walk_and_visit(Visit& visit) {
    // clang-format on
    // The walks that a last group lacks go along with its last one.
    std::fill(ends_.begin() + count_, ends_.end(), ends_[count_ - 1]);
    const auto nearer = [](const walk_end& a, const walk_end& b) { return a.index < b.index; };
    if (!std::is_sorted(ends_.begin(), ends_.end(), nearer)) {
      std::sort(ends_.begin(), ends_.end(), nearer);
    }
    start(std::make_index_sequence<walks_side_by_side>{});
    for (std::size_t i = 0; i < count_; ++i) {
      visit(positions_[i], *reached_[i]);
    }
    count_ = 0;
  }

private:
  struct walk_end {
    int index;
    std::size_t order;  ///< which walk of the group it is, as they were added
  };

  template <std::size_t... Walk>
  void start(std::index_sequence<Walk...> /*walks*/) {
    advance(ends_.data(), 0, ((void)Walk, front_)...);
  }

  /// Advances walks that stand `done` steps from the front until the nearest end, and goes on with
  /// the others. They are arguments, and the function inlined into itself, to keep them in
  /// registers. All of them stand on the same node, which g++ sees and clang++ has to be told: it
  /// is then read once for all.
  template <class... Others>
  [[gnu::always_inline]] void advance(const walk_end* nearest, int done, Iterator walk,
                                      Others... others) {
    for (int steps = nearest->index - done; steps > 0; --steps) {
      (take_as_given(others == walk), ...);
      ++walk;
      (++others, ...);
    }
    reached_[nearest->order] = walk;
    if constexpr (sizeof...(others) > 0) {
      advance(nearest + 1, nearest->index, others...);
    }
  }

  Iterator front_;
  std::size_t count_ = 0;
  std::array<walk_end, walks_side_by_side> ends_;
  std::array<std::size_t, walks_side_by_side> positions_;
  std::array<Iterator, walks_side_by_side> reached_;
};

/// Calls `use(position, index)` for every element of `indices` that is an index of a list of
/// `count` cycles.
template <class Use>
[[gnu::always_inline]] inline void for_each_index_within(std::size_t count,
                                                         const std::list<int>& indices, Use use) {
  std::size_t position = 0;
  for (const int index : indices) {
    if (index >= 0 && static_cast<std::size_t>(index) < count) {
      use(position, index);
    }
    ++position;
  }
}

/// The iterator `index` steps after `front`. Two steps a turn: in g++'s loop of single steps the
/// jump is the slow part.
template <class Iterator>
[[gnu::always_inline]] inline Iterator walk_alone(Iterator front, int index) {
  for (; index >= 2; index -= 2) {
    ++front;
    ++front;
  }
  return index == 1 ? std::next(front) : front;
}

/// for_each_cycle on a list that is long enough to walk along in groups. A function of its own,
/// because a short list would otherwise pay for the registers that it saves.
template <class Cycle, class Visit>
[[gnu::noinline]] Visit for_each_cycle_by_groups(const std::list<Cycle>& cycles,
                                                 const std::list<int>& indices, Visit visit) {
  walk_group<typename std::list<Cycle>::const_iterator> group(cycles.begin());
  for_each_index_within(cycles.size(), indices, [&](std::size_t position, int index) {
    group.add(position, index);
    if (group.is_full()) {
      group.walk_and_visit(visit);
    }
  });
  if (!group.is_empty()) {
    group.walk_and_visit(visit);
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
/// carried from one index to the next, so that indices may come in any order. O(n * k) steps for k
/// indices over n cycles, a group of walks at a time; no allocation; throws only what `visit`
/// throws. Returns `visit`, with what it has gathered: what it holds itself, and does not refer to,
/// can stay in registers.
template <class Cycle, class Visit>
Visit for_each_cycle(const std::list<Cycle>& cycles, const std::list<int>& indices, Visit visit) {
  // On a shorter list the processor overlaps the walks by itself.
  constexpr std::size_t shortest_worth_a_group = 32;
  if (cycles.size() >= shortest_worth_a_group) {
    return for_each_cycle_by_groups(cycles, indices, std::move(visit));
  }
  for_each_index_within(cycles.size(), indices, [&](std::size_t position, int index) {
    visit(position, *walk_alone(cycles.begin(), index));
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
