#ifndef QOC_CPP_SWAPS_HPP
#define QOC_CPP_SWAPS_HPP

/// @file What the reader confuses.

#include <qoc/cpp/string.hpp>

#include <initializer_list>
#include <span>
#include <vector>

namespace qoc {
inline namespace v0 {

/// One allowed confusion: the reader may show one sequence where the other stands.
class Swap : public Value<qoc_swapChar> {
 public:
  using Value::Value;
  /// Neither may be empty, and the shorter must not occur in the longer.
  Swap(const String &first, const String &second) { require(qoc_swapChar_setStrings(c(), first.c(), second.c())); }

  std::span<const Char32> first() const noexcept { return detail::elements(c()->first); }
  std::span<const Char32> second() const noexcept { return detail::elements(c()->second); }
};

/// A swap of a set, to be read.
struct SwapView {
  std::span<const Char32> first, second;
};

namespace detail {
inline SwapView viewSwap(const qoc_swapChar &swap) noexcept { return {elements(swap.first), elements(swap.second)}; }
inline std::span<const Char32> codesOf(const qstd_vectorChar32 &codes) noexcept { return elements(codes); }
}  // namespace detail

/// The characters that a reader confuses: groups of interchangeable ones, and swaps of several for one.
class SwapSet : public Value<qoc_swapCharSet> {
 public:
  using Groups = Sequence<qstd_vectorChar32, detail::codesOf>;
  using Swaps = Sequence<qoc_swapChar, detail::viewSwap>;
  using Value::Value;

  /// Groups of interchangeable characters, each of two or more: `SwapSet::ofGroups({"O0", "Il1"})`.
  static SwapSet ofGroups(std::span<const String> groups) {
    Value<qstd_vector_vectorChar32> lists;
    for (const String &group : groups) {
      std::vector<Char32> codes;
      for (const Candidate &character : group.characters()) codes.push_back(character.code);
      Value<qstd_vectorChar32> list;
      detail::assign(*list.c(), codes);
      detail::moveInto(*lists.c(), std::move(list));
    }
    SwapSet set;
    require(qoc_swapCharSet_setEquiv(set.c(), lists.c()));
    return set;
  }
  static SwapSet ofGroups(std::initializer_list<String> groups) {
    return ofGroups(std::span<const String>(groups.begin(), groups.size()));
  }

  /// Swaps: `SwapSet::ofSwaps({{"rn", "m"}})`. See qoc_swapCharSet_setSwapCharacters for which go together.
  static SwapSet ofSwaps(std::span<const Swap> swaps) {
    Value<qstd_vector_qoc_swapChar> list;
    for (const Swap &swap : swaps) detail::moveInto(*list.c(), Swap(swap));
    SwapSet set;
    require(qoc_swapCharSet_setSwapCharacters(set.c(), list.c()));
    return set;
  }
  static SwapSet ofSwaps(std::initializer_list<Swap> swaps) {
    return ofSwaps(std::span<const Swap>(swaps.begin(), swaps.size()));
  }

  /// The groups, as they were given.
  Groups groups() const noexcept { return Groups(detail::elements(c()->groups)); }
  /// The swaps of several characters.
  Swaps swaps() const noexcept { return Swaps(detail::elements(c()->swaps)); }
  /// Whether there is neither a group nor a swap.
  bool empty() const {
    return detail::flag(qoc_swapCharSet_getIsEmpty, c()) && !detail::flag(qoc_swapCharSet_hasMultiSwap, c());
  }
  /// Whether the code stands in a group.
  bool contains(char32_t code) const { return detail::flag(qoc_swapCharSet_contains, c(), Char32{code}); }
  /// Whether one character may stand for the other.
  bool isMatch(char32_t a, char32_t b) const {
    const Candidate first{a, 0}, second{b, 0};
    return detail::flag(qoc_swapCharSet_isMatchChar, c(), &first, &second);
  }
  /// The codes that may stand for a code, ascending, without itself.
  std::vector<Char32> equivalents(char32_t code) const {
    const Candidate character{code, 0};
    Value<qstd_vector_qoc_ocrDictionaryChar> found;
    require(qoc_swapCharSet_getEquivalentCharacters(c(), &character, found.c()));
    std::vector<Char32> codes;
    for (const Candidate &equivalent : detail::elements(*found.c())) codes.push_back(equivalent.code);
    return codes;
  }
};

}  // namespace v0
}  // namespace qoc

#endif
