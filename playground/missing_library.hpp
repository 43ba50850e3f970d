#pragma once

/// @file What the library uses of C++20's range algorithms, memory and atomics, for the standard library of older emscriptens,
/// which lacks it. Included before every source.

#include <version>

#if defined(_LIBCPP_VERSION) && _LIBCPP_VERSION < 15000

#include <algorithm>
#include <atomic>
#include <functional>
#include <iterator>
#include <memory>
#include <type_traits>
#include <utility>

namespace std::ranges {

template <class R, class T, class P = std::identity> auto find(R &&range, const T &value, P project = {}) {
  return std::find_if(std::begin(range), std::end(range),
                      [&](const auto &element) { return std::invoke(project, element) == value; });
}
template <class R, class F> auto find_if(R &&range, F test) {
  return std::find_if(std::begin(range), std::end(range), test);
}
template <class R, class F> bool any_of(R &&range, F test) {
  return std::any_of(std::begin(range), std::end(range), test);
}
template <class R, class F> bool all_of(R &&range, F test) {
  return std::all_of(std::begin(range), std::end(range), test);
}
template <class R, class F> bool none_of(R &&range, F test) {
  return std::none_of(std::begin(range), std::end(range), test);
}
template <class R, class T> auto count(R &&range, const T &value) {
  return std::count(std::begin(range), std::end(range), value);
}
template <class R, class F> auto count_if(R &&range, F test) {
  return std::count_if(std::begin(range), std::end(range), test);
}
template <class R, class T> bool binary_search(R &&range, const T &value) {
  return std::binary_search(std::begin(range), std::end(range), value);
}
template <class R, class T, class C = std::less<>, class P = std::identity>
auto lower_bound(R &&range, const T &value, C = {}, P project = {}) {
  return std::lower_bound(std::begin(range), std::end(range), value,
                          [&](const auto &element, const T &bound) { return std::invoke(project, element) < bound; });
}
template <class A, class B, class C = std::equal_to<>, class P = std::identity, class Q = std::identity>
bool equal(A &&a, B &&b, C = {}, P projectA = {}, Q projectB = {}) {
  return std::equal(std::begin(a), std::end(a), std::begin(b), std::end(b), [&](const auto &x, const auto &y) {
    return std::invoke(projectA, x) == std::invoke(projectB, y);
  });
}
template <class R> bool is_sorted(R &&range) { return std::is_sorted(std::begin(range), std::end(range)); }
template <class R, class C = std::less<>> void sort(R &&range, C compare = {}) {
  std::sort(std::begin(range), std::end(range), compare);
}
template <class R, class C = std::less<>> void push_heap(R &&range, C compare = {}) {
  std::push_heap(std::begin(range), std::end(range), compare);
}
template <class R, class C = std::less<>> void pop_heap(R &&range, C compare = {}) {
  std::pop_heap(std::begin(range), std::end(range), compare);
}
template <class R, class T> void fill(R &&range, const T &value) {
  std::fill(std::begin(range), std::end(range), value);
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
template <class R> void reverse(R &&range) { std::reverse(std::begin(range), std::end(range)); }
template <class R> auto max(R &&range) { return *std::max_element(std::begin(range), std::end(range)); }
template <class R, class O> void copy(R &&range, O out) { std::copy(std::begin(range), std::end(range), out); }
template <class R, class O, class F> void transform(R &&range, O out, F change) {
  std::transform(std::begin(range), std::end(range), out, change);
}

} // namespace std::ranges

namespace std {

template <class T> std::unique_ptr<T> make_unique_for_overwrite(std::size_t n) {
  return std::unique_ptr<T>(new std::remove_extent_t<T>[n]);
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
