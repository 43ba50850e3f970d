#pragma once

/// @file What the library uses of C++20's range algorithms, memory and atomics, for the standard library of older emscriptens,
/// which lacks it. Included before every source.

#include <version>

#if defined(_LIBCPP_VERSION) && _LIBCPP_VERSION < 15000

#include <algorithm>
#include <atomic>
#include <compare>
#include <functional>
#include <iterator>
#include <memory>
#include <type_traits>
#include <utility>

namespace std::ranges {

/// An algorithm whose range form says the same as its form for a pair of iterators.
#define QOC_OF_RANGE(name)                                                                                             \
  template <class R, class... Rest> auto name(R &&range, Rest &&...rest) {                                             \
    return std::name(std::begin(range), std::end(range), std::forward<Rest>(rest)...);                                 \
  }
QOC_OF_RANGE(adjacent_find)
QOC_OF_RANGE(all_of)
QOC_OF_RANGE(any_of)
QOC_OF_RANGE(binary_search)
QOC_OF_RANGE(copy)
QOC_OF_RANGE(copy_if)
QOC_OF_RANGE(count)
QOC_OF_RANGE(count_if)
QOC_OF_RANGE(fill)
QOC_OF_RANGE(find_if)
QOC_OF_RANGE(for_each)
QOC_OF_RANGE(is_sorted)
QOC_OF_RANGE(max_element)
QOC_OF_RANGE(min_element)
QOC_OF_RANGE(none_of)
QOC_OF_RANGE(partition_point)
QOC_OF_RANGE(pop_heap)
QOC_OF_RANGE(push_heap)
QOC_OF_RANGE(replace)
QOC_OF_RANGE(reverse)
QOC_OF_RANGE(sort)
QOC_OF_RANGE(transform)
#undef QOC_OF_RANGE

template <class R, class T, class P = std::identity> auto find(R &&range, const T &value, P project = {}) {
  return std::find_if(std::begin(range), std::end(range),
                      [&](const auto &element) { return std::invoke(project, element) == value; });
}
template <class R, class T, class C = std::less<>, class P = std::identity>
auto lower_bound(R &&range, const T &value, C compare = {}, P project = {}) {
  return std::lower_bound(std::begin(range), std::end(range), value, [&](const auto &element, const T &bound) {
    return compare(std::invoke(project, element), bound);
  });
}
template <class R, class T, class C = std::less<>, class P = std::identity>
auto upper_bound(R &&range, const T &value, C compare = {}, P project = {}) {
  return std::upper_bound(std::begin(range), std::end(range), value, [&](const T &bound, const auto &element) {
    return compare(bound, std::invoke(project, element));
  });
}
template <class A, class B, class C = std::equal_to<>, class P = std::identity, class Q = std::identity>
bool equal(A &&a, B &&b, C compare = {}, P projectA = {}, Q projectB = {}) {
  return std::equal(std::begin(a), std::end(a), std::begin(b), std::end(b), [&](const auto &x, const auto &y) {
    return compare(std::invoke(projectA, x), std::invoke(projectB, y));
  });
}
/// What is left over, as a range that has a begin.
template <class I> struct Rest {
  I first, last;
  I begin() const { return first; }
  I end() const { return last; }
};
template <class R> auto unique(R &&range) {
  const auto first = std::unique(std::begin(range), std::end(range));
  return Rest<decltype(first)>{first, std::end(range)};
}
template <class R> auto max(R &&range) { return *std::max_element(std::begin(range), std::end(range)); }

} // namespace std::ranges

namespace std {

template <class T> std::unique_ptr<T> make_unique_for_overwrite(std::size_t n) {
  return std::unique_ptr<T>(new std::remove_extent_t<T>[n]);
}

template <class I, class J> auto lexicographical_compare_three_way(I a, I aEnd, J b, J bEnd) -> decltype(*a <=> *b) {
  for (; a != aEnd && b != bEnd; ++a, ++b) {
    if (const auto order = *a <=> *b; order != 0) return order;
  }
  return (a != aEnd) <=> (b != bEnd);
}

/// The page has one thread.
template <class T> class atomic_ref {
public:
  explicit atomic_ref(T &object) : object_(object) {}
  T load(std::memory_order = std::memory_order_seq_cst) const { return object_; }

private:
  T &object_;
};

} // namespace std

#endif
