#pragma once
// The pair filter: a hash set of ordered pairs of codes, which answers most questions of
// qoc_swapCharSet_isMatch with no.

#include <qoc/base.h>

namespace qoc {

inline constexpr std::int32_t pairFilterSize = 997;

/// What a code adds to the slot as the first of a pair, and as the second. The products wrap at 32 bits; the slot is
/// their sum, taken in 64 bits, modulo the size of the filter, and so the sum of the shares modulo it.
constexpr std::uint32_t firstShareOf(Char32 code) noexcept { return code * 61u % pairFilterSize; }
constexpr std::uint32_t secondShareOf(Char32 code) noexcept { return code * 251u % pairFilterSize; }

constexpr std::uint32_t slotOfShares(std::uint32_t first, std::uint32_t second) noexcept {
  return (first + second) % pairFilterSize;
}
constexpr std::uint32_t slotOfPair(Char32 a, Char32 b) noexcept {
  return slotOfShares(firstShareOf(a), secondShareOf(b));
}

}  // namespace qoc
