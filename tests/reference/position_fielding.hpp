#ifndef QOC_TESTS_REFERENCE_POSITION_FIELDING_HPP
#define QOC_TESTS_REFERENCE_POSITION_FIELDING_HPP

/** @file Reference model of what one position of a line admits. */

#include "reference/records.hpp"

namespace reference {

/** What one position of a line admits. Setters give the library's statuses; matching throws Failed. */
struct PositionFielding {
  uint32_t bits = 16;
  std::vector<uint32_t> listed;

  int32_t setFieldingBits(uint32_t newBits);
  int32_t setFieldingCharacters(const std::vector<uint32_t> &codes);
  int32_t setFieldingCharactersAndFieldingBits(const std::vector<uint32_t> &codes, uint32_t newBits);
  int32_t setDictCharacters(const Word &characters);
  int32_t setDictCharactersAndFieldingBits(const Word &characters, uint32_t newBits);

  bool lists(uint32_t code) const;
  bool isEmpty() const;
  bool isAnyCharacter() const;
  bool isAnyNonspaceCharacter() const;
  bool isSingleCharacter() const;
  uint32_t singleCharacter() const;
  bool allowsSpace() const;

  bool isMatch(const Character &character, const Swaps *swaps) const;
  bool isMatchMulti(const Position &candidates, const Swaps *swaps) const;
  /** Leaves the status as it is where there are no candidates. */
  bool isMatchMultiStatus(const Position &candidates, const Swaps *swaps, int32_t &status) const;
  Position match(const Character &character, const Swaps *swaps) const;
  Position matchMulti(const Position &candidates, const Swaps *swaps) const;
  std::vector<uint32_t> allFieldingCharacters() const;
};

}  // namespace reference

#endif
