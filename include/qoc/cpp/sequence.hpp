#ifndef QOC_CPP_SEQUENCE_HPP
#define QOC_CPP_SEQUENCE_HPP

/// @file Ranges over the elements of the library's vectors.

#include <compare>
#include <cstddef>
#include <iterator>
#include <span>
#include <type_traits>

namespace qoc {
inline namespace v0 {

/**
 * A random-access range over contiguous elements that shows each through `Show`, a function of a constant element.
 *
 * Like a std::span it owns nothing: it is valid until the vector behind it changes.
 */
template <class Element, auto Show>
class Sequence {
 public:
  using value_type = std::invoke_result_t<decltype(Show), const Element &>;

  class iterator {
   public:
    using iterator_concept = std::random_access_iterator_tag;
    using iterator_category = std::input_iterator_tag;  // Its elements are made on the way out.
    using value_type = Sequence::value_type;
    using difference_type = std::ptrdiff_t;
    using reference = value_type;
    using pointer = void;

    iterator() noexcept = default;
    explicit iterator(const Element *at) noexcept : at_(at) {}

    value_type operator*() const { return Show(*at_); }
    value_type operator[](difference_type n) const { return Show(at_[n]); }
    iterator &operator++() noexcept { return *this += 1; }
    iterator &operator--() noexcept { return *this -= 1; }
    iterator operator++(int) noexcept { return iterator(at_++); }
    iterator operator--(int) noexcept { return iterator(at_--); }
    iterator &operator+=(difference_type n) noexcept {
      at_ += n;
      return *this;
    }
    iterator &operator-=(difference_type n) noexcept { return *this += -n; }
    friend iterator operator+(iterator i, difference_type n) noexcept { return i += n; }
    friend iterator operator+(difference_type n, iterator i) noexcept { return i += n; }
    friend iterator operator-(iterator i, difference_type n) noexcept { return i -= n; }
    friend difference_type operator-(iterator a, iterator b) noexcept { return a.at_ - b.at_; }
    friend bool operator==(iterator, iterator) noexcept = default;
    friend auto operator<=>(iterator, iterator) noexcept = default;

   private:
    const Element *at_ = nullptr;
  };

  Sequence() noexcept = default;
  explicit Sequence(std::span<const Element> elements) noexcept : elements_(elements) {}

  iterator begin() const noexcept { return iterator(elements_.data()); }
  iterator end() const noexcept { return iterator(elements_.data() + elements_.size()); }
  std::size_t size() const noexcept { return elements_.size(); }
  bool empty() const noexcept { return elements_.empty(); }
  value_type operator[](std::size_t index) const { return Show(elements_[index]); }
  value_type front() const { return Show(elements_.front()); }
  value_type back() const { return Show(elements_.back()); }

 private:
  std::span<const Element> elements_;
};

}  // namespace v0
}  // namespace qoc

/// @cond
template <class Element, auto Show>
inline constexpr bool std::ranges::enable_borrowed_range<qoc::Sequence<Element, Show>> = true;
template <class Element, auto Show>
inline constexpr bool std::ranges::enable_view<qoc::Sequence<Element, Show>> = true;
/// @endcond

#endif
