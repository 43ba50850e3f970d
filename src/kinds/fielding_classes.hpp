#pragma once
// The classes of characters that positions of a line name by bits.

#include <qoc/position_fielding.h>

namespace qoc {

/// One class of characters: all from first to last, or, inverted, all others.
struct CharacterClass {
  std::uint32_t bit;
  Char32 first, last;
  bool inverted;
};

inline constexpr CharacterClass characterClasses[] = {
    {QOC_FIELDING_NONSPACE, U' ', U' ', true}, {QOC_FIELDING_SPACE, U' ', U' ', false},
    {QOC_FIELDING_UPPER, U'A', U'Z', false},   {QOC_FIELDING_LOWER, U'a', U'z', false},
    {QOC_FIELDING_DIGIT, U'0', U'9', false},
};

/// The bits of the classes that a code is in.
constexpr std::uint32_t classesOf(Char32 code) noexcept {
  std::uint32_t bits = 0;
  for (const CharacterClass &each : characterClasses) {
    bits |= (each.first <= code && code <= each.last) != each.inverted ? each.bit : 0;
  }
  return bits;
}

}  // namespace qoc
