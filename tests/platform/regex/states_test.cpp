// Sets of positions, as a word and as words.

#include "platform/regex/states.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <set>

namespace {

using Positions = std::set<std::int32_t>;

template <class Set>
Set made(const Positions &positions, Set set) {
  for (const std::int32_t position : positions) {
    qoc::insert(set, position);
  }
  return set;
}

template <class Set>
Positions listed(const Set &set) {
  Positions positions;
  qoc::forEach(set, [&](std::int32_t position) { positions.insert(position); });
  return positions;
}

Positions moved(const Positions &positions, std::int32_t by, std::int32_t end) {
  Positions result;
  for (const std::int32_t position : positions) {
    if (position + by >= 0 && position + by < end) {
      result.insert(position + by);
    }
  }
  return result;
}

/// Every operation on sets of up to `end` positions, the size of `none`.
template <class Set>
void expectSets(const Set &none, std::int32_t end) {
  const Positions lists[] = {{},           {0},          {end - 1},  {0, end - 1}, {1, 2, 62},
                             {31, 32, 63}, {2, end - 2}, {0, 1, 63}, {end / 2}};
  for (const Positions &a : lists) {
    const Set setA = made(a, none);
    EXPECT_EQ(listed(setA), a);
    EXPECT_EQ(qoc::isEmpty(setA), a.empty());
    EXPECT_EQ(listed(qoc::movedUp(setA)), moved(a, 1, end));
    EXPECT_EQ(listed(qoc::movedDown(setA)), moved(a, -1, end));
    for (std::int32_t position = 0; position < end; ++position) {
      EXPECT_EQ(qoc::contains(setA, position), a.contains(position));
    }
    for (const Positions &b : lists) {
      Positions both, either = a;
      either.insert(b.begin(), b.end());
      std::ranges::set_intersection(a, b, std::inserter(both, both.end()));
      const Set setB = made(b, none);
      EXPECT_EQ(listed(setA & setB), both);
      EXPECT_EQ(listed(setA | setB), either);
      EXPECT_EQ(qoc::intersects(setA, setB), !both.empty());
    }
  }
}

TEST(StateSets, OfAWordAndOfWordsAreSets) {
  expectSets(std::uint64_t{0}, 64);
  expectSets(qoc::WideSet(1), 64);
  expectSets(qoc::WideSet(3), 192);
}

}  // namespace
