#ifndef BENCHMARKS_SCATTER_H
#define BENCHMARKS_SCATTER_H

/// \file
/// Lists whose nodes lie anywhere in memory, as those of a list that was filled over a long time.

#include <algorithm>
#include <list>
#include <random>
#include <vector>

/// Links the nodes of a list anew in random order, and moves the values along, so that only their
/// places differ.
template <class Value>
void scatter(std::list<Value>& list) {
  std::vector<std::list<Value>> single(list.size());
  for (auto& node : single) {
    node.splice(node.begin(), list, list.begin());
  }
  std::vector<Value> values;
  for (const auto& node : single) {
    values.push_back(node.front());
  }
  std::shuffle(single.begin(), single.end(), std::mt19937_64(1));
  auto value = values.begin();
  for (auto& node : single) {
    node.front() = *value++;
    list.splice(list.end(), node);
  }
}

#endif
